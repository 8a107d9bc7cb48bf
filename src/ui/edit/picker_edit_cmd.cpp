#include "picker_edit_cmd.h"

#include "picker_capture.h"

#include <numeric>

namespace {

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

QString singular_or_plural(const index_list& sel, const char* one, const char* many) {
    return QString::fromLatin1(sel.size() >= 2 ? many : one);
}

} // namespace

buttonAttributes toolbox_button(const toolboxState& style, const QPoint& pos,
                                buttonAttributes::Kind kind, const QStringList& names) {
    buttonAttributes att;
    att.pos = pos;
    att.size = style.size;
    att.type = kind;
    att.api = buttonAttributes::Mel;
    att.color = style.color;
    att.tcolor = style.textcolor;
    att.label = style.label;
    att.sel = names;
    return att;
}

add_button_cmd::add_button_cmd(picker_tab* tab, const button_att_list& buttons, const QString& text)
    : QUndoCommand(text), tab_(tab), buttons_(buttons) {}

void add_button_cmd::redo() {
    placed_.resize(buttons_.size());
    std::iota(placed_.begin(), placed_.end(), tab_->count());
    tab_->insertButtons(placed_, buttons_);
    tab_->conform_to_selection();
}

void add_button_cmd::undo() {
    tab_->removeButtons(placed_);
    tab_->conform_to_selection();
}

delete_buttons_cmd::delete_buttons_cmd(picker_tab* tab, bool cut) : tab_(tab), cut_(cut) {
    capture_selected(*tab_, sel_, saved_, [](const buttonAttributes& att) { return att; });
    setText(cut_ ? singular_or_plural(sel_, "Cut Button", "Cut Buttons")
                 : singular_or_plural(sel_, "Delete Button", "Delete Buttons"));
}

void delete_buttons_cmd::undo() {
    tab_->insertButtons(sel_, saved_);
    if (!cut_ || sel_.isEmpty())
        return;
    // The restored buttons become the selection, as they were when cut.
    tab_->clear_selected();
    tab_->select_list(sel_, false);
}

void delete_buttons_cmd::redo() {
    tab_->removeButtons(sel_);
    // Even with nothing cut, whatever is still lit goes dark.
    if (cut_)
        tab_->clear_selected();
}

paste_buttons_cmd::paste_buttons_cmd(picker_tab* tab, const button_att_list& buttons, bool inplace,
                                     const paste_placement& placement, const QString& text)
    : QUndoCommand(text), tab_(tab), paste_(buttons), inplace_(inplace), placement_(placement) {
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
    tab_->removeButtons(pil_);
    tab_->clear_selected();
}

void paste_buttons_cmd::redo() {
    if (paste_.isEmpty())
        return;
    const QPoint offset = inplace_ ? QPoint() : placement_.visibleCentre - bounds_.center();
    button_att_list placed = paste_;
    for (buttonAttributes& button : placed)
        button.pos += offset;
    pil_.resize(placed.size());
    std::iota(pil_.begin(), pil_.end(), tab_->count());
    tab_->insertButtons(pil_, placed);
    tab_->clear_selected();
    tab_->select_list(pil_, false);
    // The stored picker-space bounds are held against the canvas rectangle as they are: a group
    // that fits there is not framed.
    if (!placement_.canvas.contains(bounds_))
        tab_->requestFrame(bounds_);
}

update_buttons_cmd::update_buttons_cmd(picker_tab* tab, int index, const QStringList& selection)
    : QUndoCommand(QStringLiteral("Button Update")), tab_(tab), which_(index),
      selection_(selection) {}

void update_buttons_cmd::redo() {
    if (which_ < 0 || which_ >= tab_->count())
        return;
    tab_->editButtons({which_}, [this](buttonAttributes& att, int) { att.sel.swap(selection_); });
    // Flags only: the names came from the host's selection; conforming settles the lit state.
    tab_->select(which_, false);
    tab_->conform_to_selection();
}

nudge_buttons_cmd::nudge_buttons_cmd(picker_tab* tab, const QPoint& delta)
    : QUndoCommand(QStringLiteral("Button Move")), tab_(tab), delta_(delta) {
    capture_selected(*tab_, sel_, saved_, [](const buttonAttributes& att) { return att.pos; });
}

void nudge_buttons_cmd::undo() {
    tab_->editButtons(sel_, [this](buttonAttributes& att, int i) { att.pos = saved_.at(i); });
}

void nudge_buttons_cmd::redo() {
    tab_->editButtons(sel_,
                      [this](buttonAttributes& att, int i) { att.pos = saved_.at(i) + delta_; });
}

bool nudge_buttons_cmd::mergeWith(const QUndoCommand* other) {
    const auto* newer = dynamic_cast<const nudge_buttons_cmd*>(other);
    if (newer == nullptr || newer->sel_ != sel_)
        return false;
    delta_ += newer->delta_;
    return true;
}

move_buttons_cmd::move_buttons_cmd(picker_tab* tab, const point_list& startPositions,
                                   const index_list& indices, const QPoint& shift)
    : QUndoCommand(QStringLiteral("Move Buttons")), tab_(tab), plist_(startPositions),
      ilist_(indices), shift_(shift) {}

void move_buttons_cmd::redo() {
    tab_->editButtons(ilist_,
                      [this](buttonAttributes& att, int i) { att.pos = plist_.at(i) + shift_; });
}

void move_buttons_cmd::undo() {
    tab_->editButtons(ilist_, [this](buttonAttributes& att, int i) { att.pos = plist_.at(i); });
}

edit_button_cmd::edit_button_cmd(picker_tab* tab, int index, const buttonAttributes& edited)
    : QUndoCommand(QStringLiteral("Edit Command Button")), tab_(tab), index_(index),
      before_(index >= 0 && index < tab->count() ? tab->buttons().at(index).att : edited),
      after_(edited) {}

void edit_button_cmd::undo() {
    tab_->editButtons({index_}, [this](buttonAttributes& att, int) { att = before_; });
}

void edit_button_cmd::redo() {
    tab_->editButtons({index_}, [this](buttonAttributes& att, int) { att = after_; });
}
