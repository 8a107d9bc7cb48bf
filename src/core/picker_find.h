#pragma once

#include <QHash>
#include <QString>
#include <QStringView>

#include <vector>

// What the find field looks for: without wildcards a substring, with them ('*' any run, '?' one
// character) the whole text. Both ignore case.
class picker_find_pattern {
public:
    picker_find_pattern() = default;
    explicit picker_find_pattern(const QString& text);

    bool isEmpty() const { return folded_.isEmpty(); }
    bool matches(const QString& text) const { return matchesFolded(text.toCaseFolded()); }
    // text already case-folded.
    bool matchesFolded(QStringView text) const;

private:
    QString folded_;
    bool wildcard_ = false;
};

// The part of a node name a user calls it by: after the last '|' of a DAG path and the last ':'
// of its namespaces.
QStringView node_short_name(const QString& name);

// One pattern matched against many buttons. A keystroke runs it over every button of every tab,
// so each short name is matched once, however many buttons and namespaces share it, and a node
// name's folded short name is worked out once for the life of the process.
class picker_name_matcher {
public:
    explicit picker_name_matcher(const picker_find_pattern& pattern) : pattern_(pattern) {}

    const picker_find_pattern& pattern() const { return pattern_; }
    // id is the name's interned id.
    bool matchesName(int id, const QString& name);
    bool matchesLabel(const QString& label);

private:
    picker_find_pattern pattern_;
    std::vector<char> byShortName_; // 0 not asked yet, 1 no, 2 yes
    QHash<QString, bool> byLabel_;
};
