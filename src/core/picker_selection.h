#pragma once

#include <QStringList>

// The process-wide list of node names the picker holds as selected, in the order they were
// added. It mirrors the host's active selection; the window delegates to it.
class picker_selection {
public:
    static const QStringList& names();
    static void setNames(const QStringList& names);
    static void clear();
    // False when the name is already held.
    static bool selectButton(const QString& name);
    // Removes the first occurrence; false when there was none.
    static bool unselectButton(const QString& name);
};
