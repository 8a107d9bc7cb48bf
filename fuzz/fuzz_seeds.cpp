// Writes the seed corpora of the fuzz targets from the hand-written layout vectors, the test
// scenes and the demo scenes.
#include "picker_test_vectors.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace picker_test_vectors;

namespace {

bool writeSeed(const QString& directory, const QString& name, const QByteArray& bytes) {
    QFile file(QDir(directory).filePath(name));
    return QDir().mkpath(directory) && file.open(QIODevice::WriteOnly) &&
           file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The scene and the files it references, as fuzz_maya_ascii takes them: each referenced file
// after a separator line, named by its place (1.ma, 2.ma, ...).
QByteArray sceneWith(const QList<QByteArray>& files) {
    QByteArray joined;
    for (const QByteArray& file : files)
        joined += (joined.isEmpty() ? QByteArray() : QByteArrayLiteral("\n--8<--\n")) + file;
    return joined;
}

bool writeSceneSeeds(const QString& scenes, const QString& demo) {
    const QByteArray header = "//Maya ASCII 2025 scene\n";
    const QByteArray node = "createNode transform -n \"n\";\n";
    const QByteArray demoScene = readFile(demo + QLatin1String("/demo_scene.ma"));
    const QByteArray rig = readFile(demo + QLatin1String("/biped_rig.ma"));
    return !demoScene.isEmpty() && !rig.isEmpty() &&
           writeSeed(
               scenes, QStringLiteral("demo_scene"),
               sceneWith({QByteArray(demoScene).replace("\"biped_rig.ma\"", "\"1.ma\""), rig})) &&
           writeSeed(scenes, QStringLiteral("biped_rig"), rig) &&
           writeSeed(scenes, QStringLiteral("shot"),
                     sceneWith({mayaShot().replace("\"rigs/hero.ma\"", "\"1.ma\""), mayaRig()})) &&
           writeSeed(scenes, QStringLiteral("shot_crlf"), mayaShot("\r\n")) &&
           writeSeed(scenes, QStringLiteral("cycle"),
                     sceneWith({header + "file -r -ns \"b\" \"1.ma\";\n" + node,
                                header + "file -r -ns \"a\" \"scene.ma\";\n" + node})) &&
           writeSeed(scenes, QStringLiteral("bomb"),
                     header +
                         "file -r -ns \"x\" \"scene.ma\";\nfile -r -ns \"y\" "
                         "\"scene.ma\";\n" +
                         node) &&
           writeSeed(
               scenes, QStringLiteral("tree"),
               sceneWith({header + "file -r -ns \"p\" \"1.ma\";\nfile -r -ns \"q\" \"1.ma\";\n",
                          header + "file -r -ns \"p\" \"2.ma\";\nfile -r -ns \"q\" \"2.ma\";\n",
                          header + node}));
}

bool writeMelSeeds(const QString& statements, const QString& script) {
    const QByteArray namespaces = readFile(script);
    return !namespaces.isEmpty() &&
           writeSeed(statements, QStringLiteral("picker_ListNamespaces"), namespaces) &&
           writeSeed(statements, QStringLiteral("restore"),
                     "TalvoraPicker restore `fileInfo -q \"TalvoraPickerData\"`;\n"
                     "TalvoraPicker fetch_image `fileInfo -q \"TalvoraPickerImage_bg\"`;\n") &&
           writeSeed(statements, QStringLiteral("selection"),
                     "select -r root; select -add \"hero:L_hand_ctrl\"; print `ls -sl`;\n"
                     "ls \"*:*\"; select -cl;\n") &&
           writeSeed(statements, QStringLiteral("files"),
                     "fileInfo \"k\" \"v\"; fileInfo -remove \"k\"; file -modified 1;\n"
                     "file -r -ns \"prop\" \"/f/rig.ma\"; file -rename \"/f/out.ma\"; file -save;\n"
                     "file -new -f; file -open \"/f/out.ma\"; print (`file -q -sn`);\n") &&
           writeSeed(statements, QStringLiteral("call_form"),
                     "TalvoraPicker(\"save\");\nprint(\"a\\n\\t\\\"b\\\"\");\n// done\n/* x; */");
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 4) {
        std::fputs("usage: fuzz_seeds CORPUS_DIRECTORY DEMO_DIRECTORY NAMESPACE_SCRIPT\n", stderr);
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);
    const QString files = root + QLatin1String("/fuzz_picker_file");
    const QString tabs = root + QLatin1String("/fuzz_tab_stream");
    const QString lists = root + QLatin1String("/fuzz_button_attributes");
    // Format 3: title "Arm", empty key, buttons in the version 3 layout.
    const QByteArray pkrVersion3 =
        hex("00000003 00000006 00410072006d 00000000") + buttonListVersion3();
    // Format 1 tab stream: one tab "Old", no key field, buttons in the version 1 layout.
    const QByteArray tabStreamVersion1 =
        hex("00000001 00000001 00000000 00000000 00000006 004f006c0064") + buttonListVersion1();
    const bool written =
        writeSeed(files, QStringLiteral("version4"), pkrVersion4()) &&
        writeSeed(files, QStringLiteral("version4_image"), pkrVersion4WithImage(tinyPng())) &&
        writeSeed(files, QStringLiteral("version3"), pkrVersion3) &&
        writeSeed(files, QStringLiteral("version1"), pkrVersion1()) &&
        writeSeed(tabs, QStringLiteral("version4"), tabStream()) &&
        writeSeed(tabs, QStringLiteral("version1"), tabStreamVersion1) &&
        writeSeed(lists, QStringLiteral("two_buttons"), hex("00000001") + buttonListVersion4()) &&
        writeSceneSeeds(root + QLatin1String("/fuzz_maya_ascii"),
                        QString::fromLocal8Bit(argv[2])) &&
        writeMelSeeds(root + QLatin1String("/fuzz_mel"), QString::fromLocal8Bit(argv[3]));
    if (!written) {
        std::fputs("fuzz_seeds: cannot write the corpus\n", stderr);
        return 1;
    }
    return 0;
}
