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

// Folded short names, each once, and which one each interned node name has. Rigs repeat their
// control names under every character's namespace, so a picker holds few of them.
struct short_name_table {
    QHash<QString, int> ids;
    std::vector<QString> names;
    std::vector<int> byNode; // by interned node id; -1 not worked out yet
};

short_name_table& short_names() {
    static short_name_table table;
    return table;
}

int short_name_id(int nodeId, const QString& name) {
    short_name_table& table = short_names();
    if (size_t(nodeId) >= table.byNode.size())
        table.byNode.resize(size_t(nodeId) + 1024, -1);
    int& id = table.byNode[size_t(nodeId)];
    if (id < 0) {
        const QString folded = node_short_name(name).toString().toCaseFolded();
        auto found = table.ids.constFind(folded);
        if (found == table.ids.constEnd()) {
            found = table.ids.insert(folded, int(table.names.size()));
            table.names.push_back(folded);
        }
        id = found.value();
    }
    return id;
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
    const int shortId = short_name_id(id, name);
    if (size_t(shortId) >= byShortName_.size())
        byShortName_.resize(short_names().names.size(), 0);
    char& known = byShortName_[size_t(shortId)];
    if (known == 0)
        known = pattern_.matchesFolded(short_names().names[size_t(shortId)]) ? 2 : 1;
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
