#pragma once

#include <QByteArray>
#include <QCommandLineOption>
#include <QString>
#include <QStringList>

class QCommandLineParser;
class QIODevice;
struct picker_tab_record;

// The command-line plumbing every pkrtool command shares: usage, messages, parsing, and reading
// and writing files, where "-" is standard input or standard output.

enum pkrtool_exit : int { pkrtool_ok = 0, pkrtool_failed = 1, pkrtool_usage = 2 };

// A program argument as a file name: the bytes it was given are kept even when they are not
// UTF-8 (each such byte stands for itself), so that the file opens under its real name.
QString pkrtoolArgument(const char* local);
QByteArray pkrtoolFileName(const QString& argument);

// The program's usage, and one command's.
void writeUsage(QIODevice& device);
bool writeCommandUsage(QIODevice& device, const QString& command);

// One command being run: its name (for its usage), its streams, and what it reports.
class pkrtool_run {
public:
    pkrtool_run(const QString& command, QIODevice& out, QIODevice& err)
        : command_(command), out_(out), err_(err) {}

    const QString& command() const { return command_; }
    QIODevice& out() const { return out_; }
    QIODevice& err() const { return err_; }

    // "pkrtool: message"; returns the exit status of a failed command.
    int fail(const QString& message) const;
    // "pkrtool: warning: message"; the command goes on.
    void warn(const QString& message) const;
    // The message and where the command's usage is; returns the exit status of a usage mistake.
    int usage(const QString& message) const;
    // What the command tells when it is done: on standard output, or on standard error when the
    // output file is standard output.
    void report(const QString& text, bool outputIsStdout) const;

    // Parses the arguments (the command word first) against the options the caller added: one
    // input file, -o at most once, --help. False when the command ends here, with exitCode.
    bool parse(QCommandLineParser& parser, const QStringList& arguments, int& exitCode) const;
    // The usage mistake when output names input's own file; empty otherwise.
    QString sameFileMistake(const QString& input, const QString& output) const;
    // Where a rewriting command writes: -o, else standard output for standard input, else
    // nothing (the input file in place). False after a usage mistake, with exitCode.
    bool rewriteTarget(const QString& input, const QString& output, QString& target,
                       int& exitCode) const;

    // The whole of FILE, or of standard input for "-"; false after reporting why not.
    bool readInput(const QString& path, QByteArray& bytes) const;
    // Written aside and renamed into place only when whole; "-" is standard output.
    bool writeOutput(const QString& path, const QByteArray& bytes) const;
    // Refuses what the format reader refuses, and bytes after the picker, which a rewrite would
    // lose.
    bool readPicker(const QString& path, picker_tab_record& tab, qint32& version) const;

private:
    QString command_;
    QIODevice& out_;
    QIODevice& err_;
};

QCommandLineOption outputOption();
QCommandLineOption jsonOption();
void writeText(QIODevice& device, const QString& text);
// How a file argument is named in messages.
QString shownName(const QString& path);
