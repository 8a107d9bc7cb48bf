#include "picker_namespace.h"

#include <QVector>

#include <algorithm>
#include <utility>

namespace {

void appendOnce(QStringList& used, const QString& ns) {
    if (!used.contains(ns))
        used.append(ns);
}

// A run of name characters from its start to its last colon, when there is one past the start.
void collectRun(QStringList& used, const QString& script, int start, int end) {
    for (int k = end - 1; k > start; --k) {
        if (script.at(k) == QLatin1Char(':')) {
            appendOnce(used, script.mid(start, k - start));
            return;
        }
    }
}

QString replacePrefix(const QString& name, const QStringList& from, const QStringList& to) {
    for (int j = std::min(from.size(), to.size()) - 1; j >= 0; --j) {
        if (name.startsWith(from.at(j)))
            return to.at(j) + name.mid(from.at(j).size());
    }
    return name;
}

// Where the DAG path segments of a node name begin: after each '|' outside brackets.
QVector<int> segmentStarts(const QString& name) {
    QVector<int> starts{0};
    bool inBrackets = false;
    for (int i = 0; i < name.size(); ++i) {
        const QChar c = name.at(i);
        if (c == QLatin1Char('['))
            inBrackets = true;
        else if (c == QLatin1Char(']'))
            inBrackets = false;
        else if (c == QLatin1Char('|') && !inBrackets)
            starts.append(i + 1);
    }
    return starts;
}

} // namespace

bool is_var_char(QChar c) {
    const ushort u = c.unicode();
    return (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9') || u == ':' ||
           u == '.' || u == '_';
}

void extract_namespace(QStringList& used, const QString& nodeName) {
    const QVector<int> starts = segmentStarts(nodeName);
    for (int segment = 0; segment < starts.size(); ++segment) {
        const int start = starts.at(segment);
        const int end = segment + 1 < starts.size() ? starts.at(segment + 1) - 1 : nodeName.size();
        bool inBrackets = false;
        for (int i = end - 1; i >= start; --i) {
            const QChar c = nodeName.at(i);
            if (inBrackets) {
                if (c == QLatin1Char('['))
                    inBrackets = false;
            } else if (c == QLatin1Char(':')) {
                appendOnce(used, nodeName.mid(start, i - start));
            } else if (c == QLatin1Char(']')) {
                inBrackets = true;
            }
        }
    }
}

void extract_cmd_namespace(QStringList& used, const QString& script, int language) {
    Q_UNUSED(language)
    enum class scan { code, string, bracket, comment };
    scan mode = scan::code;
    QChar quote;
    const int n = script.size();
    int s = 0;
    int i = 0;
    while (i < n) {
        const QChar c = script.at(i);
        switch (mode) {
        case scan::code:
            if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
                quote = c;
                mode = scan::string;
                s = ++i;
            } else if (c == QLatin1Char('/')) {
                if (i + 1 < n && script.at(i + 1) == QLatin1Char('/'))
                    mode = scan::comment;
                ++i;
            } else if (c == QLatin1Char('#')) {
                mode = scan::comment;
            } else {
                ++i;
            }
            break;
        case scan::string:
            if (is_var_char(c)) {
                ++i;
            } else if (s < i) {
                collectRun(used, script, s, i);
                s = i;
            } else {
                // s stays on this separator: the next run in the literal starts with it.
                ++i;
                if (c == quote)
                    mode = scan::code;
                else if (c == QLatin1Char('\\'))
                    ++i;
                else if (c == QLatin1Char('['))
                    mode = scan::bracket;
                else if (c == QLatin1Char('|'))
                    s = i; // a DAG path's next segment is a name of its own
            }
            break;
        case scan::bracket:
            ++i;
            if (c == QLatin1Char(']')) {
                mode = scan::string;
                s = i;
            } else if (c == quote) {
                mode = scan::code;
            }
            break;
        case scan::comment:
            ++i;
            if (c == QLatin1Char('\r') || c == QLatin1Char('\n'))
                mode = scan::code;
            break;
        }
    }
}

bool compare_name(const QString& a, const QString& b) {
    return a.toLower() < b.toLower();
}

int findNestedNamespace(const QString& ns, const QStringList& available) {
    const QString suffix = QLatin1Char(':') + ns;
    for (int i = 0; i < available.size(); ++i) {
        if (available.at(i).endsWith(suffix))
            return i;
    }
    return -1;
}

QStringList collectCurrentNamespace(const button_att_list& buttons) {
    QStringList used;
    for (const buttonAttributes& button : buttons) {
        if (button.type == buttonAttributes::Selection) {
            for (const QString& name : button.sel)
                extract_namespace(used, name);
        } else if (button.type == buttonAttributes::Command && button.sel.size() == 1) {
            extract_cmd_namespace(used, button.sel.first(), button.api);
        }
    }
    std::stable_sort(used.begin(), used.end(), compare_name);
    return used;
}

bool rebindNeedsDialog(const QStringList& used, const QStringList& available, bool force) {
    if (force)
        return true;
    return std::any_of(used.cbegin(), used.cend(),
                       [&available](const QString& ns) { return !available.contains(ns); });
}

namespace_choice namespaceChoice(const QString& used, const QStringList& available) {
    namespace_choice choice;
    // The root namespace first, as an empty entry, then the scene's.
    choice.items = QStringList{QString()} + available;
    int found = available.indexOf(used);
    if (found < 0)
        found = findNestedNamespace(used, available);
    if (found < 0 && !available.isEmpty())
        found = 0;
    choice.current = found + 1; // past the root; the root itself when the scene has none
    return choice;
}

rebind_map buildRebindMap(const QStringList& used, const QStringList& chosen) {
    rebind_map map;
    const QString colon = QStringLiteral(":");
    for (int i = 0; i < std::min(used.size(), chosen.size()); ++i) {
        const QString from = used.at(i) + colon;
        QString to = chosen.at(i);
        if (!to.isEmpty() && !to.endsWith(colon))
            to += colon;
        if (from != to) {
            map.from.append(from);
            map.to.append(to);
        }
    }
    return map;
}

int rebind_picker_button(buttonAttributes& button, const QStringList& from, const QStringList& to) {
    int changed = 0;
    for (QString& name : button.sel) {
        const QVector<int> starts = segmentStarts(name);
        QString rebound;
        for (int segment = 0; segment < starts.size(); ++segment) {
            const int start = starts.at(segment);
            const int end = segment + 1 < starts.size() ? starts.at(segment + 1) : name.size();
            rebound += replacePrefix(name.mid(start, end - start), from, to);
        }
        if (rebound != name) {
            name = std::move(rebound);
            ++changed;
        }
    }
    return changed;
}

bool rebind_cmd_button(buttonAttributes& button, const QStringList& from, const QStringList& to) {
    if (button.sel.isEmpty())
        return false;
    const QString& script = button.sel.first();
    const int n = script.size();
    QString rewritten;
    rewritten.reserve(n);
    int i = 0;
    while (i < n) {
        if (!is_var_char(script.at(i))) {
            rewritten += script.at(i++);
            continue;
        }
        const int start = i;
        while (i < n && is_var_char(script.at(i)))
            ++i;
        rewritten += replacePrefix(script.mid(start, i - start), from, to);
    }
    if (rewritten == script)
        return false;
    button.sel.first() = rewritten;
    return true;
}

rebind_counts rebindButton(buttonAttributes& button, const rebind_map& map) {
    rebind_counts counts;
    if (button.type == buttonAttributes::Selection)
        counts.names = rebind_picker_button(button, map.from, map.to);
    else if (button.type == buttonAttributes::Command)
        counts.scripts = rebind_cmd_button(button, map.from, map.to) ? 1 : 0;
    return counts;
}

rebind_counts rebindButtons(button_att_list& buttons, const rebind_map& map) {
    rebind_counts total;
    if (map.from.isEmpty())
        return total;
    for (buttonAttributes& button : buttons) {
        const rebind_counts counts = rebindButton(button, map);
        total.names += counts.names;
        total.scripts += counts.scripts;
    }
    return total;
}
