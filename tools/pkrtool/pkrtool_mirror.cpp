#include "pkrtool_mirror.h"

#include "picker_file.h"
#include "picker_mirror.h"
#include "png_chunks.h"

#include <QCommandLineOption>
#include <QCommandLineParser>

#include <numeric>

int runMirror(const pkrtool_run& run, const QStringList& arguments) {
    QCommandLineParser parser;
    const QCommandLineOption ruleOption(QStringLiteral("rule"), QString(), QStringLiteral("A=B"));
    const QCommandLineOption axisOption(QStringLiteral("axis"), QString(), QStringLiteral("X"));
    const QCommandLineOption swapOption(QStringLiteral("swap-color"), QString(),
                                        QStringLiteral("#RRGGBB=#RRGGBB"));
    const QCommandLineOption output = outputOption();
    parser.addOptions({ruleOption, axisOption, swapOption, output});
    int exitCode = pkrtool_ok;
    if (!run.parse(parser, arguments, exitCode))
        return exitCode;

    picker_mirror_rules rules = defaultMirrorRules();
    if (parser.isSet(ruleOption)) {
        const QString mistake = parseMirrorRules(parser.values(ruleOption), rules);
        if (!mistake.isEmpty())
            return run.usage(mistake);
    }
    int axisTwice = 0;
    const QStringList axes = parser.values(axisOption);
    if (axes.size() > 1)
        return run.usage(QStringLiteral("--axis is given more than once"));
    if (!axes.isEmpty() && !parseMirrorAxis(axes.first(), axisTwice))
        return run.usage(
            QStringLiteral("--axis takes a whole number or a half (as 512 or 511.5), not '%1'")
                .arg(axes.first()));
    picker_color_swaps swaps;
    for (const QString& text : parser.values(swapOption)) {
        QPair<QRgb, QRgb> swap;
        const QString mistake = parseColorSwap(text, swap);
        if (!mistake.isEmpty())
            return run.usage(QStringLiteral("--swap-color: %1").arg(mistake));
        swaps.append(swap);
    }
    const QString input = parser.positionalArguments().first();
    QString target;
    if (int refused = 0; !run.rewriteTarget(input, parser.value(output), target, refused))
        return refused;

    picker_tab_record tab;
    qint32 version = 0;
    if (!run.readPicker(input, tab, version))
        return pkrtool_failed;
    if (axes.isEmpty()) {
        const png_layout background =
            tab.backgroundPng.isEmpty() ? png_layout() : inspectPng(tab.backgroundPng);
        axisTwice = defaultMirrorAxisTwice(tab.buttons,
                                           background.size.isValid() ? background.size.width() : 0);
    }
    QVector<int> all(static_cast<int>(tab.buttons.size()));
    std::iota(all.begin(), all.end(), 0);
    const picker_mirror_outcome outcome = mirrorButtons(tab.buttons, all, rules, axisTwice, swaps);
    QString summary = QStringLiteral("added %1, %2 already there, %3 centre (not sided)")
                          .arg(outcome.added.size())
                          .arg(outcome.already)
                          .arg(outcome.centre);
    if (!target.isEmpty() || !outcome.added.isEmpty()) {
        tab.buttons += outcome.added;
        if (!run.writeOutput(target.isEmpty() ? input : target, pickerFileBytes(tab)))
            return pkrtool_failed;
    } else {
        summary += QStringLiteral("; '%1' left as it was").arg(input);
    }
    run.report(summary + QLatin1Char('\n'), target == QLatin1String("-"));
    return pkrtool_ok;
}
