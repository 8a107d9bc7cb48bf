#pragma once

#include "picker_types.h"

#include <QByteArray>
#include <QString>

class QDataStream;

// Why a read stopped. The stream's status says whether it stopped; a plain end of data leaves
// the reason empty.
struct stream_fault {
    qint32 button = -1; // index of the record being read, -1 outside the records
    QString reason;
};

// Qt's QString encoding, null and empty kept apart. Reading consumes the data in bounded steps,
// so a corrupt length costs no more memory than the bytes actually present.
void writeString(QDataStream& stream, const QString& text);
QString readString(QDataStream& stream, stream_fault* fault = nullptr);

// An image as QDataStream encodes it from stream version 5 on: a marker (0 none, 1 present)
// then a PNG file. The PNG is kept as raw bytes; an empty array is no image.
void writeImage(QDataStream& stream, const QByteArray& png);
QByteArray readImage(QDataStream& stream, stream_fault* fault = nullptr);

// The same layouts appended to bytes in memory, for writers that build a stream in pieces.
void appendStreamInt(QByteArray& bytes, qint32 value);
void appendStreamString(QByteArray& bytes, const QString& text);
void appendButtonRecord(QByteArray& bytes, qint32 index, const buttonAttributes& att);

// The per-button records alone, written in the newest layout with indices from 0.
void writeButtonRecords(QDataStream& stream, const button_att_list& buttons);
// Reads up to count records laid out for the given format version, dropping invalid ones.
// Stops at the first stream fault, recording which record it was in.
button_att_list readButtonRecords(QDataStream& stream, int version, qint32 count,
                                  stream_fault* fault = nullptr);
