#pragma once

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QString>

// A tab's background key names its image's scene entry ("TalvoraPickerImage_" and the key), so
// two different images must never share one, in one process or across many.

// A key made from the image itself: the first 16 hex digits of the SHA-256 of its PNG file.
QString backgroundKeyOf(const QByteArray& png);
// The same for an image chosen by the user, as the PNG file the scene will store it as.
QString backgroundKeyOf(const QImage& image);

// Whether a key read from a file or a scene is kept as it is: ASCII letters, digits, '_', '-'
// and '.', of which no MEL can be made; any other key is replaced by backgroundKeyOf.
bool isPlainBackgroundKey(const QString& key);

// The key to store png under, given the images already stored by key: key itself when it is free
// or holds these same bytes (or png is empty: a key without an image shares what is stored),
// otherwise a fresh key made from the bytes.
QString freeBackgroundKey(const QString& key, const QByteArray& png,
                          const QHash<QString, QByteArray>& stored);
