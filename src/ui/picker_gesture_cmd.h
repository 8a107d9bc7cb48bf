#pragma once

#include "picker_edit_cmd.h"
#include "picker_mouse_cmd.h"
#include "picker_types.h"

#include <QPoint>
#include <QRect>
#include <QString>

class picker_view;

// b when a < b, else a.
int simple_max(int a, int b);

// A left press on a selection button or on empty canvas. Shift extends the host selection of the
// press; Control edits inside the picker only: it selects without telling the host and drags the
// selected buttons.
class select_button_cmd : public picker_mouse_cmd {
public:
    select_button_cmd(picker_view* view, const QPoint& click, int modifiers);

    void update(const QPoint& pos, int modifiers) override;
    void finish() override;
    ~select_button_cmd() override = default;

private:
    void save_buttons();
    void move_buttons();
    // The drag so far in picker units, truncated toward zero.
    QPoint displacement() const;

    picker_view* view_;
    QPoint click_;
    QPoint last_;
    button_set start_;
    index_list sel_;
    point_list saved_;
    bool extend_ = false;
    bool edit_ = false;
    bool tracking_ = false;
    bool dragging_ = false;
};

// Installed by "Add Many Buttons" before any press: the next press arms it, the first move makes
// one button per selected host node and later moves fan them out along the drag.
class add_manybuttons_cmd : public picker_mouse_cmd {
public:
    explicit add_manybuttons_cmd(picker_view* view);

    void setActive(bool active) { active_ = active; }
    void update(const QPoint& pos, int modifiers) override;
    void finish() override;
    ~add_manybuttons_cmd() override = default;

private:
    void create_buttons(const QPoint& pos);
    void fan_out(const QPoint& pos);

    picker_view* view_;
    index_list sel_;
    QPoint start_;
    bool tracking_ = false;
    bool active_ = false;
};

// A press on a command button: lit while the pointer is over it, run when released over it.
class track_button_cmd : public picker_mouse_cmd {
public:
    track_button_cmd(picker_view* view, const QPoint& press, buttonRecord* button);

    void update(const QPoint& pos, int modifiers) override;
    void finish() override;
    ~track_button_cmd() override = default;

private:
    // False once a key deleted the button while the pointer was held.
    bool live() const;

    picker_view* view_;
    buttonRecord* brp_;
    QRect bbox_;
};

// A press on a banner link: opened when released over it.
class track_url_cmd : public picker_mouse_cmd {
public:
    track_url_cmd(const QRect& bounds, const QPoint& press, const QString& url);

    void update(const QPoint& pos, int modifiers) override;
    void finish() override;
    ~track_url_cmd() override = default;

private:
    QRect bounds_;
    QPoint where_;
    QString url_;
};

// Pans the view with the pointer.
class shift_picker_cmd : public picker_mouse_cmd {
public:
    shift_picker_cmd(picker_view* view, const QPoint& press);

    void update(const QPoint& pos, int modifiers) override;
    void finish() override {}
    ~shift_picker_cmd() override = default;

private:
    picker_view* view_;
    QPoint start_;
    QPoint last_;
    QPoint shift_;
};

// Zooms about the press point: every 20 pixels of right-plus-down drag is a step, the first of
// them a dead zone.
class zoom_picker_cmd : public picker_mouse_cmd {
public:
    zoom_picker_cmd(picker_view* view, const QPoint& press);

    void update(const QPoint& pos, int modifiers) override;
    void finish() override {}
    ~zoom_picker_cmd() override = default;

private:
    picker_view* view_;
    QPoint start_;
    QPoint last_;
    float bzoom_;
};
