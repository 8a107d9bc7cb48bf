#include "pkrtool_commands.h"

#include "pkrtool_cli.h"
#include "pkrtool_mirror.h"
#include "pkrtool_scene.h"

#include "picker_file.h"
#include "picker_json.h"
#include "picker_namespace.h"
#include "picker_version.h"
#include "png_chunks.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

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

QByteArray jsonText(const QJsonDocument& document) {
    return document.toJson(QJsonDocument::Indented);
}

QJsonValue backgroundJson(const picker_tab_record& tab) {
    if (tab.backgroundPng.isEmpty())
        return QJsonValue(QJsonValue::Null);
    const png_layout png = inspectPng(tab.backgroundPng);
    QJsonObject background{{QStringLiteral("bytes"), tab.backgroundPng.size()}};
    if (png.size.isValid()) {
        background.insert(QStringLiteral("width"), png.size.width());
        background.insert(QStringLiteral("height"), png.size.height());
    }
    return background;
}

int runInfo(const pkrtool_run& run, const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption json = jsonOption();
    parser.addOption(json);
    int exitCode = pkrtool_ok;
    if (!run.parse(parser, arguments, exitCode))
        return exitCode;
    picker_tab_record tab;
    qint32 version = 0;
    if (!run.readPicker(parser.positionalArguments().first(), tab, version))
        return pkrtool_failed;
    if (parser.isSet(json)) {
        QJsonObject object = pickerToJson(tab, version);
        object.insert(QStringLiteral("background"), backgroundJson(tab));
        run.out().write(jsonText(QJsonDocument(object)));
        return pkrtool_ok;
    }
    QString text =
        QStringLiteral("title: %1\nformat version: %2\n").arg(quoted(tab.title)).arg(version);
    text += backgroundLine(tab);
    text += QStringLiteral("buttons: %1\n").arg(tab.buttons.size());
    for (int i = 0; i < tab.buttons.size(); ++i)
        text += buttonLine(i, tab.buttons.at(i));
    writeText(run.out(), text);
    return pkrtool_ok;
}

int runDump(const pkrtool_run& run, const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption output = outputOption();
    parser.addOption(output);
    int exitCode = pkrtool_ok;
    if (!run.parse(parser, arguments, exitCode))
        return exitCode;
    const QString input = parser.positionalArguments().first();
    const QString target = parser.isSet(output) ? parser.value(output) : QStringLiteral("-");
    if (const QString mistake = run.sameFileMistake(input, target); !mistake.isEmpty())
        return run.usage(mistake);
    picker_tab_record tab;
    qint32 version = 0;
    if (!run.readPicker(input, tab, version))
        return pkrtool_failed;
    return run.writeOutput(target, pickerJsonText(tab, version)) ? pkrtool_ok : pkrtool_failed;
}

int runBuild(const pkrtool_run& run, const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption output = outputOption();
    parser.addOption(output);
    int exitCode = pkrtool_ok;
    if (!run.parse(parser, arguments, exitCode))
        return exitCode;
    if (!parser.isSet(output))
        return run.usage(QStringLiteral("build needs -o FILE.pkr"));
    const QString input = parser.positionalArguments().first();
    if (const QString mistake = run.sameFileMistake(input, parser.value(output));
        !mistake.isEmpty())
        return run.usage(mistake);
    QByteArray json;
    if (!run.readInput(input, json))
        return pkrtool_failed;
    picker_tab_record tab;
    const QString fault = pickerFromJsonText(json, tab);
    if (!fault.isEmpty())
        return run.fail(
            QStringLiteral("'%1' is not a picker description: %2").arg(shownName(input), fault));
    return run.writeOutput(parser.value(output), pickerFileBytes(tab)) ? pkrtool_ok
                                                                       : pkrtool_failed;
}

int runNamespaces(const pkrtool_run& run, const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption json = jsonOption();
    parser.addOption(json);
    int exitCode = pkrtool_ok;
    if (!run.parse(parser, arguments, exitCode))
        return exitCode;
    picker_tab_record tab;
    qint32 version = 0;
    if (!run.readPicker(parser.positionalArguments().first(), tab, version))
        return pkrtool_failed;
    const QStringList used = collectCurrentNamespace(tab.buttons);
    if (parser.isSet(json)) {
        run.out().write(jsonText(QJsonDocument(QJsonArray::fromStringList(used))));
        return pkrtool_ok;
    }
    QString text;
    for (const QString& ns : used)
        text += ns + QLatin1Char('\n');
    writeText(run.out(), text);
    return pkrtool_ok;
}

QString counted(int count, const char* noun) {
    return QStringLiteral("%1 %2%3")
        .arg(count)
        .arg(QLatin1String(noun))
        .arg(count == 1 ? QString() : QStringLiteral("s"));
}

// Empty when Maya would take ns as a namespace: parts of ASCII letters, digits and '_', none
// starting with a digit, joined by single colons; a trailing colon is allowed, and the empty
// namespace is the root.
QString namespaceMistake(const QString& ns) {
    if (ns.isEmpty())
        return QString();
    const QString body = ns.endsWith(QLatin1Char(':')) ? ns.chopped(1) : ns;
    for (const QString& part : body.split(QLatin1Char(':'))) {
        if (part.isEmpty())
            return QStringLiteral("an empty part");
        if (part.at(0).isDigit())
            return QStringLiteral("a part that starts with a digit");
        for (const QChar c : part) {
            const ushort u = c.unicode();
            if (!((u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9') ||
                  u == '_'))
                return QStringLiteral("'%1' in it").arg(c);
        }
    }
    return QString();
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
        const QString mistake = namespaceMistake(map.mid(equals + 1));
        if (!mistake.isEmpty())
            return QStringLiteral("--map %1: '%2' is no namespace (%3)")
                .arg(map, map.mid(equals + 1), mistake);
        olds.append(map.left(equals));
        news.append(map.mid(equals + 1));
    }
    return QString();
}

// What the namespace dialog does when the user picks NEW for each OLD and leaves the other
// namespaces as they are; the file is rewritten only when something changed or -o names another.
int runRebind(const pkrtool_run& run, const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption mapOption(QStringLiteral("map"), QString(), QStringLiteral("OLD=NEW"));
    const QCommandLineOption allowUnused(QStringLiteral("allow-unused"));
    const QCommandLineOption output = outputOption();
    parser.addOptions({mapOption, allowUnused, output});
    int exitCode = pkrtool_ok;
    if (!run.parse(parser, arguments, exitCode))
        return exitCode;
    QStringList olds;
    QStringList news;
    const QString mistake = splitMaps(parser.values(mapOption), olds, news);
    if (!mistake.isEmpty())
        return run.usage(mistake);
    const QString input = parser.positionalArguments().first();
    QString target;
    if (int refused = 0; !run.rewriteTarget(input, parser.value(output), target, refused))
        return refused;

    picker_tab_record tab;
    qint32 version = 0;
    if (!run.readPicker(input, tab, version))
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
        return run.fail(QStringLiteral("'%1' does not use the namespace%2 %3 (pkrtool namespaces "
                                       "lists those it uses; --allow-unused skips such maps)")
                            .arg(shownName(input),
                                 unused.size() == 1 ? QString() : QStringLiteral("s"),
                                 unused.join(QStringLiteral(", "))));

    const rebind_counts counts = rebindButtons(tab.buttons, buildRebindMap(used, chosen));
    QString summary =
        QStringLiteral("changed %1 and %2")
            .arg(counted(counts.names, "node name"), counted(counts.scripts, "script"));
    if (!target.isEmpty() || counts.names + counts.scripts > 0) {
        if (!run.writeOutput(target.isEmpty() ? input : target, pickerFileBytes(tab)))
            return pkrtool_failed;
    } else {
        summary += QStringLiteral("; '%1' left as it was").arg(input);
    }
    run.report(summary + QLatin1Char('\n'), target == QLatin1String("-"));
    return pkrtool_ok;
}

} // namespace

int runPkrtool(const QStringList& arguments, QIODevice& out, QIODevice& err) {
    const QString command = arguments.value(0);
    const pkrtool_run run(command, out, err);
    if (arguments.isEmpty())
        return run.usage(QStringLiteral("no command given"));
    if ((command == QLatin1String("--help") || command == QLatin1String("-h")) &&
        arguments.size() == 1) {
        writeUsage(out);
        return pkrtool_ok;
    }
    if (command == QLatin1String("--version") && arguments.size() == 1) {
        out.write("pkrtool " PICKER_VERSION "\n");
        return pkrtool_ok;
    }
    using command_fn = int (*)(const pkrtool_run&, const QStringList&);
    // render draws, and so runs in a GUI application of its own (pkrtool_render.h).
    const QList<QPair<const char*, command_fn>> table{
        {"info", &runInfo},     {"dump", &runDump},
        {"build", &runBuild},   {"namespaces", &runNamespaces},
        {"rebind", &runRebind}, {"mirror", &runMirror},
        {"scene", &runScene},   {"extract", &runExtract},
        {"store", &runStore}};
    for (const auto& entry : table) {
        if (command == QLatin1String(entry.first))
            return entry.second(run, arguments);
    }
    return run.usage(QStringLiteral("unknown command '%1'").arg(command));
}
