#include "picker_tab.h"

#include <QSet>

namespace {

void prefetch(const void* address) {
#if defined(__GNUC__)
    __builtin_prefetch(address);
#else
    Q_UNUSED(address);
#endif
}

} // namespace

picker_tab::picker_tab(picker_selection* mirror, QObject* parent)
    : QObject(parent), mirror_(mirror != nullptr ? mirror : &ownMirror_) {}

int picker_tab::indexOf(quint32 id) const {
    for (int i = 0; i < buttons_.size(); ++i) {
        if (buttons_.at(i).id == id)
            return i;
    }
    return -1;
}

id_list picker_tab::idsOf(const index_list& indices) const {
    id_list ids;
    ids.reserve(indices.size());
    for (const int index : indices) {
        if (index >= 0 && index < buttons_.size())
            ids.append(buttons_.at(index).id);
    }
    return ids;
}

index_list picker_tab::indicesOf(const id_list& ids) const {
    const QSet<quint32> wanted(ids.cbegin(), ids.cend());
    index_list indices;
    for (int i = 0; i < buttons_.size(); ++i) {
        if (wanted.contains(buttons_.at(i).id))
            indices.append(i);
    }
    return indices;
}

void picker_tab::setBackground(const QString& key, const QPixmap& image) {
    backgroundKey_ = key;
    background_ = image;
    emit backgroundChanged();
}

buttonRecord picker_tab::record_of(const buttonAttributes& att) {
    buttonRecord record;
    record.att = att;
    record.which = sel_list(att.sel.size(), 0);
    record.id = nextId_++;
    return record;
}

int picker_tab::insertButton(const buttonAttributes& att, int index) {
    if (index < 0 || index > buttons_.size())
        index = count();
    buttons_.insert(index, record_of(att));
    emit buttonsInserted({index});
    emit changed();
    return index;
}

void picker_tab::insertButtons(const index_list& indices, const button_att_list& buttons) {
    if (indices.isEmpty())
        return;
    index_list placed;
    placed.reserve(indices.size());
    for (int i = 0; i < indices.size() && i < buttons.size(); ++i) {
        const int index = qBound(0, indices.at(i), count());
        buttons_.insert(index, record_of(buttons.at(i)));
        placed.append(index);
    }
    emit buttonsInserted(placed);
    emit changed();
}

void picker_tab::removeButtons(const index_list& indices) {
    index_list removed;
    removed.reserve(indices.size());
    // From the back, so that the earlier indices still point at their buttons.
    for (int i = indices.size() - 1; i >= 0; --i) {
        const int index = indices.at(i);
        if (index < 0 || index >= buttons_.size())
            continue;
        buttons_.removeAt(index);
        removed.prepend(index);
    }
    if (removed.isEmpty())
        return;
    emit buttonsRemoved(removed);
    emit changed();
}

void picker_tab::replaceButtons(const button_att_list& buttons) {
    undoer_.clear();
    buttons_.clear();
    buttons_.reserve(buttons.size());
    for (const buttonAttributes& att : buttons)
        buttons_.append(record_of(att));
    emit buttonsReset();
    emit changed();
}

bool picker_tab::any_selected() const {
    for (const buttonRecord& button : buttons_) {
        if (button.selected != buttonRecord::None)
            return true;
    }
    return false;
}

index_list picker_tab::selectedIndices() const {
    index_list lit;
    for (int i = 0; i < buttons_.size(); ++i) {
        if (buttons_.at(i).selected != buttonRecord::None)
            lit.append(i);
    }
    return lit;
}

button_att_list picker_tab::getButtons() const {
    button_att_list lit;
    for (const buttonRecord& button : buttons_) {
        if (button.selected != buttonRecord::None)
            lit.append(button.att);
    }
    return lit;
}

void picker_tab::select(int index, bool report) {
    if (index < 0 || index >= buttons_.size())
        return;
    buttons_[index].select(report ? mirror_ : nullptr);
    emit litChanged();
}

void picker_tab::unselect(int index, bool report) {
    if (index < 0 || index >= buttons_.size())
        return;
    buttons_[index].unselect(report ? mirror_ : nullptr);
    emit litChanged();
}

void picker_tab::select_list(const index_list& indices, bool report) {
    for (const int index : indices) {
        if (index >= 0 && index < buttons_.size())
            buttons_[index].select(report ? mirror_ : nullptr);
    }
    emit litChanged();
}

bool picker_tab::clear_selected() {
    bool any = false;
    for (buttonRecord& button : buttons_) {
        if (button.selected != buttonRecord::None) {
            button.unselect(mirror_);
            any = true;
        }
    }
    if (any)
        emit litChanged();
    return any;
}

bool picker_tab::conform_to_set(const button_set& names) {
    return conform_to_set(name_lookup(names.cbegin(), names.cend()));
}

bool picker_tab::conform_to_set(const name_lookup& names) {
    bool changed = false;
    // Each button's flags live in a block of their own; fetching them some buttons ahead keeps a
    // large picker from waiting on memory at every button.
    constexpr int ahead = 16;
    const auto end = buttons_.end();
    for (auto it = buttons_.begin(); it != end; ++it) {
        if (end - it > ahead)
            prefetch((it + ahead)->which.constData());
        buttonRecord& button = *it;
        const auto& sel = button.node_ids();
        const qsizetype size = sel.size();
        if (button.which.size() != size)
            button.which.resize(size);
        char* const flags = button.which.data();
        const int* const ids = sel.constData();
        int hits = 0;
        for (qsizetype i = 0; i < size; ++i) {
            const char held = names.contains(ids[i]) ? 1 : 0;
            flags[i] = held;
            hits += held;
        }
        const qint16 lit = hits == size ? buttonRecord::All
                           : hits < 1   ? buttonRecord::None
                                        : buttonRecord::Some;
        if (lit != button.selected) {
            button.selected = lit;
            changed = true;
        }
    }
    if (changed)
        emit litChanged();
    return changed;
}

bool picker_tab::conform_to_selection() {
    const QStringList& names = mirror_->names();
    return conform_to_set(name_lookup(names.cbegin(), names.cend()));
}

void picker_tab::append_selected(button_set& out) const {
    for (const buttonRecord& button : buttons_) {
        if (button.att.type != buttonAttributes::Selection)
            continue;
        const int flagged = static_cast<int>(qMin(button.which.size(), button.att.sel.size()));
        for (int i = 0; i < flagged; ++i) {
            if (button.which.at(i) != 0)
                out.append(button.att.sel.at(i));
        }
    }
}

bool picker_tab::conform_to_selected() {
    button_set lit;
    append_selected(lit);
    return conform_to_set(lit);
}

int picker_tab::mark_found(picker_name_matcher& matcher) {
    const bool looking = !matcher.pattern().isEmpty();
    int count = 0;
    bool changed = false;
    for (buttonRecord& button : buttons_) {
        bool found = false;
        if (looking) {
            found = matcher.matchesLabel(button.att.label);
            if (!found && button.att.type == buttonAttributes::Selection) {
                const auto& ids = button.node_ids();
                for (qsizetype i = 0; i < ids.size() && !found; ++i)
                    found = matcher.matchesName(ids.at(i), button.att.sel.at(i));
            }
        }
        count += found ? 1 : 0;
        changed = changed || found != button.found;
        button.found = found;
    }
    if (changed)
        emit marksChanged();
    return count;
}

index_list picker_tab::foundIndices() const {
    index_list found;
    for (int i = 0; i < buttons_.size(); ++i) {
        if (buttons_.at(i).found)
            found.append(i);
    }
    return found;
}

void picker_tab::mark_missing(const name_lookup& missing) {
    missing_ = missing;
    bool changed = false;
    for (buttonRecord& button : buttons_) {
        qint16 state = buttonRecord::None;
        if (button.att.type == buttonAttributes::Selection) {
            const auto& ids = button.node_ids();
            int absent = 0;
            for (const int id : ids)
                absent += missing.contains(id) ? 1 : 0;
            state = absent == 0            ? buttonRecord::None
                    : absent == ids.size() ? buttonRecord::All
                                           : buttonRecord::Some;
        }
        changed = changed || state != button.missing;
        button.missing = state;
    }
    if (changed)
        emit marksChanged();
}

void picker_tab::collect_names(std::vector<char>& asked, QStringList& names, QVector<int>& ids) {
    for (buttonRecord& button : buttons_) {
        if (button.att.type != buttonAttributes::Selection)
            continue;
        const auto& own = button.node_ids();
        for (qsizetype n = 0; n < own.size(); ++n) {
            const int id = own.at(n);
            if (size_t(id) >= asked.size())
                asked.resize(size_t(id) + 1024, 0);
            if (asked[size_t(id)])
                continue;
            asked[size_t(id)] = 1;
            names.append(button.att.sel.at(n));
            ids.append(id);
        }
    }
}
