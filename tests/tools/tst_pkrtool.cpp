#include "../support/picker_test_vectors.h"
#include "picker_file.h"
#include "picker_json.h"
#include "picker_maya_ascii.h"
#include "picker_stream.h"
#include "png_chunks.h"

#include <QDataStream>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace picker_test_vectors;

// pkrtool's JSON mapping in process, then pkrtool run as a user runs it, on picker files and
// scenes spelled out field by field.
namespace {

// Title "Rig", no key: selection button "Body" at (5, 6) size 10 in 0xFFB22222 with three
// names, then MEL command button "Hand" at (30, 6) holding the script, labelled in black:
// smoothed glyph edges then blend no grey that a lit button shows.
QByteArray fileWithNames(const char* arm, const char* other, const char* leg, const char* script) {
    buttonAttributes body =
        button({QString::fromUtf8(arm), QString::fromUtf8(other), QString::fromUtf8(leg)}, {5, 6},
               10, 0xFFB22222);
    body.label = "Body"_q;
    buttonAttributes hand =
        button({QString::fromUtf8(script)}, {30, 6}, 10, 0xFF505050, buttonAttributes::Command);
    hand.label = "Hand"_q;
    return laid_file({"Rig"_q, QString(), QByteArray(), {body, hand}});
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

// Tab stream, format 4: empty tabs with the given titles, the first current.
QByteArray tabsTitled(const QStringList& titles) {
    QList<laid_tab> tabs;
    for (const QString& title : titles)
        tabs << laid_tab{title, QString(), QByteArray(), {}};
    return laid_tabs(tabs);
}

// A scene storing the tab stream as the window stores it.
QByteArray sceneStoring(const QByteArray& tabStream) {
    return "//Maya ASCII 2025 scene\nrequires maya \"2025\";\nfileInfo \"TalvoraPickerData\" \"" +
           qCompress(tabStream).toBase64() + "\";\n";
}

// The PNG files of two one-pixel images.
QByteArray onePixel(Qt::GlobalColor color) {
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(color);
    return pngOf(image);
}

} // namespace

class tst_pkrtool : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> dir_;

    // Runs pkrtool in the test folder with the blank-separated arguments, input on stdin.
    run_result run(const QString& line, const QByteArray& input = QByteArray()) {
        return start(QStringLiteral(PKRTOOL_PATH), line.split(QLatin1Char(' '), Qt::SkipEmptyParts),
                     input);
    }

    // A shell line in the test folder, with pkrtool as $P: for file names only bytes can say.
    run_result shell(const QString& line) {
        return start("/bin/sh"_q, {"-c"_q, "P='%1'; %2"_q.arg(QStringLiteral(PKRTOOL_PATH), line)},
                     QByteArray());
    }

    run_result start(const QString& program, const QStringList& arguments,
                     const QByteArray& input) {
        QProcess process;
        process.setWorkingDirectory(dir_->path());
        // Without a runtime folder the GUI side of render would warn on stderr.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_RUNTIME_DIR"_q, dir_->path());
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        process.write(input);
        process.closeWriteChannel();
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

    // api, label and a selection button's label colour may be left out.
    void omittedFieldsTakeDefaults() {
        picker_tab_record tab;
        QCOMPARE(
            pickerFromJsonText("{\"title\": \"t\", \"buttons\": [{\"pos\": [1, 2], \"size\": 3, "
                               "\"type\": \"selection\", \"color\": \"#FF123456\", "
                               "\"sel\": [\"n\"]}]}",
                               tab),
            QString());
        QCOMPARE(tab.buttons.at(0), button({"n"_q}, QPoint(1, 2), 3, 0xFF123456));
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
        QTest::newRow("colour")
            << picker(button("\"color\": \"red\", \"tcolor\": \"#FF000000\"", "[\"n\"]"))
            << "buttons[0].color: expected a colour \"#AARRGGBB\" or \"#RRGGBB\"";
        QTest::newRow("a command button's label colour")
            << picker("{\"pos\": [1, 2], \"size\": 3, \"type\": \"command\", \"color\": "
                      "\"#FF000000\", "
                      "\"sel\": [\"ls\"]}")
            << "buttons[0]: missing \"tcolor\"";
    }

    void badDescriptionSaysWhere() {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        write("desc.json", json);
        write("out.pkr", tinyPng());
        const run_result result = run("build desc.json -o out.pkr"_q);
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(QString::fromUtf8(result.err),
                 "pkrtool: 'desc.json' is not a picker description: %1\n"_q.arg(error));
        QCOMPARE(read("out.pkr"), tinyPng());
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

    // Listed as the namespace dialog lists them: ancestors too, without case, DAG paths segment
    // by segment.
    void namespaces_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QByteArray>("out");
        QTest::newRow("one a line")
            << "namespaces in.pkr" << QByteArray("char1\nchar1:sub\nChar2\n");
        QTest::newRow("as JSON")
            << "namespaces in.pkr --json"
            << QJsonDocument(QJsonArray{"char1"_q, "char1:sub"_q, "Char2"_q}).toJson();
    }

    void namespaces() {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, out);
        write("in.pkr", fileWithNames("|char1:grp|char1:arm", "Char2:x", "char1:sub:leg",
                                      "select \"|char1:grp|char1:hand\" prop:gun;"));
        const run_result result = run(arguments);
        QCOMPARE(result.out, out);
        QCOMPARE(result.exitCode, 0);
    }

    // What the JSON of info and scene holds for a script to read.
    void jsonOutput() {
        write("in.pkr", pkrVersion4WithImage(tinyPng()));
        const QJsonObject info = QJsonDocument::fromJson(run("info in.pkr --json"_q).out).object();
        QCOMPARE(info.value("title"_q).toString(), "Face"_q);
        QCOMPARE(info.value("formatVersion"_q).toInt(), 4);
        QCOMPARE(info.value("backgroundKey"_q).toString(), "bg"_q);
        QCOMPARE(info.value("background"_q).toObject(),
                 (QJsonObject{{"width"_q, 2}, {"height"_q, 1}, {"bytes"_q, tinyPng().size()}}));
        QCOMPARE(info.value("buttons"_q).toArray().size(), 1);

        write("scene.ma", sceneStoring(tabStream()));
        const QJsonObject scene =
            QJsonDocument::fromJson(run("scene scene.ma --json"_q).out).object();
        QCOMPARE(scene.value("current"_q).toInt(), 1);
        const QJsonArray tabs = scene.value("tabs"_q).toArray();
        QCOMPARE(tabs.size(), 2);
        QCOMPARE(tabs.at(0).toObject(),
                 (QJsonObject{{"title"_q, "Arm"_q}, {"backgroundKey"_q, ""_q}, {"buttons"_q, 2}}));
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
        QTest::newRow("unknown option") << "dump -x a.pkr" << 2 << "unexpected argument '-x'";
        QTest::newRow("unknown command") << "frob a.pkr" << 2 << "unknown command 'frob'";
        QTest::newRow("render at no scale") << "render good.pkr -o out.png --scale 0" << 2
                                            << "--scale wants a number from 0.25 to 8";
        QTest::newRow("dump over its input")
            << "dump good.pkr -o ./good.pkr" << 2
            << "-o names the input file 'good.pkr', which dump would overwrite with its output";
        QTest::newRow("build over its input")
            << "build desc.json -o desc.json" << 2
            << "-o names the input file 'desc.json', which build would overwrite with its output";
        QTest::newRow("rebind in place takes no -o")
            << "rebind good.pkr --map L_hand=x -o good.pkr" << 2
            << "-o names the input file 'good.pkr'; without -o it is rewritten in place";
        QTest::newRow("NEW with a blank") << "rebind good.pkr --map a=b\tc" << 2
                                          << "--map a=b\tc: 'b\tc' is no namespace ('\t' in it)";
        QTest::newRow("NEW with a leading digit")
            << "rebind good.pkr --map a=x:9y" << 2
            << "--map a=x:9y: 'x:9y' is no namespace (a part that starts with a digit)";
        QTest::newRow("NEW with a star")
            << "rebind good.pkr --map a=x*" << 2 << "--map a=x*: 'x*' is no namespace ('*' in it)";
        QTest::newRow("NEW with two colons") << "rebind good.pkr --map a=x::y" << 2
                                             << "--map a=x::y: 'x::y' is no namespace (an empty "
                                                "part)";
        QTest::newRow("mirror rule of two kinds")
            << "mirror good.pkr --rule L_*=*_R" << 2
            << "mirror rule \"L_*=*_R\": \"L_*\" is a prefix but \"*_R\" a suffix; both sides "
               "must be of one kind";
        QTest::newRow("mirror rule without a star")
            << "mirror good.pkr --rule L_=R_*" << 2
            << "mirror rule \"L_=R_*\": \"L_\" is no prefix (L_*), suffix (*_L) or infix "
               "(*Left*)";
        QTest::newRow("mirror axis of a quarter")
            << "mirror good.pkr --axis 1.25" << 2
            << "--axis takes a whole number or a half (as 512 or 511.5), not '1.25'";
        QTest::newRow("mirror colour by name")
            << "mirror good.pkr --swap-color red=#0000FF" << 2
            << "--swap-color: colour pair \"red=#0000FF\" is not #RRGGBB=#RRGGBB";
    }

    void failures() {
        QFETCH(QString, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, firstLine);
        write("good.pkr", pkrVersion4());
        write("cut.pkr", pkrVersion4().chopped(2));
        const QByteArray description =
            picker(button("\"color\": \"red\", \"tcolor\": \"#FF000000\"", "[\"n\"]"));
        write("desc.json", description);
        write("out.pkr", tinyPng());

        const run_result result = run(arguments);
        QCOMPARE(result.exitCode, exitCode);
        QCOMPARE(result.out, QByteArray());
        const QStringList lines = QString::fromUtf8(result.err).split(QLatin1Char('\n'));
        QCOMPARE(lines.first(), "pkrtool: "_q + firstLine);
        // Usage mistakes say where the usage is, file faults nothing more.
        const QString command = arguments.section(QLatin1Char(' '), 0, 0);
        const QString help = command == QLatin1String("frob")
                                 ? "see pkrtool --help"_q
                                 : "see pkrtool %1 --help"_q.arg(command);
        QCOMPARE(lines.at(1), exitCode == 2 ? help : QString());
        QCOMPARE(int(lines.size()), exitCode == 2 ? 3 : 2);
        QCOMPARE(read("out.pkr"), tinyPng());
        QCOMPARE(read("good.pkr"), pkrVersion4());
        QCOMPARE(read("desc.json"), description);
    }

    void help_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("firstLine");
        QTest::newRow("the program") << "--help"
                                     << "Usage: pkrtool COMMAND ARGUMENTS";
        QTest::newRow("-h") << "-h"
                            << "Usage: pkrtool COMMAND ARGUMENTS";
        QTest::newRow("a command")
            << "rebind --help"
            << "Usage: pkrtool rebind FILE.pkr --map OLD=NEW [--map OLD=NEW ...] "
               "[--allow-unused] [-o OUT.pkr]";
        QTest::newRow("a command, -h among other arguments")
            << "store scene.ma -h"
            << "Usage: pkrtool store SCENE.ma --picker FILE.pkr "
               "[--picker FILE.pkr ...] [-o OUT.ma]";
    }

    void help() {
        QFETCH(QString, arguments);
        QFETCH(QString, firstLine);
        const run_result result = run(arguments);
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(QString::fromUtf8(result.out).section(QLatin1Char('\n'), 0, 0), firstLine);
        QCOMPARE(result.err, QByteArray());
    }

    // "-" is standard input for FILE and standard output for -o; pipes and /dev/stdin read whole.
    void standardStreams_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QByteArray>("out");
        QTest::addColumn<QByteArray>("err");

        const QByteArray info = "title: \"Arm\"\nformat version: 4\nbackground: none\nbuttons: 2\n"
                                "0  selection at (10, -20) size 12 label null: L_hand L_arm\n"
                                "1  python command at (100, 50) size 20 label \"Go\": "
                                "\"print(1)\"\n";
        QTest::newRow("info -") << "info -" << pkrVersion4() << info << QByteArray();
        QTest::newRow("info /dev/stdin")
            << "info /dev/stdin" << pkrVersion4() << info << QByteArray();
        QTest::newRow("build - -o -")
            << "build - -o -" << QByteArray(arm_json) << pkrVersion4() << QByteArray();
        // The summary goes to stderr: stdout carries the picker.
        const char* script = "select \"char1:hand\";";
        QTest::newRow("rebind from a pipe")
            << "rebind - --map char1=hero" << fileWithNames("char1:a", "b", "c", script)
            << fileWithNames("hero:a", "b", "c", "select \"hero:hand\";")
            << QByteArray("changed 1 node name and 1 script\n");
    }

    void standardStreams() {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, input);
        QFETCH(QByteArray, out);
        QFETCH(QByteArray, err);
        const run_result result = run(arguments, input);
        QCOMPARE(result.err, err);
        QCOMPARE(result.out.toHex(), out.toHex());
        QCOMPARE(result.exitCode, 0);
    }

    // A name that is not UTF-8 opens, and is rewritten in place under the same name.
    void nonUtf8FileName() {
        write("good.pkr", fileWithNames("char1:a", "b", "c", "ls;"));
        const run_result result = shell("n=$(printf 'caf\\351.pkr'); cp good.pkr \"$n\" && "
                                        "$P info \"$n\" && $P rebind \"$n\" --map char1=hero && "
                                        "$P namespaces \"$n\" && ls | wc -l && rm \"$n\""_q);
        QCOMPARE(result.err, QByteArray());
        QVERIFY2(result.out.startsWith("title: \"Rig\""), result.out.constData());
        QVERIFY(result.out.endsWith("changed 1 node name and 0 scripts\nhero\n2\n"));
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
        const QByteArray dag = fileWithNames("|char1:grp|char1:arm", "Char2:x", "char1:sub:leg",
                                             "select \"|char1:grp|char1:hand\";");
        QTest::newRow("DAG paths, segment by segment")
            << dag << "--map char1=hero -o out.pkr" << changed << dag
            << fileWithNames("|hero:grp|hero:arm", "Char2:x", "hero:sub:leg",
                             "select \"|hero:grp|hero:hand\";");
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

    // Buttons as "X NAME,NAME [#AARRGGBB]" at y 50 ("X command" for a command button); the
    // copies appended read back in the same form.
    void mirror_data() {
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<int>("backgroundWidth"); // 0: none
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("summary");
        QTest::addColumn<QStringList>("added");

        QTest::newRow("defaults: prefix before suffix, namespaces kept, paths by segment")
            << QStringList{"10 L_arm_R"_q, "20 hero:L_hand"_q, "30 |hero:grp_L|hero:L_foot"_q,
                           "40 spine"_q,   "50 L_rig:spine"_q, "60 command"_q}
            << 0 << "--axis 100"
            << "added 3, 0 already there, 2 centre (not sided)"
            << QStringList{"190 R_arm_R #ffb22222"_q, "180 hero:R_hand #ffb22222"_q,
                           "170 |hero:grp_R|hero:R_foot #ffb22222"_q};
        QTest::newRow("infix: the leftmost core; case counts")
            << QStringList{"10 eyeLeftUpRight"_q, "20 upper_left,Upper_l"_q, "30 LEFT_x"_q} << 0
            << "--axis 100"
            << "added 2, 0 already there, 1 centre (not sided)"
            << QStringList{"190 eyeRightUpRight #ffb22222"_q,
                           "180 upper_right,Upper_r #ffb22222"_q};
        QTest::newRow("copies a button or an earlier copy holds are not added")
            << QStringList{"10 L_a"_q, "190 R_a"_q, "20 L_b"_q, "30 L_b"_q, "40 L_b,L_c"_q} << 0
            << "--axis 100"
            << "added 2, 3 already there, 0 centre (not sided)"
            << QStringList{"180 R_b #ffb22222"_q, "160 R_b,R_c #ffb22222"_q};
        QTest::newRow("axis: half the background's width")
            << QStringList{"10 L_a"_q, "20 spine"_q} << 301 << QString()
            << "added 1, 0 already there, 1 centre (not sided)"
            << QStringList{"291 R_a #ffb22222"_q};
        QTest::newRow("axis: the middle of the outermost buttons")
            << QStringList{"10 L_a"_q, "20 L_b"_q, "101 spine"_q} << 0 << QString()
            << "added 2, 0 already there, 1 centre (not sided)"
            << QStringList{"101 R_a #ffb22222"_q, "91 R_b #ffb22222"_q};
        QTest::newRow("axis: a half, before the background")
            << QStringList{"10 L_a"_q} << 400 << "--axis -0.5"
            << "added 1, 0 already there, 0 centre (not sided)"
            << QStringList{"-11 R_a #ffb22222"_q};
        QTest::newRow("colours swapped both ways on RGB, alpha kept")
            << QStringList{"10 L_a #80ff0000"_q, "20 L_b #ff0000ff"_q, "30 L_c #ff00ff00"_q} << 0
            << "--axis 0 --swap-color #FF0000=#0000ff"
            << "added 3, 0 already there, 0 centre (not sided)"
            << QStringList{"-10 R_a #800000ff"_q, "-20 R_b #ffff0000"_q, "-30 R_c #ff00ff00"_q};
        QTest::newRow("--rule replaces the defaults")
            << QStringList{"10 L_a"_q, "20 arm_lt"_q} << 0 << "--rule *_lt=*_rt --axis 0"
            << "added 1, 0 already there, 1 centre (not sided)"
            << QStringList{"-20 arm_rt #ffb22222"_q};
        QTest::newRow("nothing sided: the file is left")
            << QStringList{"10 spine"_q, "20 command"_q} << 0 << QString()
            << "added 0, 0 already there, 1 centre (not sided); 'in.pkr' left as it was"
            << QStringList();
    }

    void mirror() {
        QFETCH(QStringList, buttons);
        QFETCH(int, backgroundWidth);
        QFETCH(QString, arguments);
        QFETCH(QString, summary);
        QFETCH(QStringList, added);
        picker_tab_record tab;
        tab.title = "rig"_q;
        if (backgroundWidth > 0) {
            QImage image(backgroundWidth, 4, QImage::Format_RGB32);
            image.fill(Qt::gray);
            tab.backgroundKey = "1"_q;
            tab.backgroundPng = pngOf(image);
        }
        for (const QString& description : buttons) {
            const QStringList fields = description.split(QLatin1Char(' '));
            buttonAttributes att;
            att.pos = QPoint(fields.at(0).toInt(), 50);
            att.size = 10;
            att.color = fields.size() > 2 ? fields.at(2).mid(1).toUInt(nullptr, 16) : 0xFFB22222;
            att.tcolor = 0xFF000000;
            att.type = fields.at(1) == QLatin1String("command") ? 1 : 0;
            att.sel =
                att.type == 1 ? QStringList{"select -cl;"_q} : fields.at(1).split(QLatin1Char(','));
            tab.buttons << att;
        }
        const QByteArray original = pickerFileBytes(tab);
        write("in.pkr", original);

        const run_result result = run("mirror in.pkr "_q + arguments);
        QCOMPARE(result.err, QByteArray());
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(QString::fromUtf8(result.out), summary + QLatin1Char('\n'));
        picker_tab_record after;
        QVERIFY(readPickerFile(read("in.pkr"), after).ok());
        QCOMPARE(after.buttons.mid(0, tab.buttons.size()), tab.buttons);
        QStringList appended;
        for (const buttonAttributes& att : after.buttons.mid(tab.buttons.size())) {
            QCOMPARE(att.pos.y(), 50);
            appended << "%1 %2 #%3"_q.arg(att.pos.x())
                            .arg(att.sel.join(QLatin1Char(',')), QString::number(att.color, 16));
        }
        QCOMPARE(appended, added);
        if (added.isEmpty())
            QCOMPARE(read("in.pkr"), original);
    }

    // Three-name selection button at (5, 6) in 0xB22222 beside a command button, in 200 x 100.
    void render_data() {
        QTest::addColumn<QString>("select");
        QTest::addColumn<QRgb>("shown");
        QTest::addColumn<QRgb>("hidden");
        QTest::addColumn<bool>("framedOnAll");
        QTest::addColumn<QByteArray>("err");
        QTest::addColumn<QSize>("pixels");

        const QSize window(200, 100);
        const QRgb red = qRgb(0xB2, 0x22, 0x22);
        const QRgb lit = qRgb(224, 224, 224);
        QTest::newRow("nothing lit") << QString() << red << lit << true << QByteArray() << window;
        QTest::newRow("all names lit")
            << "--select a b c" << lit << red << true << QByteArray() << window;
        QTest::newRow("names one by one")
            << "--select a --select b --select=c" << lit << red << true << QByteArray() << window;
        QTest::newRow("one name lit, names no button holds reported")
            << "--select b nobody" << qRgb(128, 128, 128) << red << true
            << QByteArray("pkrtool: warning: no button holds nobody\n") << window;
        QTest::newRow("framed on the lit buttons when asked")
            << "--select a b c --frame-selection" << lit << red << false << QByteArray() << window;
        QTest::newRow("a screen of device pixel ratio 1.5, framed the same")
            << "--scale 1.5 --select a b c" << lit << red << true << QByteArray()
            << QSize(300, 150);
    }

    void render() {
        QFETCH(QString, select);
        QFETCH(QRgb, shown);
        QFETCH(QRgb, hidden);
        QFETCH(bool, framedOnAll);
        QFETCH(QByteArray, err);
        QFETCH(QSize, pixels);
        write("rig.pkr", fileWithNames("a", "b", "c", "select -cl;"));

        const QByteArray plain = run("render rig.pkr -o plain.png --size 200x100"_q).out;
        const run_result result = run("render rig.pkr -o rig.png --size 200x100 "_q + select);
        QCOMPARE(result.err, err);
        QCOMPARE(result.exitCode, 0);
        const QByteArray zoom = result.out.mid(result.out.indexOf(", zoom "));
        QCOMPARE(zoom == plain.mid(plain.indexOf(", zoom ")), framedOnAll);
        QVERIFY(result.out.startsWith(
            "rig.png: %1 x %2, zoom "_q.arg(pixels.width()).arg(pixels.height()).toUtf8()));
        QImage image;
        QVERIFY(image.loadFromData(read("rig.png"), "PNG"));
        QCOMPARE(image.size(), pixels);
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
        QStringList many;
        for (int i = 0; i <= picker_max_tabs; ++i)
            many.append("t"_q);
        QTest::newRow("more tabs than a picker may have")
            << "scene scene.ma" << sceneStoring(tabsTitled(many)) << 1 << QByteArray()
            << "pkrtool: scene.ma:3: the stored pickers: the data holds 1001 tabs, more than the "
               "1000 a picker may have";
        // Cut to what a file system takes, in bytes of UTF-8, and kept apart.
        const QString longTitle(200, QChar(0xe9));
        const QByteArray cut = QString(125, QChar(0xe9)).toUtf8();
        QTest::newRow("extract cuts long titles")
            << "extract scene.ma -o out" << sceneStoring(tabsTitled({longTitle, longTitle})) << 0
            << "out/" + cut + ".pkr\nout/" + cut.chopped(4) + " (2).pkr\n"
            << QString();
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
        if (!out.contains(".pkr"))
            return;
        // Each extracted file is the tab on its own.
        picker_tab_set set;
        const QByteArray stored =
            qUncompress(QByteArray::fromBase64(scene.mid(scene.indexOf("Data\" \"") + 7)
                                                   .replace("\"\n\t\t+ \"", "")
                                                   .split('"')
                                                   .first()));
        QDataStream stream(stored);
        readTabStream(stream, set);
        for (const QByteArray& line : out.split('\n')) {
            if (line.endsWith(".pkr"))
                QCOMPARE(read(line.constData()), pickerFileBytes(set.tabs.takeFirst()));
        }
    }

    // One tab that cannot be written, and none is.
    void extractWritesAllOrNone() {
        write("scene.ma", sceneStoring(tabsTitled({"A"_q, "B"_q})));
        QVERIFY(QDir(dir_->path()).mkpath("out/B.pkr"_q));
        const run_result result = run("extract scene.ma -o out"_q);
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.startsWith("pkrtool: cannot write 'out/B.pkr'"),
                 result.err.constData());
        QCOMPARE(QDir(dir_->filePath("out"_q)).entryList(QDir::Files | QDir::Hidden),
                 QStringList());
    }

    void sceneTooLarge() {
        QFile big(dir_->filePath("big.ma"_q));
        QVERIFY(big.open(QIODevice::WriteOnly) && big.write("//Maya ASCII 2025 scene\n") > 0);
        QVERIFY(big.resize((qint64(1) << 30) + 1));
        big.close();
        const run_result result = run("scene big.ma"_q);
        QCOMPARE(result.err,
                 QByteArray("pkrtool: cannot read big.ma: larger than 1073741824 bytes\n"));
        QCOMPARE(result.exitCode, 1);
    }

    // A store changes the picker's own fileInfo statements and nothing else, into the file or
    // through standard input and output.
    void storeKeepsEveryOtherByte_data() {
        QTest::addColumn<QByteArray>("scene");
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QByteArray>("kept"); // the scene without the picker's statements

        QTest::newRow("Maya's shot")
            << mayaShot() << "store shot.ma --picker hero.pkr" << mayaShot();
        QTest::newRow("Windows line ends")
            << mayaShot("\r\n") << "store shot.ma --picker hero.pkr" << mayaShot("\r\n");
        QByteArray stored = mayaShot();
        stored.insert(stored.indexOf("createNode transform -s"),
                      "fileInfo \"TalvoraPickerData\" \"old\"\n\t\t+ \"data\";\n"
                      "fileInfo \"TalvoraPickerImage_old\" \"x\";\n");
        QTest::newRow("the pickers stored before are replaced")
            << stored << "store shot.ma --picker hero.pkr -o new.ma" << mayaShot();
        const QByteArray bare = "//Maya ASCII 2016 scene\ncreateNode transform -n \"a\";\n";
        QTest::newRow("a scene without fileInfo")
            << bare << "store shot.ma --picker hero.pkr" << bare;
    }

    void storeKeepsEveryOtherByte() {
        QFETCH(QByteArray, scene);
        QFETCH(QString, arguments);
        QFETCH(QByteArray, kept);
        write("shot.ma", scene);
        write("hero.pkr", pkrVersion4WithImage(tinyPng()));

        const run_result result = run(arguments);
        QCOMPARE(result.err, QByteArray());
        QCOMPARE(result.exitCode, 0);
        const char* written = arguments.contains("-o new.ma"_q) ? "new.ma" : "shot.ma";
        QCOMPARE(withoutPickerLines(read(written)), kept);
        QCOMPARE(run("scene "_q + QLatin1String(written)).out,
                 QByteArray("tabs: 1\n0  \"Face\": 1 buttons (current)\n"));
        const QByteArray piped = run("store - --picker hero.pkr"_q, scene).out;
        QCOMPARE(piped, read(written));
    }

    // Two pickers under one key with two images: each comes back with its own, through the
    // scene's image entries (the last of a key is the one Maya keeps) and through extract.
    void sameKeyTwoImages() {
        const QByteArray red = onePixel(Qt::red);
        const QByteArray blue = onePixel(Qt::blue);
        write("red.pkr", pkrVersion4WithImage(red));
        write("blue.pkr", pkrVersion4WithImage(blue));
        write("scene.ma", mayaShot());
        QCOMPARE(run("store scene.ma --picker red.pkr --picker blue.pkr"_q).exitCode, 0);

        picker_ma_scene scene;
        QVERIFY(parseMayaAsciiFile(read("scene.ma"), "scene.ma"_q, scene).ok());
        QMap<QString, QString> entries;
        for (const auto& entry : scene.fileInfo)
            entries.insert(entry.first, entry.second);
        picker_tab_set set;
        QDataStream stream(
            qUncompress(QByteArray::fromBase64(entries.value("TalvoraPickerData"_q).toLatin1())));
        QVERIFY(readTabStream(stream, set).ok());
        QCOMPARE(set.tabs.at(0).backgroundKey, "bg"_q);
        for (int i = 0; i < 2; ++i) {
            QDataStream image(QByteArray::fromBase64(
                entries.value("TalvoraPickerImage_"_q + set.tabs.at(i).backgroundKey).toLatin1()));
            QCOMPARE(readImage(image), i == 0 ? red : blue);
        }

        QCOMPARE(run("extract scene.ma -o out"_q).exitCode, 0);
        picker_tab_record tab;
        QVERIFY(readPickerFile(read("out/Face.pkr"), tab).ok());
        QCOMPARE(tab.backgroundPng, red);
        QVERIFY(readPickerFile(read("out/Face (2).pkr"), tab).ok());
        QCOMPARE(tab.backgroundPng, blue);
    }
};

QTEST_GUILESS_MAIN(tst_pkrtool)
#include "tst_pkrtool.moc"
