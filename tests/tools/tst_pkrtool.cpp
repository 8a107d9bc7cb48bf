#include "../core/picker_test_vectors.h"
#include "picker_file.h"
#include "picker_json.h"
#include "png_chunks.h"

#include <QDataStream>
#include <QImage>
#include <QJsonDocument>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace picker_test_vectors;

// pkrtool's JSON mapping in process, then pkrtool run as a user runs it, on picker files and
// scenes spelled out field by field.
namespace {

// A short ASCII QString as the stream writes it: byte length, then UTF-16BE.
QByteArray utf16(const char* ascii) {
    QByteArray bytes = hex("00000000");
    bytes[3] = char(qstrlen(ascii) * 2);
    for (const char* c = ascii; *c; ++c)
        bytes.append('\0').append(*c);
    return bytes;
}

// Version 4, title "Rig", empty key: selection button "Body" at (5, 6) size 10 in 0xFFB22222
// with three names, then MEL command button "Hand" at (30, 6) holding the script.
QByteArray fileWithNames(const char* arm, const char* other, const char* leg, const char* script) {
    return hex("00000004 00000006 005200690067 00000000 00000002"
               "00000000 00000005 00000006 0000000a 00000000 00000000 ffb22222 ff000000"
               "00000008 0042006f00640079 00000003") +
           utf16(arm) + utf16(other) + utf16(leg) +
           hex("00000001 0000001e 00000006 0000000a 00000001 00000000 ff505050 ffffffff"
               "00000008 00480061006e0064 00000001") +
           utf16(script);
}

struct run_result {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

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

class tst_pkrtool : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> dir_;

    // Runs pkrtool in the test folder with the blank-separated arguments.
    run_result run(const QString& line) {
        QProcess process;
        process.setWorkingDirectory(dir_->path());
        // Without a runtime folder the GUI side of render would warn on stderr.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_RUNTIME_DIR"_q, dir_->path());
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(PKRTOOL_PATH),
                      line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        run_result result;
        if (process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit)
            result = {process.exitCode(), process.readAllStandardOutput(),
                      process.readAllStandardError()};
        return result;
    }

    void write(const char* name, const QByteArray& bytes) {
        QVERIFY(writeBytes(dir_->filePath(QString::fromUtf8(name)), bytes));
    }
    QByteArray read(const char* name) { return readBytes(dir_->filePath(QString::fromUtf8(name))); }

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

    void init() {
        dir_ = std::make_unique<QTemporaryDir>();
        QVERIFY(dir_->isValid());
    }

    void dumpThenBuildKeepsEveryByte() {
        const QByteArray file = pkrVersion4WithImage(tinyPng());
        write("in.pkr", file);
        QCOMPARE(run("dump in.pkr -o in.json"_q).exitCode, 0);
        QCOMPARE(run("build in.json -o out.pkr"_q).exitCode, 0);
        QCOMPARE(read("out.pkr").toHex(), file.toHex());
    }

    void newerFormatWarnsOnceAndShowsWhatItReads() {
        QByteArray newer = pkrVersion4();
        newer[3] = 7;
        write("in.pkr", newer);
        const run_result result = run("info in.pkr"_q);
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
        const run_result result = run("namespaces in.pkr"_q);
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
        write("desc.json",
              picker(button("\"color\": \"red\", \"tcolor\": \"#FF000000\"", "[\"n\"]")));
        write("out.pkr", tinyPng());

        const run_result result = run(arguments);
        QCOMPARE(result.exitCode, exitCode);
        QCOMPARE(result.out, QByteArray());
        const QStringList lines = QString::fromUtf8(result.err).split(QLatin1Char('\n'));
        QCOMPARE(lines.first(), "pkrtool: "_q + firstLine);
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
        const QString changed = "changed 2 node names and 1 script\n"_q;
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
            << "pkrtool: 'in.pkr' does not use the namespace \"prop\" (pkrtool "
               "namespaces lists those it uses; --allow-unused skips such maps)\n"_q
            << original << QByteArray();
        const QByteArray version3 =
            hex("00000003 00000006 00410072006d ffffffff") + buttonListVersion3();
        QTest::newRow("nothing changed in place: the older format stays")
            << version3 << "--map a=b --allow-unused"
            << "changed 0 node names and 0 scripts; 'in.pkr' left as it was\n"_q << version3
            << QByteArray();
    }

    void rebind() {
        QFETCH(QByteArray, input);
        QFETCH(QString, arguments);
        QFETCH(QString, text);
        QFETCH(QByteArray, inAfter);
        QFETCH(QByteArray, outAfter);
        write("in.pkr", input);

        const run_result result = run("rebind in.pkr "_q + arguments);
        const int exitCode = text.startsWith(QLatin1String("pkrtool: ")) ? 1 : 0;
        QCOMPARE(result.exitCode, exitCode);
        const QByteArray shown =
            exitCode == 0 ? result.out : result.err.left(result.err.indexOf('\n') + 1);
        QCOMPARE(QString::fromUtf8(shown), text);
        QCOMPARE(exitCode == 0 ? result.err : result.out, QByteArray());
        QCOMPARE(read("in.pkr").toHex(), inAfter.toHex());
        QCOMPARE(QFile::exists(dir_->filePath("out.pkr"_q)), !outAfter.isEmpty());
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
        QTest::newRow("all names lit") << "--select a b c" << lit << red;
        QTest::newRow("names one by one") << "--select a --select b --select=c" << lit << red;
        QTest::newRow("one name lit") << "--select b" << qRgb(128, 128, 128) << red;
    }

    void render() {
        QFETCH(QString, select);
        QFETCH(QRgb, shown);
        QFETCH(QRgb, hidden);
        write("rig.pkr", fileWithNames("a", "b", "c", "select -cl;"));

        const run_result result = run("render rig.pkr -o rig.png --size 200x100 "_q + select);
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

    void sceneCommands_data() {
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

    void sceneCommands() {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, scene);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, out);
        QFETCH(QString, errStart);
        write("scene.ma", scene);

        const run_result result = run(arguments);
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
                QCOMPARE(read(line.constData()), pickerFileBytes(set.tabs.takeFirst()));
        }
    }
};

QTEST_GUILESS_MAIN(tst_pkrtool)
#include "tst_pkrtool.moc"
