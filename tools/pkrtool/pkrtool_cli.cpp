#include "pkrtool_cli.h"

#include "picker_file.h"
#include "pkrtool_commands.h"

#include <QCommandLineParser>
#include <QFile>
#include <QIODevice>

namespace {

const char usage_text[] =
    "Usage: pkrtool COMMAND ARGUMENTS\n"
    "\n"
    "Shows, dumps, builds and rebinds Talvora Picker files (.pkr), and reads and stores the\n"
    "pickers of Maya ASCII scenes (.ma).\n"
    "\n"
    "Commands:\n"
    "  info FILE.pkr                 the title, format version, background and buttons\n"
    "  dump FILE.pkr [-o FILE.json]  every field as JSON, to standard output without -o\n"
    "  build FILE.json -o FILE.pkr   a picker file from such JSON, in the current format\n"
    "  namespaces FILE.pkr           the namespaces the buttons use, one a line\n"
    "  rebind FILE.pkr --map OLD=NEW [--map OLD=NEW ...] [--allow-unused] [-o OUT.pkr]\n"
    "                                node names and scripts moved from namespace OLD to NEW\n"
    "                                (an empty NEW is the root namespace); the file itself\n"
    "                                is rewritten without -o; a namespace the picker does\n"
    "                                not use is an error unless --allow-unused\n"
    "  render FILE.pkr -o OUT.png [--size WxH] [--zoom Z | --frame] [--select NAME ...]\n"
    "                                a picture of the picker as the window draws it, framed\n"
    "                                in 1024 x 768 by default, the named nodes lit\n"
    "  scene SCENE.ma                the pickers the scene stores: tabs, titles, buttons\n"
    "  extract SCENE.ma -o DIR       each stored tab as a picker file in DIR, named after\n"
    "                                its title\n"
    "  store SCENE.ma --picker FILE.pkr [--picker FILE.pkr ...] [-o OUT.ma]\n"
    "                                the picker files stored in the scene as its tabs, as\n"
    "                                the window stores them; the scene itself is rewritten\n"
    "                                without -o\n"
    "  --help                        this text\n"
    "  --version                     the program's version\n";

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

} // namespace

void writeUsage(QIODevice& device) {
    device.write(usage_text);
}

void writeText(QIODevice& device, const QString& text) {
    device.write(text.toUtf8());
}

int fail(QIODevice& err, const QString& message) {
    writeText(err, QLatin1String("pkrtool: ") + message + QLatin1Char('\n'));
    return pkrtool_failed;
}

int usageError(QIODevice& err, const QString& message) {
    writeText(err, QLatin1String("pkrtool: ") + message + QLatin1Char('\n'));
    err.write(usage_text);
    return pkrtool_usage;
}

QCommandLineOption outputOption() {
    return QCommandLineOption({QStringLiteral("o"), QStringLiteral("output")}, QString(),
                              QStringLiteral("FILE"));
}

bool parseCommand(QCommandLineParser& parser, const QStringList& arguments, QIODevice& err) {
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    QString error;
    if (!parser.parse(arguments))
        error = parseError(parser, arguments);
    else if (parser.optionNames().count(QStringLiteral("o")) +
                 parser.optionNames().count(QStringLiteral("output")) >
             1)
        error = QStringLiteral("-o given more than once");
    else if (parser.positionalArguments().isEmpty())
        error = QStringLiteral("%1 needs a file name").arg(arguments.first());
    else if (parser.positionalArguments().size() > 1)
        error = QStringLiteral("unexpected argument '%1'").arg(parser.positionalArguments().at(1));
    if (error.isEmpty())
        return true;
    usageError(err, error);
    return false;
}

bool readPicker(const QString& path, picker_tab_record& tab, qint32& version, QIODevice& err) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(err, QStringLiteral("cannot open '%1': %2").arg(path, file.errorString()));
        return false;
    }
    const picker_read_result result = readPickerFile(file, tab);
    QString fault = result.error;
    if (fault.isEmpty() && file.pos() < file.size())
        fault = QStringLiteral("%1 bytes follow the last button").arg(file.size() - file.pos());
    if (!result.isPicker) {
        fail(err, QStringLiteral("'%1' is not a picker file").arg(path));
        return false;
    }
    version = result.version;
    // A newer layout is expected to read differently past the header: show what did read.
    if (version > picker_format_version) {
        writeText(err, QStringLiteral("pkrtool: warning: '%1' has format version %2, newer than "
                                      "this tool knows (%3); showing what it understands\n")
                           .arg(path)
                           .arg(version)
                           .arg(picker_format_version));
        return true;
    }
    if (!fault.isEmpty()) {
        fail(err, QStringLiteral("'%1' is a damaged picker file: %2").arg(path, fault));
        return false;
    }
    return true;
}

bool writeFile(const QString& path, const QByteArray& bytes, QIODevice& err) {
    QString cause;
    if (writeFileWhole(path, bytes, &cause))
        return true;
    fail(err, QStringLiteral("cannot write '%1': %2").arg(path, cause));
    return false;
}
