#include "picker_arrange_cmd.h"

#include "picker_view.h"

namespace {

enum arrange_mode {
    align_horizontal = 0,
    align_vertical = 1,
    spread_horizontal = 2,
    spread_vertical = 3
};

// The next multiple of n strictly above value (for value >= 0): a multiple still grows by n.
int round_fn(int value, int n) {
    return value + n - (value % n);
}

// Stable insertion sort of indices by key(button); equal keys keep their earlier order.
template <typename Key>
void sort_by(const QList<buttonRecord>* buttons, QVector<int>& indices, Key key) {
    if (indices.size() < 1)
        return;
    QVector<int> sorted{indices.first()};
    sorted.reserve(indices.size());
    for (int k = 1; k < indices.size(); ++k) {
        const int index = indices.at(k);
        const int value = key(buttons->at(index));
        if (key(buttons->at(sorted.last())) > value) {
            int place = 0;
            while (key(buttons->at(sorted.at(place))) <= value)
                ++place;
            sorted.insert(place, index);
        } else {
            sorted.append(index);
        }
    }
    indices = sorted;
}

void sort_horizontal(const QList<buttonRecord>* buttons, QVector<int>& indices) {
    sort_by(buttons, indices, [](const buttonRecord& b) { return b.att.pos.x(); });
}

void sort_vertical(const QList<buttonRecord>* buttons, QVector<int>& indices) {
    sort_by(buttons, indices, [](const buttonRecord& b) { return b.att.pos.y(); });
}

} // namespace

arrange_buttons_cmd::arrange_buttons_cmd(picker_view* view, int action)
    : QUndoCommand(QStringLiteral("Arrange Buttons")), view_(view), action_(action) {
    const button_list* buttons = view_->buttons();
    qint64 sumX = 0;
    qint64 sumY = 0;
    for (int i = 0; i < buttons->size(); ++i) {
        const buttonRecord& button = buttons->at(i);
        if (button.selected == buttonRecord::None)
            continue;
        const QPoint& pos = button.att.pos;
        sumX += pos.x();
        sumY += pos.y();
        const QRect unit(pos, QSize(1, 1));
        if (sel_.isEmpty())
            bounds_ = unit;
        else
            bounds_ |= unit;
        sel_.append(i);
        saved_.append(pos);
    }
    const int n = sel_.size();
    if (n < 1)
        return;
    if (action_ == align_horizontal || action_ == spread_horizontal)
        sort_horizontal(buttons, sel_);
    else
        sort_vertical(buttons, sel_);
    center_ = QPoint(int(sumX / n), int(sumY / n));
    // Widened past the extremes so that n - 1 steps of a whole unit cover it.
    bounds_.setWidth(round_fn(bounds_.width(), n));
    bounds_.setHeight(round_fn(bounds_.height(), n));
}

void arrange_buttons_cmd::redo() {
    const int n = sel_.size();
    if (n <= 1)
        return;
    const int stepX = bounds_.width() / (n - 1);
    const int stepY = bounds_.height() / (n - 1);
    button_list& buttons = *view_->buttons();
    for (int i = 0; i < n; ++i) {
        buttonRecord& button = buttons[sel_.at(i)];
        const QPoint pos = button.att.pos;
        switch (action_) {
        case align_horizontal:
            button.moveTo(QPoint(pos.x(), center_.y()));
            break;
        case align_vertical:
            button.moveTo(QPoint(center_.x(), pos.y()));
            break;
        case spread_horizontal:
            button.moveTo(QPoint(bounds_.left() + i * stepX, pos.y()));
            break;
        case spread_vertical:
            button.moveTo(QPoint(pos.x(), bounds_.top() + i * stepY));
            break;
        default:
            break;
        }
    }
    view_->refresh();
    view_->signal_changed();
}

void arrange_buttons_cmd::undo() {
    if (sel_.isEmpty())
        return;
    // Positions only: the bounds are left for the view to settle.
    button_list& buttons = *view_->buttons();
    for (int i = 0; i < sel_.size(); ++i)
        buttons[sel_.at(i)].att.pos = saved_.at(i);
    view_->refresh();
    view_->signal_changed();
}
