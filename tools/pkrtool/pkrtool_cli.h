#pragma once

#include <QCommandLineOption>
#include <QString>
#include <QStringList>

class QCommandLineParser;
class QIODevice;
struct picker_tab_record;

// The command-line plumbing every pkrtool command shares: messages, parsing, reading and writing.

void writeUsage(QIODevice& device);
void writeText(QIODevice& device, const QString& text);
// "pkrtool: message"; returns the exit status of a failed command.
int fail(QIODevice& err, const QString& message);
// The message and the usage text; returns the exit status of a usage mistake.
int usageError(QIODevice& err, const QString& message);
QCommandLineOption outputOption();

// Parses a command's arguments (the command word first) against the options the caller added:
// one input file, -o at most once. A mistake is reported with the usage text.
bool parseCommand(QCommandLineParser& parser, const QStringList& arguments, QIODevice& err);
// Refuses what the format reader refuses, and bytes after the picker, which a rewrite would lose.
bool readPicker(const QString& path, picker_tab_record& tab, qint32& version, QIODevice& err);
// Written aside and renamed into place only when whole.
bool writeFile(const QString& path, const QByteArray& bytes, QIODevice& err);
