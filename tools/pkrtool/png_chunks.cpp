#include "png_chunks.h"

#include <QtEndian>

#include <algorithm>

namespace {

const char png_signature[] = "\x89PNG\r\n\x1a\n";
constexpr int png_signature_size = 8;
// Length, type and CRC around each chunk's data.
constexpr qint64 chunk_overhead = 12;

// Chunk types are four ASCII letters; anything else means the bytes are not a PNG stream.
bool isChunkType(const QByteArray& type) {
    return std::all_of(type.begin(), type.end(),
                       [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); });
}

quint32 bigEndianAt(const QByteArray& bytes, qint64 offset) {
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

} // namespace

png_layout inspectPng(const QByteArray& bytes) {
    png_layout layout;
    if (bytes.size() < png_signature_size ||
        !bytes.startsWith(QByteArray(png_signature, png_signature_size))) {
        layout.error = QStringLiteral("not PNG data");
        return layout;
    }
    qint64 offset = png_signature_size;
    while (offset + chunk_overhead <= bytes.size()) {
        const qint64 length = bigEndianAt(bytes, offset);
        const QByteArray type = bytes.mid(offset + 4, 4);
        if (!isChunkType(type)) {
            layout.error = QStringLiteral("a broken PNG chunk type");
            return layout;
        }
        if (offset + chunk_overhead + length > bytes.size())
            break;
        // Readers take any chunk order, so only a leading header gives the size.
        if (offset == png_signature_size && type == "IHDR" && length >= 8)
            layout.size = QSize(int(bigEndianAt(bytes, offset + 8) & 0x7fffffff),
                                int(bigEndianAt(bytes, offset + 12) & 0x7fffffff));
        offset += chunk_overhead + length;
        if (type == "IEND") {
            if (offset != bytes.size())
                layout.error = QStringLiteral("%1 bytes follow the end of the PNG data")
                                   .arg(bytes.size() - offset);
            return layout;
        }
    }
    layout.error = QStringLiteral("the PNG data is cut short");
    return layout;
}
