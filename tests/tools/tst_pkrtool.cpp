#include "tools_test_vectors.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace tools_vectors;

namespace {

struct run_result {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

} // namespace

class tst_pkrtool : public QObject {
    Q_OBJECT

private slots:
    void init();
    void dumpThenBuildKeepsEveryByte_data();
    void dumpThenBuildKeepsEveryByte();
    void info_data();
    void info();
    void failures_data();
    void failures();
    void failedBuildLeavesOutputAlone();
    void newerFormatWarnsAndShowsWhatItReads();
    void help();
    void rebind_data();
    void rebind();
    void render_data();
    void render();

private:
    run_result run(const QStringList& arguments);
    QString write(const QString& name, const QByteArray& bytes);
    QByteArray read(const QString& name);

    std::unique_ptr<QTemporaryDir> dir_;
};

void tst_pkrtool::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    QVERIFY(dir_->isValid());
}

run_result tst_pkrtool::run(const QStringList& arguments) {
    QProcess process;
    process.setWorkingDirectory(dir_->path());
    // Without a runtime folder the GUI side of render would warn on stderr.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), dir_->path());
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PKRTOOL_PATH), arguments);
    run_result result;
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.exitCode = process.exitCode();
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

QString tst_pkrtool::write(const QString& name, const QByteArray& bytes) {
    QFile file(dir_->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write a test file");
    return name;
}

QByteArray tst_pkrtool::read(const QString& name) {
    QFile file(dir_->filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_pkrtool::dumpThenBuildKeepsEveryByte_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("no image, null label") << fileWithoutImage();
    QTest::newRow("image, null title") << fileWithImage();
    QTest::newRow("image without header") << fileWithHeaderlessPng();
}

void tst_pkrtool::dumpThenBuildKeepsEveryByte() {
    QFETCH(QByteArray, file);
    write(QStringLiteral("in.pkr"), file);

    const run_result toStdout = run({QStringLiteral("dump"), QStringLiteral("in.pkr")});
    QCOMPARE(toStdout.err, QByteArray());
    QCOMPARE(toStdout.exitCode, 0);
    const run_result dump = run({QStringLiteral("dump"), QStringLiteral("in.pkr"),
                                 QStringLiteral("-o"), QStringLiteral("in.json")});
    QCOMPARE(dump.exitCode, 0);
    QCOMPARE(read(QStringLiteral("in.json")), toStdout.out);

    const run_result build = run({QStringLiteral("build"), QStringLiteral("in.json"),
                                  QStringLiteral("-o"), QStringLiteral("out.pkr")});
    QCOMPARE(build.err, QByteArray());
    QCOMPARE(build.exitCode, 0);
    QCOMPARE(read(QStringLiteral("out.pkr")).toHex(), file.toHex());
}

void tst_pkrtool::info_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("text");
    const QString info = QStringLiteral("info");
    QTest::newRow("no image") << info << fileWithoutImage()
                              << QStringLiteral(
                                     "title: \"Arm\"\n"
                                     "format version: 4\n"
                                     "background: none\n"
                                     "buttons: 2\n"
                                     "0  selection at (10, -20) size 12 label \"L\u00e4\": "
                                     "hero:L_arm hero:L_hand\n"
                                     "1  python command at (300, 40) size 20 label null: "
                                     "\"print('hi')\\n\"\n");
    QTest::newRow("image") << info << fileWithImage()
                           << QStringLiteral("title: null\n"
                                             "format version: 4\n"
                                             "background: \"bg\", 2 x 1 PNG, 70 bytes\n"
                                             "buttons: 1\n"
                                             "0  mel command at (1, 1) size 8 label \"\": "
                                             "\"select -cl;\"\n");
    QTest::newRow("image without header")
        << info << fileWithHeaderlessPng()
        << QStringLiteral("title: \"Odd\"\n"
                          "format version: 4\n"
                          "background: \"bg\", unknown size PNG, 45 bytes\n"
                          "buttons: 0\n");
    QTest::newRow("key only") << info << fileWithKeyOnly()
                              << QStringLiteral("title: \"Empty\"\n"
                                                "format version: 4\n"
                                                "background: \"k\", no image\n"
                                                "buttons: 0\n");
    // Listed as the namespace dialog lists them: ancestors too, without case.
    QTest::newRow("namespaces") << QStringLiteral("namespaces")
                                << fileWithNames("char1:arm", "Char2:x", "char1:sub:leg",
                                                 "select \"char1:hand\" prop:gun;")
                                << QStringLiteral("char1\nchar1:sub\nChar2\n");
}

void tst_pkrtool::info() {
    QFETCH(QString, command);
    QFETCH(QByteArray, file);
    QFETCH(QString, text);
    write(QStringLiteral("in.pkr"), file);
    const run_result result = run({command, QStringLiteral("in.pkr")});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(QString::fromUtf8(result.out), text);
    QCOMPARE(result.exitCode, 0);
}

void tst_pkrtool::failures_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("firstLine");

    const auto args = [](const char* line) {
        return QString::fromLatin1(line).split(QLatin1Char(' '));
    };
    QTest::newRow("missing file")
        << args("info nowhere.pkr") << 1
        << QStringLiteral("pkrtool: cannot open 'nowhere.pkr': No such file or directory");
    QTest::newRow("cut short")
        << args("info cut.pkr") << 1
        << QStringLiteral("pkrtool: 'cut.pkr' is a damaged picker file: the file ends in the "
                          "middle of button 1");
    QTest::newRow("trailing bytes")
        << args("dump trailing.pkr") << 1
        << QStringLiteral("pkrtool: 'trailing.pkr' is a damaged picker file: 3 bytes follow "
                          "the last button");
    QTest::newRow("empty") << args("info empty.pkr") << 1
                           << QStringLiteral("pkrtool: 'empty.pkr' is not a picker file");
    QTest::newRow("bad colour")
        << args("build colour.json -o out.pkr") << 1
        << QStringLiteral("pkrtool: 'colour.json' is not a picker description: "
                          "buttons[0].color: expected a colour \"#AARRGGBB\" or \"#RRGGBB\"");
    QTest::newRow("unwritable output")
        << args("dump good.pkr -o no/such/dir/out.json") << 1
        << QStringLiteral("pkrtool: cannot write 'no/such/dir/out.json': ");
    QTest::newRow("no command") << QStringList() << 2
                                << QStringLiteral("pkrtool: no command given");
    QTest::newRow("unknown command")
        << args("frob x.pkr") << 2 << QStringLiteral("pkrtool: unknown command 'frob'");
    QTest::newRow("build to nowhere")
        << args("build a.json") << 2 << QStringLiteral("pkrtool: build needs -o FILE.pkr");
    QTest::newRow("dangling -o") << args("dump a.pkr -o") << 2
                                 << QStringLiteral("pkrtool: -o needs a file name");
    QTest::newRow("unknown option")
        << args("dump -x a.pkr") << 2 << QStringLiteral("pkrtool: unexpected argument '-x'");
    QTest::newRow("output twice") << args("dump a.pkr -o b --output c") << 2
                                  << QStringLiteral("pkrtool: -o given more than once");
    QTest::newRow("namespaces of two files")
        << args("namespaces a.pkr b.pkr") << 2
        << QStringLiteral("pkrtool: unexpected argument 'b.pkr'");
    QTest::newRow("rebind without a map") << args("rebind good.pkr -o out.pkr") << 2
                                          << QStringLiteral("pkrtool: rebind needs --map OLD=NEW");
    QTest::newRow("map without equals")
        << args("rebind good.pkr --map hero") << 2
        << QStringLiteral("pkrtool: --map needs OLD=NEW, not 'hero'");
    QTest::newRow("map twice") << args("rebind good.pkr --map hero=a --map hero=b") << 2
                               << QStringLiteral("pkrtool: 'hero' is mapped twice");
    QTest::newRow("dangling --map")
        << args("rebind good.pkr --map") << 2 << QStringLiteral("pkrtool: --map needs OLD=NEW");
    QTest::newRow("flag with a value")
        << args("rebind good.pkr --map hero=a --allow-unused=yes") << 2
        << QStringLiteral("pkrtool: unexpected value after '--allow-unused'");
    QTest::newRow("render to nowhere")
        << args("render good.pkr") << 2 << QStringLiteral("pkrtool: render needs -o OUT.png");
    QTest::newRow("render, empty size")
        << args("render good.pkr -o a.png --size 0x5") << 2
        << QStringLiteral("pkrtool: --size wants WIDTHxHEIGHT, each 1 to 16384");
    QTest::newRow("render, zoom and frame")
        << args("render good.pkr -o a.png --zoom 2 --frame") << 2
        << QStringLiteral("pkrtool: --zoom and --frame exclude each other");
    QTest::newRow("render, zero zoom") << args("render good.pkr -o a.png --zoom 0") << 2
                                       << QStringLiteral("pkrtool: --zoom wants a number above 0");
}

void tst_pkrtool::failures() {
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, firstLine);
    write(QStringLiteral("good.pkr"), fileWithoutImage());
    write(QStringLiteral("cut.pkr"), fileWithoutImage().chopped(2));
    write(QStringLiteral("trailing.pkr"), fileWithoutImage() + "abc");
    write(QStringLiteral("empty.pkr"), QByteArray());
    write(QStringLiteral("colour.json"),
          R"({"title": "t", "buttons": [{"pos": [1, 2], "size": 3, "type": "selection",
              "api": "mel", "color": "red", "tcolor": "#FF000000", "label": "a", "sel": ["n"]}]})");

    const run_result result = run(arguments);
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(result.out, QByteArray());
    const QStringList lines = QString::fromUtf8(result.err).split(QLatin1Char('\n'));
    // A row ending in ": " leaves the system's own error text open.
    const bool whole = exitCode == 1 && !firstLine.endsWith(QLatin1String(": "));
    QVERIFY2(whole ? lines.first() == firstLine : lines.first().startsWith(firstLine),
             qPrintable(lines.first()));
    // Usage mistakes are followed by the usage text, file faults by nothing.
    QCOMPARE(lines.size() > 1 && lines.at(1).startsWith(QLatin1String("Usage: pkrtool")),
             exitCode == 2);
    if (exitCode == 1)
        QCOMPARE(lines.size(), 2);
}

void tst_pkrtool::failedBuildLeavesOutputAlone() {
    write(QStringLiteral("bad.json"), "{\"title\": 1, \"buttons\": []}");
    write(QStringLiteral("out.pkr"), fileWithImage());
    const run_result result = run({QStringLiteral("build"), QStringLiteral("bad.json"),
                                   QStringLiteral("-o"), QStringLiteral("out.pkr")});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(read(QStringLiteral("out.pkr")), fileWithImage());
}

void tst_pkrtool::newerFormatWarnsAndShowsWhatItReads() {
    QByteArray file = fileWithoutImage();
    file[3] = 7;
    write(QStringLiteral("new.pkr"), file);
    const run_result result = run({QStringLiteral("info"), QStringLiteral("new.pkr")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, QByteArray("pkrtool: warning: 'new.pkr' has format version 7, newer "
                                    "than this tool knows (4); showing what it understands\n"));
    QVERIFY(result.out.startsWith("title: \"Arm\"\nformat version: 7\n"));
}

void tst_pkrtool::help() {
    const run_result result = run({QStringLiteral("--help")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, QByteArray());
    QVERIFY(result.out.startsWith("Usage: pkrtool COMMAND"));
    QVERIFY(result.out.contains("build FILE.json -o FILE.pkr"));
}

void tst_pkrtool::rebind_data() {
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("text"); // standard output, or the first line of standard error
    QTest::addColumn<QByteArray>("inAfter");
    QTest::addColumn<QByteArray>("outAfter"); // empty: out.pkr is not written

    const char* script = "select \"char1:hand\" prop:gun;";
    const QByteArray original = fileWithNames("char1:arm", "Char2:x", "char1:sub:leg", script);
    const QByteArray toHero =
        fileWithNames("hero:arm", "Char2:x", "hero:sub:leg", "select \"hero:hand\" prop:gun;");
    const QByteArray toRoot =
        fileWithNames("arm", "Char2:x", "deep:leg", "select \"hand\" prop:gun;");
    const QString unused = QStringLiteral(
        "pkrtool: 'in.pkr' does not use the namespace \"prop\" (pkrtool namespaces lists those "
        "it uses; --allow-unused skips such maps)");

    QTest::newRow("in place") << original << QStringLiteral("--map char1=hero") << 0
                              << QStringLiteral("changed 2 node names and 1 script\n") << toHero
                              << QByteArray();
    QTest::newRow("-o leaves the input")
        << original << QStringLiteral("--map char1=hero: -o out.pkr") << 0
        << QStringLiteral("changed 2 node names and 1 script\n") << original << toHero;
    QTest::newRow("to the root; the nested map wins, in either order")
        << original << QStringLiteral("--map char1:sub=deep --map char1=") << 0
        << QStringLiteral("changed 2 node names and 1 script\n") << toRoot << QByteArray();
    QTest::newRow("an unused namespace is refused")
        << original << QStringLiteral("--map char1=hero --map prop=p -o out.pkr") << 1 << unused
        << original << QByteArray();
    QTest::newRow("--allow-unused skips it, as the dialog cannot offer it")
        << original << QStringLiteral("--map prop=p --map Char2=c2 --allow-unused") << 0
        << QStringLiteral("changed 1 node name and 0 scripts\n")
        << fileWithNames("char1:arm", "c2:x", "char1:sub:leg", script) << QByteArray();
    QTest::newRow("nothing changed in place: the older format stays")
        << fileVersion3() << QStringLiteral("--map a=b --allow-unused") << 0
        << QStringLiteral("changed 0 node names and 0 scripts; 'in.pkr' left as it was\n")
        << fileVersion3() << QByteArray();
    QTest::newRow("nothing changed to -o: written in the current format")
        << fileWithKeyOnly() << QStringLiteral("--map a=b --allow-unused -o out.pkr") << 0
        << QStringLiteral("changed 0 node names and 0 scripts\n") << fileWithKeyOnly()
        << fileWithKeyOnly();
}

void tst_pkrtool::rebind() {
    QFETCH(QByteArray, input);
    QFETCH(QString, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, text);
    QFETCH(QByteArray, inAfter);
    QFETCH(QByteArray, outAfter);
    write(QStringLiteral("in.pkr"), input);

    const run_result result = run(QStringList{QStringLiteral("rebind"), QStringLiteral("in.pkr")} +
                                  arguments.split(QLatin1Char(' ')));
    QCOMPARE(result.exitCode, exitCode);
    if (exitCode == 0) {
        QCOMPARE(result.err, QByteArray());
        QCOMPARE(QString::fromUtf8(result.out), text);
    } else {
        QCOMPARE(result.out, QByteArray());
        QCOMPARE(QString::fromUtf8(result.err).section(QLatin1Char('\n'), 0, 0), text);
    }
    QCOMPARE(read(QStringLiteral("in.pkr")).toHex(), inAfter.toHex());
    QCOMPARE(QFile::exists(dir_->filePath(QStringLiteral("out.pkr"))), !outAfter.isEmpty());
    QCOMPARE(read(QStringLiteral("out.pkr")).toHex(), outAfter.toHex());
}

// Three-name selection button at (5, 6) in 0xB22222 beside a command button, framed in 200 x 100.
void tst_pkrtool::render_data() {
    QTest::addColumn<QStringList>("select");
    QTest::addColumn<QRgb>("shown");
    QTest::addColumn<QRgb>("hidden");

    const QRgb red = qRgb(0xB2, 0x22, 0x22);
    const QRgb lit = qRgb(224, 224, 224);
    const QRgb partly = qRgb(128, 128, 128);
    QTest::newRow("nothing lit") << QStringList() << red << lit;
    QTest::newRow("all names lit") << QStringList{QStringLiteral("--select"), QStringLiteral("a"),
                                                  QStringLiteral("--select"), QStringLiteral("b"),
                                                  QStringLiteral("--select"), QStringLiteral("c")}
                                   << lit << red;
    QTest::newRow("one name lit") << QStringList{QStringLiteral("--select"), QStringLiteral("b")}
                                  << partly << red;
}

void tst_pkrtool::render() {
    QFETCH(QStringList, select);
    QFETCH(QRgb, shown);
    QFETCH(QRgb, hidden);
    write(QStringLiteral("rig.pkr"), fileWithNames("a", "b", "c", "select -cl;"));

    const run_result result = run(QStringList{QStringLiteral("render"), QStringLiteral("rig.pkr"),
                                              QStringLiteral("-o"), QStringLiteral("rig.png"),
                                              QStringLiteral("--size"), QStringLiteral("200x100")} +
                                  select);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.startsWith("rig.png: 200 x 100, zoom "));
    QImage image;
    QVERIFY(image.loadFromData(read(QStringLiteral("rig.png")), "PNG"));
    QCOMPARE(image.size(), QSize(200, 100));
    QCOMPARE(image.pixel(0, 0), qRgb(51, 51, 51));
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y));
    QVERIFY(colours.contains(shown));
    QVERIFY(!colours.contains(hidden));
}

QTEST_GUILESS_MAIN(tst_pkrtool)
#include "tst_pkrtool.moc"
