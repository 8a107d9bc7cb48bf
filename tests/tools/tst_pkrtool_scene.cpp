#include "tools_test_vectors.h"

#include <QTest>

using namespace tools_vectors;

class tst_pkrtool_scene : public QObject {
    Q_OBJECT

private slots:
    void commands_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QByteArray>("scene");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("out");
        QTest::addColumn<QString>("errStart");

        const QByteArray header = "//Maya ASCII 2025 scene\nrequires maya \"2025\";\n";
        // The tabs as the picker window stores them: compressed, base64, split in two pieces as
        // Maya writes long strings.
        const QByteArray data = qCompress(tabStream()).toBase64();
        const QByteArray pickers = header + "createNode transform -n \"root\";\n" +
                                   "fileInfo \"TalvoraPickerData\" \"" + data.left(100) +
                                   "\"\n\t\t+ \"" + data.mid(100) + "\";\n";
        QTest::newRow("scene lists the tabs")
            << "scene scene.ma" << pickers << 0
            << QByteArray("tabs: 2\n0  \"Arm\": 2 buttons\n1  \"Leg\": 0 buttons (current)\n")
            << QString();
        QTest::newRow("extract writes a file per tab")
            << "extract scene.ma -o out" << pickers << 0 << QByteArray("out/Arm.pkr\nout/Leg.pkr\n")
            << QString();
        QTest::newRow("broken scene names the line")
            << "scene scene.ma" << header + "fileInfo \"TalvoraPickerData\";\n"
            << 1 << QByteArray() << "pkrtool: scene.ma:3: ";
    }

    void commands() {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, scene);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, out);
        QFETCH(QString, errStart);
        QTemporaryDir dir;
        writeIn(dir, "scene.ma", scene);

        const run_result result = pkrtool(dir, arguments);
        const QString err = QString::fromUtf8(result.err);
        QVERIFY2(errStart.isEmpty() ? err.isEmpty() : err.startsWith(errStart), qPrintable(err));
        QCOMPARE(result.exitCode, exitCode);
        QCOMPARE(result.out, out);
        // Each extracted file is the tab on its own.
        picker_tab_set set;
        QDataStream stream(tabStream());
        QVERIFY(readTabStream(stream, set).ok());
        for (const QByteArray& line : out.split('\n')) {
            if (line.endsWith(".pkr"))
                QCOMPARE(readIn(dir, line.constData()), pickerFileBytes(set.tabs.takeFirst()));
        }
    }
};

QTEST_GUILESS_MAIN(tst_pkrtool_scene)
#include "tst_pkrtool_scene.moc"
