#include "picker_find.h"

namespace {

// From the first character on; '*' takes any run, '?' any one character.
bool glob_matches(QStringView pattern, QStringView text) {
    qsizetype p = 0;
    qsizetype t = 0;
    qsizetype star = -1; // where the last '*' was, to retry with it taking one more character
    qsizetype resume = 0;
    while (t < text.size()) {
        if (p < pattern.size() && (pattern[p] == QLatin1Char('?') || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (p < pattern.size() && pattern[p] == QLatin1Char('*')) {
            star = p++;
            resume = t;
        } else if (star >= 0) {
            p = star + 1;
            t = ++resume;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == QLatin1Char('*'))
        ++p;
    return p == pattern.size();
}

// The folded short names by interned id, filled as names are first matched.
std::vector<QString>& folded_names() {
    static std::vector<QString> names;
    return names;
}
std::vector<char>& folded_known() {
    static std::vector<char> known;
    return known;
}

const QString& folded_short_name(int id, const QString& name) {
    std::vector<QString>& names = folded_names();
    std::vector<char>& known = folded_known();
    if (size_t(id) >= names.size()) {
        names.resize(size_t(id) + 1024);
        known.resize(names.size(), 0);
    }
    if (!known[size_t(id)]) {
        names[size_t(id)] = node_short_name(name).toString().toCaseFolded();
        known[size_t(id)] = 1;
    }
    return names[size_t(id)];
}

} // namespace

picker_find_pattern::picker_find_pattern(const QString& text)
    : folded_(text.toCaseFolded()),
      wildcard_(text.contains(QLatin1Char('*')) || text.contains(QLatin1Char('?'))) {}

bool picker_find_pattern::matchesFolded(QStringView text) const {
    if (folded_.isEmpty())
        return false;
    if (wildcard_)
        return glob_matches(folded_, text);
    return text.contains(QStringView(folded_));
}

QStringView node_short_name(const QString& name) {
    QStringView shortName(name);
    const qsizetype bar = shortName.lastIndexOf(QLatin1Char('|'));
    if (bar >= 0)
        shortName = shortName.mid(bar + 1);
    const qsizetype colon = shortName.lastIndexOf(QLatin1Char(':'));
    return colon >= 0 ? shortName.mid(colon + 1) : shortName;
}

bool picker_name_matcher::matchesName(int id, const QString& name) {
    if (size_t(id) >= byName_.size())
        byName_.resize(size_t(id) + 1024, 0);
    char& known = byName_[size_t(id)];
    if (known == 0)
        known = pattern_.matchesFolded(folded_short_name(id, name)) ? 2 : 1;
    return known == 2;
}

bool picker_name_matcher::matchesLabel(const QString& label) {
    if (label.isEmpty())
        return false;
    const auto found = byLabel_.constFind(label);
    if (found != byLabel_.constEnd())
        return *found;
    const bool matched = pattern_.matches(label);
    byLabel_.insert(label, matched);
    return matched;
}
