#pragma once

#include <QByteArray>
#include <QtEndian>

// Picker files spelled out field by field, independent of the stream code under test.
namespace tools_vectors {

inline QByteArray be32(qint64 value) {
    char bytes[4];
    qToBigEndian<quint32>(quint32(value), bytes);
    return QByteArray(bytes, 4);
}

// A QString of ASCII text: byte length, then UTF-16 big-endian.
inline QByteArray text(const char* ascii) {
    const QByteArray latin = QByteArray(ascii);
    QByteArray bytes = be32(latin.size() * 2);
    for (char c : latin)
        bytes.append('\0').append(c);
    return bytes;
}

inline QByteArray nullText() {
    return be32(0xffffffff);
}

// 2 x 1 RGB PNG.
inline QByteArray tinyPng() {
    return QByteArray::fromHex("89504e470d0a1a0a0000000d49484452000000020000000108020000007b40e8dd"
                               "0000000d4944415478da63f8cf0004ff01070001ff3d7d8c4900000000"
                               "49454e44ae426082");
}

// Version 4, empty key, a selection button with a non-ASCII label and a Python command button
// with a null label.
inline QByteArray fileWithoutImage() {
    return be32(4) + text("Arm") + text("") +
           be32(2)
           // button 0
           + be32(0) + be32(10) + be32(-20) + be32(12) + be32(0) + be32(0) + be32(0xffb22222) +
           be32(0xff000000) + QByteArray::fromHex("00000004004c00e4") + be32(2) +
           text("hero:L_arm") +
           text("hero:L_hand")
           // button 1
           + be32(1) + be32(300) + be32(40) + be32(20) + be32(1) + be32(1) + be32(0x80112233) +
           be32(0x00ffffff) + nullText() + be32(1) + text("print('hi')\n");
}

// Version 4, null title, keyed image, one MEL command button with an empty label.
inline QByteArray fileWithImage() {
    return be32(4) + nullText() + text("bg") + be32(1) + tinyPng() +
           be32(1)
           // button 0
           + be32(0) + be32(1) + be32(1) + be32(8) + be32(1) + be32(0) + be32(0xff00ff00) +
           be32(0xffffffff) + text("") + be32(1) + text("select -cl;");
}

// Version 4, an image whose chunks do not start with IHDR (readers take it), no buttons.
inline QByteArray fileWithHeaderlessPng() {
    const QByteArray png = tinyPng();
    return be32(4) + text("Odd") + text("bg") + be32(1) + png.left(8) + png.mid(33) + be32(0);
}

// Version 4, a key but no image, no buttons.
inline QByteArray fileWithKeyOnly() {
    return be32(4) + text("Empty") + text("k") + be32(0) + be32(0);
}

// Version 3: no label colour in the records.
inline QByteArray fileVersion3() {
    return be32(3) + text("Old") + nullText() + be32(1) + be32(0) + be32(5) + be32(6) + be32(7) +
           be32(0) + be32(0) + be32(0xff0000ff) + text("x") + be32(1) + text("n1");
}

// Version 4, no background: a selection button with three node names and a MEL command button.
inline QByteArray fileWithNames(const char* arm, const char* other, const char* leg,
                                const char* script) {
    return be32(4) + text("Rig") + text("") +
           be32(2)
           // button 0
           + be32(0) + be32(5) + be32(6) + be32(10) + be32(0) + be32(0) + be32(0xffb22222) +
           be32(0xff000000) + text("Body") + be32(3) + text(arm) + text(other) +
           text(leg)
           // button 1
           + be32(1) + be32(30) + be32(6) + be32(10) + be32(1) + be32(0) + be32(0xff505050) +
           be32(0xffffffff) + text("Hand") + be32(1) + text(script);
}

} // namespace tools_vectors
