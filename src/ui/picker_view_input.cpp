#include "picker_view.h"

#include "picker_mouse_cmd.h"

#include <QKeyEvent>
#include <QMouseEvent>

void picker_view::build_input() {}

buttonRecord* picker_view::find_button(const QPoint&) {
    return nullptr;
}

void picker_view::adjustCursor(bool) {}

bool picker_view::execute_shortcut(QKeyEvent*) {
    return false;
}

void picker_view::setWidgetShortcut(QAction*, const QKeySequence&) const {}

void picker_view::do_button_action(const buttonAttributes&) {}

void picker_view::addMouseCommand(std::unique_ptr<picker_mouse_cmd> cmd) {
    cmd_ = std::move(cmd);
}

void picker_view::mousePressEvent(QMouseEvent* e) {
    QWidget::mousePressEvent(e);
}

void picker_view::mouseMoveEvent(QMouseEvent* e) {
    QWidget::mouseMoveEvent(e);
}

void picker_view::mouseReleaseEvent(QMouseEvent* e) {
    QWidget::mouseReleaseEvent(e);
}

void picker_view::keyPressEvent(QKeyEvent* e) {
    QWidget::keyPressEvent(e);
}

void picker_view::keyReleaseEvent(QKeyEvent* e) {
    QWidget::keyReleaseEvent(e);
}
