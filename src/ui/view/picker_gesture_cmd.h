#pragma once

#include "picker_mouse_cmd.h"
#include "picker_tab.h"

#include <QPoint>
#include <QRect>
#include <QString>

class picker_view;

// b when a < b, else a.
int simple_max(int a, int b);

// A left press on a selection button or on empty canvas. Shift extends the host selection of the
// press; Control edits inside the picker only: it selects without telling the host and drags the
// selected buttons. A drag shows the buttons moving and changes the tab once, on release; it holds
// the buttons by their ids, so an edit made meanwhile cannot send it to others.
class select_button_cmd : public picker_mouse_cmd {
public:
    select_button_cmd(picker_view* view, const QPoint& click, int modifiers);

    void update(const QPoint& pos, int modifiers) override;
    void finish() override;

private:
    // The drag so far in picker units, truncated toward zero; on a grid, the nearest shift that
    // puts the pressed button on it.
    QPoint displacement() const;

    picker_view* view_;
    picker_tab* tab_;
    QPoint click_;
    QPoint last_;
    button_set start_;
    id_list dragged_;
    // Where the pressed button was: a drag on a grid puts it on the grid, the others alongside.
    QPoint anchor_;
    bool extend_ = false;
    bool edit_ = false;
    bool tracking_ = false;
    bool dragging_ = false;
};

// Installed by "Add Many Buttons" with the names selected then: the next left press places one
// button per name in a row, later moves fan them out along the drag, and the release adds them
// as one step.
class add_manybuttons_cmd : public picker_mouse_cmd {
public:
    add_manybuttons_cmd(picker_view* view, const QStringList& names);

    void setActive(bool active) { active_ = active; }
    bool active() const { return active_; }
    void update(const QPoint& pos, int modifiers) override;
    void finish() override;

private:
    picker_view* view_;
    QStringList names_;
    button_att_list buttons_;
    QPoint start_;
    bool active_ = false;
};

// A press on a command button: lit while the pointer is over it, run when released over it.
class track_button_cmd : public picker_mouse_cmd {
public:
    track_button_cmd(picker_view* view, const QPoint& press, int index);

    void update(const QPoint& pos, int modifiers) override;
    void finish() override;

private:
    picker_view* view_;
    picker_tab* tab_;
    quint32 id_;
    QRect bbox_;
};

// A press on a help link: opened when released over it.
class track_url_cmd : public picker_mouse_cmd {
public:
    track_url_cmd(picker_view* view, const QRect& bounds, const QPoint& press, const QString& page);

    void update(const QPoint& pos, int modifiers) override;
    void finish() override;

private:
    picker_view* view_;
    QRect bounds_;
    QPoint where_;
    QString page_;
};

// Pans the view with the pointer.
class shift_picker_cmd : public picker_mouse_cmd {
public:
    shift_picker_cmd(picker_view* view, const QPoint& press);

    void update(const QPoint& pos, int modifiers) override;
    void finish() override {}

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

private:
    picker_view* view_;
    QPoint start_;
    QPoint last_;
    float bzoom_;
};
