#include "picker_embedded_host.h"
#include "picker_file.h"
#include "picker_maya_ascii.h"

#include <QtTest>

namespace {

const QByteArray header = QByteArrayLiteral("//Maya ASCII 2025 scene\n//Codeset: UTF-8\n");
const QByteArray rigFile = header + QByteArrayLiteral("createNode transform -n \"L_hand_ctrl\";\n"
                                                      "createNode transform -n \"R_hand_ctrl\";\n");

// Files beside the scene, by path relative to it, then their contents.
using file_list = QList<QPair<QString, QByteArray>>;

void write_file(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QStringList pairs(const QList<QPair<QString, QString>>& list) {
    QStringList flat;
    for (const auto& entry : list)
        flat << entry.first << entry.second;
    return flat;
}

QStringList references(const QList<picker_ma_reference>& list) {
    QStringList flat;
    for (const picker_ma_reference& reference : list)
        flat << reference.ns << reference.path;
    return flat;
}

QStringList recordedEvents;

void record_event(void* clientData) {
    recordedEvents.append(*static_cast<const QString*>(clientData));
}

// A picker tab set as the window stores it in fileInfo.
QString stored_pickers() {
    picker_tab_set set;
    picker_tab_record tab;
    tab.title = QStringLiteral("Body");
    buttonAttributes button;
    button.label = QStringLiteral("hand");
    button.sel = QStringList{QStringLiteral("hero:L_hand_ctrl")};
    tab.buttons.append(button);
    set.tabs.append(tab);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    writeTabStream(out, set);
    return QString::fromLatin1(qCompress(bytes).toBase64());
}

} // namespace

class tst_picker_maya_ascii : public QObject {
    Q_OBJECT
private slots:
    void readAndWrite_data();
    void readAndWrite();
    void hostSavesAndOpensTheScene();
    void ls_data();
    void ls();
};

void tst_picker_maya_ascii::readAndWrite_data() {
    QTest::addColumn<QByteArray>("scene");
    QTest::addColumn<file_list>("files");
    QTest::addColumn<QStringList>("nodes");
    QTest::addColumn<QStringList>("refs");
    QTest::addColumn<QStringList>("referenced");
    QTest::addColumn<QStringList>("info");
    QTest::addColumn<int>("warnings");
    QTest::addColumn<QString>("error");

    const QStringList none;
    QTest::newRow("escapes")
        << header + "requires maya \"2025\";\nfileInfo \"k\" \"a\\\"b\\\\c\\nd\\te\";\n"
        << file_list() << none << none << none
        << QStringList{QStringLiteral("k"), QStringLiteral("a\"b\\c\nd\te")} << 0 << QString();
    QTest::newRow("split string") << header + "fileInfo \"k\" \"ab\"\n\t\t+ \"cd\" +\n\"ef\";\n"
                                  << file_list() << none << none << none
                                  << QStringList{QStringLiteral("k"), QStringLiteral("abcdef")} << 0
                                  << QString();
    QTest::newRow("nodes, other statements skipped")
        << header + "createNode transform -n \"root\";\nsetAttr \".t\" -type \"double3\" 0 1 "
                    "2;\ncreateNode transform -n \"rig:arm\" -p \"root\";\nconnectAttr "
                    "\"a.b\" \"c.d\";\n"
        << file_list() << QStringList{QStringLiteral("root"), QStringLiteral("rig:arm")} << none
        << none << none << 0 << QString();
    QTest::newRow("reference beside the scene")
        << header + "file -r -ns \"hero\" -rfn \"heroRN\" \"rigs/hero.ma\";\n"
        << file_list{{QStringLiteral("rigs/hero.ma"), rigFile}} << none
        << QStringList{QStringLiteral("hero"), QStringLiteral("rigs/hero.ma")}
        << QStringList{QStringLiteral("hero:L_hand_ctrl"), QStringLiteral("hero:R_hand_ctrl")}
        << none << 0 << QString();
    QTest::newRow("nested reference")
        << header + "file -r -ns \"set\" \"set.ma\";\n"
        << file_list{{QStringLiteral("set.ma"),
                      header + "createNode transform -n \"floor\";\nfile -r -ns \"hero\" "
                               "\"hero.ma\";\n"},
                     {QStringLiteral("hero.ma"), rigFile}}
        << none << QStringList{QStringLiteral("set"), QStringLiteral("set.ma")}
        << QStringList{QStringLiteral("set:floor"), QStringLiteral("set:hero:L_hand_ctrl"),
                       QStringLiteral("set:hero:R_hand_ctrl")}
        << none << 0 << QString();
    QTest::newRow("environment variable in the path")
        << header + "file -r -ns \"hero\" \"$PICKER_TEST_PROJECT/rigs/hero.ma\";\n"
        << file_list{{QStringLiteral("project/rigs/hero.ma"), rigFile}} << none
        << QStringList{QStringLiteral("hero"), QStringLiteral("$PICKER_TEST_PROJECT/rigs/hero.ma")}
        << QStringList{QStringLiteral("hero:L_hand_ctrl"), QStringLiteral("hero:R_hand_ctrl")}
        << none << 0 << QString();
    QTest::newRow("missing reference reported once, scene still loads")
        << header + "file -r -ns \"a\" \"gone.ma\";\nfile -r -ns \"a\" \"gone.ma\";\n"
                    "createNode transform -n \"root\";\n"
        << file_list() << QStringList{QStringLiteral("root")}
        << QStringList{QStringLiteral("a"), QStringLiteral("gone.ma"), QStringLiteral("a"),
                       QStringLiteral("gone.ma")}
        << none << none << 1 << QString();
    QTest::newRow("broken statement names its line")
        << header + "createNode transform -n \"root\";\nfileInfo \"k\";\n"
        << file_list() << none << none << none << none << 0 << QStringLiteral("scene.ma:4:");
    QTest::newRow("no closing semicolon")
        << header + "createNode transform -n \"root\"\n"
        << file_list() << none << none << none << none << 0 << QStringLiteral("scene.ma:3:");
    QTest::newRow("not text") << QByteArray("FOR4\0\0\0\x10Maya", 12) << file_list() << none << none
                              << none << none << 0 << QStringLiteral("scene.ma: not a text file");
    QTest::newRow("no header") << QByteArray("createNode transform -n \"root\";\n") << file_list()
                               << none << none << none << none << 0
                               << QStringLiteral("scene.ma: not a Maya ASCII scene");
}

void tst_picker_maya_ascii::readAndWrite() {
    QFETCH(QByteArray, scene);
    QFETCH(file_list, files);
    QFETCH(QStringList, nodes);
    QFETCH(QStringList, refs);
    QFETCH(QStringList, referenced);
    QFETCH(QStringList, info);
    QFETCH(int, warnings);
    QFETCH(QString, error);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    qputenv("PICKER_TEST_PROJECT", dir.filePath(QStringLiteral("project")).toLocal8Bit());
    for (const auto& file : files)
        write_file(dir.filePath(file.first), file.second);
    const QString path = dir.filePath(QStringLiteral("scene.ma"));
    write_file(path, scene);

    picker_ma_scene read;
    read.nodes = QStringList{QStringLiteral("untouched")};
    const picker_ma_result result = readMayaAscii(path, read);
    if (!error.isEmpty()) {
        QVERIFY2(result.error.startsWith(dir.filePath(error)), qPrintable(result.error));
        QCOMPARE(read.nodes, QStringList{QStringLiteral("untouched")});
        return;
    }
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(read.nodes, nodes);
    QCOMPARE(references(read.references), refs);
    QCOMPARE(read.referencedNodes, referenced);
    QCOMPARE(pairs(read.fileInfo), info);
    QCOMPARE(int(result.warnings.size()), warnings);

    // What is written reads back the same, references and all.
    const QString copy = dir.filePath(QStringLiteral("copy.ma"));
    QString writeError;
    QVERIFY2(writeMayaAscii(copy, read, &writeError), qPrintable(writeError));
    picker_ma_scene again;
    QVERIFY(readMayaAscii(copy, again).ok());
    QCOMPARE(again.nodes, read.nodes);
    QCOMPARE(again.references, read.references);
    QCOMPARE(again.referencedNodes, read.referencedNodes);
    QCOMPARE(again.fileInfo, read.fileInfo);
}

void tst_picker_maya_ascii::hostSavesAndOpensTheScene() {
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    write_file(dir.filePath(QStringLiteral("hero.ma")), rigFile);
    const QString path = dir.filePath(QStringLiteral("shot.ma"));

    picker_embedded_host host;
    const QStringList events{QStringLiteral("deleteAll"), QStringLiteral("NewSceneOpened"),
                             QStringLiteral("SceneOpened"), QStringLiteral("SceneSaved")};
    for (const QString& event : events) {
        host_status status;
        host.addEventCallback(event, &record_event, const_cast<QString*>(&event), &status);
        QVERIFY(status);
    }
    QVERIFY(host.addNode(QStringLiteral("root")));
    const QString pickers = stored_pickers();
    // A value longer than one written piece, so the reader joins pieces on the way back.
    const QString image = QString(3000, QLatin1Char('x'));
    QVERIFY(host.executeCommand(QStringLiteral("file -r -ns \"hero\" \"") +
                                dir.filePath(QStringLiteral("hero.ma")) + QStringLiteral("\"")));
    QVERIFY(host.executeCommand(QStringLiteral("fileInfo \"TalvoraPickerData\" \"") + pickers +
                                QStringLiteral("\"; fileInfo \"TalvoraPickerImage_a\" \"") + image +
                                QStringLiteral("\\\"\"")));
    const QStringList nodes = host.nodes();
    const QMap<QString, QString> info = host.fileInfoEntries();
    const QList<picker_ma_reference> refs = host.references();
    QCOMPARE(info.value(QStringLiteral("TalvoraPickerImage_a")), image + QLatin1Char('"'));

    recordedEvents.clear();
    QVERIFY(host.executeCommand(QStringLiteral("file -rename \"") + path + QStringLiteral("\"")));
    QVERIFY(host.executeCommand(QStringLiteral("file -save")));
    QVERIFY(!host.isModified());
    QVERIFY(host.executeCommand(QStringLiteral("file -new -f")));
    QVERIFY(host.nodes().isEmpty());
    QVERIFY(host.fileInfoEntries().isEmpty());
    QVERIFY(host.executeCommand(QStringLiteral("file -open \"") + path + QStringLiteral("\"")));

    QCOMPARE(recordedEvents,
             (QStringList{QStringLiteral("SceneSaved"), QStringLiteral("deleteAll"),
                          QStringLiteral("NewSceneOpened"), QStringLiteral("deleteAll"),
                          QStringLiteral("SceneOpened")}));
    QCOMPARE(host.nodes(), nodes);
    QCOMPARE(host.references(), refs);
    QCOMPARE(host.fileInfoEntries(), info);
    QCOMPARE(host.scenePath(), path);

    // A scene that cannot be read leaves the open one as it was.
    write_file(dir.filePath(QStringLiteral("broken.ma")), header + "fileInfo \"k\";\n");
    QVERIFY(!host.executeCommand(QStringLiteral("file -open -f \"") +
                                 dir.filePath(QStringLiteral("broken.ma")) + QStringLiteral("\"")));
    QCOMPARE(host.nodes(), nodes);
    QCOMPARE(host.scenePath(), path);
}

void tst_picker_maya_ascii::ls_data() {
    QTest::addColumn<QString>("mel");
    QTest::addColumn<QStringList>("found");

    QTest::newRow("selected") << QStringLiteral("ls -sl")
                              << QStringList{QStringLiteral("hero:R_hand"), QStringLiteral("root")};
    QTest::newRow("pattern") << QStringLiteral("ls \"hero:*_hand\"")
                             << QStringList{QStringLiteral("hero:L_hand"),
                                            QStringLiteral("hero:R_hand")};
    QTest::newRow("selected and pattern")
        << QStringLiteral("ls -sl \"hero:*\"") << QStringList{QStringLiteral("hero:R_hand")};
}

void tst_picker_maya_ascii::ls() {
    QFETCH(QString, mel);
    QFETCH(QStringList, found);

    picker_embedded_host host;
    for (const char* name : {"root", "hero:L_hand", "hero:R_hand"})
        QVERIFY(host.addNode(QString::fromLatin1(name)));
    QVERIFY(host.setSelection(QStringList{QStringLiteral("hero:R_hand"), QStringLiteral("root")}));
    picker_mel_value value;
    QVERIFY(host.executeCommand(mel, &value));
    QVERIFY(value.isArray);
    QCOMPARE(value.items, found);
}

QTEST_MAIN(tst_picker_maya_ascii)
#include "tst_picker_maya_ascii.moc"
