#pragma once

// Byte images of the picker's data layouts, written by hand field by field, for tests, fuzz
// seeds and benchmarks. Every integer is big-endian; strings are a byte length then UTF-16BE.
// Also the small helpers the suites share for strings, PNG files and fixture files.

#include "picker_types.h"

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
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

// An unlabelled button, black label colour; one name makes a square, more a circle.
inline buttonAttributes button(const QStringList& names, const QPoint& pos, int size = 20,
                               QRgb colour = 0xFFC81E1E,
                               qint32 type = buttonAttributes::Selection) {
    return {pos, size, type, 0, colour, 0xFF000000, QString(), names};
}

// One tab laid out field by field as format 4 has it: title, key and, under a key, the image
// marker and PNG file, then its buttons.
struct laid_tab {
    QString title;
    QString key;
    QByteArray png;
    button_att_list buttons;
};

inline void lay_tab_body(QDataStream& out, const laid_tab& tab) {
    out << tab.title << tab.key;
    if (!tab.key.isEmpty()) {
        out << qint32(tab.png.isEmpty() ? 0 : 1);
        out.writeRawData(tab.png.constData(), static_cast<int>(tab.png.size()));
    }
    out << qint32(tab.buttons.size());
    for (int b = 0; b < tab.buttons.size(); ++b) {
        const buttonAttributes& att = tab.buttons.at(b);
        out << qint32(b) << qint32(att.pos.x()) << qint32(att.pos.y()) << qint32(att.size)
            << qint32(att.type) << qint32(att.api) << quint32(att.color) << quint32(att.tcolor)
            << att.label << qint32(att.sel.size());
        for (const QString& name : att.sel)
            out << name;
    }
}

// A picker file of one tab.
inline QByteArray laid_file(const laid_tab& tab, qint32 version = 4) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << version;
    lay_tab_body(out, tab);
    return bytes;
}

// A tab stream, as the scene stores it.
inline QByteArray laid_tabs(const QList<laid_tab>& tabs, qint32 current = 0, qint32 version = 4) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << version << qint32(tabs.size()) << current;
    for (int t = 0; t < tabs.size(); ++t) {
        out << qint32(t);
        lay_tab_body(out, tabs.at(t));
    }
    return bytes;
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

// The buttons that selectionRecord() and commandRecord() describe.
inline buttonAttributes selectionButton() {
    return buttonAttributes{QPoint(10, -20), 12,         0,         0,
                            0xFFB22222,      0xFF000000, QString(), {"L_hand"_q, "L_arm"_q}};
}

inline buttonAttributes commandButton() {
    return buttonAttributes{QPoint(100, 50), 20,         1,      1,
                            0xFF2222B2,      0xFFFFFFFF, "Go"_q, {"print(1)"_q}};
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
    return {buttonAttributes{QPoint(5, 6), 8, 0, 0, 0xFF00FF00, 0x00FFFFFF, ""_q, {"a"_q}},
            buttonAttributes{QPoint(-5, 0), 4, 0, 0, 0xFF0000FF, 0x00FFFFFF, "b"_q, {"b"_q}}};
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
    return {buttonAttributes{QPoint(1, 2), 3, 1, 0, 0xFF123456, 0x00FFFFFF, QString(), {"x"_q}},
            buttonAttributes{QPoint(7, 8), 9, 0, 1, 0x80ABCDEF, 0x00FFFFFF, "y"_q, {"y"_q, "z"_q}}};
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

// tests/data/shot.ma, a shot as Maya 2024 writes it: a rig referenced with Maya's reference flags,
// requires with node types, units, fileInfo, DAG nodes under parents, a curve's multi-line value, a
// script node's escaped string, reference edits, select -ne, connections, a comment. Lines end with
// newline (Maya on Windows writes "\r\n").
inline QByteArray mayaShot(const char* newline = "\n") {
    return readBytes(QStringLiteral(PICKER_TEST_DATA "/shot.ma")).replace("\n", newline);
}

// tests/data/rigs/hero.ma, the rig mayaShot() references.
inline QByteArray mayaRig() {
    return readBytes(QStringLiteral(PICKER_TEST_DATA "/rigs/hero.ma"));
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
