#include "picker_mirror.h"

#include <QSet>

#include <cctype>

namespace {

const QChar star = QLatin1Char('*');

// The kind a side's stars make, with its core; false when they make none.
bool sideOf(const QString& side, picker_mirror_rule::Kind& kind, QString& core) {
    const bool leading = side.startsWith(star);
    const bool trailing = side.size() > 1 && side.endsWith(star);
    if (!leading && !trailing)
        return false;
    core = side.mid(leading ? 1 : 0, side.size() - (leading ? 1 : 0) - (trailing ? 1 : 0));
    if (core.isEmpty() || core.contains(star))
        return false;
    kind = leading && trailing ? picker_mirror_rule::Infix
           : leading           ? picker_mirror_rule::Suffix
                               : picker_mirror_rule::Prefix;
    return true;
}

const char* kindName(picker_mirror_rule::Kind kind) {
    switch (kind) {
    case picker_mirror_rule::Prefix:
        return "a prefix";
    case picker_mirror_rule::Suffix:
        return "a suffix";
    case picker_mirror_rule::Infix:
        break;
    }
    return "an infix";
}

// The short name with the rule applied, or a null string when the rule does not match.
QString applyRule(const QString& name, const picker_mirror_rule& rule) {
    switch (rule.kind) {
    case picker_mirror_rule::Prefix:
        if (name.startsWith(rule.a))
            return rule.b + name.mid(rule.a.size());
        if (name.startsWith(rule.b))
            return rule.a + name.mid(rule.b.size());
        break;
    case picker_mirror_rule::Suffix:
        if (name.endsWith(rule.a))
            return name.left(name.size() - rule.a.size()) + rule.b;
        if (name.endsWith(rule.b))
            return name.left(name.size() - rule.b.size()) + rule.a;
        break;
    case picker_mirror_rule::Infix: {
        const int atA = static_cast<int>(name.indexOf(rule.a));
        const int atB = static_cast<int>(name.indexOf(rule.b));
        if (atA < 0 && atB < 0)
            break;
        // Where both start at one place, the longer core is the one written there.
        const bool takeA =
            atB < 0 || (atA >= 0 && (atA < atB || (atA == atB && rule.a.size() >= rule.b.size())));
        QString mapped = name;
        return takeA ? mapped.replace(atA, rule.a.size(), rule.b)
                     : mapped.replace(atB, rule.b.size(), rule.a);
    }
    }
    return QString();
}

QString mirrorSegment(const QString& segment, const picker_mirror_rules& rules) {
    const int colon = static_cast<int>(segment.lastIndexOf(QLatin1Char(':')));
    const QString shortName = segment.mid(colon + 1);
    for (const picker_mirror_rule& rule : rules) {
        const QString mapped = applyRule(shortName, rule);
        if (!mapped.isNull())
            return segment.left(colon + 1) + mapped;
    }
    return segment;
}

// A name list as one key; no node name holds a line feed.
QString keyOf(const QStringList& names) {
    return names.join(QLatin1Char('\n'));
}

} // namespace

QString parseMirrorRule(const QString& text, picker_mirror_rule& rule) {
    const QStringList sides = text.split(QLatin1Char('='));
    if (sides.size() != 2)
        return QStringLiteral("mirror rule \"%1\" is not two sides joined by one \"=\" (as in "
                              "L_*=R_*)")
            .arg(text);
    picker_mirror_rule::Kind kinds[2] = {};
    QString cores[2];
    for (int i = 0; i < 2; ++i) {
        if (!sideOf(sides.at(i), kinds[i], cores[i]))
            return QStringLiteral("mirror rule \"%1\": \"%2\" is no prefix (L_*), suffix (*_L) "
                                  "or infix (*Left*)")
                .arg(text, sides.at(i));
    }
    if (kinds[0] != kinds[1])
        return QStringLiteral("mirror rule \"%1\": \"%2\" is %3 but \"%4\" %5; both sides must "
                              "be of one kind")
            .arg(text, sides.at(0), QLatin1String(kindName(kinds[0])), sides.at(1),
                 QLatin1String(kindName(kinds[1])));
    if (cores[0] == cores[1])
        return QStringLiteral("mirror rule \"%1\" has the same side twice").arg(text);
    rule.kind = kinds[0];
    rule.a = cores[0];
    rule.b = cores[1];
    return QString();
}

QString parseMirrorRules(const QStringList& texts, picker_mirror_rules& rules) {
    picker_mirror_rules parsed;
    for (const QString& text : texts) {
        picker_mirror_rule rule;
        const QString error = parseMirrorRule(text, rule);
        if (!error.isEmpty()) {
            rules.clear();
            return error;
        }
        parsed.append(rule);
    }
    rules = parsed;
    return QString();
}

QStringList defaultMirrorRuleTexts() {
    return {QStringLiteral("L_*=R_*"),        QStringLiteral("*_L=*_R"),
            QStringLiteral("l_*=r_*"),        QStringLiteral("*_l=*_r"),
            QStringLiteral("*Left*=*Right*"), QStringLiteral("*left*=*right*"),
            QStringLiteral("lf_*=rt_*"),      QStringLiteral("*_lf=*_rt")};
}

const picker_mirror_rules& defaultMirrorRules() {
    static const picker_mirror_rules rules = [] {
        picker_mirror_rules parsed;
        parseMirrorRules(defaultMirrorRuleTexts(), parsed);
        return parsed;
    }();
    return rules;
}

QString mirrorName(const QString& name, const picker_mirror_rules& rules) {
    QStringList segments = name.split(QLatin1Char('|'));
    for (QString& segment : segments)
        segment = mirrorSegment(segment, rules);
    return segments.join(QLatin1Char('|'));
}

QStringList mirrorNames(const QStringList& names, const picker_mirror_rules& rules) {
    QStringList mapped;
    mapped.reserve(names.size());
    for (const QString& name : names)
        mapped.append(mirrorName(name, rules));
    return mapped;
}

QRgb swapColor(QRgb color, const picker_color_swaps& swaps) {
    const QRgb rgb = color & RGB_MASK;
    for (const auto& swap : swaps) {
        if (rgb == (swap.first & RGB_MASK))
            return (color & ~RGB_MASK) | (swap.second & RGB_MASK);
        if (rgb == (swap.second & RGB_MASK))
            return (color & ~RGB_MASK) | (swap.first & RGB_MASK);
    }
    return color;
}

int defaultMirrorAxisTwice(const button_att_list& buttons, int backgroundWidth) {
    if (backgroundWidth > 0)
        return backgroundWidth;
    if (buttons.isEmpty())
        return 0;
    int least = buttons.first().pos.x();
    int most = least;
    for (const buttonAttributes& button : buttons) {
        least = qMin(least, button.pos.x());
        most = qMax(most, button.pos.x());
    }
    return least + most;
}

picker_mirror_outcome mirrorButtons(const button_att_list& buttons, const QVector<int>& indices,
                                    const picker_mirror_rules& rules, int axisTwice,
                                    const picker_color_swaps& swaps) {
    picker_mirror_outcome outcome;
    QSet<QString> held;
    for (const buttonAttributes& button : buttons) {
        if (button.type == buttonAttributes::Selection)
            held.insert(keyOf(button.sel));
    }
    for (const int index : indices) {
        if (index < 0 || index >= buttons.size())
            continue;
        const buttonAttributes& button = buttons.at(index);
        if (button.type != buttonAttributes::Selection)
            continue;
        const QStringList mapped = mirrorNames(button.sel, rules);
        if (mapped == button.sel) {
            ++outcome.centre;
            continue;
        }
        const QString key = keyOf(mapped);
        if (held.contains(key)) {
            ++outcome.already;
            continue;
        }
        held.insert(key);
        buttonAttributes copy = button;
        copy.sel = mapped;
        copy.pos.setX(axisTwice - button.pos.x());
        copy.color = swapColor(button.color, swaps);
        copy.tcolor = swapColor(button.tcolor, swaps);
        outcome.added.append(copy);
    }
    return outcome;
}

QString parseColorSwap(const QString& text, QPair<QRgb, QRgb>& swap) {
    const QStringList sides = text.split(QLatin1Char('='));
    QRgb colors[2] = {};
    bool whole = sides.size() == 2;
    for (int i = 0; whole && i < 2; ++i) {
        const QString& side = sides.at(i);
        whole = side.size() == 7 && side.startsWith(QLatin1Char('#'));
        for (int c = 1; whole && c < 7; ++c)
            whole = side.at(c).unicode() < 128 && std::isxdigit(side.at(c).unicode()) != 0;
        if (whole)
            colors[i] = side.mid(1).toUInt(nullptr, 16);
    }
    if (!whole)
        return QStringLiteral("colour pair \"%1\" is not #RRGGBB=#RRGGBB").arg(text);
    swap = qMakePair(colors[0], colors[1]);
    return QString();
}

bool parseMirrorAxis(const QString& text, int& axisTwice) {
    const bool half = text.endsWith(QLatin1String(".5"));
    const QString whole = half ? text.chopped(2) : text;
    bool parsed = false;
    const int value = whole.toInt(&parsed);
    if (!parsed || whole.contains(QLatin1Char('+')) || value < -(1 << 28) || value > (1 << 28))
        return false;
    const bool negative = whole.startsWith(QLatin1Char('-'));
    axisTwice = 2 * value + (half ? (negative ? -1 : 1) : 0);
    return true;
}
