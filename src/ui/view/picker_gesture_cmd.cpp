#include "picker_gesture_cmd.h"

#include "picker_dialog.h"
#include "picker_edit_cmd.h"
#include "picker_help_browser.h"
#include "picker_overlay.h"
#include "picker_view.h"

#include <cmath>

namespace {

int sign_of(int v) {
    return v < 1 ? -1 : 1;
}

} // namespace

int simple_max(int a, int b) {
    return a < b ? b : a;
}

select_button_cmd::select_button_cmd(picker_view* view, const QPoint& click, int modifiers)
    : view_(view), tab_(view->tab()), click_(click), last_(click) {
    if ((modifiers & Qt::ShiftModifier) != 0) {
        start_ = button_set::fromStringList(tab_->mirror()->names());
        extend_ = true;
    }
    if ((modifiers & Qt::ControlModifier) != 0)
        edit_ = true;

    const int hit = view_->find_button(click_);
    // A partly lit button counts as selected, as a fully lit one does.
    const bool selected = hit >= 0 && tab_->buttons().at(hit).selected != buttonRecord::None;
    if (hit < 0) {
        if (!extend_)
            view_->clearAllSelected();
    } else if (!edit_) {
        if (!extend_)
            view_->clearAllSelected();
        if (tab_->buttons().at(hit).selected == buttonRecord::None) {
            tab_->select(hit, true);
            tab_->conform_to_selection();
        } else if (extend_) {
            tab_->unselect(hit, true);
            tab_->conform_to_selection();
        }
    } else if (!selected) {
        if (!extend_)
            tab_->clear_selected();
        tab_->select(hit, true);
        dragging_ = true;
    } else if (!extend_) {
        dragging_ = true;
    } else {
        tab_->unselect(hit, true);
    }
    if (dragging_) {
        dragged_ = tab_->idsOf(tab_->selectedIndices());
        anchor_ = tab_->buttons().at(hit).att.pos;
    }
}

QPoint select_button_cmd::displacement() const {
    const float scale = 1.0f / static_cast<float>(view_->zoom());
    const QPoint free(static_cast<int>(static_cast<float>(last_.x() - click_.x()) * scale),
                      static_cast<int>(static_cast<float>(last_.y() - click_.y()) * scale));
    const int grid = view_->moveGrid();
    if (grid <= 0)
        return free;
    const auto onGrid = [grid](int v) {
        return static_cast<int>(std::floor(static_cast<double>(v) / grid + 0.5)) * grid;
    };
    const QPoint target = anchor_ + free;
    return QPoint(onGrid(target.x()), onGrid(target.y())) - anchor_;
}

void select_button_cmd::update(const QPoint& pos, int) {
    if (pos == last_)
        return;
    last_ = pos;
    if (dragging_) {
        view_->showDragged(dragged_, displacement());
        return;
    }
    marquee_overlay* marquee = view_->overlay()->marquee();
    if (!tracking_) {
        if ((last_ - click_).manhattanLength() <= 3)
            return;
        tracking_ = true;
        marquee->setAnchor(click_);
    }
    marquee->setPoint(last_);
    const QRect bounds = marquee->bounds();
    if (extend_) {
        // Back to the press's selection, mirror included, so that names the band has let go of
        // are not posted to the host at the release.
        tab_->mirror()->setNames(QStringList(start_.begin(), start_.end()));
        tab_->conform_to_set(start_);
    } else {
        tab_->clear_selected();
    }
    view_->select_bounds(bounds, extend_);
    if (!edit_)
        tab_->conform_to_selected();
    view_->update();
}

void select_button_cmd::finish() {
    marquee_overlay* marquee = view_->overlay()->marquee();
    const bool shown = !marquee->isEmpty();
    if (shown) {
        marquee->reset();
        view_->update();
    }
    if (!edit_) {
        if (!view_->postSelection() && !shown) {
            view_->update_toolbox();
            return;
        }
    } else if (dragging_) {
        view_->endPreview();
        const index_list indices = tab_->indicesOf(dragged_);
        if (last_ != click_ && !indices.isEmpty()) {
            point_list start;
            for (const int index : indices)
                start.append(tab_->buttons().at(index).att.pos);
            tab_->undoer()->push(new move_buttons_cmd(tab_, start, indices, displacement()));
        }
    }
    view_->update_toolbox();
}

add_manybuttons_cmd::add_manybuttons_cmd(picker_view* view, const QStringList& names)
    : view_(view), names_(names) {}

void add_manybuttons_cmd::update(const QPoint& pos, int) {
    if (!active_ || names_.isEmpty())
        return;
    const toolboxState style = view_->buttonStyle();
    const int size = style.size;
    if (buttons_.isEmpty()) {
        start_ = view_->mapToPicker(pos);
        QPoint at = start_;
        for (const QString& name : std::as_const(names_)) {
            buttonAttributes button =
                toolbox_button(style, at, buttonAttributes::Selection, QStringList{name});
            button.label.clear();
            buttons_.append(button);
            at.rx() += size + 1;
        }
    } else {
        const int n = static_cast<int>(buttons_.size());
        const QPoint p = view_->mapToPicker(pos);
        int dx = (p.x() - start_.x()) / n;
        int dy = (p.y() - start_.y()) / n;
        if (simple_max(-dx, dx) > simple_max(-dy, dy))
            dx = sign_of(dx) * simple_max(size, simple_max(-dx, dx));
        else
            dy = sign_of(dy) * simple_max(size, simple_max(-dy, dy));
        for (int i = 0; i < n; ++i)
            buttons_[i].pos = start_ + QPoint(i * dx, i * dy);
    }
    view_->showPreview(buttons_);
}

void add_manybuttons_cmd::finish() {
    view_->endPreview();
    if (!buttons_.isEmpty()) {
        view_->tab()->undoer()->push(
            new add_button_cmd(view_->tab(), buttons_, QStringLiteral("Add Many Buttons")));
        view_->frame_to_fit(true);
    }
    view_->adjustCursor(true);
}

track_button_cmd::track_button_cmd(picker_view* view, const QPoint& press, int index)
    : view_(view), tab_(view->tab()), id_(tab_->buttons().at(index).id),
      bbox_(view->mapToScreen(view->shape(index).bounds)) {
    update(press, 0);
}

// A command button's entry is its script, not a node: it lights without reaching the selection
// mirror.
void track_button_cmd::update(const QPoint& pos, int) {
    const int index = tab_->indexOf(id_);
    if (index < 0)
        return;
    const bool inside = bbox_.contains(pos);
    if ((tab_->buttons().at(index).selected != buttonRecord::None) == inside)
        return;
    if (inside)
        tab_->select(index, false);
    else
        tab_->unselect(index, false);
}

void track_button_cmd::finish() {
    const int index = tab_->indexOf(id_);
    if (index >= 0 && tab_->buttons().at(index).selected != buttonRecord::None) {
        run_command_button(tab_->buttons().at(index).att);
        tab_->unselect(index, false);
    }
    view_->update_toolbox();
}

track_url_cmd::track_url_cmd(picker_view* view, const QRect& bounds, const QPoint& press,
                             const QString& page)
    : view_(view), bounds_(bounds), where_(press), page_(page) {}

void track_url_cmd::update(const QPoint& pos, int) {
    where_ = pos;
}

void track_url_cmd::finish() {
    if (bounds_.contains(where_))
        open_help_page(view_->window(), page_);
}

shift_picker_cmd::shift_picker_cmd(picker_view* view, const QPoint& press)
    : view_(view), start_(press), last_(press), shift_(view->shift()) {}

void shift_picker_cmd::update(const QPoint& pos, int) {
    if (pos == last_)
        return;
    view_->setShift(shift_ + (pos - start_));
    last_ = pos;
}

zoom_picker_cmd::zoom_picker_cmd(picker_view* view, const QPoint& press)
    : view_(view), start_(press), last_(press), bzoom_(static_cast<float>(view->zoom())) {}

void zoom_picker_cmd::update(const QPoint& pos, int) {
    if (pos == last_)
        return;
    last_ = pos;
    const int steps = ((last_.x() - start_.x()) + (last_.y() - start_.y())) / 20;
    float z = bzoom_;
    for (int i = 1; i < steps; ++i)
        z *= 1.0625f;
    for (int i = 1; i < -steps; ++i)
        z *= 0.9375f;
    view_->setZoom(z, start_);
}
