#include "picker_embedded_host.h"
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

} // namespace

class tst_picker_maya_ascii : public QObject {
    Q_OBJECT
private slots:

    void readAndWrite_data() {
        QTest::addColumn<QByteArray>("scene");
        QTest::addColumn<file_list>("files");
        QTest::addColumn<QStringList>("nodes");
        QTest::addColumn<QStringList>("refs");
        QTest::addColumn<QStringList>("referenced");
        QTest::addColumn<QStringList>("info");
        QTest::addColumn<int>("warnings");
        QTest::addColumn<QString>("error");

        const QStringList none;
        QTest::newRow("escapes, split string")
            << header + "requires maya \"2025\";\nfileInfo \"k\" \"a\\\"b\\\\c\\nd\\te\";\n"
                        "fileInfo \"s\" \"ab\"\n\t\t+ \"cd\" +\n\"ef\";\n"
            << file_list() << none << none << none
            << QStringList{QStringLiteral("k"), QStringLiteral("a\"b\\c\nd\te"),
                           QStringLiteral("s"), QStringLiteral("abcdef")}
            << 0 << QString();
        // A missing reference is reported once and the scene still loads.
        QTest::newRow("nested and missing references")
            << header +
                   "file -r -ns \"set\" -rfn \"setRN\" \"$PICKER_TEST_PROJECT/set.ma\";\n"
                   "file -r -ns \"a\" \"gone.ma\";\nfile -r -ns \"a\" \"gone.ma\";\n"
                   "createNode transform -n \"root\";\nsetAttr \".t\" -type \"double3\" 0 1 2;\n"
            << file_list{{QStringLiteral("project/set.ma"),
                          header + "createNode transform -n \"floor\";\nfile -r -ns \"hero\" "
                                   "\"rigs/hero.ma\";\n"},
                         {QStringLiteral("project/rigs/hero.ma"), rigFile}}
            << QStringList{QStringLiteral("root")}
            << QStringList{QStringLiteral("set"), QStringLiteral("$PICKER_TEST_PROJECT/set.ma"),
                           QStringLiteral("a"),   QStringLiteral("gone.ma"),
                           QStringLiteral("a"),   QStringLiteral("gone.ma")}
            << QStringList{QStringLiteral("set:floor"), QStringLiteral("set:hero:L_hand_ctrl"),
                           QStringLiteral("set:hero:R_hand_ctrl")}
            << none << 1 << QString();
        QTest::newRow("broken statement names its line")
            << header + "createNode transform -n \"root\";\nfileInfo \"k\";\n"
            << file_list() << none << none << none << none << 0 << QStringLiteral("scene.ma:4:");
    }

    void readAndWrite() {
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

    void hostSavesAndOpensTheScene() {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        write_file(dir.filePath(QStringLiteral("hero.ma")), rigFile);
        const QString path = dir.filePath(QStringLiteral("shot.ma"));

        picker_embedded_host host;
        QVERIFY(host.addNode(QStringLiteral("root")));
        // A value longer than one written piece, so the reader joins pieces on the way back.
        const QString image = QString(3000, QLatin1Char('x'));
        QVERIFY(host.executeCommand(QStringLiteral("file -r -ns \"hero\" \"") +
                                    dir.filePath(QStringLiteral("hero.ma")) +
                                    QStringLiteral("\"")));
        QVERIFY(host.executeCommand(
            QStringLiteral("fileInfo \"gone\" \"x\"; fileInfo -remove \"gone\"; "
                           "file -modified 1; fileInfo \"TalvoraPickerImage_a\" \"") +
            image + QStringLiteral("\\\"\"")));
        const QStringList nodes = host.nodes();
        const QMap<QString, QString> info = host.fileInfoEntries();
        const QList<picker_ma_reference> refs = host.references();
        QCOMPARE(info.keys(), QStringList{QStringLiteral("TalvoraPickerImage_a")});
        QCOMPARE(info.first(), image + QLatin1Char('"'));
        QVERIFY(host.isModified());

        QVERIFY(
            host.executeCommand(QStringLiteral("file -rename \"") + path + QStringLiteral("\"")));
        QVERIFY(host.executeCommand(QStringLiteral("file -save")));
        QVERIFY(!host.isModified());
        QVERIFY(host.executeCommand(QStringLiteral("file -new -f")));
        QVERIFY(host.fileInfoEntries().isEmpty());
        QVERIFY(host.executeCommand(QStringLiteral("file -open \"") + path + QStringLiteral("\"")));

        QCOMPARE(host.nodes(), nodes);
        QCOMPARE(host.references(), refs);
        QCOMPARE(host.fileInfoEntries(), info);
        QCOMPARE(host.scenePath(), path);
    }
};

QTEST_MAIN(tst_picker_maya_ascii)
#include "tst_picker_maya_ascii.moc"
