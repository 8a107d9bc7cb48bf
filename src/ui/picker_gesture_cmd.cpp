#include "picker_gesture_cmd.h"

#include "picker_overlay.h"
#include "picker_selection.h"
#include "picker_toolbox.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QDesktopServices>
#include <QUrl>

namespace {

// Without a window (a view on its own) only this view's buttons are there to clear.
void clear_all_selected(picker_view* view) {
    if (view->window() != nullptr) {
        view->window()->clearAllSelected();
    } else {
        view->clear_selected();
        picker_selection::clear();
    }
}

// What new buttons take; a view outside any window takes what a fresh toolbox holds.
toolboxState toolbox_of(const picker_view* view) {
    toolboxState state;
    if (const picker_window* window = view->window()) {
        state.color = window->currentColor();
        state.textcolor = window->currentTextColor();
        state.size = window->currentSize();
    }
    return state;
}

int sign_of(int v) {
    return v < 1 ? -1 : 1;
}

} // namespace

int simple_max(int a, int b) {
    return a < b ? b : a;
}

select_button_cmd::select_button_cmd(picker_view* view, const QPoint& click, int modifiers)
    : view_(view), click_(click), last_(click) {
    if ((modifiers & Qt::ShiftModifier) != 0) {
        start_ = button_set::fromStringList(picker_window::selection());
        extend_ = true;
    }
    if ((modifiers & Qt::ControlModifier) != 0)
        edit_ = true;

    buttonRecord* hit = view_->find_button(click_);
    bool changed = false;
    if (hit == nullptr) {
        if (!extend_)
            clear_all_selected(view_);
    } else if (!edit_) {
        if (!extend_)
            clear_all_selected(view_);
        // A partly lit button counts as not selected: Shift-click lights it fully.
        if (hit->selected != buttonRecord::All) {
            hit->select(false);
            view_->conform_to_selection();
            changed = true;
        } else if (extend_) {
            hit->unselect(false);
            view_->conform_to_selection();
            changed = true;
        }
    } else if (hit->selected != buttonRecord::All) {
        if (!extend_)
            view_->clear_selected();
        hit->select(false);
        changed = true;
        dragging_ = true;
    } else if (!extend_) {
        dragging_ = true;
    } else {
        hit->unselect(false);
        changed = true;
    }
    if (dragging_)
        save_buttons();
    if (changed)
        view_->refresh();
}

void select_button_cmd::save_buttons() {
    const button_list& buttons = *view_->buttons();
    for (int i = 0; i < buttons.size(); ++i) {
        if (buttons.at(i).selected != buttonRecord::None) {
            sel_.append(i);
            saved_.append(buttons.at(i).att.pos);
        }
    }
}

QPoint select_button_cmd::displacement() const {
    const float scale = 1.0f / static_cast<float>(view_->zoom());
    return QPoint(static_cast<int>(static_cast<float>(last_.x() - click_.x()) * scale),
                  static_cast<int>(static_cast<float>(last_.y() - click_.y()) * scale));
}

void select_button_cmd::move_buttons() {
    const QPoint d = displacement();
    button_list& buttons = *view_->buttons();
    // A key may delete buttons while the pointer is held.
    for (int i = 0; i < sel_.size(); ++i) {
        if (sel_.at(i) < buttons.size())
            buttons[sel_.at(i)].moveTo(saved_.at(i) + d);
    }
    view_->refresh();
}

void select_button_cmd::update(const QPoint& pos, int) {
    if (pos == last_)
        return;
    last_ = pos;
    if (dragging_) {
        move_buttons();
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
        picker_selection::setNames(QStringList(start_.begin(), start_.end()));
        view_->conform_to_set(start_);
    } else {
        view_->clear_selected();
    }
    view_->select_bounds(bounds, extend_);
    if (!edit_)
        view_->conform_to_selected();
    view_->refresh();
}

void select_button_cmd::finish() {
    marquee_overlay* marquee = view_->overlay()->marquee();
    const bool shown = !marquee->isEmpty();
    if (shown)
        marquee->reset();

    if (!edit_) {
        const bool posted = view_->window() != nullptr && view_->window()->postSelection();
        if (!posted && !shown) {
            view_->update_toolbox();
            return;
        }
        view_->refresh();
    } else if (!dragging_) {
        if (shown)
            view_->refresh();
    } else if (last_ != click_) {
        view_->undoer()->push(new move_buttons_cmd(view_, saved_, sel_, displacement()));
    }
    view_->update_toolbox();
}

add_manybuttons_cmd::add_manybuttons_cmd(picker_view* view) : view_(view) {}

void add_manybuttons_cmd::update(const QPoint& pos, int) {
    if (!active_)
        return;
    if (!tracking_)
        create_buttons(pos);
    else
        fan_out(pos);
}

void add_manybuttons_cmd::create_buttons(const QPoint& pos) {
    tracking_ = true;
    const toolboxState toolbox = toolbox_of(view_);
    start_ = view_->mapToPicker(pos);

    buttonAttributes button;
    button.color = toolbox.color;
    button.tcolor = toolbox.textcolor;
    button.type = buttonAttributes::Selection;
    button.api = buttonAttributes::Mel;
    button.size = toolbox.size;
    button.sel = QStringList{QString()};
    button.pos = start_;
    for (const QString& name : picker_window::selection()) {
        button.sel[0] = name;
        sel_.append(view_->push_button(button, -1));
        button.pos.rx() += toolbox.size + 1;
    }
    view_->refresh();
}

void add_manybuttons_cmd::fan_out(const QPoint& pos) {
    const int n = sel_.size();
    if (n < 1)
        return;
    const int size = toolbox_of(view_).size;
    const QPoint p = view_->mapToPicker(pos);
    int dx = (p.x() - start_.x()) / n;
    int dy = (p.y() - start_.y()) / n;
    if (simple_max(-dx, dx) > simple_max(-dy, dy))
        dx = sign_of(dx) * simple_max(size, simple_max(-dx, dx));
    else
        dy = sign_of(dy) * simple_max(size, simple_max(-dy, dy));

    button_list& buttons = *view_->buttons();
    for (int i = 0; i < n; ++i) {
        if (sel_.at(i) < buttons.size())
            buttons[sel_.at(i)].moveTo(start_ + QPoint(i * dx, i * dy));
    }
    view_->refresh();
}

void add_manybuttons_cmd::finish() {
    view_->conform_to_selection();
    view_->signal_changed();
    view_->adjustCursor(true);
}

track_button_cmd::track_button_cmd(picker_view* view, const QPoint& press, buttonRecord* button)
    : view_(view), brp_(button), bbox_(view->mapToScreen(button->bounds)) {
    update(press, 0);
}

// A command button's entry is its script, not a node: it lights without reaching the selection
// mirror.
void track_button_cmd::update(const QPoint& pos, int) {
    if (!live())
        return;
    const bool inside = bbox_.contains(pos);
    if ((brp_->selected != buttonRecord::None) == inside)
        return;
    if (inside)
        brp_->select(true);
    else
        brp_->unselect(true);
    view_->update();
}

bool track_button_cmd::live() const {
    const button_list& buttons = *view_->buttons();
    for (const buttonRecord& button : buttons) {
        if (&button == brp_)
            return true;
    }
    return false;
}

void track_button_cmd::finish() {
    if (live() && brp_->selected != buttonRecord::None) {
        view_->do_button_action(brp_->att);
        brp_->unselect(true);
        view_->refresh();
    }
    view_->update_toolbox();
}

track_url_cmd::track_url_cmd(const QRect& bounds, const QPoint& press, const QString& url)
    : bounds_(bounds), where_(press), url_(url) {}

void track_url_cmd::update(const QPoint& pos, int) {
    where_ = pos;
}

void track_url_cmd::finish() {
    if (bounds_.contains(where_))
        QDesktopServices::openUrl(QUrl(url_));
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
