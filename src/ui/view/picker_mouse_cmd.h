#pragma once

#include <QPoint>

// A pointer gesture in progress on a view: fed every pointer position from the press on, and
// finished at the release. Positions are in the view's widget pixels; modifiers are the event's
// Qt::KeyboardModifiers as an int.
class picker_mouse_cmd {
public:
    picker_mouse_cmd() = default;
    picker_mouse_cmd(const picker_mouse_cmd&) = delete;
    picker_mouse_cmd& operator=(const picker_mouse_cmd&) = delete;

    virtual void update(const QPoint& pos, int modifiers) = 0;
    virtual void finish() = 0;
    virtual ~picker_mouse_cmd() = default;
};
