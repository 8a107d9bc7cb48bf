#include "picker_edit_cmd.h"

#include "picker_toolbox.h"
#include "picker_view.h"
#include "picker_window.h"

#include <utility>

namespace {

// Walks the list upward and takes, for each lit button, its index and field(att). Held keys
// push a command per repeat over thousands of buttons, so the scan writes indices in place.
template <typename Saved, typename Field>
void capture_selected(picker_view* view, index_list& sel, Saved& saved, Field field) {
    const button_list& buttons = *view->buttons();
    const int count = static_cast<int>(buttons.size());
    sel.resize(count);
    int* out = sel.data();
    int taken = 0;
    auto button = buttons.cbegin();
    for (int i = 0; i < count; ++i, ++button) {
        if (button->selected != buttonRecord::None)
            out[taken++] = i;
    }
    sel.resize(taken);
    sel.squeeze();
    saved.reserve(taken);
    for (const int index : std::as_const(sel))
        saved.append(field(buttons.at(index).att));
}

void save_selected_buttons(picker_view* view, index_list& sel, button_att_list& saved) {
    capture_selected(view, sel, saved, [](const buttonAttributes& att) { return att; });
}

// apply(record, place in sel) for each captured index the list still has; others are skipped.
template <typename Apply>
void for_each_in_range(picker_view* view, const index_list& sel, Apply apply) {
    button_list& buttons = *view->buttons();
    for (int i = 0; i < sel.size(); ++i) {
        const int index = sel.at(i);
        if (index >= 0 && index < buttons.size())
            apply(&buttons[index], i);
    }
}

// As for_each_in_range, trusting the replay order to keep every index valid.
template <typename Apply>
void for_each_captured(picker_view* view, const index_list& sel, Apply apply) {
    const auto first = view->buttons()->begin();
    for (int i = 0; i < sel.size(); ++i)
        apply(&first[sel.at(i)], i);
}

// Repaint, mark modified, and let the toolbox show the selection's new state.
void refresh_changed_toolbox(picker_view* view) {
    view->refresh();
    view->signal_changed();
    view->update_toolbox();
}

// Repaint and mark modified; for edits the toolbox does not show.
void refresh_changed(picker_view* view) {
    view->refresh();
    view->signal_changed();
}

void remove_buttons(picker_view* view, index_list sel) {
    if (sel.isEmpty())
        return;
    // From the back, so that the earlier indices still point at their buttons.
    for (int i = sel.size() - 1; i >= 0; --i)
        view->pop_button(sel.at(i));
    refresh_changed_toolbox(view);
}

void restore_buttons(picker_view* view, const index_list& sel, const button_att_list& saved) {
    if (sel.isEmpty())
        return;
    // Ascending, so that each index is right at the moment its button goes back.
    for (int i = 0; i < sel.size(); ++i)
        view->push_button(saved.at(i), sel.at(i));
    refresh_changed_toolbox(view);
}

void expand_rect(QRect& rect, const QPoint& p) {
    if (p.x() < rect.left())
        rect.setLeft(p.x());
    if (rect.right() < p.x())
        rect.setRight(p.x());
    if (p.y() < rect.top())
        rect.setTop(p.y());
    if (rect.bottom() < p.y())
        rect.setBottom(p.y());
}

// A new button without its kind, script or label: placed at where, sized and coloured as the
// toolbox says; a view outside any window takes what a fresh toolbox holds.
buttonAttributes toolbox_button(picker_view* view, const QPoint& where) {
    buttonAttributes att;
    att.pos = view->mapToPicker(where);
    const picker_window* window = view->window();
    const toolboxState fresh;
    att.size = window != nullptr ? window->currentSize() : fresh.size;
    att.color = window != nullptr ? window->currentColor() : fresh.color;
    att.tcolor = window != nullptr ? window->currentTextColor() : fresh.textcolor;
    att.label = window != nullptr ? window->currentLabel() : fresh.label;
    return att;
}

QString singular_or_plural(const index_list& sel, const char* one, const char* many) {
    return QString::fromLatin1(sel.size() >= 2 ? many : one);
}

} // namespace

add_button_cmd::add_button_cmd(picker_view* view, const QPoint& where, const QString& text)
    : QUndoCommand(text), view_(view), ba_(toolbox_button(view, where)) {
    ba_.type = buttonAttributes::Selection;
    ba_.api = buttonAttributes::Mel;
    ba_.sel = picker_window::selection();
}

add_button_cmd::add_button_cmd(picker_view* view, const QPoint& where, const QString& text, int api,
                               const QString& label, const QString& command)
    : QUndoCommand(text), view_(view), ba_(toolbox_button(view, where)) {
    ba_.type = buttonAttributes::Command;
    ba_.api = api;
    ba_.label = label;
    ba_.sel = QStringList{command};
}

void add_button_cmd::redo() {
    index_ = view_->push_button(ba_, -1);
    view_->conform_to_selection();
    refresh_changed(view_);
}

void add_button_cmd::undo() {
    view_->pop_button(index_);
    view_->conform_to_selection();
    refresh_changed(view_);
}

delete_buttons_cmd::delete_buttons_cmd(picker_view* view) : view_(view) {
    save_selected_buttons(view_, sel_, saved_);
    setText(singular_or_plural(sel_, "Delete Button", "Delete Buttons"));
}

void delete_buttons_cmd::undo() {
    restore_buttons(view_, sel_, saved_);
}

void delete_buttons_cmd::redo() {
    remove_buttons(view_, sel_);
}

cut_buttons_cmd::cut_buttons_cmd(picker_view* view) : view_(view) {
    save_selected_buttons(view_, sel_, saved_);
    setText(singular_or_plural(sel_, "Cut Button", "Cut Buttons"));
}

void cut_buttons_cmd::undo() {
    if (sel_.isEmpty())
        return;
    restore_buttons(view_, sel_, saved_);
    view_->clear_selected();
    view_->select_list(sel_, true);
    refresh_changed_toolbox(view_);
}

void cut_buttons_cmd::redo() {
    // Even with nothing cut, whatever is still lit goes dark.
    remove_buttons(view_, sel_);
    view_->clear_selected();
    refresh_changed(view_);
}

paste_buttons_cmd::paste_buttons_cmd(picker_view* view, const QList<buttonAttributes>& buttons,
                                     bool inplace)
    : QUndoCommand(QStringLiteral("Paste Buttons")), view_(view), paste_(buttons),
      inplace_(inplace) {
    if (paste_.isEmpty())
        return;
    // Positions only: the group is placed by its centres, whatever the buttons' sizes.
    bounds_ = QRect(paste_.first().pos, QSize(1, 1));
    for (int i = 1; i < paste_.size(); ++i)
        expand_rect(bounds_, paste_.at(i).pos);
}

void paste_buttons_cmd::undo() {
    if (paste_.isEmpty())
        return;
    remove_buttons(view_, pil_);
    view_->clear_selected();
    refresh_changed_toolbox(view_);
}

void paste_buttons_cmd::redo() {
    if (paste_.isEmpty())
        return;
    const QPoint offset =
        inplace_ ? QPoint() : view_->mapToPicker(view_->rect().center()) - bounds_.center();
    pil_.clear();
    for (const buttonAttributes& button : std::as_const(paste_)) {
        buttonAttributes copy = button;
        copy.pos += offset;
        pil_.append(view_->push_button(copy, -1));
    }
    view_->clear_selected();
    view_->select_list(pil_, true);
    // The stored picker-space bounds are held against the widget rectangle as they are: a group
    // that fits there is not framed.
    if (view_->rect().contains(bounds_)) {
        refresh_changed_toolbox(view_);
        return;
    }
    view_->frameBounds(bounds_, true);
    view_->signal_changed();
    view_->update_toolbox();
}

change_color_cmd::change_color_cmd(picker_view* view, QRgb color)
    : QUndoCommand(QStringLiteral("Change Color")), view_(view), color_(color) {
    capture_selected(view_, sel_, saved_, [](const buttonAttributes& att) { return att.color; });
}

void change_color_cmd::undo() {
    if (sel_.isEmpty())
        return;
    for_each_in_range(view_, sel_,
                      [this](buttonRecord* rec, int i) { rec->att.color = saved_.at(i); });
    refresh_changed_toolbox(view_);
}

void change_color_cmd::redo() {
    if (sel_.isEmpty())
        return;
    for_each_in_range(view_, sel_, [this](buttonRecord* rec, int) { rec->att.color = color_; });
    refresh_changed_toolbox(view_);
}

bool change_color_cmd::mergeWith(const QUndoCommand* other) {
    const auto* newer = dynamic_cast<const change_color_cmd*>(other);
    if (newer == nullptr || newer->sel_ != sel_)
        return false;
    color_ = newer->color_;
    return true;
}

change_labelc_cmd::change_labelc_cmd(picker_view* view, QRgb color)
    : QUndoCommand(QStringLiteral("Change Color")), view_(view), color_(color) {
    capture_selected(view_, sel_, saved_, [](const buttonAttributes& att) { return att.tcolor; });
}

void change_labelc_cmd::undo() {
    if (sel_.isEmpty())
        return;
    // The text colour is baked into the label image.
    for_each_in_range(view_, sel_, [this](buttonRecord* rec, int i) {
        rec->att.tcolor = saved_.at(i);
        view_->update_label(rec);
    });
    refresh_changed_toolbox(view_);
}

void change_labelc_cmd::redo() {
    if (sel_.isEmpty())
        return;
    for_each_in_range(view_, sel_, [this](buttonRecord* rec, int) {
        rec->att.tcolor = color_;
        view_->update_label(rec);
    });
    refresh_changed_toolbox(view_);
}

bool change_labelc_cmd::mergeWith(const QUndoCommand* other) {
    const auto* newer = dynamic_cast<const change_labelc_cmd*>(other);
    if (newer == nullptr || newer->sel_ != sel_)
        return false;
    color_ = newer->color_;
    return true;
}

change_size_cmd::change_size_cmd(picker_view* view, int size)
    : QUndoCommand(QStringLiteral("Change Size")), view_(view), size_(size) {
    capture_selected(view_, sel_, saved_, [](const buttonAttributes& att) { return att.size; });
}

void change_size_cmd::undo() {
    if (sel_.isEmpty())
        return;
    for_each_in_range(view_, sel_, [this](buttonRecord* rec, int i) {
        view_->set_button_size(rec, saved_.at(i));
    });
    refresh_changed_toolbox(view_);
}

void change_size_cmd::redo() {
    if (sel_.isEmpty())
        return;
    for_each_in_range(view_, sel_,
                      [this](buttonRecord* rec, int) { view_->set_button_size(rec, size_); });
    refresh_changed_toolbox(view_);
}

bool change_size_cmd::mergeWith(const QUndoCommand* other) {
    const auto* newer = dynamic_cast<const change_size_cmd*>(other);
    if (newer == nullptr || newer->sel_ != sel_)
        return false;
    size_ = newer->size_;
    return true;
}

adjust_size_cmd::adjust_size_cmd(picker_view* view, int inc)
    : QUndoCommand(QStringLiteral("Adjust Size")), view_(view), inc_(inc) {
    capture_selected(view_, sel_, saved_, [](const buttonAttributes& att) { return att.size; });
}

void adjust_size_cmd::undo() {
    if (sel_.isEmpty())
        return;
    for_each_in_range(view_, sel_, [this](buttonRecord* rec, int i) {
        view_->set_button_size(rec, saved_.at(i));
    });
    refresh_changed_toolbox(view_);
}

void adjust_size_cmd::redo() {
    if (sel_.isEmpty())
        return;
    for_each_in_range(view_, sel_, [this](buttonRecord* rec, int) {
        view_->set_button_size(rec, rec->att.size + inc_);
    });
    refresh_changed_toolbox(view_);
}

bool adjust_size_cmd::mergeWith(const QUndoCommand* other) {
    const auto* newer = dynamic_cast<const adjust_size_cmd*>(other);
    // Growing and shrinking stay separate steps.
    if (newer == nullptr || (newer->inc_ < 0) != (inc_ < 0) || newer->sel_ != sel_)
        return false;
    inc_ += newer->inc_;
    return true;
}

change_label_cmd::change_label_cmd(picker_view* view, const QString& label)
    : QUndoCommand(QStringLiteral("Label Change")), view_(view), label_(label) {
    capture_selected(view_, sel_, saved_, [](const buttonAttributes& att) { return att.label; });
}

void change_label_cmd::undo() {
    if (sel_.isEmpty())
        return;
    for_each_captured(view_, sel_, [this](buttonRecord* rec, int i) {
        view_->set_button_label(rec, saved_.at(i));
    });
    refresh_changed_toolbox(view_);
}

void change_label_cmd::redo() {
    if (sel_.isEmpty())
        return;
    for_each_captured(view_, sel_,
                      [this](buttonRecord* rec, int) { view_->set_button_label(rec, label_); });
    refresh_changed_toolbox(view_);
}

update_buttons_cmd::update_buttons_cmd(picker_view* view, buttonRecord* target,
                                       const QStringList& selection)
    : QUndoCommand(QStringLiteral("Button Update")), view_(view), selection_(selection) {
    const button_list& buttons = *view_->buttons();
    for (int i = 0; i < buttons.size() && which_ < 0; ++i) {
        if (&buttons.at(i) == target)
            which_ = i;
    }
}

void update_buttons_cmd::undo() {
    // The swap is its own inverse.
    redo();
}

void update_buttons_cmd::redo() {
    button_list& buttons = *view_->buttons();
    if (which_ < 0 || which_ >= buttons.size())
        return;
    buttonRecord& rec = buttons[which_];
    rec.att.sel.swap(selection_);
    rec.which.resize(rec.att.sel.size());
    // Flags only: the names came from the host's selection; conforming settles the lit state.
    rec.select(true);
    view_->conform_to_selection();
    refresh_changed_toolbox(view_);
}

nudge_buttons_cmd::nudge_buttons_cmd(picker_view* view, const QPoint& delta)
    : QUndoCommand(QStringLiteral("Button Move")), view_(view), delta_(delta) {
    capture_selected(view_, sel_, saved_, [](const buttonAttributes& att) { return att.pos; });
}

void nudge_buttons_cmd::undo() {
    if (sel_.isEmpty())
        return;
    for_each_captured(view_, sel_, [this](buttonRecord* rec, int i) { rec->moveTo(saved_.at(i)); });
    refresh_changed(view_);
}

void nudge_buttons_cmd::redo() {
    if (sel_.isEmpty())
        return;
    for_each_captured(view_, sel_,
                      [this](buttonRecord* rec, int i) { rec->moveTo(saved_.at(i) + delta_); });
    refresh_changed(view_);
}

bool nudge_buttons_cmd::mergeWith(const QUndoCommand* other) {
    const auto* newer = dynamic_cast<const nudge_buttons_cmd*>(other);
    if (newer == nullptr || newer->sel_ != sel_)
        return false;
    delta_ += newer->delta_;
    return true;
}

move_buttons_cmd::move_buttons_cmd(picker_view* view, const QVector<QPoint>& startPositions,
                                   const QVector<int>& indices, const QPoint& shift)
    : QUndoCommand(QStringLiteral("Move Buttons")), view_(view), plist_(startPositions),
      ilist_(indices), shift_(shift) {}

void move_buttons_cmd::redo() {
    for_each_captured(view_, ilist_,
                      [this](buttonRecord* rec, int i) { rec->moveTo(plist_.at(i) + shift_); });
    refresh_changed(view_);
}

void move_buttons_cmd::undo() {
    for_each_captured(view_, ilist_,
                      [this](buttonRecord* rec, int i) { rec->moveTo(plist_.at(i)); });
    refresh_changed(view_);
}
