#pragma once

#include "picker_types.h"

#include <QPair>
#include <QRgb>
#include <QString>
#include <QStringList>
#include <QVector>

// One side rule, A=B: both sides a prefix (L_*), a suffix (*_L) or an infix (*Left*), the
// text around the stars being the side's core.
struct picker_mirror_rule {
    enum Kind { Prefix, Suffix, Infix };
    Kind kind = Prefix;
    QString a;
    QString b;
};
using picker_mirror_rules = QVector<picker_mirror_rule>;

// Empty when text is a rule; otherwise why not, naming the rule.
QString parseMirrorRule(const QString& text, picker_mirror_rule& rule);
// Every text a rule, in order; on the first broken one its message, and rules is left empty.
QString parseMirrorRules(const QStringList& texts, picker_mirror_rules& rules);
QStringList defaultMirrorRuleTexts();
const picker_mirror_rules& defaultMirrorRules();

// The name with its sides swapped, segment by segment (DAG paths split at '|'): in each segment
// the first rule matching its short name, either way round, applies once; namespaces stay.
QString mirrorName(const QString& name, const picker_mirror_rules& rules);
QStringList mirrorNames(const QStringList& names, const picker_mirror_rules& rules);

// Colours matched on RGB and swapped both ways, alpha kept.
using picker_color_swaps = QVector<QPair<QRgb, QRgb>>;
QRgb swapColor(QRgb color, const picker_color_swaps& swaps);

// Where mirrored buttons go, as twice the axis so that halves stay whole: half the background
// width when there is one, else the middle of the buttons' outermost centres.
int defaultMirrorAxisTwice(const button_att_list& buttons, int backgroundWidth);

struct picker_mirror_outcome {
    button_att_list added; // in the order of the buttons they mirror
    int already = 0;       // mirrored names that a button holds already
    int centre = 0;        // selection buttons no rule changes
};

// Mirrors the buttons at indices (command buttons left alone) across x = axisTwice / 2. A copy
// is left out when a button of the picker, or a copy made before it, holds exactly its names.
picker_mirror_outcome mirrorButtons(const button_att_list& buttons, const QVector<int>& indices,
                                    const picker_mirror_rules& rules, int axisTwice,
                                    const picker_color_swaps& swaps);

// "#RRGGBB=#RRGGBB"; empty when it is one, otherwise why not.
QString parseColorSwap(const QString& text, QPair<QRgb, QRgb>& swap);
// An axis written as a whole number or a half (12, 12.5, -3.5), as twice its value.
bool parseMirrorAxis(const QString& text, int& axisTwice);
