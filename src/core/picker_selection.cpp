#include "picker_selection.h"

bool picker_selection::selectButton(const QString& name) {
    if (names_.contains(name))
        return false;
    names_.append(name);
    return true;
}

bool picker_selection::unselectButton(const QString& name) {
    return names_.removeOne(name);
}
