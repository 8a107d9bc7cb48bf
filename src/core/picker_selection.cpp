#include "picker_selection.h"

namespace {

QStringList& held() {
    static QStringList names;
    return names;
}

} // namespace

const QStringList& picker_selection::names() {
    return held();
}

void picker_selection::setNames(const QStringList& names) {
    held() = names;
}

void picker_selection::clear() {
    held().clear();
}

bool picker_selection::selectButton(const QString& name) {
    if (held().contains(name)) {
        return false;
    }
    held().append(name);
    return true;
}

bool picker_selection::unselectButton(const QString& name) {
    if (held().isEmpty()) {
        return false;
    }
    return held().removeOne(name);
}
