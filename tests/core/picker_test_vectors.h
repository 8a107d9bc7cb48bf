#pragma once

// Byte images of the picker's data layouts, written by hand field by field, for tests, fuzz
// seeds and benchmarks. Every integer is big-endian; strings are a byte length then UTF-16BE.
// Also the small helpers the suites share for strings, PNG files and fixture files.

#include "picker_types.h"

#include <QBuffer>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRandomGenerator>

namespace picker_test_vectors {

inline QByteArray hex(const char* text) {
    return QByteArray::fromHex(QByteArray(text));
}

// The build forbids implicit conversion from char strings; "x"_q is the short explicit one.
inline QString operator""_q(const char* utf8, std::size_t size) {
    return QString::fromUtf8(utf8, int(size));
}

// Names written as one blank-separated string.
inline QStringList words(const char* blankSeparated) {
    return QString::fromUtf8(blankSeparated).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

inline QByteArray pngOf(const QImage& image) {
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

// A PNG of noise: what a background costs when it deflates poorly.
inline QByteArray noisePng(int side) {
    QImage image(side, side, QImage::Format_ARGB32);
    QRandomGenerator generator(7);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            image.setPixel(x, y, generator.generate());
    return pngOf(image);
}

// Whole fixture files; a write makes the folders it needs.
inline QByteArray readBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).absolutePath()) && file.open(QIODevice::WriteOnly) &&
           file.write(bytes) == bytes.size();
}

// A 2x1 RGBA PNG: an opaque red pixel, then blue at alpha 0x80.
inline QByteArray tinyPng() {
    return hex("89504e470d0a1a0a"
               "0000000d 49484452 00000002 00000001 08 06 00 00 00 f4227f8a"
               "0000000e 49444154 78da63f8cfc000420d000f7a037e 6a8131e1"
               "00000000 49454e44 ae426082");
}

// Selection button: index 0, pos (10, -20), size 12, type 0, api 0, colour 0xFFB22222, label
// colour 0xFF000000, null label, names "L_hand" and "L_arm".
inline QByteArray selectionRecord() {
    return hex("00000000 0000000a ffffffec 0000000c 00000000 00000000 ffb22222 ff000000"
               "ffffffff"
               "00000002"
               "0000000c 004c005f00680061006e0064"
               "0000000a 004c005f00610072006d");
}

// Command button: index 1, pos (100, 50), size 20, type 1, api 1 (Python), colour 0xFF2222B2,
// label colour 0xFFFFFFFF, label "Go", one script "print(1)".
inline QByteArray commandRecord() {
    return hex("00000001 00000064 00000032 00000014 00000001 00000001 ff2222b2 ffffffff"
               "00000004 0047006f"
               "00000001"
               "00000010 007000720069006e007400280031 0029");
}

inline buttonAttributes makeButton(QPoint pos, qint32 size, qint32 type, qint32 api, QRgb color,
                                   QRgb tcolor, const QString& label, const QStringList& sel) {
    return {pos, size, type, api, color, tcolor, label, sel};
}

// The buttons that selectionRecord() and commandRecord() describe.
inline buttonAttributes selectionButton() {
    return makeButton(QPoint(10, -20), 12, 0, 0, 0xFFB22222, 0xFF000000, QString(),
                      {"L_hand"_q, "L_arm"_q});
}

inline buttonAttributes commandButton() {
    return makeButton(QPoint(100, 50), 20, 1, 1, 0xFF2222B2, 0xFFFFFFFF, "Go"_q, {"print(1)"_q});
}

// View button list in the newest layout: the two records above.
inline QByteArray buttonListVersion4() {
    return hex("00000002") + selectionRecord() + commandRecord();
}

// Version 1 layout (no type, api or label colour): index 0 at (5, 6) size 8 colour 0xFF00FF00,
// empty label, names "a"; index 1 at (-5, 0) size 4 colour 0xFF0000FF, label "b", names "b".
inline QByteArray buttonListVersion1() {
    return hex("00000002"
               "00000000 00000005 00000006 00000008 ff00ff00 00000000 00000001 00000002 0061"
               "00000001 fffffffb 00000000 00000004 ff0000ff 00000002 0062 00000001 00000002 0062");
}

// The buttons that buttonListVersion1() describes.
inline button_att_list buttonsVersion1() {
    return {makeButton(QPoint(5, 6), 8, 0, 0, 0xFF00FF00, 0x00FFFFFF, ""_q, {"a"_q}),
            makeButton(QPoint(-5, 0), 4, 0, 0, 0xFF0000FF, 0x00FFFFFF, "b"_q, {"b"_q})};
}

// Version 3 layout (type and api, no label colour): index 0 at (1, 2) size 3, command MEL,
// colour 0xFF123456, null label, names "x"; index 1 at (7, 8) size 9, selection with api 1,
// colour 0x80ABCDEF, label "y", names "y", "z".
inline QByteArray buttonListVersion3() {
    return hex("00000002"
               "00000000 00000001 00000002 00000003 00000001 00000000 ff123456 ffffffff"
               "00000001 00000002 0078"
               "00000001 00000007 00000008 00000009 00000000 00000001 80abcdef 00000002 0079"
               "00000002 00000002 0079 00000002 007a");
}

// The buttons that buttonListVersion3() describes.
inline button_att_list buttonsVersion3() {
    return {makeButton(QPoint(1, 2), 3, 1, 0, 0xFF123456, 0x00FFFFFF, QString(), {"x"_q}),
            makeButton(QPoint(7, 8), 9, 0, 1, 0x80ABCDEF, 0x00FFFFFF, "y"_q, {"y"_q, "z"_q})};
}

// .pkr file, format 4: title "Arm", null background key (so no image), buttonListVersion4().
inline QByteArray pkrVersion4() {
    return hex("00000004 00000006 00410072006d ffffffff") + buttonListVersion4();
}

// .pkr file, format 4: title "Face", background key "bg", image marker 1 and the given PNG,
// then one button, selectionRecord().
inline QByteArray pkrVersion4WithImage(const QByteArray& png) {
    return hex("00000004 00000008 0046006100630065 00000004 00620067 00000001") + png +
           hex("00000001") + selectionRecord();
}

// .pkr file, format 1: title "Old", no key field, buttonListVersion1().
inline QByteArray pkrVersion1() {
    return hex("00000001 00000006 004f006c0064") + buttonListVersion1();
}

// Tab stream, format 4, two tabs, current index 1. Tab 0: "Arm", no key, buttonListVersion4().
// Tab 1: "Leg", key "bg" with a null image (marker 0), no buttons.
inline QByteArray tabStream() {
    return hex("00000004 00000002 00000001"
               "00000000 00000006 00410072006d 00000000") +
           buttonListVersion4() +
           hex("00000001 00000006 004c00650067 00000004 00620067 00000000 00000000");
}

// A shot as Maya 2024 writes it: a rig referenced with Maya's reference flags, requires with
// node types, units, fileInfo, DAG nodes under parents, a curve's multi-line value, a script
// node's escaped string, reference edits, select -ne, connections, a comment. Lines end with
// newline (Maya on Windows writes "\r\n").
inline QByteArray mayaShot(const char* newline = "\n") {
    QByteArray text(
        "//Maya ASCII 2024 scene\n"
        "//Name: shot.ma\n"
        "//Last modified: Tue, Mar 12, 2024 10:41:07 AM\n"
        "//Codeset: UTF-8\n"
        "file -rdi 1 -ns \"hero\" -rfn \"heroRN\" -op \"v=0;\" -typ \"mayaAscii\" "
        "\"rigs/hero.ma\";\n"
        "file -r -ns \"hero\" -dr 1 -rfn \"heroRN\" -op \"v=0;\" -typ \"mayaAscii\" "
        "\"rigs/hero.ma\";\n"
        "requires maya \"2024\";\n"
        "requires -nodeType \"gameFbxExporter\" \"gameFbxExporter\" \"1.0\";\n"
        "currentUnit -l centimeter -a degree -t film;\n"
        "fileInfo \"application\" \"maya\";\n"
        "fileInfo \"product\" \"Maya 2024\";\n"
        "fileInfo \"osv\" \"Linux 5.15.0-91-generic #101-Ubuntu SMP x86_64\";\n"
        "fileInfo \"UUID\" \"5B2E1C3A-4F1D-8E6B-2A9C-7D3F0E1B4C5A\";\n"
        "createNode transform -s -n \"persp\";\n"
        "\trename -uid \"A1B2C3D4-0000-0000-0000-000000000001\";\n"
        "\tsetAttr \".v\" no;\n"
        "\tsetAttr \".t\" -type \"double3\" 28 21 28 ;\n"
        "createNode camera -s -n \"perspShape\" -p \"persp\";\n"
        "\tsetAttr -k off \".v\" no;\n"
        "\tsetAttr \".imn\" -type \"string\" \"persp\";\n"
        "createNode transform -n \"set_grp\";\n"
        "createNode transform -n \"crate\" -p \"set_grp\";\n"
        "\tsetAttr \".t\" -type \"double3\" 0 1.5 -4 ;\n"
        "createNode nurbsCurve -n \"crateShape\" -p \"crate\";\n"
        "\tsetAttr -k off \".v\";\n"
        "\tsetAttr \".cc\" -type \"nurbsCurve\" \n"
        "\t\t1 4 0 no 3\n"
        "\t\t5 0 1 2 3 4\n"
        "\t\t5\n"
        "\t\t-1 0 -1\n"
        "\t\t1 0 -1\n"
        "\t\t1 0 1\n"
        "\t\t-1 0 1\n"
        "\t\t-1 0 -1\n"
        "\t\t;\n"
        "createNode script -n \"sceneConfigurationScriptNode\";\n"
        "\tsetAttr \".b\" -type \"string\" \"playbackOptions -min 1 -max 120 ;\\n// \\\"q\\\"; "
        "x\\ty\";\n"
        "createNode reference -n \"heroRN\";\n"
        "\tsetAttr \".ed\" -type \"dataReferenceEdits\" \n"
        "\t\t\"heroRN\"\n"
        "\t\t\"heroRN\" 0\n"
        "\t\t\"heroRN\" 1\n"
        "\t\t2 \"|hero:rig_grp|hero:root_ctrl\" \"translate\" \" -type \\\"double3\\\" 0 0 5\";\n"
        "lockNode -l 1 ;\n"
        "select -ne :time1;\n"
        "\tsetAttr \".o\" 1;\n"
        "// a note a TD left\n"
        "connectAttr \"crate.msg\" \":defaultRenderGlobals.sel\" -na;\n"
        "// End of shot.ma\n");
    return text.replace("\n", newline);
}

// The rig mayaShot() references, at rigs/hero.ma beside it.
inline QByteArray mayaRig() {
    return QByteArray("//Maya ASCII 2024 scene\n"
                      "//Name: hero.ma\n"
                      "requires maya \"2024\";\n"
                      "createNode transform -n \"rig_grp\";\n"
                      "createNode transform -n \"root_ctrl\" -p \"rig_grp\";\n"
                      "createNode nurbsCurve -n \"root_ctrlShape\" -p \"root_ctrl\";\n"
                      "\tsetAttr \".cc\" -type \"nurbsCurve\" \n"
                      "\t\t1 1 0 no 3\n"
                      "\t\t2 0 1\n"
                      "\t\t2\n"
                      "\t\t0 0 0\n"
                      "\t\t1 0 0\n"
                      "\t\t;\n"
                      "// End of hero.ma\n");
}

// A scene's bytes with the picker's own fileInfo statements taken out, long values' pieces and
// all: what a scene write must leave as it was.
inline QByteArray withoutPickerLines(const QByteArray& scene) {
    QByteArray kept;
    bool inPicker = false;
    for (int at = 0; at < scene.size();) {
        int end = int(scene.indexOf('\n', at));
        end = end < 0 ? int(scene.size()) : end + 1;
        const QByteArray line = scene.mid(at, end - at);
        at = end;
        if (line.startsWith("fileInfo \"TalvoraPicker"))
            inPicker = true;
        else if (!inPicker || !line.startsWith("\t\t+ "))
            inPicker = false;
        if (!inPicker)
            kept += line;
        if (inPicker && line.trimmed().endsWith(';'))
            inPicker = false;
    }
    return kept;
}

} // namespace picker_test_vectors
