#include "picker_view.h"

#include <QColor>
#include <QPainter>

namespace {

QRect square_around(const QPoint& centre, int size) {
    QRect bounds(0, 0, size, size);
    bounds.moveCenter(centre);
    return bounds;
}

} // namespace

picker_view::picker_view(QWidget* parent) : QWidget(parent) {}

void picker_view::setBackground(const QString& key, const QPixmap& image) {
    backgroundKey_ = key;
    background_ = image;
    update();
}

int picker_view::push_button(const buttonAttributes& att, int index) {
    buttonRecord record;
    record.att = att;
    record.selected = buttonRecord::None;
    record.which = sel_list(att.sel.size(), 0);
    record.bounds = square_around(att.pos, att.size);
    if (index < 0 || index > blist_.size()) {
        blist_.append(record);
        return static_cast<int>(blist_.size()) - 1;
    }
    blist_.insert(index, record);
    return index;
}

void picker_view::pop_button(int index) {
    if (index >= 0 && index < blist_.size())
        blist_.removeAt(index);
}

void picker_view::reset_buttons() {
    if (blist_.isEmpty())
        return;
    undoer_.clear();
    blist_.clear();
}

bool picker_view::any_selected() const {
    for (const buttonRecord& button : blist_) {
        if (button.selected != buttonRecord::None)
            return true;
    }
    return false;
}

bool picker_view::conform_to_set(const button_set& names) {
    bool changed = false;
    for (buttonRecord& button : blist_) {
        const QStringList& sel = button.att.sel;
        button.which.resize(sel.size());
        int hits = 0;
        for (int i = 0; i < sel.size(); ++i) {
            const bool held = names.contains(sel.at(i));
            button.which[i] = held ? 1 : 0;
            if (held)
                ++hits;
        }
        // A button without names counts as fully lit (0 of 0).
        const qint16 lit = hits == sel.size() ? buttonRecord::All
                           : hits < 1         ? buttonRecord::None
                                              : buttonRecord::Some;
        if (lit != button.selected) {
            button.selected = lit;
            changed = true;
        }
    }
    return changed;
}

bool picker_view::clear_selected() {
    bool any = false;
    for (buttonRecord& button : blist_) {
        if (button.selected != buttonRecord::None) {
            button.unselect(false);
            any = true;
        }
    }
    return any;
}

void picker_view::streamTo(QDataStream& stream) const {
    button_att_list attributes;
    attributes.reserve(blist_.size());
    for (const buttonRecord& button : blist_)
        attributes.append(button.att);
    writeButtonList(stream, attributes);
}

void picker_view::streamFrom(QDataStream& stream, int version) {
    reset_buttons();
    const button_att_list attributes = readButtonList(stream, version);
    for (const buttonAttributes& att : attributes)
        push_button(att, -1);
}

void picker_view::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!background_.isNull())
        painter.drawPixmap(0, 0, background_);
    for (const buttonRecord& button : blist_) {
        QColor fill = QColor::fromRgb(button.att.color);
        if (button.selected == buttonRecord::All)
            fill = Qt::white;
        else if (button.selected == buttonRecord::Some)
            fill = Qt::gray;
        painter.fillRect(button.bounds, fill);
        painter.setPen(Qt::black);
        painter.drawRect(button.bounds.adjusted(0, 0, -1, -1));
    }
}
