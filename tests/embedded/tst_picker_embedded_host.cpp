#include "../support/picker_test_vectors.h"
#include "picker_embedded_host.h"
#include "picker_maya_ascii.h"
#include "picker_mel.h"

#include <QtTest>

using namespace picker_test_vectors;

namespace {

const QString testCommand = "TalvoraTest"_q;
picker_embedded_host* currentHost = nullptr;

// What the registered test command was handed, slot by slot: "s:text" or "a:[x,y]".
QStringList receivedSlots;

host_status record_arguments(const picker_arg_list& args, picker_undo_ptr&) {
    for (unsigned index = 0; index < args.length(); ++index) {
        host_status status;
        const QString text = args.asString(index, &status);
        unsigned arrayIndex = index;
        receivedSlots << (status ? "s:"_q + text
                                 : "a:[%1]"_q.arg(args.asStringArray(arrayIndex, &status)
                                                      .join(QLatin1Char(','))));
    }
    // Queued while the idle queue runs: it runs after what was queued before.
    currentHost->executeCommandOnIdle("print \"follow-up\""_q);
    return host_status();
}

const QStringList sceneNodes = words("hero:L_hand_ctrl prop:box root");

const QByteArray header = QByteArrayLiteral("//Maya ASCII 2025 scene\n//Codeset: UTF-8\n");
const QByteArray rigFile = header + QByteArrayLiteral("createNode transform -n \"L_hand_ctrl\";\n"
                                                      "createNode transform -n \"R_hand_ctrl\";\n");

// Files beside the scene, by path relative to it, then their contents.
using file_list = QList<QPair<QString, QByteArray>>;

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

class tst_picker_embedded_host : public QObject {
    Q_OBJECT

    picker_embedded_host host_;

    // One line per statement: the command, then each word tagged b (bare), q (quoted) or `
    // (backquoted).
    static QStringList describe(const picker_mel_script& script) {
        QStringList lines;
        for (const picker_mel_statement& statement : script.statements) {
            if (!statement.definedProcedure.isEmpty()) {
                lines << "proc "_q + statement.definedProcedure;
                continue;
            }
            QString line = statement.command;
            for (const picker_mel_word& word : statement.arguments) {
                const char* tag = word.type == picker_mel_word::kind::bare     ? " b:"
                                  : word.type == picker_mel_word::kind::quoted ? " q:"
                                                                               : " `:";
                line += QLatin1String(tag) + word.text;
            }
            lines << line;
        }
        return lines;
    }

private slots:
    void initTestCase() {
        currentHost = &host_;
        QVERIFY(host_.registerCommand(testCommand, &record_arguments).ok());
    }

    void init() {
        host_.openScene(sceneNodes, {{"k"_q, "v"_q}});
        host_.clearScriptLog();
        receivedSlots.clear();
    }

    void runMel_data() {
        QTest::addColumn<QString>("mel");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<QStringList>("selection");
        QTest::addColumn<QStringList>("commandSlots");

        const QStringList none;
        QTest::newRow("missing node stops the text")
            << "select -r root; print \"x\"; select -add nope; print \"never\""_q
            << QStringList{"x"_q, "// Error: No object matches name: nope"_q}
            << QStringList{"root"_q} << none;
        QTest::newRow("syntax error runs nothing")
            << "select -r root; print \"b"_q << QStringList{"// Error: Unterminated string."_q}
            << none << none;
        QTest::newRow("registered command, bare and quoted")
            << testCommand + " a \"b c\""_q << none << none << QStringList{"s:a"_q, "s:b c"_q};
        QTest::newRow("array alone after the first argument is one slot")
            << testCommand + " restore `fileInfo -q \"k\"`;"_q << none << none
            << words("s:restore a:[v]");
        QTest::newRow("array among other arguments is spliced")
            << testCommand + " x `fileInfo -q \"k\"` y"_q << none << none << words("s:x s:v s:y");
        QTest::newRow("ls, selected")
            << "select -r root; select -add prop:box; "_q + testCommand + " list `ls -sl`"_q << none
            << words("root prop:box") << words("s:list a:[root,prop:box]");
        QTest::newRow("ls, pattern") << testCommand + " list `ls \"*:*_ctrl\"`"_q << none << none
                                     << words("s:list a:[hero:L_hand_ctrl]");
        // The undo queue as MEL walks it: selections go on it, a new one drops what was undone,
        // and a new scene starts afresh.
        QTest::newRow("undo and redo of selects")
            << "select -r root; select -add prop:box; select -cl; undo; undo; redo"_q << none
            << words("root prop:box") << none;
        QTest::newRow("a new select drops the undone")
            << "select -r root; select -add prop:box; undo; select -r prop:box; undo; undo"_q
            << none << none << none;
        QTest::newRow("a new scene, nothing to undo")
            << "select -r root; file -new -f; undo"_q
            << QStringList{"// Warning: There are no more commands to undo."_q} << none << none;
        QTest::newRow("error inside a backquote stops the command")
            << testCommand + " bind `nonesuch`"_q
            << QStringList{"// Error: Cannot find procedure \"nonesuch\"."_q} << none << none;
    }

    void runMel() {
        QFETCH(QString, mel);
        QFETCH(QStringList, log);
        QFETCH(QStringList, selection);
        QFETCH(QStringList, commandSlots);
        QCOMPARE(host_.executeCommand(mel).ok(),
                 !log.join(QLatin1Char(' ')).contains(QLatin1String("// Error")));
        QCOMPARE(host_.scriptLog(), log);
        QCOMPARE(host_.selection(), selection);
        QCOMPARE(receivedSlots, commandSlots);
        host_.processIdle();
    }

    void idleTextsRunInOrderFromTheEventLoop() {
        QVERIFY(host_.executeCommandOnIdle(testCommand + " a"_q).ok());
        QVERIFY(host_.executePythonCommandOnIdle("print('two')"_q).ok());
        QVERIFY(host_.executeCommandOnIdle("print \"three\""_q).ok());
        QVERIFY(host_.scriptLog().isEmpty());
        QTRY_COMPARE(host_.scriptLog(),
                     (QStringList{"python: print('two')"_q, "three"_q, "follow-up"_q}));
        QCOMPARE(host_.pendingIdleCount(), 0);
    }

    void parseMel_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("statements"); // none: the text is refused whole

        QTest::newRow("escapes") << "select \"q\\\"b\\\\n\\nt\\tx\\y\" \"\""_q
                                 << QStringList{"select q:q\"b\\n\nt\tx"_q + "y q:"_q};
        QTest::newRow("backquote with quotes inside")
            << "TalvoraPicker restore `fileInfo -q \"TalvoraPickerData\"`;"_q
            << QStringList{"TalvoraPicker b:restore `:fileInfo -q \"TalvoraPickerData\""_q};
        QTest::newRow("call form, two arguments")
            << "TalvoraPicker( \"open\" , \"/a b.pkr\" )"_q
            << QStringList{"TalvoraPicker q:open q:/a b.pkr"_q};
        QTest::newRow("comments") << "// a\nselect -cl; /* b; c */ print \"d\" // e"_q
                                  << QStringList{"select b:-cl"_q, "print q:d"_q};
        QTest::newRow("global procedures keep their names only")
            << "global proc string[] f(string $a) { if ($a == \"}\") { print \"x\"; } }\n"
               "global proc g() {}\nprint \"after\""_q
            << QStringList{"proc f"_q, "proc g"_q, "print q:after"_q};
        QTest::newRow("unterminated string") << "print \"a\"; print \"abc"_q << QStringList();
        QTest::newRow("variable") << "print $x"_q << QStringList();
        QTest::newRow("text after a call") << "TalvoraPicker(\"save\") x"_q << QStringList();
        QTest::newRow("unterminated procedure")
            << "global proc f() { print \"x\";"_q << QStringList();
        QTest::newRow("print takes one value: a ';' missing")
            << "print \"a\"\nprint \"b\";"_q << QStringList();
        QTest::newRow("blocks nested too deep")
            << "global proc f() "_q + QString(300, QLatin1Char('{')) +
                   QString(300, QLatin1Char('}'))
            << QStringList();
    }

    void parseMel() {
        QFETCH(QString, text);
        QFETCH(QStringList, statements);
        const picker_mel_script script = picker_mel_parse(text);
        QCOMPARE(script.error.isEmpty(), !statements.isEmpty());
        QCOMPARE(describe(script), statements);
    }

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
            << QStringList{"k"_q, "a\"b\\c\nd\te"_q, "s"_q, "abcdef"_q} << 0 << QString();
        // A missing reference is reported once and the scene still loads.
        QTest::newRow("nested and missing references")
            << header +
                   "file -r -ns \"set\" -rfn \"setRN\" \"$PICKER_TEST_PROJECT/set.ma\";\n"
                   "file -r -ns \"a\" \"gone.ma\";\nfile -r -ns \"a\" \"gone.ma\";\n"
                   "createNode transform -n \"root\";\nsetAttr \".t\" -type \"double3\" 0 1 2;\n"
            << file_list{{"project/set.ma"_q,
                          header + "createNode transform -n \"floor\";\nfile -r -ns \"hero\" "
                                   "\"rigs/hero.ma\";\n"},
                         {"project/rigs/hero.ma"_q, rigFile}}
            << QStringList{"root"_q} << words("set $PICKER_TEST_PROJECT/set.ma a gone.ma a gone.ma")
            << words("set:floor set:hero:L_hand_ctrl set:hero:R_hand_ctrl") << none << 1
            << QString();
        QTest::newRow("broken statement names its line")
            << header + "createNode transform -n \"root\";\nfileInfo \"k\";\n"
            << file_list() << none << none << none << none << 0 << "scene.ma:4:"_q;
        const QStringList shotInfo{
            "application"_q, "maya"_q,
            "product"_q,     "Maya 2024"_q,
            "osv"_q,         "Linux 5.15.0-91-generic #101-Ubuntu SMP x86_64"_q,
            "UUID"_q,        "5B2E1C3A-4F1D-8E6B-2A9C-7D3F0E1B4C5A"_q};
        for (const char* newline : {"\n", "\r\n"})
            QTest::newRow(newline[0] == '\r' ? "Maya's shot, Windows line ends" : "Maya's shot")
                << mayaShot(newline) << file_list{{"rigs/hero.ma"_q, mayaRig()}}
                << words("persp perspShape set_grp crate crateShape sceneConfigurationScriptNode")
                << words("hero rigs/hero.ma")
                << words("hero:rig_grp hero:root_ctrl hero:root_ctrlShape") << shotInfo << 0
                << QString();
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
        qputenv("PICKER_TEST_PROJECT", dir.filePath("project"_q).toLocal8Bit());
        for (const auto& file : files)
            QVERIFY(writeBytes(dir.filePath(file.first), file.second));
        const QString path = dir.filePath("scene.ma"_q);
        QVERIFY(writeBytes(path, scene));

        picker_ma_scene read;
        read.nodes = QStringList{"untouched"_q};
        const picker_ma_result result = readMayaAscii(path, read);
        if (!error.isEmpty()) {
            QVERIFY2(result.error.startsWith(dir.filePath(error)), qPrintable(result.error));
            QCOMPARE(read.nodes, QStringList{"untouched"_q});
            return;
        }
        QVERIFY2(result.ok(), qPrintable(result.error));
        QCOMPARE(read.nodes, nodes);
        QCOMPARE(references(read.references), refs);
        QCOMPARE(read.referencedNodes, referenced);
        QCOMPARE(pairs(read.fileInfo), info);
        QCOMPARE(int(result.warnings.size()), warnings);

        // Written back unchanged, every byte is as it was.
        const QString copy = dir.filePath("copy.ma"_q);
        QString writeError;
        QVERIFY2(writeMayaAscii(copy, read, QString(), &writeError), qPrintable(writeError));
        QCOMPARE(readBytes(copy), scene);
    }

    // Hostile scenes against their limits: each stops with a message naming file and line, and
    // what was read before it stays.
    void limits_data() {
        QTest::addColumn<file_list>("files");
        QTest::addColumn<QString>("error");      // the scene refused whole
        QTest::addColumn<QStringList>("errors"); // the scene read, not all it references
        QTest::addColumn<int>("nodes");          // its own and the references' together

        const auto referencing = [](const QStringList& paths, const QByteArray& more) {
            QByteArray text = header;
            for (int i = 0; i < paths.size(); ++i)
                text += "file -r -ns \"n" + QByteArray::number(i) + "\" \"" + paths.at(i).toUtf8() +
                        "\";\n";
            return text + more;
        };
        const QByteArray node = "createNode transform -n \"x\";\n";
        QTest::newRow("a reference cycle, named once")
            << file_list{{"scene.ma"_q, referencing({"b.ma"_q}, node)},
                         {"b.ma"_q, referencing({"scene.ma"_q, "scene.ma"_q}, node)}}
            << QString() << QStringList{"reference cycle: scene.ma \u2192 b.ma \u2192 scene.ma"_q}
            << 2;
        QTest::newRow("a scene referencing itself twice")
            << file_list{{"scene.ma"_q, referencing({"scene.ma"_q, "scene.ma"_q}, node)}}
            << QString() << QStringList{"reference cycle: scene.ma \u2192 scene.ma"_q} << 1;
        file_list deep{{"scene.ma"_q, referencing({"d1.ma"_q}, node)}};
        for (int i = 1; i <= 17; ++i)
            deep.append({"d%1.ma"_q.arg(i), referencing({"d%1.ma"_q.arg(i + 1)}, node)});
        QTest::newRow("references nested too deep")
            << deep << QString()
            << QStringList{"/s/d16.ma:3: references nested more than 16 deep; namespace "
                           "\"n0:n0:n0:n0:n0:n0:n0:n0:n0:n0:n0:n0:n0:n0:n0:n0:n0\" is left out."_q}
            << 17;
        // Each file references the next twice: 2046 references from twelve short files.
        file_list tree{{"scene.ma"_q, referencing({"t1.ma"_q, "t1.ma"_q}, node)}};
        for (int i = 1; i <= 11; ++i)
            tree.append({"t%1.ma"_q.arg(i),
                         i < 11 ? referencing({"t%1.ma"_q.arg(i + 1), "t%1.ma"_q.arg(i + 1)}, node)
                                : header + node});
        QTest::newRow("too many references")
            << tree << QString()
            << QStringList{"/s/t10.ma:3: the scene loads more than 1000 references; no more "
                           "are loaded."_q}
            << 1001;
        QByteArray rig = header;
        for (int i = 0; i < 1001; ++i)
            rig += "createNode transform -n \"c" + QByteArray::number(i) + "\";\n";
        QStringList rigs;
        for (int i = 0; i < 1000; ++i)
            rigs.append("rig.ma"_q);
        QTest::newRow("too many nodes")
            << file_list{{"scene.ma"_q, referencing(rigs, QByteArray())}, {"rig.ma"_q, rig}}
            << QString()
            << QStringList{"/s/scene.ma:1002: the scene has more than 1000000 nodes; no more "
                           "are loaded."_q}
            << 1000000;
        QTest::newRow("a damaged reference names its own line; the rest loads")
            << file_list{{"scene.ma"_q, referencing({"bad.ma"_q, "good.ma"_q}, node)},
                         {"bad.ma"_q, header + "createNode;\n"},
                         {"good.ma"_q, header + node}}
            << QString() << QStringList{"/s/bad.ma:3: createNode needs a node type"_q} << 2;
        QTest::newRow("a line too long")
            << file_list{{"scene.ma"_q, header + "//" + QByteArray(64 << 20, 'x') + "\n" + node}}
            << "/s/scene.ma:3: a line longer than 67108864 bytes"_q << QStringList() << 0;
        QTest::newRow("a string too long")
            << file_list{{"scene.ma"_q, header + "fileInfo \"k\" \"" + QByteArray(32 << 20, 'x') +
                                            "\"\n+ \"" + QByteArray((32 << 20) + 1, 'x') + "\";\n"}}
            << "/s/scene.ma:3: a string longer than 67108864 bytes"_q << QStringList() << 0;
        QByteArray images = header;
        for (int i = 0; i <= 1000; ++i)
            images += "fileInfo \"TalvoraPickerImage_" + QByteArray::number(i) + "\" \"\";\n";
        QTest::newRow("too many background images")
            << file_list{{"scene.ma"_q, images}}
            << "/s/scene.ma:1003: more than 1000 picker background images stored"_q << QStringList()
            << 0;
    }

    void limits() {
        QFETCH(file_list, files);
        QFETCH(QString, error);
        QFETCH(QStringList, errors);
        QFETCH(int, nodes);
        picker_ma_memory_files memory;
        for (const auto& file : files)
            memory.files.insert("/s/"_q + file.first, file.second);

        picker_ma_scene read;
        read.nodes = QStringList{"untouched"_q};
        const picker_ma_result result = readMayaAscii("/s/scene.ma"_q, read, memory);
        QCOMPARE(result.error, error);
        QCOMPARE(result.errors, errors);
        QCOMPARE(int(read.nodes.size() + read.referencedNodes.size()), error.isEmpty() ? nodes : 1);
    }
};

QTEST_MAIN(tst_picker_embedded_host)
#include "tst_picker_embedded_host.moc"
