#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// Node names interned to small integers for the life of the process, so that lighting every
// button from the host's selection compares numbers instead of hashing strings. The table only
// grows: it holds every name a button has carried or the selection has held.
int intern_node_name(const QString& name);

// The selected names as a set of interned ids.
class name_lookup {
public:
    name_lookup() = default;
    template <typename Iterator>
    name_lookup(Iterator first, Iterator last) {
        for (; first != last; ++first)
            insert(*first);
    }

    void insert(const QString& name);
    void insertId(int id);
    bool contains(int id) const { return id < held_.size() && held_.at(id) != 0; }
    bool isEmpty() const { return held_.isEmpty(); }

private:
    QVector<char> held_;
};
