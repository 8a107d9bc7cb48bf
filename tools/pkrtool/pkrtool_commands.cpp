#include "pkrtool_commands.h"

#include "pkrtool_cli.h"
#include "pkrtool_scene.h"

#include "picker_file.h"
#include "picker_json.h"
#include "picker_namespace.h"
#include "picker_version.h"
#include "png_chunks.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QFile>
#include <QIODevice>

namespace {

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

int runInfo(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    QCommandLineParser parser;
    if (!parseCommand(parser, arguments, err))
        return pkrtool_usage;
    picker_tab_record tab;
    qint32 version = 0;
    if (!readPicker(parser.positionalArguments().first(), tab, version, err))
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

int runDump(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    QCommandLineParser parser;
    const QCommandLineOption output = outputOption();
    parser.addOption(output);
    if (!parseCommand(parser, arguments, err))
        return pkrtool_usage;
    picker_tab_record tab;
    qint32 version = 0;
    if (!readPicker(parser.positionalArguments().first(), tab, version, err))
        return pkrtool_failed;
    const QByteArray json = pickerJsonText(tab, version);
    if (!parser.isSet(output)) {
        out.write(json);
        return pkrtool_ok;
    }
    return writeFile(parser.value(output), json, err) ? pkrtool_ok : pkrtool_failed;
}

int runBuild(const QStringList& arguments, QIODevice& err) {
    QCommandLineParser parser;
    const QCommandLineOption output = outputOption();
    parser.addOption(output);
    if (!parseCommand(parser, arguments, err))
        return pkrtool_usage;
    if (!parser.isSet(output))
        return usageError(err, QStringLiteral("build needs -o FILE.pkr"));
    const QString input = parser.positionalArguments().first();
    QFile file(input);
    if (!file.open(QIODevice::ReadOnly))
        return fail(err, QStringLiteral("cannot open '%1': %2").arg(input, file.errorString()));
    picker_tab_record tab;
    const QString fault = pickerFromJsonText(file.readAll(), tab);
    if (!fault.isEmpty())
        return fail(err, QStringLiteral("'%1' is not a picker description: %2").arg(input, fault));
    return writeFile(parser.value(output), pickerFileBytes(tab), err) ? pkrtool_ok : pkrtool_failed;
}

int runNamespaces(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    QCommandLineParser parser;
    if (!parseCommand(parser, arguments, err))
        return pkrtool_usage;
    picker_tab_record tab;
    qint32 version = 0;
    if (!readPicker(parser.positionalArguments().first(), tab, version, err))
        return pkrtool_failed;
    QString text;
    for (const QString& ns : collectCurrentNamespace(tab.buttons))
        text += ns + QLatin1Char('\n');
    writeText(out, text);
    return pkrtool_ok;
}

QString counted(int count, const char* noun) {
    return QStringLiteral("%1 %2%3")
        .arg(count)
        .arg(QLatin1String(noun))
        .arg(count == 1 ? QString() : QStringLiteral("s"));
}

// The --map values as parallel OLD and NEW lists; empty when usable, else what is wrong.
QString splitMaps(const QStringList& maps, QStringList& olds, QStringList& news) {
    if (maps.isEmpty())
        return QStringLiteral("rebind needs --map OLD=NEW");
    for (const QString& map : maps) {
        const int equals = map.indexOf(QLatin1Char('='));
        if (equals < 0)
            return QStringLiteral("--map needs OLD=NEW, not '%1'").arg(map);
        if (olds.contains(map.left(equals)))
            return QStringLiteral("'%1' is mapped twice").arg(map.left(equals));
        olds.append(map.left(equals));
        news.append(map.mid(equals + 1));
    }
    return QString();
}

// What the namespace dialog does when the user picks NEW for each OLD and leaves the other
// namespaces as they are; the file is rewritten only when something changed or -o names another.
int runRebind(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    QCommandLineParser parser;
    const QCommandLineOption mapOption(QStringLiteral("map"), QString(), QStringLiteral("OLD=NEW"));
    const QCommandLineOption allowUnused(QStringLiteral("allow-unused"));
    const QCommandLineOption output = outputOption();
    parser.addOptions({mapOption, allowUnused, output});
    if (!parseCommand(parser, arguments, err))
        return pkrtool_usage;
    QStringList olds;
    QStringList news;
    const QString mistake = splitMaps(parser.values(mapOption), olds, news);
    if (!mistake.isEmpty())
        return usageError(err, mistake);

    const QString input = parser.positionalArguments().first();
    picker_tab_record tab;
    qint32 version = 0;
    if (!readPicker(input, tab, version, err))
        return pkrtool_failed;
    const QStringList used = collectCurrentNamespace(tab.buttons);
    QStringList chosen = used;
    QStringList unused;
    for (int i = 0; i < olds.size(); ++i) {
        const int index = used.indexOf(olds.at(i));
        if (index < 0)
            unused.append(quoted(olds.at(i)));
        else
            chosen[index] = news.at(i);
    }
    if (!unused.isEmpty() && !parser.isSet(allowUnused))
        return fail(err, QStringLiteral("'%1' does not use the namespace%2 %3 (pkrtool namespaces "
                                        "lists those it uses; --allow-unused skips such maps)")
                             .arg(input, unused.size() == 1 ? QString() : QStringLiteral("s"),
                                  unused.join(QStringLiteral(", "))));

    const rebind_counts counts = rebindButtons(tab.buttons, buildRebindMap(used, chosen));
    QString summary =
        QStringLiteral("changed %1 and %2")
            .arg(counted(counts.names, "node name"), counted(counts.scripts, "script"));
    if (parser.isSet(output) || counts.names + counts.scripts > 0) {
        const QString target = parser.isSet(output) ? parser.value(output) : input;
        if (!writeFile(target, pickerFileBytes(tab), err))
            return pkrtool_failed;
    } else {
        summary += QStringLiteral("; '%1' left as it was").arg(input);
    }
    writeText(out, summary + QLatin1Char('\n'));
    return pkrtool_ok;
}

} // namespace

int runPkrtool(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    if (arguments.isEmpty())
        return usageError(err, QStringLiteral("no command given"));
    const QString command = arguments.first();
    if (command == QLatin1String("--help") && arguments.size() == 1) {
        writeUsage(out);
        return pkrtool_ok;
    }
    if (command == QLatin1String("--version") && arguments.size() == 1) {
        out.write("pkrtool " PICKER_VERSION "\n");
        return pkrtool_ok;
    }
    if (command == QLatin1String("info"))
        return runInfo(arguments, out, err);
    if (command == QLatin1String("dump"))
        return runDump(arguments, out, err);
    if (command == QLatin1String("build"))
        return runBuild(arguments, err);
    if (command == QLatin1String("namespaces"))
        return runNamespaces(arguments, out, err);
    if (command == QLatin1String("rebind"))
        return runRebind(arguments, out, err);
    if (command == QLatin1String("scene"))
        return runScene(arguments, out, err);
    if (command == QLatin1String("extract"))
        return runExtract(arguments, out, err);
    if (command == QLatin1String("store"))
        return runStore(arguments, out, err);
    return usageError(err, QStringLiteral("unknown command '%1'").arg(command));
}
