#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

// What the chunk layout of PNG bytes says, without decoding the pixels.
struct png_layout {
    QSize size;    // from IHDR
    QString error; // empty when the bytes are one complete PNG stream and nothing more
    bool ok() const { return error.isEmpty(); }
};

png_layout inspectPng(const QByteArray& bytes);
