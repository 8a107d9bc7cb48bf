#include "tools_test_vectors.h"

#include <QImage>
#include <QSet>
#include <QTest>

#include <memory>

using namespace tools_vectors;

class tst_pkrtool : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> dir_;

    run_result run(const char* line) { return pkrtool(*dir_, QString::fromUtf8(line)); }
    void write(const char* name, const QByteArray& bytes) { writeIn(*dir_, name, bytes); }
    QByteArray read(const char* name) { return readIn(*dir_, name); }

private slots:
    void init() {
        dir_ = std::make_unique<QTemporaryDir>();
        QVERIFY(dir_->isValid());
    }

    void dumpThenBuildKeepsEveryByte() {
        const QByteArray file = pkrVersion4WithImage(tinyPng());
        write("in.pkr", file);
        QCOMPARE(run("dump in.pkr -o in.json").exitCode, 0);
        QCOMPARE(run("build in.json -o out.pkr").exitCode, 0);
        QCOMPARE(read("out.pkr").toHex(), file.toHex());
    }

    void newerFormatWarnsOnceAndShowsWhatItReads() {
        QByteArray newer = pkrVersion4();
        newer[3] = 7;
        write("in.pkr", newer);
        const run_result result = run("info in.pkr");
        QCOMPARE(result.err, QByteArray("pkrtool: warning: 'in.pkr' has format version 7, newer "
                                        "than this tool knows (4); showing what it understands\n"));
        QCOMPARE(result.out,
                 QByteArray("title: \"Arm\"\n"
                            "format version: 7\n"
                            "background: none\n"
                            "buttons: 2\n"
                            "0  selection at (10, -20) size 12 label null: L_hand L_arm\n"
                            "1  python command at (100, 50) size 20 label \"Go\": "
                            "\"print(1)\"\n"));
        QCOMPARE(result.exitCode, 0);
    }

    // Listed as the namespace dialog lists them: ancestors too, without case.
    void namespaces() {
        write("in.pkr", fileWithNames("char1:arm", "Char2:x", "char1:sub:leg",
                                      "select \"char1:hand\" prop:gun;"));
        const run_result result = run("namespaces in.pkr");
        QCOMPARE(result.out, QByteArray("char1\nchar1:sub\nChar2\n"));
        QCOMPARE(result.exitCode, 0);
    }

    void failures_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("firstLine");

        QTest::newRow("missing file")
            << "info nowhere.pkr" << 1 << "cannot open 'nowhere.pkr': No such file or directory";
        QTest::newRow("cut short") << "info cut.pkr" << 1
                                   << "'cut.pkr' is a damaged picker file: the file ends in the "
                                      "middle of button 1";
        QTest::newRow("JSON is not a picker file")
            << "info desc.json" << 1 << "'desc.json' is not a picker file";
        QTest::newRow("bad description, output kept")
            << "build desc.json -o out.pkr" << 1
            << "'desc.json' is not a picker description: buttons[0].color: expected a colour "
               "\"#AARRGGBB\" or \"#RRGGBB\"";
        QTest::newRow("unknown option") << "dump -x a.pkr" << 2 << "unexpected argument '-x'";
    }

    void failures() {
        QFETCH(QString, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, firstLine);
        write("good.pkr", pkrVersion4());
        write("cut.pkr", pkrVersion4().chopped(2));
        write("desc.json", "{\"title\": \"t\", \"buttons\": [{\"pos\": [1, 2], \"size\": 3, "
                           "\"type\": \"selection\","
                           " \"api\": \"mel\", \"color\": \"red\", \"tcolor\": \"#FF000000\", "
                           "\"label\": \"a\", \"sel\": [\"n\"]}]}");
        write("out.pkr", tinyPng());

        const run_result result = pkrtool(*dir_, arguments);
        QCOMPARE(result.exitCode, exitCode);
        QCOMPARE(result.out, QByteArray());
        const QStringList lines = QString::fromUtf8(result.err).split(QLatin1Char('\n'));
        QCOMPARE(lines.first(), QStringLiteral("pkrtool: ") + firstLine);
        // Usage mistakes are followed by the usage text, file faults by nothing.
        QCOMPARE(lines.at(1).startsWith(QLatin1String("Usage: pkrtool")), exitCode == 2);
        QCOMPARE(lines.size() == 2, exitCode == 1);
        QCOMPARE(read("out.pkr"), tinyPng());
    }

    void rebind_data() {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("text"); // standard output, or the failure's first line
        QTest::addColumn<QByteArray>("inAfter");
        QTest::addColumn<QByteArray>("outAfter"); // empty: out.pkr is not written

        const char* script = "select \"char1:hand\" prop:gun;";
        const QByteArray original = fileWithNames("char1:arm", "Char2:x", "char1:sub:leg", script);
        const QString changed = QStringLiteral("changed 2 node names and 1 script\n");
        QTest::newRow("-o leaves the input")
            << original << "--map char1=hero: -o out.pkr" << changed << original
            << fileWithNames("hero:arm", "Char2:x", "hero:sub:leg",
                             "select \"hero:hand\" prop:gun;");
        QTest::newRow("in place to the root; the nested map wins, in either order")
            << original << "--map char1:sub=deep --map char1=" << changed
            << fileWithNames("arm", "Char2:x", "deep:leg", "select \"hand\" prop:gun;")
            << QByteArray();
        QTest::newRow("an unused namespace is refused")
            << original << "--map char1=hero --map prop=p -o out.pkr"
            << QStringLiteral("pkrtool: 'in.pkr' does not use the namespace \"prop\" (pkrtool "
                              "namespaces lists those it uses; --allow-unused skips such maps)\n")
            << original << QByteArray();
        const QByteArray version3 =
            hex("00000003 00000006 00410072006d ffffffff") + buttonListVersion3();
        QTest::newRow("nothing changed in place: the older format stays")
            << version3 << "--map a=b --allow-unused"
            << QStringLiteral("changed 0 node names and 0 scripts; 'in.pkr' left as it was\n")
            << version3 << QByteArray();
    }

    void rebind() {
        QFETCH(QByteArray, input);
        QFETCH(QString, arguments);
        QFETCH(QString, text);
        QFETCH(QByteArray, inAfter);
        QFETCH(QByteArray, outAfter);
        write("in.pkr", input);

        const run_result result = pkrtool(*dir_, QStringLiteral("rebind in.pkr ") + arguments);
        const int exitCode = text.startsWith(QLatin1String("pkrtool: ")) ? 1 : 0;
        QCOMPARE(result.exitCode, exitCode);
        const QByteArray shown =
            exitCode == 0 ? result.out : result.err.left(result.err.indexOf('\n') + 1);
        QCOMPARE(QString::fromUtf8(shown), text);
        QCOMPARE(exitCode == 0 ? result.err : result.out, QByteArray());
        QCOMPARE(read("in.pkr").toHex(), inAfter.toHex());
        QCOMPARE(QFile::exists(dir_->filePath(QStringLiteral("out.pkr"))), !outAfter.isEmpty());
        QCOMPARE(read("out.pkr").toHex(), outAfter.toHex());
    }

    // Three-name selection button at (5, 6) in 0xB22222 beside a command button, in 200 x 100.
    void render_data() {
        QTest::addColumn<QString>("select");
        QTest::addColumn<QRgb>("shown");
        QTest::addColumn<QRgb>("hidden");

        const QRgb red = qRgb(0xB2, 0x22, 0x22);
        const QRgb lit = qRgb(224, 224, 224);
        QTest::newRow("nothing lit") << QString() << red << lit;
        QTest::newRow("all names lit") << "--select a --select b --select c" << lit << red;
        QTest::newRow("one name lit") << "--select b" << qRgb(128, 128, 128) << red;
    }

    void render() {
        QFETCH(QString, select);
        QFETCH(QRgb, shown);
        QFETCH(QRgb, hidden);
        write("rig.pkr", fileWithNames("a", "b", "c", "select -cl;"));

        const run_result result =
            pkrtool(*dir_, QStringLiteral("render rig.pkr -o rig.png --size 200x100 ") + select);
        QCOMPARE(result.err, QByteArray());
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.out.startsWith("rig.png: 200 x 100, zoom "));
        QImage image;
        QVERIFY(image.loadFromData(read("rig.png"), "PNG"));
        QCOMPARE(image.size(), QSize(200, 100));
        QCOMPARE(image.pixel(0, 0), qRgb(51, 51, 51));
        QSet<QRgb> colours;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                colours.insert(image.pixel(x, y));
        QVERIFY(colours.contains(shown));
        QVERIFY(!colours.contains(hidden));
    }
};

QTEST_GUILESS_MAIN(tst_pkrtool)
#include "tst_pkrtool.moc"
