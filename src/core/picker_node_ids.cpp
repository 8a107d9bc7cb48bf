#include "picker_node_ids.h"

#include <QHash>

namespace {

QHash<QString, int>& node_table() {
    static QHash<QString, int> table;
    return table;
}

} // namespace

int intern_node_name(const QString& name) {
    QHash<QString, int>& table = node_table();
    auto found = table.constFind(name);
    if (found == table.constEnd())
        found = table.insert(name, static_cast<int>(table.size()));
    return found.value();
}

void name_lookup::insert(const QString& name) {
    insertId(intern_node_name(name));
}

void name_lookup::insertId(int id) {
    if (held_.size() <= id)
        held_.resize(node_table().size());
    held_[id] = 1;
}
