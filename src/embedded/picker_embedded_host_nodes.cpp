// The MEL commands that read and change the scene's nodes and selection.
#include "picker_embedded_host.h"

#include <QRegularExpression>
#include <QVector>

host_status picker_embedded_host::runLs(const QStringList& args, picker_mel_value* result) {
    bool selectedOnly = false;
    QList<QRegularExpression> patterns;
    for (const QString& arg : args) {
        if (arg == QLatin1String("-sl") || arg == QLatin1String("-selection")) {
            selectedOnly = true;
        } else if (arg.startsWith(QLatin1Char('-'))) {
            return melError(QStringLiteral("ls: invalid flag %1.").arg(arg));
        } else {
            QString expression = QRegularExpression::escape(arg);
            expression.replace(QLatin1String("\\*"), QLatin1String(".*"));
            patterns.append(QRegularExpression(QRegularExpression::anchoredPattern(expression)));
        }
    }
    QStringList found;
    for (const QString& name : selectedOnly ? selection_ : nodes_) {
        bool matches = patterns.isEmpty();
        for (const QRegularExpression& pattern : patterns)
            matches = matches || pattern.match(name).hasMatch();
        if (matches)
            found.append(name);
    }
    *result = picker_mel_value::array(found);
    return host_status();
}

host_status picker_embedded_host::runSelect(const QStringList& args) {
    enum class mode { replace, add, clear };
    mode chosen = mode::replace;
    QStringList names;
    for (const QString& arg : args) {
        if (arg == QLatin1String("-r") || arg == QLatin1String("-replace"))
            chosen = mode::replace;
        else if (arg == QLatin1String("-add"))
            chosen = mode::add;
        else if (arg == QLatin1String("-cl") || arg == QLatin1String("-clear"))
            chosen = mode::clear;
        else if (arg.startsWith(QLatin1Char('-')))
            return melError(QStringLiteral("select: invalid flag %1.").arg(arg));
        else if (!nodeSet_.contains(arg))
            return melError(QStringLiteral("No object matches name: %1").arg(arg));
        else if (!names.contains(arg))
            names.append(arg);
    }
    if (chosen == mode::clear) {
        changeSelectionUndoably(QStringList());
        return host_status();
    }
    if (names.isEmpty())
        return melError(QStringLiteral("select: no objects given."));
    QStringList selected = chosen == mode::add ? selection_ : QStringList();
    for (const QString& name : names)
        if (!selected.contains(name))
            selected.append(name);
    changeSelectionUndoably(selected);
    return host_status();
}

host_status picker_embedded_host::runXform(const QStringList& args) {
    // The scene keeps no transforms; what a pose button asks of it is checked, not applied.
    QStringList names;
    for (const QString& arg : args) {
        bool number = false;
        arg.toDouble(&number);
        if (number || arg.startsWith(QLatin1Char('-')))
            continue;
        if (!nodeSet_.contains(arg))
            return melError(QStringLiteral("No object matches name: %1").arg(arg));
        names.append(arg);
    }
    if (names.isEmpty() && selection_.isEmpty())
        return melError(QStringLiteral("xform: no objects given and nothing selected."));
    return host_status();
}

host_status picker_embedded_host::runDelete(const QStringList& args) {
    if (args.isEmpty())
        return melError(QStringLiteral("delete: no objects given."));
    for (const QString& arg : args) {
        if (!nodeSet_.contains(arg))
            return melError(QStringLiteral("No object matches name: %1").arg(arg));
    }
    for (const QString& arg : args)
        removeNode(arg);
    return host_status();
}

host_status picker_embedded_host::runRename(const QStringList& args, picker_mel_value* result) {
    if (args.size() != 2)
        return melError(QStringLiteral("rename: takes an object and its new name."));
    if (!nodeSet_.contains(args.at(0)))
        return melError(QStringLiteral("No object matches name: %1").arg(args.at(0)));
    if (!renameNode(args.at(0), args.at(1)))
        return melError(
            QStringLiteral("rename: cannot rename %1 to %2.").arg(args.at(0), args.at(1)));
    *result = picker_mel_value::string(args.at(1));
    return host_status();
}
