#include "picker_file.h"
#include "picker_test_vectors.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QByteArray header = QByteArrayLiteral("//Maya ASCII 2025 scene\nrequires maya \"2025\";\n");

// The tabs as the picker window stores them: compressed, base64, split in two pieces as Maya
// writes long strings.
QByteArray sceneWithPickers() {
    const QByteArray text = qCompress(picker_test_vectors::tabStream()).toBase64();
    const int half = static_cast<int>(text.size() / 2);
    return header + "createNode transform -n \"root\";\nfileInfo \"TalvoraPickerData\" \"" +
           text.left(half) + "\"\n\t\t+ \"" + text.mid(half) + "\";\n";
}

} // namespace

class tst_pkrtool_scene : public QObject {
    Q_OBJECT
private slots:
    void commands_data();
    void commands();
};

void tst_pkrtool_scene::commands_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("scene");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QString>("errStart");
    // Files extracted, then the titles read back from each.
    QTest::addColumn<QStringList>("files");

    const QStringList listScene{QStringLiteral("scene"), QStringLiteral("scene.ma")};
    const QStringList extract{QStringLiteral("extract"), QStringLiteral("scene.ma"),
                              QStringLiteral("-o"), QStringLiteral("out")};
    QTest::newRow("scene lists the tabs")
        << listScene << sceneWithPickers() << 0
        << QByteArray("tabs: 2\n0  \"Arm\": 2 buttons\n1  \"Leg\": 0 buttons (current)\n")
        << QString() << QStringList();
    QTest::newRow("scene without pickers")
        << listScene << header + "createNode transform -n \"root\";\n"
        << 0 << QByteArray("no pickers\n") << QString() << QStringList();
    QTest::newRow("extract writes a file per tab")
        << extract << sceneWithPickers() << 0 << QByteArray("out/Arm.pkr\nout/Leg.pkr\n")
        << QString() << QStringList{QStringLiteral("out/Arm.pkr"), QStringLiteral("out/Leg.pkr")};
    QTest::newRow("broken scene names the line")
        << listScene << header + "fileInfo \"TalvoraPickerData\";\n"
        << 1 << QByteArray() << QStringLiteral("pkrtool: scene.ma:3: ") << QStringList();
    QTest::newRow("extract needs a directory")
        << QStringList{QStringLiteral("extract"), QStringLiteral("scene.ma")} << header << 2
        << QByteArray() << QStringLiteral("pkrtool: extract needs -o DIR") << QStringList();
}

void tst_pkrtool_scene::commands() {
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, scene);
    QFETCH(int, exitCode);
    QFETCH(QByteArray, out);
    QFETCH(QString, errStart);
    QFETCH(QStringList, files);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QFile file(dir.filePath(QStringLiteral("scene.ma")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(scene), qint64(scene.size()));
    file.close();

    QProcess process;
    process.setWorkingDirectory(dir.path());
    process.start(QStringLiteral(PKRTOOL_PATH), arguments);
    QVERIFY(process.waitForFinished(-1));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    const QString err = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(errStart.isEmpty() ? err.isEmpty() : err.startsWith(errStart), qPrintable(err));
    QCOMPARE(process.exitCode(), exitCode);
    QCOMPARE(process.readAllStandardOutput(), out);

    const QStringList titles{QStringLiteral("Arm"), QStringLiteral("Leg")};
    for (int i = 0; i < files.size(); ++i) {
        QFile extracted(dir.filePath(files.at(i)));
        QVERIFY2(extracted.open(QIODevice::ReadOnly), qPrintable(files.at(i)));
        picker_tab_record tab;
        QVERIFY(readPickerFile(extracted, tab).ok());
        QCOMPARE(tab.title, titles.at(i));
        QCOMPARE(int(tab.buttons.size()), i == 0 ? 2 : 0);
    }
}

QTEST_GUILESS_MAIN(tst_pkrtool_scene)
#include "tst_pkrtool_scene.moc"
