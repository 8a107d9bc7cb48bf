#pragma once

#include <QStringList>

// The node names the picker holds as selected, in the order they were added. It mirrors the
// host's active selection; one is shared by every tab of a window.
class picker_selection {
public:
    const QStringList& names() const { return names_; }
    void setNames(const QStringList& names) { names_ = names; }
    void clear() { names_.clear(); }
    // False when the name is already held.
    bool selectButton(const QString& name);
    // Removes the first occurrence; false when there was none.
    bool unselectButton(const QString& name);

private:
    QStringList names_;
};
