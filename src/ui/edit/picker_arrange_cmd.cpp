#include "picker_arrange_cmd.h"

#include <algorithm>

namespace {

// The next multiple of n strictly above value (for value >= 0): a multiple still grows by n.
int round_fn(int value, int n) {
    return value + n - (value % n);
}

// Stable insertion sort of indices by key(button); equal keys keep their earlier order.
template <typename Key>
void sort_by(const button_list& buttons, index_list& indices, Key key) {
    if (indices.size() < 1)
        return;
    index_list sorted{indices.first()};
    sorted.reserve(indices.size());
    for (int k = 1; k < indices.size(); ++k) {
        const int index = indices.at(k);
        const int value = key(buttons.at(index));
        if (key(buttons.at(sorted.last())) > value) {
            int place = 0;
            while (key(buttons.at(sorted.at(place))) <= value)
                ++place;
            sorted.insert(place, index);
        } else {
            sorted.append(index);
        }
    }
    indices = sorted;
}

} // namespace

arrange_buttons_cmd::arrange_buttons_cmd(picker_tab* tab, int action)
    : QUndoCommand(QStringLiteral("Arrange Buttons")), tab_(tab), action_(action) {
    const button_list& buttons = tab_->buttons();
    qint64 sumX = 0;
    qint64 sumY = 0;
    for (int i = 0; i < buttons.size(); ++i) {
        const buttonRecord& button = buttons.at(i);
        if (button.selected == buttonRecord::None)
            continue;
        const QPoint& pos = button.att.pos;
        sumX += pos.x();
        sumY += pos.y();
        const QRect unit(pos, QSize(1, 1));
        bounds_ = sel_.isEmpty() ? unit : bounds_ | unit;
        sel_.append(i);
        saved_.append(pos);
    }
    const int n = sel_.size();
    if (n < 1)
        return;
    order_ = sel_;
    if (action_ == align_horizontal || action_ == spread_horizontal)
        sort_by(buttons, order_, [](const buttonRecord& b) { return b.att.pos.x(); });
    else
        sort_by(buttons, order_, [](const buttonRecord& b) { return b.att.pos.y(); });
    center_ = QPoint(int(sumX / n), int(sumY / n));
    // Widened past the extremes so that n - 1 steps of a whole unit cover it.
    bounds_.setWidth(round_fn(bounds_.width(), n));
    bounds_.setHeight(round_fn(bounds_.height(), n));
}

void arrange_buttons_cmd::redo() {
    const int n = order_.size();
    if (n <= 1)
        return;
    const int stepX = bounds_.width() / (n - 1);
    const int stepY = bounds_.height() / (n - 1);
    // The place of each button in the mode's order, by its place in sel_ (which ascends).
    QVector<int> rank(n);
    for (int i = 0; i < n; ++i)
        rank[int(std::lower_bound(sel_.cbegin(), sel_.cend(), order_.at(i)) - sel_.cbegin())] = i;
    tab_->editButtons(sel_, [&](buttonAttributes& att, int i) {
        const QPoint pos = saved_.at(i);
        switch (action_) {
        case align_horizontal:
            att.pos = QPoint(pos.x(), center_.y());
            break;
        case align_vertical:
            att.pos = QPoint(center_.x(), pos.y());
            break;
        case spread_horizontal:
            att.pos = QPoint(bounds_.left() + rank.at(i) * stepX, pos.y());
            break;
        case spread_vertical:
            att.pos = QPoint(pos.x(), bounds_.top() + rank.at(i) * stepY);
            break;
        default:
            break;
        }
    });
}

void arrange_buttons_cmd::undo() {
    tab_->editButtons(sel_, [this](buttonAttributes& att, int i) { att.pos = saved_.at(i); });
}
