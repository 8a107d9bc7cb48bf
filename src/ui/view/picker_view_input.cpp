#include "picker_view.h"

#include "picker_gesture_cmd.h"
#include "picker_mouse_cmd.h"

#include <QAction>
#include <QApplication>
#include <QBitmap>
#include <QIcon>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>

#include <array>
#include <cmath>

namespace {

using cursor_rows = std::array<quint32, 32>;

// A 32 x 32 bitmap from one 32-bit row a line, bit 0 the leftmost pixel.
QBitmap bitmap_of(const cursor_rows& rows) {
    std::array<uchar, 32 * 4> bytes{};
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t b = 0; b < 4; ++b)
            bytes[row * 4 + b] = static_cast<uchar>(rows[row] >> (8 * b));
    }
    return QBitmap::fromData(QSize(32, 32), bytes.data(), QImage::Format_MonoLSB);
}

QCursor buildEditCursor() {
    const cursor_rows shape = {0, 2, 6, 10, 18, 34, 66, 130, 258, 514, 2018, 18, 10, 6, 2};
    const cursor_rows mask = {7,    15,   31,   63,   127, 255, 511, 1023,
                              2047, 4095, 4095, 4095, 63,  31,  15,  7};
    return QCursor(bitmap_of(shape), bitmap_of(mask), 1, 1);
}

// The hot spot sits off the arrow's tip, where the original cursor had it.
QCursor buildAddManyCursor() {
    const cursor_rows shape = {0,   1026, 1030, 7950, 1054, 1086, 126, 254,
                               510, 1022, 2046, 30,   14,   6,    2};
    const cursor_rows mask = {3587, 3591, 16271, 16287, 16319, 3711, 3839, 511,
                              1023, 2047, 4095,  4095,  31,    15,   7,    3};
    return QCursor(bitmap_of(shape), bitmap_of(mask), 7, 1);
}

QKeySequence sequence_of(const QKeyEvent* e) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QKeySequence(e->keyCombination());
#else
    return QKeySequence(static_cast<int>(e->modifiers()) | e->key());
#endif
}

QPoint global_pos(const QMouseEvent* e) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return e->globalPosition().toPoint();
#else
    return e->globalPos();
#endif
}

// The first ten names on their own lines and a count of the rest, each one the scene lacks
// marked.
QString tool_tip_for(const QStringList& names, const picker_tab& tab) {
    constexpr int shown = 10;
    QStringList lines;
    for (int i = 0; i < names.size() && i < shown; ++i) {
        lines << (tab.isMissing(names.at(i)) ? picker_view::tr("%1 (missing)").arg(names.at(i))
                                             : names.at(i));
    }
    if (names.size() > shown)
        lines << picker_view::tr("...and %1 more").arg(names.size() - shown);
    return lines.join(QLatin1Char('\n'));
}

} // namespace

void picker_view::build_input() {
    editCursor_ = buildEditCursor();
    addmanyCursor_ = buildAddManyCursor();

    menu_ = std::make_unique<QMenu>(tr("Picker"));
    auto entry = [this](QMenu* menu, const QString& text, void (picker_view::*slot)()) {
        QAction* action = menu->addAction(text);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
        return action;
    };
    addx_ = entry(menu_.get(), tr("Add One Button"), &picker_view::add_one_button);
    manyx_ = entry(menu_.get(), tr("Add Many Buttons"), &picker_view::add_many_buttons);
    updatex_ = entry(menu_.get(), tr("Update Button"), &picker_view::update_button);
    deletex_ = entry(menu_.get(), tr("Delete Button"), &picker_view::delete_button);
    deletex_->setShortcuts({QKeySequence(Qt::Key_Backspace), QKeySequence(Qt::Key_Delete)});
    deletex_->setShortcutContext(Qt::WidgetShortcut);
    menu_->addSeparator();
    addcmdx_ = entry(menu_.get(), tr("Add Command Button..."), &picker_view::add_command_button);
    menu_->addSeparator();
    resetx_ = entry(menu_.get(), tr("Reset View"), &picker_view::reset_view);
    setWidgetShortcut(resetx_, QKeySequence(Qt::Key_H));
    framex_ = entry(menu_.get(), tr("Frame View"), &picker_view::frame_view);
    setWidgetShortcut(framex_, QKeySequence(Qt::Key_F));
    menu_->addSeparator();

    QMenu* buttons = menu_->addMenu(tr("Buttons"));
    alignHx_ = entry(buttons, tr("Align Horizontally"), &picker_view::align_horizontal);
    alignHx_->setIcon(QIcon(QStringLiteral(":/resources/align-horizontal.png")));
    alignVx_ = entry(buttons, tr("Align Vertically"), &picker_view::align_vertical);
    alignVx_->setIcon(QIcon(QStringLiteral(":/resources/align-vertical.png")));
    spreadHx_ = entry(buttons, tr("Distribute Horizontally"), &picker_view::distribute_horizontal);
    spreadHx_->setIcon(QIcon(QStringLiteral(":/resources/distribute-horizontal.png")));
    spreadVx_ = entry(buttons, tr("Distribute Vertically"), &picker_view::distribute_vertical);
    spreadVx_->setIcon(QIcon(QStringLiteral(":/resources/distribute-vertical.png")));
    buttons->addSeparator();
    incSizex_ = entry(buttons, tr("Increase Size"), &picker_view::adjust_size_up);
    incSizex_->setShortcuts({QKeySequence(Qt::Key_Plus), QKeySequence(Qt::Key_Equal),
                             QKeySequence(QStringLiteral("Shift++"))});
    incSizex_->setShortcutContext(Qt::WidgetShortcut);
    decSizex_ = entry(buttons, tr("Decrease Size"), &picker_view::adjust_size_down);
    setWidgetShortcut(decSizex_, QKeySequence(Qt::Key_Minus));

    setMouseTracking(true);

    auto nudge = [this](const QString& text, Qt::Key key, void (picker_view::*slot)()) {
        auto* action = new QAction(text, this);
        connect(action, &QAction::triggered, this, slot);
        setWidgetShortcut(action, QKeySequence(key));
        addAction(action);
        return action;
    };
    nudgeLeftx_ = nudge(tr("Nudge Left"), Qt::Key_Left, &picker_view::nudge_left);
    nudgeRightx_ = nudge(tr("Nudge Right"), Qt::Key_Right, &picker_view::nudge_right);
    nudgeUpx_ = nudge(tr("Nudge Up"), Qt::Key_Up, &picker_view::nudge_up);
    nudgeDownx_ = nudge(tr("Nudge Down"), Qt::Key_Down, &picker_view::nudge_down);
}

int picker_view::find_button(const QPoint& p) const {
    // A screen edge is a mapped picker edge cut to a whole pixel, so a button holding p reaches
    // within a pixel of it in picker space: that plain comparison spares most buttons the mapping.
    // Edges are whole numbers, so the window around p rounds outwards to integers once here.
    const double x = (p.x() - shift_.x()) / zoom_;
    const double y = (p.y() - shift_.y()) / zoom_;
    const double reach = 2.0 / zoom_;
    settle_shapes();
    const QRect window(QPoint(int(std::ceil(x - reach)), int(std::ceil(y - reach))),
                       QPoint(int(std::floor(x + reach)), int(std::floor(y + reach))));
    for (size_t i = 0; i < shapes_.size(); ++i) {
        const QRect& b = shapes_[i].bounds;
        if (b.left() <= window.right() && b.right() >= window.left() &&
            b.top() <= window.bottom() && b.bottom() >= window.top() && mapToScreen(b).contains(p))
            return static_cast<int>(i);
    }
    return -1;
}

void picker_view::adjustCursor(bool force) {
    const Qt::KeyboardModifiers modifiers = QApplication::keyboardModifiers();
    const int bits = ((modifiers & Qt::ControlModifier) != 0 ? 1 : 0) +
                     ((modifiers & Qt::ShiftModifier) != 0 ? 2 : 0);
    if (bits == toolbits_ && !force)
        return;
    toolbits_ = bits;
    if ((bits & 1) != 0)
        setCursor(editCursor_);
    else if (dynamic_cast<add_manybuttons_cmd*>(cmd_.get()) != nullptr)
        setCursor(addmanyCursor_);
    else
        setCursor(Qt::ArrowCursor);
}

bool picker_view::execute_shortcut(QKeyEvent* e) {
    // Esc lets go of a gesture waiting for its press.
    if (e->key() == Qt::Key_Escape && e->modifiers() == Qt::NoModifier && cmd_ != nullptr) {
        cancel_gesture();
        return true;
    }
    const QList<QAction*> own = actions();
    const QKeySequence k = sequence_of(e);
    bool fired = false;
    for (QAction* action : own) {
        if (action->isEnabled() && action->shortcuts().contains(k)) {
            action->trigger();
            fired = true;
        }
    }
    return fired;
}

void picker_view::cancel_gesture() {
    cmd_.reset();
    endPreview();
    adjustCursor(true);
}

void picker_view::setWidgetShortcut(QAction* a, const QKeySequence& k) const {
    a->setShortcut(k);
    a->setShortcutContext(Qt::WidgetShortcut);
}

void picker_view::addMouseCommand(std::unique_ptr<picker_mouse_cmd> cmd) {
    cmd_ = std::move(cmd);
}

void picker_view::mousePressEvent(QMouseEvent* e) {
    lastClick_ = e->pos();
    lastButton_ = 0;
    adjustCursor(false);

    const Qt::MouseButtons held = e->buttons();
    if (cmd_ != nullptr) {
        if (auto* many = dynamic_cast<add_manybuttons_cmd*>(cmd_.get())) {
            // Only a left press places the buttons; any other lets go of them.
            if (held == Qt::LeftButton) {
                many->setActive(true);
                many->update(e->pos(), static_cast<int>(e->modifiers()));
                e->accept();
                return;
            }
            cancel_gesture();
        } else {
            const std::unique_ptr<picker_mouse_cmd> pending = std::move(cmd_);
            pending->finish();
        }
    }

    if ((e->modifiers() & Qt::AltModifier) != 0) {
        if (held == Qt::RightButton || held == (Qt::LeftButton | Qt::MiddleButton))
            cmd_ = std::make_unique<zoom_picker_cmd>(this, lastClick_);
        else if (held == Qt::MiddleButton)
            cmd_ = std::make_unique<shift_picker_cmd>(this, lastClick_);
        return;
    }
    if (held == Qt::LeftButton) {
        e->accept();
        if (overlay_.banner()->click(e->pos()))
            return;
        const int hit = find_button(e->pos());
        lastButton_ = hit >= 0 ? tab_->buttons().at(hit).id : 0;
        if (hit >= 0 && tab_->buttons().at(hit).att.type != buttonAttributes::Selection &&
            e->modifiers() != Qt::ControlModifier) {
            cmd_ = std::make_unique<track_button_cmd>(this, lastClick_, hit);
        } else {
            cmd_ = std::make_unique<select_button_cmd>(this, lastClick_,
                                                       static_cast<int>(e->modifiers()));
        }
    } else if (held == Qt::RightButton) {
        show_context_menu(e);
    } else if (held == Qt::MiddleButton) {
        cmd_ = std::make_unique<shift_picker_cmd>(this, lastClick_);
    } else {
        e->ignore();
    }
}

void picker_view::show_context_menu(QMouseEvent* e) {
    const int hit = find_button(e->pos());
    lastButton_ = hit >= 0 ? tab_->buttons().at(hit).id : 0;
    const bool sceneSelection = !tab_->mirror()->names().isEmpty();
    if (hit < 0) {
        updatex_->setEnabled(false);
        deletex_->setEnabled(tab_->any_selected());
        addcmdx_->setText(tr("Add Command Button..."));
    } else if (tab_->buttons().at(hit).att.type == buttonAttributes::Command) {
        updatex_->setEnabled(false);
        addcmdx_->setText(tr("Edit Command Button..."));
        deletex_->setEnabled(true);
    } else {
        updatex_->setEnabled(sceneSelection);
        addcmdx_->setText(tr("Add Command Button..."));
        deletex_->setEnabled(true);
    }
    addx_->setEnabled(sceneSelection);
    manyx_->setEnabled(sceneSelection);
    menu_->exec(global_pos(e), addx_);
    // The keys must keep working whatever the menu showed.
    deletex_->setEnabled(true);
    e->accept();
    if (owner_ != nullptr)
        owner_->takeKeys();
    else
        setFocus();
    adjustCursor(false);
}

void picker_view::mouseMoveEvent(QMouseEvent* e) {
    adjustCursor(false);
    if (cmd_ != nullptr) {
        cmd_->update(e->pos(), static_cast<int>(e->modifiers()));
        e->accept();
        return;
    }
    if (e->pos() != lastPos_) {
        lastPos_ = e->pos();
        const int hit = find_button(lastPos_);
        if (hit >= 0 && tab_->buttons().at(hit).att.type == buttonAttributes::Selection) {
            lastTT_ = tool_tip_for(tab_->buttons().at(hit).att.sel, *tab_);
            if (toolTip() != lastTT_)
                setToolTip(lastTT_);
        } else if (!lastTT_.isEmpty()) {
            lastTT_.clear();
            setToolTip(lastTT_);
        }
    }
    e->ignore();
}

void picker_view::mouseReleaseEvent(QMouseEvent* e) {
    // Add Many waits for its own press; a release from before (the menu's) is not it.
    const auto* many = dynamic_cast<const add_manybuttons_cmd*>(cmd_.get());
    if (cmd_ == nullptr || (many != nullptr && !many->active())) {
        e->ignore();
        return;
    }
    const std::unique_ptr<picker_mouse_cmd> gesture = std::move(cmd_);
    gesture->update(e->pos(), static_cast<int>(e->modifiers()));
    gesture->finish();
    adjustCursor(false);
    e->accept();
}

void picker_view::keyPressEvent(QKeyEvent* e) {
    adjustCursor(false);
    QWidget::keyPressEvent(e);
}

void picker_view::keyReleaseEvent(QKeyEvent* e) {
    adjustCursor(false);
    QWidget::keyReleaseEvent(e);
}
