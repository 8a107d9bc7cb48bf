#include "picker_view.h"

#include "picker_arrange_cmd.h"
#include "picker_dialog.h"
#include "picker_edit_cmd.h"
#include "picker_gesture_cmd.h"
#include "picker_mouse_cmd.h"
#include "picker_window.h"

#include <QDataStream>
#include <QMenu>
#include <QResizeEvent>
#include <QWheelEvent>

#include <cmath>

namespace {

void prefetch(const void* address) {
#if defined(__GNUC__)
    __builtin_prefetch(address);
#else
    Q_UNUSED(address);
#endif
}

// Half the size to each side of the centre: a 10-unit button at (50, 50) spans 45 to 54.
QRect square_around(const QPoint& centre, int size) {
    return QRect(centre.x() - size / 2, centre.y() - size / 2, size, size);
}

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

picker_view::picker_view(picker_window* window, QWidget* parent)
    : QWidget(parent), window_(window), overlay_(this) {
    build_input();
    connect(&timer_, &QTimer::timeout, this, &picker_view::animate_zoom);
}

picker_view::~picker_view() {
    reset_buttons();
}

void picker_view::setBackground(const QString& key, const QPixmap& pixmap) {
    bkey_ = key;
    back_ = pixmap;
    update();
}

void picker_view::update_toolbox() {
    if (window_ != nullptr)
        window_->updateControls();
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

QRect picker_view::mapToScreen(const QRect& r) const {
    return edges_rect(static_cast<float>(shift_.x() + r.left() * zoom_),
                      static_cast<float>(shift_.y() + r.top() * zoom_),
                      static_cast<float>(shift_.x() + r.right() * zoom_),
                      static_cast<float>(shift_.y() + r.bottom() * zoom_));
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
    frameBounds(button_bounds(any_selected()), false);
}

void picker_view::frameBounds(const QRect& bounds, bool noZoomIn) {
    if (bounds.isEmpty())
        return;
    const auto zx = static_cast<float>(static_cast<float>(width()) / bounds.width() * 0.75);
    const auto zy = static_cast<float>(static_cast<float>(height()) / bounds.height() * 0.75);
    float z = limitZoom(zy > zx ? zx : zy);
    if (noZoomIn && static_cast<double>(z) > zoom_)
        z = static_cast<float>(zoom_);
    const QPoint c = bounds.center();
    const int x = static_cast<int>(static_cast<float>(width() / 2) - c.x() * z);
    const int y = static_cast<int>(static_cast<float>(height() / 2) - c.y() * z);
    zoomWindow(z, QPoint(x, y));
}

QRect picker_view::button_bounds(bool selectedOnly) const {
    QRect all;
    bool first = true;
    for (const buttonRecord& button : blist_) {
        if (selectedOnly && button.selected == buttonRecord::None)
            continue;
        if (first)
            all = button.bounds;
        else
            all |= button.bounds;
        first = false;
    }
    return first ? QRect(0, 0, 0, 0) : all;
}

bool picker_view::any_selected() const {
    for (const buttonRecord& button : blist_) {
        if (button.selected != buttonRecord::None)
            return true;
    }
    return false;
}

button_att_list picker_view::getButtons() const {
    button_att_list lit;
    for (const buttonRecord& button : blist_) {
        if (button.selected != buttonRecord::None)
            lit.append(button.att);
    }
    return lit;
}

void picker_view::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    overlay_.banner()->resize(e->size().width(), e->size().height());
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

int picker_view::push_button(const buttonAttributes& att, int index) {
    buttonRecord record;
    record.att = att;
    record.selected = buttonRecord::None;
    record.which = sel_list(att.sel.size(), 0);
    set_button_size(&record, att.size);
    lastButton_ = nullptr;
    if (index < 0 || index > blist_.size()) {
        blist_.append(record);
        return static_cast<int>(blist_.size()) - 1;
    }
    blist_.insert(index, record);
    return index;
}

void picker_view::pop_button(int index) {
    if (index < 0 || index >= blist_.size())
        return;
    lastButton_ = nullptr;
    blist_.removeAt(index);
}

void picker_view::reset_buttons() {
    if (blist_.isEmpty())
        return;
    lastButton_ = nullptr;
    undoer_.clear();
    blist_.clear();
}

void picker_view::set_button_size(buttonRecord* rec, int size) {
    rec->att.size = size;
    if (!rec->att.label.isEmpty())
        make_button_label(rec->att, rec);
    else
        rec->bounds = square_around(rec->att.pos, size);
}

void picker_view::set_button_label(buttonRecord* rec, const QString& label) {
    if (!label.isEmpty()) {
        rec->att.label = label;
        make_button_label(rec->att, rec);
        return;
    }
    rec->img = QImage();
    rec->att.label.clear();
    rec->bounds = square_around(rec->att.pos, rec->att.size);
}

bool picker_view::conform_to_set(const button_set& names) {
    return conform_to_set(name_lookup(names.cbegin(), names.cend()));
}

bool picker_view::conform_to_set(const name_lookup& names) {
    bool changed = false;
    // Each button's flags live in a block of their own; fetching them some buttons ahead keeps a
    // large picker from waiting on memory at every button.
    constexpr int ahead = 16;
    const auto end = blist_.end();
    for (auto it = blist_.begin(); it != end; ++it) {
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
    return changed;
}

bool picker_view::conform_to_selection() {
    const QStringList& names = picker_window::selection();
    return conform_to_set(name_lookup(names.cbegin(), names.cend()));
}

void picker_view::append_selected(button_set& out) const {
    for (const buttonRecord& button : blist_) {
        if (button.att.type != buttonAttributes::Selection)
            continue;
        const int flagged = static_cast<int>(qMin(button.which.size(), button.att.sel.size()));
        for (int i = 0; i < flagged; ++i) {
            if (button.which.at(i) != 0)
                out.append(button.att.sel.at(i));
        }
    }
}

bool picker_view::conform_to_selected() {
    button_set lit;
    append_selected(lit);
    return conform_to_set(lit);
}

bool picker_view::unselect(buttonRecord* rec) {
    button_set lit;
    append_selected(lit);
    for (const QString& name : rec->att.sel)
        lit.removeOne(name);
    return conform_to_set(lit);
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

bool picker_view::select_bounds(const QRect& area, bool add) {
    bool changed = false;
    for (buttonRecord& button : blist_) {
        if (!mapToScreen(button.bounds).intersects(area))
            continue;
        if (button.selected != buttonRecord::All) {
            button.select(false);
            changed = true;
        } else if (!add) {
            button.unselect(false);
            changed = true;
        }
    }
    return changed;
}

void picker_view::select_list(const QVector<int>& indices, bool flag) {
    for (const int index : indices) {
        if (index >= 0 && index < blist_.size())
            blist_[index].select(flag);
    }
}

void picker_view::add_one_button() {
    undoer_.push(new add_button_cmd(this, lastClick_, QStringLiteral("Add One Button")));
}

void picker_view::add_many_buttons() {
    if (std::unique_ptr<picker_mouse_cmd> pending = std::move(cmd_))
        pending->finish();
    cmd_ = std::make_unique<add_manybuttons_cmd>(this);
    adjustCursor(true);
}

void picker_view::update_button() {
    if (any_selected())
        undoer_.push(new update_buttons_cmd(this, lastButton_, picker_window::selection()));
}

void picker_view::delete_button() {
    if (any_selected())
        undoer_.push(new delete_buttons_cmd(this));
}

void picker_view::add_command_button() {
    const buttonRecord* target = find_button(lastClick_);
    if (target != nullptr && target->att.type == buttonAttributes::Command) {
        // Not an undo step. The dialog edits a copy, so Test followed by Cancel leaves the
        // button as it was; the index outlives anything the dialog's event loop does to the list.
        int index = 0;
        while (&blist_.at(index) != target)
            ++index;
        buttonAttributes copy = target->att;
        if (!picker_editCmdDialog::do_dialog(this, &copy) || index >= blist_.size())
            return;
        buttonRecord& button = blist_[index];
        button.att = copy;
        make_button_label(button.att, &button);
        emit changed();
        update();
        return;
    }
    auto add = std::make_unique<add_button_cmd>(
        this, lastClick_, QStringLiteral("Add Command Button"), 0, QString(), QString());
    if (picker_editCmdDialog::do_dialog(this, add->button()))
        undoer_.push(add.release());
}

void picker_view::align_horizontal() {
    undoer_.push(new arrange_buttons_cmd(this, 0));
}

void picker_view::align_vertical() {
    undoer_.push(new arrange_buttons_cmd(this, 1));
}

void picker_view::distribute_horizontal() {
    undoer_.push(new arrange_buttons_cmd(this, 2));
}

void picker_view::distribute_vertical() {
    undoer_.push(new arrange_buttons_cmd(this, 3));
}

void picker_view::adjust_size_up() {
    if (any_selected())
        undoer_.push(new adjust_size_cmd(this, 1));
}

void picker_view::adjust_size_down() {
    if (any_selected())
        undoer_.push(new adjust_size_cmd(this, -1));
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
    if (any_selected())
        undoer_.push(new nudge_buttons_cmd(this, QPoint(dx, dy)));
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
