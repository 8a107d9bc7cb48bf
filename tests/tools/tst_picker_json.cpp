#include "../core/picker_test_vectors.h"
#include "picker_json.h"
#include "png_chunks.h"

#include <QJsonDocument>
#include <QTest>

using namespace picker_test_vectors;

namespace {

// pkrVersion4() as its description.
const char arm_json[] =
    "{\"formatVersion\": 4, \"title\": \"Arm\", \"backgroundKey\": null, \"background\": null,"
    " \"buttons\": ["
    "{\"pos\": [10, -20], \"size\": 12, \"type\": \"selection\", \"api\": \"mel\","
    " \"color\": \"#FFB22222\", \"tcolor\": \"#FF000000\", \"label\": null,"
    " \"sel\": [\"L_hand\", \"L_arm\"]},"
    "{\"pos\": [100, 50], \"size\": 20, \"type\": \"command\", \"api\": \"python\","
    " \"color\": \"#FF2222B2\", \"tcolor\": \"#FFFFFFFF\", \"label\": \"Go\","
    " \"sel\": [\"print(1)\"]}]}";

const char black[] = "\"color\": \"#FF000000\", \"tcolor\": \"#FF000000\"";

// A selection button's description with the given colours and names.
QByteArray button(const char* colours, const char* sel) {
    return QByteArray(
               "{\"pos\": [1, 2], \"size\": 3, \"type\": \"selection\", \"api\": \"mel\", ") +
           colours + ", \"label\": \"a\", \"sel\": " + sel + "}";
}

QByteArray picker(const QByteArray& buttons) {
    return "{\"title\": \"t\", \"buttons\": [" + buttons + "]}";
}

} // namespace

class tst_picker_json : public QObject {
    Q_OBJECT

private slots:
    void fileToJson() {
        picker_tab_record tab;
        const picker_read_result result = readPickerFile(pkrVersion4(), tab);
        QCOMPARE(pickerToJson(tab, result.version), QJsonDocument::fromJson(arm_json).object());
    }

    void shortColourIsOpaque() {
        const QByteArray json =
            picker(button("\"color\": \"#a0b1c2\", \"tcolor\": \"#0a0b0c0d\"", "[\"n\"]"));
        picker_tab_record tab;
        QCOMPARE(pickerFromJsonText(json, tab), QString());
        QCOMPARE(tab.buttons.at(0).color, 0xffa0b1c2u);
        QCOMPARE(tab.buttons.at(0).tcolor, 0x0a0b0c0du);
    }

    void badDescriptionSaysWhere_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("error");
        // Columns count characters, not UTF-8 bytes.
        QTest::newRow("syntax") << QByteArray("{\n  \"title\": \"\xc3\xa4\", \"buttons\": [}")
                                << "line 2, column 30: object is missing after a comma";
        QTest::newRow("unknown key")
            << QByteArray("{\"title\": \"t\", \"buttons\": [], \"colour\": 1}")
            << "picker: unknown key \"colour\"";
        QTest::newRow("image without key")
            << "{\"title\": \"t\", \"buttons\": [], \"background\": \"" + tinyPng().toBase64() +
                   "\"}"
            << "background: an image needs a \"backgroundKey\"";
        // The second button has no name: the path points at it.
        QTest::newRow("no names") << picker(button(black, "[\"n\"]") + ", " + button(black, "[]"))
                                  << "buttons[1].sel: a button needs at least one name or a script";
    }

    void badDescriptionSaysWhere() {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        picker_tab_record tab;
        QCOMPARE(pickerFromJsonText(json, tab), error);
    }

    void pngLayout_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("error");
        const QByteArray png = tinyPng();
        QTest::newRow("complete") << png << QSize(2, 1) << QString();
        QTest::newRow("not png") << QByteArray("GIF89a..") << QSize() << "not PNG data";
        QTest::newRow("no header") << png.left(8) + png.mid(33) << QSize() << QString();
    }

    void pngLayout() {
        QFETCH(QByteArray, bytes);
        QFETCH(QSize, size);
        QFETCH(QString, error);
        const png_layout layout = inspectPng(bytes);
        QCOMPARE(layout.error, error);
        QCOMPARE(layout.size, size);
    }
};

QTEST_GUILESS_MAIN(tst_picker_json)
#include "tst_picker_json.moc"
