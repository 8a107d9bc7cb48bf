#include "pkrtool_cli.h"

#include "picker_file.h"
#include "picker_maya_ascii.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct command_usage {
    const char* name;
    const char* synopsis;
    const char* text;
};

const command_usage commands[] = {
    {"info", "info FILE.pkr [--json]",
     "The title, format version, background and buttons, one button a line; with --json one\n"
     "JSON object with the fields of a picker description, the background as its size.\n"},
    {"dump", "dump FILE.pkr [-o FILE.json]",
     "Every field as JSON (the picker description: docs/picker-json.md), the background as\n"
     "base64 of its PNG file; to standard output without -o.\n"},
    {"build", "build FILE.json -o FILE.pkr",
     "A picker file in the current format from a picker description; fields left out take\n"
     "their defaults.\n"},
    {"namespaces", "namespaces FILE.pkr [--json]",
     "The namespaces the buttons use, one a line (with --json a JSON array), as the picker's\n"
     "Change Namespace dialog lists them.\n"},
    {"rebind", "rebind FILE.pkr --map OLD=NEW [--map OLD=NEW ...] [--allow-unused] [-o OUT.pkr]",
     "Node names and scripts moved from namespace OLD to NEW (an empty NEW is the root\n"
     "namespace). Without -o the file is rewritten in place, and only when something changed.\n"
     "A namespace the picker does not use is an error unless --allow-unused.\n"},
    {"mirror",
     "mirror FILE.pkr [--rule A=B ...] [--axis X] [--swap-color #RRGGBB=#RRGGBB ...] "
     "[-o OUT.pkr]",
     "For every selection button whose names a side rule changes, a copy with the other\n"
     "side's names, placed at 2 * axis - x and appended in file order; a copy whose names a\n"
     "button holds already is left out. Rules are prefixes (L_*=R_*), suffixes (*_L=*_R) or\n"
     "infixes (*Left*=*Right*); --rule replaces the default list. The axis is --axis (a whole\n"
     "number or a half), else half the background's width, else the middle of the buttons.\n"
     "--swap-color swaps two colours both ways (alpha kept). Without -o the file is\n"
     "rewritten in place, and only when a copy was added.\n"},
    {"render",
     "render FILE.pkr -o OUT.png [--size WxH] [--scale F] [--zoom Z | --frame | "
     "--frame-selection] [--select NAME ...]",
     "A picture of the picker as the window draws it, 1024 x 768 unless --size says otherwise,\n"
     "framed on all buttons as Frame View frames them (--frame), at a zoom (--zoom), or on the\n"
     "buttons --select lights (--frame-selection). Each NAME after --select is lit; names no\n"
     "button holds are reported. --scale F draws it as a screen of that device pixel ratio\n"
     "shows it (2 for most 4K monitors): F times as many pixels each way, labels and\n"
     "background at that resolution.\n"},
    {"scene", "scene SCENE.ma [--json]",
     "The pickers a Maya ASCII scene stores: its tabs, their titles and buttons; with --json\n"
     "one JSON object.\n"},
    {"extract", "extract SCENE.ma -o DIR",
     "Each tab the scene stores as a picker file in DIR, named after its title (shortened to\n"
     "what a file name may hold, and kept apart); all of them, or none when one cannot be\n"
     "written.\n"},
    {"store", "store SCENE.ma --picker FILE.pkr [--picker FILE.pkr ...] [-o OUT.ma]",
     "The picker files stored in the scene as its tabs, as the window stores them, replacing\n"
     "the pickers it had. Only the picker's own fileInfo statements change; every other byte\n"
     "of the scene stays as it was. Without -o the scene is rewritten in place.\n"},
};

const char files_note[] = "A FILE of - is standard input, and -o - is standard output.\n";

const command_usage* findCommand(const QString& name) {
    for (const command_usage& command : commands) {
        if (name == QLatin1String(command.name))
            return &command;
    }
    return nullptr;
}

QString errnoText() {
    return QString::fromLocal8Bit(std::strerror(errno));
}

// The argument as the user spelled it, for the first option the parser did not know.
QString unknownOption(const QStringList& arguments, const QStringList& unknown) {
    for (const QString& argument : arguments) {
        if (argument == QLatin1String("--"))
            break;
        if (argument.size() < 2 || !argument.startsWith(QLatin1Char('-')))
            continue;
        const int dashes = argument.startsWith(QLatin1String("--")) ? 2 : 1;
        if (unknown.contains(argument.mid(dashes).section(QLatin1Char('='), 0, 0)))
            return argument;
    }
    return QLatin1Char('-') + unknown.first();
}

QString parseError(const QCommandLineParser& parser, const QStringList& arguments) {
    if (!parser.unknownOptionNames().isEmpty())
        return QStringLiteral("unexpected argument '%1'")
            .arg(unknownOption(arguments, parser.unknownOptionNames()));
    // Otherwise a value is missing, which can only happen to the last argument.
    const QString last = arguments.last();
    const QString name = last.mid(last.startsWith(QLatin1String("--")) ? 2 : 1);
    if (name == QLatin1String("map"))
        return QStringLiteral("%1 needs OLD=NEW").arg(last);
    if (name == QLatin1String("o") || name == QLatin1String("output"))
        return QStringLiteral("%1 needs a file name").arg(last);
    // Anything else in the parser's words, in the style of the other messages.
    QString text = parser.errorText();
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text.left(1).toLower() + text.mid(1);
}

// Everything a file holds, up to what a scene may hold.
bool readAll(QFile& file, QByteArray& bytes, QString& error) {
    constexpr qint64 chunk = 1 << 16;
    bytes.clear();
    for (;;) {
        const QByteArray piece = file.read(chunk);
        if (piece.isEmpty()) {
            if (file.error() != QFileDevice::NoError) {
                error = file.errorString();
                return false;
            }
            return true;
        }
        bytes += piece;
        if (bytes.size() > picker_ma_limit::scene_bytes) {
            error = QStringLiteral("larger than %1 bytes").arg(picker_ma_limit::scene_bytes);
            return false;
        }
    }
}

// The bytes written under a temporary name beside name, then renamed over it.
bool writeRawWhole(const QByteArray& name, const QByteArray& bytes, QString& error) {
    QByteArray temporary = name + QByteArrayLiteral(".XXXXXX");
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0) {
        error = errnoText();
        return false;
    }
    struct stat existing {};
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(fd,
             ::stat(name.constData(), &existing) == 0 ? existing.st_mode & 07777 : 0666 & ~mask);
    qint64 done = 0;
    while (done < bytes.size()) {
        const ssize_t wrote =
            ::write(fd, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (wrote < 0 && errno == EINTR)
            continue;
        if (wrote <= 0)
            break;
        done += wrote;
    }
    const bool whole = done == bytes.size() && ::fsync(fd) == 0;
    error = whole ? QString() : errnoText();
    ::close(fd);
    if (whole && ::rename(temporary.constData(), name.constData()) == 0)
        return true;
    if (error.isEmpty())
        error = errnoText();
    ::unlink(temporary.constData());
    return false;
}

} // namespace

QString pkrtoolArgument(const char* local) {
    const QByteArray bytes(local);
    const QString decoded = QString::fromUtf8(bytes);
    if (decoded.toUtf8() == bytes)
        return decoded;
    QString argument;
    for (int i = 0; i < bytes.size();) {
        const auto lead = static_cast<uchar>(bytes.at(i));
        const int length = lead < 0x80             ? 1
                           : (lead & 0xe0) == 0xc0 ? 2
                           : (lead & 0xf0) == 0xe0 ? 3
                           : (lead & 0xf8) == 0xf0 ? 4
                                                   : 0;
        const QByteArray sequence = bytes.mid(i, length);
        const QString character = QString::fromUtf8(sequence);
        if (length > 0 && sequence.size() == length && character.toUtf8() == sequence) {
            argument += character;
            i += length;
        } else {
            // A lone low surrogate, which no UTF-8 decodes to, stands for the byte.
            argument += QChar(static_cast<ushort>(0xdc00 + lead));
            ++i;
        }
    }
    return argument;
}

QByteArray pkrtoolFileName(const QString& argument) {
    QByteArray name;
    QString run;
    for (int i = 0; i < argument.size(); ++i) {
        const ushort unit = argument.at(i).unicode();
        if (unit >= 0xdc80 && unit <= 0xdcff && (i == 0 || !argument.at(i - 1).isHighSurrogate())) {
            name += run.toUtf8();
            run.clear();
            name += static_cast<char>(unit - 0xdc00);
        } else {
            run += argument.at(i);
        }
    }
    return name + run.toUtf8();
}

void writeText(QIODevice& device, const QString& text) {
    device.write(text.toUtf8());
}

QString shownName(const QString& path) {
    return path == QLatin1String("-") ? QStringLiteral("standard input") : path;
}

void writeUsage(QIODevice& device) {
    QString text = QStringLiteral(
        "Usage: pkrtool COMMAND ARGUMENTS\n"
        "\n"
        "Shows, dumps, builds and rebinds Talvora Picker files (.pkr), and reads and stores the\n"
        "pickers of Maya ASCII scenes (.ma).\n"
        "\n"
        "Commands:\n");
    for (const command_usage& command : commands)
        text += QLatin1String("  ") + QLatin1String(command.synopsis) + QLatin1Char('\n');
    text += QLatin1Char('\n') + QLatin1String(files_note) +
            QStringLiteral("pkrtool COMMAND --help tells what a command does; pkrtool --version "
                           "gives the version.\n");
    writeText(device, text);
}

bool writeCommandUsage(QIODevice& device, const QString& name) {
    const command_usage* command = findCommand(name);
    if (command == nullptr)
        return false;
    writeText(device, QStringLiteral("Usage: pkrtool %1\n\n%2\n%3")
                          .arg(QLatin1String(command->synopsis), QLatin1String(command->text),
                               QLatin1String(files_note)));
    return true;
}

int pkrtool_run::fail(const QString& message) const {
    writeText(err_, QLatin1String("pkrtool: ") + message + QLatin1Char('\n'));
    return pkrtool_failed;
}

void pkrtool_run::warn(const QString& message) const {
    writeText(err_, QLatin1String("pkrtool: warning: ") + message + QLatin1Char('\n'));
}

int pkrtool_run::usage(const QString& message) const {
    const QString help = findCommand(command_) ? QStringLiteral("pkrtool %1 --help").arg(command_)
                                               : QStringLiteral("pkrtool --help");
    writeText(err_, QStringLiteral("pkrtool: %1\nsee %2\n").arg(message, help));
    return pkrtool_usage;
}

void pkrtool_run::report(const QString& text, bool outputIsStdout) const {
    writeText(outputIsStdout ? err_ : out_, text);
}

QCommandLineOption outputOption() {
    return QCommandLineOption({QStringLiteral("o"), QStringLiteral("output")}, QString(),
                              QStringLiteral("FILE"));
}

QCommandLineOption jsonOption() {
    return QCommandLineOption(QStringLiteral("json"));
}

bool pkrtool_run::parse(QCommandLineParser& parser, const QStringList& arguments,
                        int& exitCode) const {
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    parser.addOption(help);
    QString error;
    if (!parser.parse(arguments)) {
        error = parseError(parser, arguments);
    } else if (parser.isSet(help)) {
        writeCommandUsage(out_, command_);
        exitCode = pkrtool_ok;
        return false;
    } else if (parser.optionNames().count(QStringLiteral("o")) +
                   parser.optionNames().count(QStringLiteral("output")) >
               1) {
        error = QStringLiteral("-o given more than once");
    } else if (parser.positionalArguments().isEmpty()) {
        error = QStringLiteral("%1 needs a file name").arg(command_);
    } else if (parser.positionalArguments().size() > 1) {
        error = QStringLiteral("unexpected argument '%1'").arg(parser.positionalArguments().at(1));
    }
    if (error.isEmpty())
        return true;
    exitCode = usage(error);
    return false;
}

bool pkrtool_run::rewriteTarget(const QString& input, const QString& output, QString& target,
                                int& exitCode) const {
    // Standard input cannot be rewritten in place: the result goes where a filter's goes.
    target = !output.isEmpty() ? output : input == QLatin1String("-") ? input : QString();
    const QString same = target.isEmpty() ? QString() : sameFileMistake(input, target);
    if (!same.isEmpty())
        exitCode = usage(same);
    return same.isEmpty();
}

QString pkrtool_run::sameFileMistake(const QString& input, const QString& output) const {
    if (input == QLatin1String("-") || output == QLatin1String("-"))
        return QString();
    struct stat in {};
    struct stat to {};
    const bool same = (::stat(pkrtoolFileName(input).constData(), &in) == 0 &&
                       ::stat(pkrtoolFileName(output).constData(), &to) == 0 &&
                       in.st_dev == to.st_dev && in.st_ino == to.st_ino) ||
                      QFileInfo(input).absoluteFilePath() == QFileInfo(output).absoluteFilePath();
    if (!same)
        return QString();
    if (command_ == QLatin1String("rebind") || command_ == QLatin1String("store") ||
        command_ == QLatin1String("mirror"))
        return QStringLiteral("-o names the input file '%1'; without -o it is rewritten in "
                              "place")
            .arg(input);
    return QStringLiteral("-o names the input file '%1', which %2 would overwrite with its "
                          "output")
        .arg(input, command_);
}

bool pkrtool_run::readInput(const QString& path, QByteArray& bytes) const {
    QFile file;
    QString error;
    if (path == QLatin1String("-")) {
        file.open(stdin, QIODevice::ReadOnly);
    } else {
        const QByteArray name = pkrtoolFileName(path);
        int fd = -1;
        do {
            fd = ::open(name.constData(), O_RDONLY | O_CLOEXEC);
        } while (fd < 0 && errno == EINTR);
        if (fd < 0 || !file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
            fail(QStringLiteral("cannot open '%1': %2").arg(path, errnoText()));
            return false;
        }
    }
    if (readAll(file, bytes, error))
        return true;
    fail(QStringLiteral("cannot read %1: %2").arg(shownName(path), error));
    return false;
}

bool pkrtool_run::writeOutput(const QString& path, const QByteArray& bytes) const {
    QString cause;
    if (path == QLatin1String("-")) {
        if (out_.write(bytes) == bytes.size())
            return true;
        cause = out_.errorString();
    } else {
        const QByteArray name = pkrtoolFileName(path);
        if (name == QFile::encodeName(path) ? writeFileWhole(path, bytes, &cause)
                                            : writeRawWhole(name, bytes, cause))
            return true;
    }
    fail(QStringLiteral("cannot write '%1': %2").arg(path, cause));
    return false;
}

bool pkrtool_run::readPicker(const QString& path, picker_tab_record& tab, qint32& version) const {
    QByteArray bytes;
    if (!readInput(path, bytes))
        return false;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const picker_read_result result = readPickerFile(buffer, tab);
    QString fault = result.error;
    if (fault.isEmpty() && buffer.pos() < buffer.size())
        fault = QStringLiteral("%1 bytes follow the last button").arg(buffer.size() - buffer.pos());
    const QString shown = shownName(path);
    if (!result.isPicker) {
        fail(QStringLiteral("'%1' is not a picker file").arg(shown));
        return false;
    }
    version = result.version;
    // A newer layout is expected to read differently past the header: show what did read.
    if (version > picker_format_version) {
        warn(QStringLiteral("'%1' has format version %2, newer than this tool knows (%3); "
                            "showing what it understands")
                 .arg(shown)
                 .arg(version)
                 .arg(picker_format_version));
        return true;
    }
    if (!fault.isEmpty()) {
        fail(QStringLiteral("'%1' is a damaged picker file: %2").arg(shown, fault));
        return false;
    }
    return true;
}
