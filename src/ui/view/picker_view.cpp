#include "picker_view.h"

#include "picker_arrange_cmd.h"
#include "picker_dialog.h"
#include "picker_field_cmd.h"
#include "picker_gesture_cmd.h"
#include "picker_mouse_cmd.h"

#include <QMenu>
#include <QResizeEvent>
#include <QShowEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

// The rectangle of four separately mapped edges, sized by their plain differences.
QRect edges_rect(float left, float top, float right, float bottom) {
    const int l = static_cast<int>(left);
    const int t = static_cast<int>(top);
    return QRect(l, t, static_cast<int>(right) - l, static_cast<int>(bottom) - t);
}

} // namespace

float limitZoom(float z) {
    if (z < 0.25f)
        return 0.25f;
    if (z > 16.0f)
        return 16.0f;
    return z;
}

float mix_fn(float t, float a, float b) {
    return (b - a) * t + a;
}

picker_view::picker_view(picker_tab* tab, picker_view_owner* owner, QWidget* parent)
    : QWidget(parent), tab_(tab != nullptr ? tab : new picker_tab), owner_(owner), overlay_(this) {
    tab_->setParent(this);
    build_input();
    connect(&timer_, &QTimer::timeout, this, &picker_view::animate_zoom);
    connect(tab_, &picker_tab::buttonsInserted, this, &picker_view::buttons_inserted);
    connect(tab_, &picker_tab::buttonsRemoved, this, &picker_view::buttons_removed);
    connect(tab_, &picker_tab::buttonsChanged, this, &picker_view::buttons_changed);
    connect(tab_, &picker_tab::buttonsReset, this, &picker_view::buttons_reset);
    connect(tab_, &picker_tab::litChanged, this, QOverload<>::of(&QWidget::update));
    connect(tab_, &picker_tab::marksChanged, this, QOverload<>::of(&QWidget::update));
    connect(tab_, &picker_tab::backgroundChanged, this, QOverload<>::of(&QWidget::update));
    connect(tab_, &picker_tab::frameRequested, this,
            [this](const QRect& area) { frameBounds(area, true); });
    buttons_reset();
}

// Gestures refer to the view and its tab: they go first.
picker_view::~picker_view() {
    cmd_.reset();
}

void picker_view::buttons_inserted(const index_list& indices) {
    // Ascending, so each index is right at the moment its shape goes in.
    for (const int index : indices) {
        shapes_.insert(shapes_.begin() + index, button_shape());
        stale_.insert(stale_.begin() + index, 1);
    }
    anyStale_ = anyStale_ || !indices.isEmpty();
    copies_.clear();
    update();
}

void picker_view::buttons_removed(const index_list& indices) {
    for (int i = indices.size() - 1; i >= 0; --i) {
        shapes_.erase(shapes_.begin() + indices.at(i));
        stale_.erase(stale_.begin() + indices.at(i));
    }
    copies_.clear();
    update();
}

void picker_view::buttons_changed(const index_list& indices, bool reshaped) {
    if (reshaped) {
        char* const stale = stale_.data();
        for (const int index : indices)
            stale[index] = 1;
        anyStale_ = anyStale_ || !indices.isEmpty();
    }
    update();
}

void picker_view::buttons_reset() {
    shapes_.assign(static_cast<size_t>(tab_->count()), button_shape());
    stale_.assign(static_cast<size_t>(tab_->count()), 1);
    anyStale_ = true;
    copies_.clear();
    update();
}

void picker_view::settle_shapes() const {
    if (!anyStale_)
        return;
    anyStale_ = false;
    for (size_t i = 0; i < stale_.size(); ++i) {
        if (stale_[i] != 0) {
            stale_[i] = 0;
            shape_button(static_cast<int>(i));
        }
    }
}

void picker_view::shape_button(int index) const {
    const buttonRecord& button = tab_->buttons().at(index);
    const bool moved = !dragged_.isEmpty() && dragged_.contains(button.id);
    make_shape(button.att, moved ? button.att.pos + dragOffset_ : button.att.pos,
               shapes_[static_cast<size_t>(index)]);
}

void picker_view::showDragged(const id_list& ids, const QPoint& offset) {
    buttons_changed(tab_->indicesOf(id_list(dragged_.cbegin(), dragged_.cend())), true);
    dragged_ = QSet<quint32>(ids.cbegin(), ids.cend());
    dragOffset_ = offset;
    buttons_changed(tab_->indicesOf(ids), true);
}

void picker_view::showPreview(const button_att_list& buttons) {
    preview_.clear();
    previewShapes_.assign(static_cast<size_t>(buttons.size()), button_shape());
    for (int i = 0; i < buttons.size(); ++i) {
        buttonRecord record;
        record.att = buttons.at(i);
        preview_.append(record);
        make_shape(record.att, record.att.pos, previewShapes_[static_cast<size_t>(i)]);
    }
    update();
}

void picker_view::endPreview() {
    if (!dragged_.isEmpty())
        showDragged({}, QPoint());
    preview_.clear();
    previewShapes_.clear();
    update();
}

void picker_view::clearAllSelected() {
    if (owner_ != nullptr) {
        owner_->clearAllSelected();
        return;
    }
    tab_->clear_selected();
    tab_->mirror()->clear();
}

bool picker_view::postSelection() {
    return owner_ != nullptr && owner_->postSelection();
}

toolboxState picker_view::buttonStyle() const {
    return owner_ != nullptr ? owner_->buttonStyle() : toolboxState();
}

int picker_view::moveGrid() const {
    return owner_ != nullptr ? owner_->moveGrid() : 0;
}

void picker_view::update_toolbox() {
    if (owner_ != nullptr)
        owner_->updateControls();
}

QPoint picker_view::mapToPicker(const QPoint& p) const {
    const double x = static_cast<float>(p.x() - shift_.x()) / zoom_;
    const double y = static_cast<float>(p.y() - shift_.y()) / zoom_;
    return QPoint(static_cast<int>(x), static_cast<int>(y));
}

QRect picker_view::mapToPicker(const QRect& r) const {
    return edges_rect(static_cast<float>((r.left() - shift_.x()) / zoom_),
                      static_cast<float>((r.top() - shift_.y()) / zoom_),
                      static_cast<float>((r.right() - shift_.x()) / zoom_),
                      static_cast<float>((r.bottom() - shift_.y()) / zoom_));
}

QPoint picker_view::mapToScreen(const QPoint& p) const {
    const double x = shift_.x() + static_cast<double>(static_cast<float>(p.x())) * zoom_;
    const double y = shift_.y() + static_cast<double>(static_cast<float>(p.y())) * zoom_;
    return QPoint(static_cast<int>(x), static_cast<int>(y));
}

QRect screen_rect(const QRect& r, qreal zoom, const QPoint& shift) {
    return edges_rect(static_cast<float>(shift.x() + r.left() * zoom),
                      static_cast<float>(shift.y() + r.top() * zoom),
                      static_cast<float>(shift.x() + r.right() * zoom),
                      static_cast<float>(shift.y() + r.bottom() * zoom));
}

QRect picker_view::mapToScreen(const QRect& r) const {
    return screen_rect(r, zoom_, shift_);
}

QRectF picker_view::mapToScreenF(const QRect& r) const {
    const double l = shift_.x() + r.left() * zoom_;
    const double t = shift_.y() + r.top() * zoom_;
    const double rt = shift_.x() + r.right() * zoom_;
    const double b = shift_.y() + r.bottom() * zoom_;
    return QRectF(l, t, rt - l, b - t);
}

void picker_view::setShift(const QPoint& s) {
    if (s == shift_)
        return;
    shift_ = s;
    update();
}

void picker_view::setZoom(float z, const QPoint& anchor) {
    z = limitZoom(z);
    if (zoom_ == static_cast<double>(z))
        return;
    const QPoint p = mapToPicker(anchor);
    const QPoint before = mapToScreen(p);
    zoom_ = z;
    const QPoint after = mapToScreen(p);
    shift_ += before - after;
    update();
}

void picker_view::zoomWindow(float z, const QPoint& shift) {
    if (static_cast<double>(z) == zoom_ && shift == shift_)
        return;
    animate_.time = 0.0f;
    animate_.start.zoom = static_cast<float>(zoom_);
    animate_.start.shift = shift_;
    animate_.target.zoom = z;
    animate_.target.shift = shift;
    timer_.start(20);
}

void picker_view::animate_zoom() {
    animate_.time += 0.125f;
    const float time = animate_.time;
    if (time < 1.0f) {
        const float t = 3.0f * time * time - 2.0f * time * time * time;
        zoom_ = mix_fn(t, animate_.start.zoom, animate_.target.zoom);
        shift_.setX(static_cast<int>(mix_fn(t, static_cast<float>(animate_.start.shift.x()),
                                            static_cast<float>(animate_.target.shift.x()))));
        shift_.setY(static_cast<int>(mix_fn(t, static_cast<float>(animate_.start.shift.y()),
                                            static_cast<float>(animate_.target.shift.y()))));
    } else {
        timer_.stop();
        zoom_ = animate_.target.zoom;
        shift_ = animate_.target.shift;
    }
    update();
}

void picker_view::reset_view() {
    zoomWindow(1.0f, QPoint(0, 0));
    update();
}

void picker_view::frame_view() {
    const bool selectedOnly = tab_->any_selected();
    const int framed =
        selectedOnly ? static_cast<int>(tab_->selectedIndices().size()) : tab_->count();
    frameBounds(button_bounds(selectedOnly), false, framed == 1 ? 0.25f : 0.75f);
}

void picker_view::frame_to_fit(bool animate) {
    fitPending_ = false;
    const QRect bounds = tab_->count() > 0 ? button_bounds(false) : tab_->background().rect();
    if (bounds.isEmpty() || width() <= 0 || height() <= 0)
        return;
    const animationRecord fit = framing(bounds, 0.75f, 1.0f);
    if (animate) {
        zoomWindow(fit.zoom, fit.shift);
        return;
    }
    timer_.stop();
    zoom_ = fit.zoom;
    shift_ = fit.shift;
    update();
}

void picker_view::fitWhenShown() {
    fitPending_ = true;
    if (isVisible() && width() > 0 && height() > 0)
        frame_to_fit(false);
}

void picker_view::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    if (fitPending_ && width() > 0 && height() > 0)
        frame_to_fit(false);
}

picker_view::animationRecord picker_view::framing(const QRect& bounds, float fill,
                                                  float most) const {
    const auto zx = static_cast<float>(static_cast<float>(width()) / bounds.width() * fill);
    const auto zy = static_cast<float>(static_cast<float>(height()) / bounds.height() * fill);
    animationRecord frame;
    frame.zoom = std::min(limitZoom(zy > zx ? zx : zy), most);
    const QPoint c = bounds.center();
    frame.shift = QPoint(static_cast<int>(static_cast<float>(width() / 2) - c.x() * frame.zoom),
                         static_cast<int>(static_cast<float>(height() / 2) - c.y() * frame.zoom));
    return frame;
}

void picker_view::frameBounds(const QRect& bounds, bool noZoomIn, float fill) {
    if (bounds.isEmpty())
        return;
    // Framing may zoom out but never in.
    const float most = noZoomIn ? static_cast<float>(zoom_) : 16.0f;
    const animationRecord frame = framing(bounds, fill, most);
    zoomWindow(frame.zoom, frame.shift);
}

QRect picker_view::button_bounds(bool selectedOnly) const {
    settle_shapes();
    QRect all;
    bool first = true;
    const button_list& buttons = tab_->buttons();
    for (int i = 0; i < buttons.size(); ++i) {
        if (selectedOnly && buttons.at(i).selected == buttonRecord::None)
            continue;
        all = first ? shape(i).bounds : all | shape(i).bounds;
        first = false;
    }
    return first ? QRect(0, 0, 0, 0) : all;
}

bool picker_view::select_bounds(const QRect& area, bool add) {
    settle_shapes();
    bool changed = false;
    const button_list& buttons = tab_->buttons();
    for (int i = 0; i < buttons.size(); ++i) {
        if (!mapToScreen(shape(i).bounds).intersects(area))
            continue;
        if (buttons.at(i).selected != buttonRecord::All) {
            tab_->select(i, true);
            changed = true;
        } else if (!add) {
            tab_->unselect(i, true);
            changed = true;
        }
    }
    return changed;
}

void picker_view::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    overlay_.banner()->resize(e->size().width(), e->size().height());
    if (fitPending_ && isVisible() && width() > 0 && height() > 0)
        frame_to_fit(false);
}

void picker_view::wheelEvent(QWheelEvent* e) {
    if (e->buttons() != Qt::NoButton)
        return;
    int n = e->angleDelta().y() / 60;
    auto z = static_cast<float>(zoom_);
    // A notch of 120 is two counts, of which the first is swallowed: the factor applies |n| - 1
    // times.
    if (n > 0) {
        while (--n > 0)
            z *= 1.0625f;
    } else {
        while (++n < 0)
            z *= 0.9375f;
    }
    setZoom(z, e->position().toPoint());
}

void picker_view::push(QUndoCommand* command) {
    tab_->undoer()->push(command);
}

void picker_view::add_one_button() {
    const QStringList& names = tab_->mirror()->names();
    const buttonAttributes att =
        toolbox_button(buttonStyle(), mapToPicker(lastClick_), buttonAttributes::Selection, names);
    push(new add_button_cmd(tab_, {att}, QStringLiteral("Add One Button")));
}

void picker_view::add_many_buttons() {
    const QStringList names = tab_->mirror()->names();
    if (names.isEmpty())
        return;
    if (std::unique_ptr<picker_mouse_cmd> pending = std::move(cmd_))
        pending->finish();
    cmd_ = std::make_unique<add_manybuttons_cmd>(this, names);
    adjustCursor(true);
}

void picker_view::update_button() {
    const int target = tab_->indexOf(lastButton_);
    const QStringList& names = tab_->mirror()->names();
    // The button pressed last takes the host's selection, lit or not (the new names rarely
    // light it); nothing to take, or nothing that would change, is no step.
    if (target < 0 || names.isEmpty() || tab_->buttons().at(target).att.sel == names)
        return;
    push(new update_buttons_cmd(tab_, target, names));
}

void picker_view::delete_button() {
    if (tab_->any_selected())
        push(new delete_buttons_cmd(tab_));
}

void picker_view::add_command_button() {
    const int target = find_button(lastClick_);
    if (target >= 0 && tab_->buttons().at(target).att.type == buttonAttributes::Command) {
        // The dialog edits a copy, so Test followed by Cancel leaves the button as it was; the
        // id outlives anything the dialog's event loop does to the list.
        const quint32 id = tab_->buttons().at(target).id;
        buttonAttributes copy = tab_->buttons().at(target).att;
        if (!picker_editCmdDialog::do_dialog(this, &copy))
            return;
        const int index = tab_->indexOf(id);
        if (index >= 0 && copy != tab_->buttons().at(index).att)
            push(new edit_button_cmd(tab_, index, copy));
        return;
    }
    buttonAttributes att = toolbox_button(buttonStyle(), mapToPicker(lastClick_),
                                          buttonAttributes::Command, {QString()});
    att.label.clear();
    auto add = std::make_unique<add_button_cmd>(tab_, button_att_list{att},
                                                QStringLiteral("Add Command Button"));
    if (picker_editCmdDialog::do_dialog(this, add->button()))
        push(add.release());
}

void picker_view::align_horizontal() {
    push(new arrange_buttons_cmd(tab_, arrange_buttons_cmd::align_horizontal));
}

void picker_view::align_vertical() {
    push(new arrange_buttons_cmd(tab_, arrange_buttons_cmd::align_vertical));
}

void picker_view::distribute_horizontal() {
    push(new arrange_buttons_cmd(tab_, arrange_buttons_cmd::spread_horizontal));
}

void picker_view::distribute_vertical() {
    push(new arrange_buttons_cmd(tab_, arrange_buttons_cmd::spread_vertical));
}

void picker_view::adjust_size_up() {
    if (tab_->any_selected())
        push(new adjust_size_cmd(tab_, 1));
}

void picker_view::adjust_size_down() {
    if (tab_->any_selected())
        push(new adjust_size_cmd(tab_, -1));
}

void picker_view::nudge_left() {
    nudge_buttons(-1, 0);
}

void picker_view::nudge_right() {
    nudge_buttons(1, 0);
}

void picker_view::nudge_up() {
    nudge_buttons(0, -1);
}

void picker_view::nudge_down() {
    nudge_buttons(0, 1);
}

void picker_view::nudge_buttons(int dx, int dy) {
    if (tab_->any_selected())
        push(new nudge_buttons_cmd(tab_, QPoint(dx, dy)));
}
