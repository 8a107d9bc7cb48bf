#include "pkrtool_commands.h"

#include "picker_file.h"
#include "picker_json.h"
#include "picker_version.h"
#include "png_chunks.h"

#include <QFile>
#include <QIODevice>
#include <QSaveFile>

namespace {

const char usage_text[] =
    "Usage: pkrtool COMMAND ARGUMENTS\n"
    "\n"
    "Shows, dumps and builds Talvora Picker files (.pkr).\n"
    "\n"
    "Commands:\n"
    "  info FILE.pkr                 the title, format version, background and buttons\n"
    "  dump FILE.pkr [-o FILE.json]  every field as JSON, to standard output without -o\n"
    "  build FILE.json -o FILE.pkr   a picker file from such JSON, in the current format\n"
    "  --help                        this text\n"
    "  --version                     the program's version\n";

// One command line taken apart.
struct pkrtool_arguments {
    QString command;
    QString input;
    QString output;
    QString error;
};

pkrtool_arguments parseArguments(const QStringList& arguments) {
    pkrtool_arguments parsed;
    if (arguments.isEmpty()) {
        parsed.error = QStringLiteral("no command given");
        return parsed;
    }
    parsed.command = arguments.first();
    const bool takesOutput =
        parsed.command == QLatin1String("dump") || parsed.command == QLatin1String("build");
    const bool takesInput = takesOutput || parsed.command == QLatin1String("info");
    if (!takesInput) {
        if (arguments.size() > 1 || (parsed.command != QLatin1String("--help") &&
                                     parsed.command != QLatin1String("--version")))
            parsed.error = QStringLiteral("unknown command '%1'").arg(parsed.command);
        return parsed;
    }
    for (int i = 1; i < arguments.size() && parsed.error.isEmpty(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == QLatin1String("-o") && takesOutput && parsed.output.isEmpty()) {
            if (i + 1 == arguments.size())
                parsed.error = QStringLiteral("-o needs a file name");
            else
                parsed.output = arguments.at(++i);
        } else if (parsed.input.isEmpty() && !argument.startsWith(QLatin1Char('-'))) {
            parsed.input = argument;
        } else {
            parsed.error = QStringLiteral("unexpected argument '%1'").arg(argument);
        }
    }
    if (parsed.error.isEmpty() && parsed.input.isEmpty())
        parsed.error = QStringLiteral("%1 needs a file name").arg(parsed.command);
    else if (parsed.error.isEmpty() && parsed.command == QLatin1String("build") &&
             parsed.output.isEmpty())
        parsed.error = QStringLiteral("build needs -o FILE.pkr");
    return parsed;
}

void writeText(QIODevice& device, const QString& text) {
    device.write(text.toUtf8());
}

int fail(QIODevice& err, const QString& message) {
    writeText(err, QLatin1String("pkrtool: ") + message + QLatin1Char('\n'));
    return pkrtool_failed;
}

// A string on one line: null stays distinguishable from empty.
QString quoted(const QString& text) {
    if (text.isNull())
        return QStringLiteral("null");
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('"'), QLatin1String("\\\""))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .replace(QLatin1Char('\r'), QLatin1String("\\r"))
        .replace(QLatin1Char('\t'), QLatin1String("\\t"));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

// Refuses what the format reader refuses, and bytes after the picker, which a rewrite would lose.
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
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        fail(err, QStringLiteral("cannot write '%1': %2").arg(path, file.errorString()));
        return false;
    }
    return true;
}

QString backgroundLine(const picker_tab_record& tab) {
    if (tab.backgroundKey.isEmpty())
        return QStringLiteral("background: none\n");
    if (tab.backgroundPng.isEmpty())
        return QStringLiteral("background: %1, no image\n").arg(quoted(tab.backgroundKey));
    const png_layout png = inspectPng(tab.backgroundPng);
    const QString size =
        png.size.isValid() ? QStringLiteral("%1 x %2").arg(png.size.width()).arg(png.size.height())
                           : QStringLiteral("unknown size");
    return QStringLiteral("background: %1, %2 PNG, %3 bytes\n")
        .arg(quoted(tab.backgroundKey), size)
        .arg(tab.backgroundPng.size());
}

QString buttonLine(int index, const buttonAttributes& button) {
    const bool command = button.type == buttonAttributes::Command;
    const QString kind =
        command ? (button.api == buttonAttributes::Python ? QStringLiteral("python command")
                                                          : QStringLiteral("mel command"))
                : QStringLiteral("selection");
    QStringList names;
    for (const QString& name : button.sel)
        names.append(command ? quoted(name) : name);
    return QStringLiteral("%1  %2 at (%3, %4) size %5 label %6: %7\n")
        .arg(index)
        .arg(kind)
        .arg(button.pos.x())
        .arg(button.pos.y())
        .arg(button.size)
        .arg(quoted(button.label), names.join(QLatin1Char(' ')));
}

int runInfo(const pkrtool_arguments& arguments, QIODevice& out, QIODevice& err) {
    picker_tab_record tab;
    qint32 version = 0;
    if (!readPicker(arguments.input, tab, version, err))
        return pkrtool_failed;
    QString text =
        QStringLiteral("title: %1\nformat version: %2\n").arg(quoted(tab.title)).arg(version);
    text += backgroundLine(tab);
    text += QStringLiteral("buttons: %1\n").arg(tab.buttons.size());
    for (int i = 0; i < tab.buttons.size(); ++i)
        text += buttonLine(i, tab.buttons.at(i));
    writeText(out, text);
    return pkrtool_ok;
}

int runDump(const pkrtool_arguments& arguments, QIODevice& out, QIODevice& err) {
    picker_tab_record tab;
    qint32 version = 0;
    if (!readPicker(arguments.input, tab, version, err))
        return pkrtool_failed;
    const QByteArray json = pickerJsonText(tab, version);
    if (arguments.output.isEmpty()) {
        out.write(json);
        return pkrtool_ok;
    }
    return writeFile(arguments.output, json, err) ? pkrtool_ok : pkrtool_failed;
}

int runBuild(const pkrtool_arguments& arguments, QIODevice& err) {
    QFile file(arguments.input);
    if (!file.open(QIODevice::ReadOnly))
        return fail(
            err, QStringLiteral("cannot open '%1': %2").arg(arguments.input, file.errorString()));
    picker_tab_record tab;
    const QString fault = pickerFromJsonText(file.readAll(), tab);
    if (!fault.isEmpty())
        return fail(
            err,
            QStringLiteral("'%1' is not a picker description: %2").arg(arguments.input, fault));
    return writeFile(arguments.output, pickerFileBytes(tab), err) ? pkrtool_ok : pkrtool_failed;
}

} // namespace

int runPkrtool(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    const pkrtool_arguments parsed = parseArguments(arguments);
    if (!parsed.error.isEmpty()) {
        writeText(err, QStringLiteral("pkrtool: %1\n").arg(parsed.error));
        err.write(usage_text);
        return pkrtool_usage;
    }
    if (parsed.command == QLatin1String("--help")) {
        out.write(usage_text);
        return pkrtool_ok;
    }
    if (parsed.command == QLatin1String("--version")) {
        out.write("pkrtool " PICKER_VERSION "\n");
        return pkrtool_ok;
    }
    if (parsed.command == QLatin1String("info"))
        return runInfo(parsed, out, err);
    if (parsed.command == QLatin1String("dump"))
        return runDump(parsed, out, err);
    return runBuild(parsed, err);
}
