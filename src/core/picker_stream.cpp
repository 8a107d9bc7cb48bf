#include "picker_stream.h"

#include <QDataStream>
#include <QtEndian>

namespace {

// Big inputs are read this much at a time, so memory follows the bytes that really arrive.
constexpr int read_step = 64 * 1024;
// Beyond this a length field is taken as corrupt rather than as a real string or image.
constexpr quint64 max_blob_bytes = quint64(1) << 30;
constexpr quint32 null_string_length = 0xFFFFFFFF;
constexpr quint32 max_png_chunk_length = 0x7FFFFFFF;

bool readable(const QDataStream& stream) {
    return stream.status() == QDataStream::Ok;
}

void markCorrupt(QDataStream& stream, stream_fault* fault, const QString& reason) {
    if (fault && readable(stream)) {
        fault->reason = reason;
    }
    stream.setStatus(QDataStream::ReadCorruptData);
}

bool appendRaw(QDataStream& stream, QByteArray& into, quint64 count) {
    while (count > 0) {
        const int chunk = static_cast<int>(qMin<quint64>(count, read_step));
        const int at = static_cast<int>(into.size());
        into.resize(at + chunk);
        const auto got = stream.readRawData(into.data() + at, chunk);
        if (got != chunk) {
            into.resize(at + (got > 0 ? static_cast<int>(got) : 0));
            stream.setStatus(QDataStream::ReadPastEnd);
            return false;
        }
        count -= static_cast<quint64>(chunk);
    }
    return true;
}

bool isChunkType(const char* type) {
    for (int i = 0; i < 4; ++i) {
        const char c = type[i];
        if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'))) {
            return false;
        }
    }
    return true;
}

// Walks the chunk structure up to and including IEND, so exactly the PNG's bytes are consumed
// and kept; the pixels are not decoded here.
QByteArray readPng(QDataStream& stream, stream_fault* fault) {
    static const char signature[] = "\x89PNG\r\n\x1a\n";
    QByteArray png;
    if (!appendRaw(stream, png, 8)) {
        return {};
    }
    if (png != QByteArray::fromRawData(signature, 8)) {
        markCorrupt(stream, fault, QStringLiteral("an image that is not a PNG file"));
        return {};
    }
    for (;;) {
        const int head = static_cast<int>(png.size());
        if (!appendRaw(stream, png, 8)) {
            return {};
        }
        const quint32 length = qFromBigEndian<quint32>(png.constData() + head);
        const char* type = png.constData() + head + 4;
        if (length > max_png_chunk_length) {
            markCorrupt(stream, fault,
                        QStringLiteral("PNG chunk length %1 out of range").arg(length));
            return {};
        }
        if (!isChunkType(type)) {
            markCorrupt(stream, fault, QStringLiteral("a broken PNG chunk type"));
            return {};
        }
        const bool last = qstrncmp(type, "IEND", 4) == 0;
        if (quint64(png.size()) + length + 4 > max_blob_bytes) {
            markCorrupt(stream, fault, QStringLiteral("an image too large to read"));
            return {};
        }
        if (!appendRaw(stream, png, quint64(length) + 4)) {
            return {};
        }
        if (last) {
            return png;
        }
    }
}

bool readButtonRecord(QDataStream& stream, int version, qint32 index, buttonAttributes& att,
                      stream_fault* fault) {
    qint32 readIndex = 0;
    qint32 x = 0;
    qint32 y = 0;
    stream >> readIndex >> x >> y >> att.size;
    att.pos = QPoint(x, y);
    bool valid = readIndex == index;
    if (version > 1) {
        stream >> att.type >> att.api;
        const auto binary = [](qint32 value) { return value == 0 || value == 1; };
        valid = valid && binary(att.type) && binary(att.api);
    } else {
        att.type = buttonAttributes::Selection;
        att.api = buttonAttributes::Mel;
    }
    quint32 color = 0;
    stream >> color;
    att.color = color;
    if (version > 3) {
        quint32 tcolor = 0;
        stream >> tcolor;
        att.tcolor = tcolor;
    } else {
        att.tcolor = 0x00FFFFFF;
    }
    att.label = readString(stream, fault);
    qint32 nameCount = 0;
    stream >> nameCount;
    att.sel.clear();
    if (nameCount > 0) {
        for (qint32 i = 0; i < nameCount && readable(stream); ++i) {
            att.sel.append(readString(stream, fault));
        }
    } else {
        valid = false;
    }
    return valid;
}

// Writers lay the bytes out through a cursor into space made once, not a resize per field: the
// scene is rewritten whole after every edit.
char* grow(QByteArray& bytes, qsizetype count) {
    const qsizetype at = bytes.size();
    bytes.resize(at + count);
    return bytes.data() + at;
}

qsizetype stringBytes(const QString& text) {
    return 4 + (text.isNull() ? 0 : 2 * qsizetype(text.size()));
}

void putBigEndian(char*& out, qint32 value) {
    qToBigEndian<qint32>(value, out);
    out += 4;
}

void putString(char*& out, const QString& text) {
    if (text.isNull()) {
        putBigEndian(out, qint32(null_string_length));
        return;
    }
    putBigEndian(out, qint32(text.size() * 2));
    const QChar* units = text.constData();
    for (qsizetype i = 0, n = text.size(); i < n; ++i) {
        const ushort unit = units[i].unicode();
        out[2 * i] = static_cast<char>(unit >> 8);
        out[2 * i + 1] = static_cast<char>(unit & 0xff);
    }
    out += 2 * text.size();
}

void appendString(QByteArray& bytes, const QString& text) {
    char* out = grow(bytes, stringBytes(text));
    putString(out, text);
}

} // namespace

void writeString(QDataStream& stream, const QString& text) {
    QByteArray bytes;
    appendString(bytes, text);
    stream.writeRawData(bytes.constData(), static_cast<int>(bytes.size()));
}

QString readString(QDataStream& stream, stream_fault* fault) {
    quint32 length = 0;
    if (readable(stream)) {
        stream >> length;
    }
    if (!readable(stream) || length == null_string_length) {
        return {};
    }
    if (length % 2 != 0) {
        markCorrupt(stream, fault, QStringLiteral("an odd string length %1").arg(length));
        return {};
    }
    if (length > max_blob_bytes) {
        markCorrupt(stream, fault, QStringLiteral("a string length %1 too large").arg(length));
        return {};
    }
    QByteArray bytes;
    if (!appendRaw(stream, bytes, length)) {
        return {};
    }
    const int units = static_cast<int>(length / 2);
    QString text(units, Qt::Uninitialized);
    QChar* out = text.data();
    for (int i = 0; i < units; ++i) {
        out[i] = QChar(qFromBigEndian<quint16>(bytes.constData() + 2 * i));
    }
    return text;
}

void writeImage(QDataStream& stream, const QByteArray& png) {
    stream << qint32(png.isEmpty() ? 0 : 1);
    if (!png.isEmpty()) {
        stream.writeRawData(png.constData(), static_cast<int>(png.size()));
    }
}

QByteArray readImage(QDataStream& stream, stream_fault* fault) {
    qint32 marker = 0;
    if (readable(stream)) {
        stream >> marker;
    }
    if (!readable(stream) || marker == 0) {
        return {};
    }
    if (marker != 1) {
        markCorrupt(stream, fault, QStringLiteral("unknown image marker %1").arg(marker));
        return {};
    }
    return readPng(stream, fault);
}

void appendButtonRecord(QByteArray& bytes, qint32 index, const buttonAttributes& att) {
    qsizetype size = 8 * 4 + stringBytes(att.label) + 4;
    for (const QString& name : att.sel) {
        size += stringBytes(name);
    }
    char* out = grow(bytes, size);
    for (const qint32 field : {index, qint32(att.pos.x()), qint32(att.pos.y()), att.size, att.type,
                               att.api, qint32(att.color), qint32(att.tcolor)}) {
        putBigEndian(out, field);
    }
    putString(out, att.label);
    putBigEndian(out, qint32(att.sel.size()));
    for (const QString& name : att.sel) {
        putString(out, name);
    }
}

void appendStreamString(QByteArray& bytes, const QString& text) {
    appendString(bytes, text);
}

void appendStreamInt(QByteArray& bytes, qint32 value) {
    char* out = grow(bytes, 4);
    putBigEndian(out, value);
}

void writeButtonRecords(QDataStream& stream, const button_att_list& buttons) {
    // Laid out in memory and handed over in one write: the scene is rewritten whole after every
    // edit, and a stream call per field cost more than the compression that follows.
    QByteArray bytes;
    qint32 index = 0;
    for (const buttonAttributes& att : buttons) {
        appendButtonRecord(bytes, index++, att);
    }
    stream.writeRawData(bytes.constData(), static_cast<int>(bytes.size()));
}

button_att_list readButtonRecords(QDataStream& stream, int version, qint32 count,
                                  stream_fault* fault) {
    button_att_list buttons;
    buttonAttributes att;
    for (qint32 i = 0; i < count && readable(stream); ++i) {
        const bool valid = readButtonRecord(stream, version, i, att, fault);
        if (!readable(stream)) {
            if (fault) {
                fault->button = i;
            }
            break;
        }
        if (valid) {
            buttons.append(att);
        }
    }
    return buttons;
}
