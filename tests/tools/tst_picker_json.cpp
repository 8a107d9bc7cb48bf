#include "picker_json.h"
#include "png_chunks.h"
#include "tools_test_vectors.h"

#include <QJsonDocument>
#include <QTest>

using namespace tools_vectors;

namespace {

picker_tab_record readBytes(const QByteArray& bytes, qint32* version = nullptr) {
    picker_tab_record tab;
    const picker_read_result result = readPickerFile(bytes, tab);
    if (version)
        *version = result.version;
    return tab;
}

const char without_image_json[] = R"({
    "formatVersion": 4,
    "title": "Arm",
    "backgroundKey": "",
    "background": null,
    "buttons": [
        {"pos": [10, -20], "size": 12, "type": "selection", "api": "mel",
         "color": "#FFB22222", "tcolor": "#FF000000", "label": "L\u00e4",
         "sel": ["hero:L_arm", "hero:L_hand"]},
        {"pos": [300, 40], "size": 20, "type": "command", "api": "python",
         "color": "#80112233", "tcolor": "#00FFFFFF", "label": null,
         "sel": ["print('hi')\n"]}
    ]
})";

const char with_image_json[] = R"({
    "formatVersion": 4,
    "title": null,
    "backgroundKey": "bg",
    "background": "iVBORw0KGgoAAAANSUhEUgAAAAIAAAABCAIAAAB7QOjdAAAADUlEQVR42mP4zwAE/wEHAAH/PX2MSQAAAABJRU5ErkJggg==",
    "buttons": [
        {"pos": [1, 1], "size": 8, "type": "command", "api": "mel",
         "color": "#FF00FF00", "tcolor": "#FFFFFFFF", "label": "", "sel": ["select -cl;"]}
    ]
})";

} // namespace

class tst_picker_json : public QObject {
    Q_OBJECT

private slots:
    void fileToJson_data();
    void fileToJson();
    void shortColourIsOpaque();
    void badDescriptionSaysWhere_data();
    void badDescriptionSaysWhere();
    void pngLayout_data();
    void pngLayout();
};

void tst_picker_json::fileToJson_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("no image") << fileWithoutImage() << QByteArray(without_image_json);
    QTest::newRow("image") << fileWithImage() << QByteArray(with_image_json);
}

void tst_picker_json::fileToJson() {
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, json);
    qint32 version = 0;
    const picker_tab_record tab = readBytes(file, &version);
    QCOMPARE(pickerToJson(tab, version), QJsonDocument::fromJson(json).object());
}

void tst_picker_json::shortColourIsOpaque() {
    const QByteArray json = R"({"title": "t", "buttons": [{"pos": [1, 2], "size": 3,
        "type": "selection", "api": "mel", "color": "#a0b1c2", "tcolor": "#0a0b0c0d",
        "label": "a", "sel": ["n"]}]})";
    picker_tab_record tab;
    QCOMPARE(pickerFromJsonText(json, tab), QString());
    QCOMPARE(tab.buttons.at(0).color, 0xffa0b1c2u);
    QCOMPARE(tab.buttons.at(0).tcolor, 0x0a0b0c0du);
}

void tst_picker_json::badDescriptionSaysWhere_data() {
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("error");
    const QByteArray button = R"("pos": [1, 2], "size": 3, "type": "selection", "api": "mel",
        "color": "#FF000000", "tcolor": "#FF000000", "label": "a")";
    const auto picker = [&button](const char* field, const char* sel) {
        return QByteArray(R"({"title": "t", "buttons": [)") + R"({"sel": ["n"], )" + button +
               "}, {" + field + button + ", \"sel\": " + sel + "}]}";
    };
    // Columns count characters, not UTF-8 bytes.
    QTest::newRow("syntax") << QByteArray("{\n  \"title\": \"\xc3\xa4\", \"buttons\": [}")
                            << QStringLiteral("line 2, column 30: object is missing after a comma");
    QTest::newRow("unknown key") << QByteArray(R"({"title": "t", "buttons": [], "colour": 1})")
                                 << QStringLiteral("picker: unknown key \"colour\"");
    QTest::newRow("image without key")
        << QByteArray(
               R"({"title": "t", "buttons": [], "background": "iVBORw0KGgoAAAANSUhEUgAAAAIAAAABCAIAAAB7QOjdAAAADUlEQVR42mP4zwAE/wEHAAH/PX2MSQAAAABJRU5ErkJggg=="})")
        << QStringLiteral("background: an image needs a \"backgroundKey\"");
    QTest::newRow("no names")
        << picker("", "[]")
        << QStringLiteral("buttons[1].sel: a button needs at least one name or a script");
    const auto replaced = [&picker](const char* from, const QByteArray& to) {
        QByteArray json = picker("", R"(["n"])");
        const int at = json.lastIndexOf(from);
        return json.replace(at, int(qstrlen(from)), to);
    };
    QTest::newRow("fraction") << replaced(R"("size": 3)", R"("size": 3.5)")
                              << QStringLiteral(
                                     "buttons[1].size: expected a whole number in 32 bits");
    for (const char* colour : {"#FF00000", "#FF00000G", "#+F000000"}) {
        QTest::addRow("colour %s", colour)
            << replaced(R"("color": "#FF000000")", QByteArray(R"("color": ")") + colour + '"')
            << QStringLiteral("buttons[1].color: expected a colour \"#AARRGGBB\" or \"#RRGGBB\"");
    }
}

void tst_picker_json::badDescriptionSaysWhere() {
    QFETCH(QByteArray, json);
    QFETCH(QString, error);
    picker_tab_record tab;
    QCOMPARE(pickerFromJsonText(json, tab), error);
}

void tst_picker_json::pngLayout_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("error");
    const QByteArray png = tinyPng();
    QTest::newRow("complete") << png << QSize(2, 1) << QString();
    QTest::newRow("trailing") << png + "abc" << QSize(2, 1)
                              << QStringLiteral("3 bytes follow the end of the PNG data");
    QTest::newRow("cut in IEND") << png.left(png.size() - 1) << QSize(2, 1)
                                 << QStringLiteral("the PNG data is cut short");
    QTest::newRow("not png") << QByteArray("GIF89a..") << QSize() << QStringLiteral("not PNG data");
    QTest::newRow("no header") << png.left(8) + png.mid(33) << QSize() << QString();
    QTest::newRow("chunk type not letters") << png.left(37) + "ID4T" + png.mid(41) << QSize(2, 1)
                                            << QStringLiteral("a broken PNG chunk type");
}

void tst_picker_json::pngLayout() {
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, size);
    QFETCH(QString, error);
    const png_layout layout = inspectPng(bytes);
    QCOMPARE(layout.error, error);
    QCOMPARE(layout.size, size);
}

QTEST_GUILESS_MAIN(tst_picker_json)
#include "tst_picker_json.moc"
