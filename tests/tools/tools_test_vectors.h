#pragma once

#include "../core/picker_test_vectors.h"
#include "picker_file.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

// pkrtool run as a user runs it, on picker files spelled out field by field.
namespace tools_vectors {

using namespace picker_test_vectors;

// A short ASCII QString as the stream writes it: byte length, then UTF-16BE.
inline QByteArray utf16(const char* ascii) {
    QByteArray bytes = hex("00000000");
    bytes[3] = char(qstrlen(ascii) * 2);
    for (const char* c = ascii; *c; ++c)
        bytes.append('\0').append(*c);
    return bytes;
}

// Version 4, title "Rig", empty key: selection button "Body" at (5, 6) size 10 in 0xFFB22222
// with three names, then MEL command button "Hand" at (30, 6) holding the script.
inline QByteArray fileWithNames(const char* arm, const char* other, const char* leg,
                                const char* script) {
    return hex("00000004 00000006 005200690067 00000000 00000002"
               "00000000 00000005 00000006 0000000a 00000000 00000000 ffb22222 ff000000"
               "00000008 0042006f00640079 00000003") +
           utf16(arm) + utf16(other) + utf16(leg) +
           hex("00000001 0000001e 00000006 0000000a 00000001 00000000 ff505050 ffffffff"
               "00000008 00480061006e0064 00000001") +
           utf16(script);
}

struct run_result {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

// Runs pkrtool in dir with the blank-separated arguments.
inline run_result pkrtool(const QTemporaryDir& dir, const QString& line) {
    QProcess process;
    process.setWorkingDirectory(dir.path());
    // Without a runtime folder the GUI side of render would warn on stderr.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), dir.path());
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PKRTOOL_PATH), line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    run_result result;
    if (process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit)
        result = {process.exitCode(), process.readAllStandardOutput(),
                  process.readAllStandardError()};
    return result;
}

inline QByteArray readIn(const QTemporaryDir& dir, const char* name) {
    QFile file(dir.filePath(QString::fromUtf8(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void writeIn(const QTemporaryDir& dir, const char* name, const QByteArray& bytes) {
    QFile file(dir.filePath(QString::fromUtf8(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write a test file");
}

} // namespace tools_vectors
