#pragma once

#include "picker_tab.h"

#include <QPoint>
#include <QRect>
#include <QRgb>
#include <QString>
#include <QStringList>
#include <QUndoCommand>

// The ids the undo stack merges by: like commands on the same buttons become one step.
enum picker_cmd_id : int {
    cmd_add = 0,
    cmd_arrange = 1,
    cmd_move = 2,
    cmd_color = 3,
    cmd_size = 4,
    cmd_adjust_size = 5,
    cmd_delete = 6,
    cmd_update = 7,
    cmd_nudge = 8,
    cmd_label = 9,
    cmd_label_color = 10,
    cmd_cut = 11,
    cmd_paste = 12,
    cmd_edit = 13,
};

// What new buttons take: colour, label colour, label and size.
struct toolboxState {
    QRgb color = 0xB22222;
    QRgb textcolor = 0;
    QString label;
    int size = 10;
};

// A new button at pos in the toolbox's style; a selection button naming nodes, or a command
// button whose one entry is its script.
buttonAttributes toolbox_button(const toolboxState& style, const QPoint& pos,
                                buttonAttributes::Kind kind, const QStringList& names);

// Every command keeps indices and the attributes it changes, never pointers into the list: the
// stack replays them in order, so an index is valid whenever the command runs. Commands that
// act on "the selection" take the tab's lit buttons when built and change nothing until redo.

// Appends buttons; they light as the host's selection says.
class add_button_cmd : public QUndoCommand {
public:
    add_button_cmd(picker_tab* tab, const button_att_list& buttons, const QString& text);

    // The first button, editable until the command is pushed.
    buttonAttributes* button() { return &buttons_.first(); }

    int id() const override { return cmd_add; }
    void redo() override;
    void undo() override;

private:
    picker_tab* tab_;
    button_att_list buttons_;
    index_list placed_;
};

// Removes the lit buttons; a cut also hands them over and makes them the selection again when
// undone.
class delete_buttons_cmd : public QUndoCommand {
public:
    explicit delete_buttons_cmd(picker_tab* tab, bool cut = false);

    // What goes to the clipboard, in list order.
    const button_att_list& buttons() const { return saved_; }

    int id() const override { return cut_ ? cmd_cut : cmd_delete; }
    void undo() override;
    void redo() override;

private:
    picker_tab* tab_;
    bool cut_;
    index_list sel_;
    button_att_list saved_;
};

// Where a paste lands: the centre of what the canvas shows, and the canvas' own rectangle.
struct paste_placement {
    QPoint visibleCentre;
    QRect canvas;
};

class paste_buttons_cmd : public QUndoCommand {
public:
    // Unless inplace, the group lands centred where the canvas shows.
    paste_buttons_cmd(picker_tab* tab, const button_att_list& buttons, bool inplace,
                      const paste_placement& placement,
                      const QString& text = QStringLiteral("Paste Buttons"));

    int id() const override { return cmd_paste; }
    void undo() override;
    void redo() override;

private:
    picker_tab* tab_;
    button_att_list paste_;
    index_list pil_;
    QRect bounds_;
    bool inplace_;
    paste_placement placement_;
};

// Rebinds one button to the host's selection.
class update_buttons_cmd : public QUndoCommand {
public:
    update_buttons_cmd(picker_tab* tab, int index, const QStringList& selection);

    int id() const override { return cmd_update; }
    // The swap is its own inverse.
    void undo() override { redo(); }
    void redo() override;

private:
    picker_tab* tab_;
    int which_;
    QStringList selection_;
};

class nudge_buttons_cmd : public QUndoCommand {
public:
    nudge_buttons_cmd(picker_tab* tab, const QPoint& delta);

    int id() const override { return cmd_nudge; }
    void undo() override;
    void redo() override;
    bool mergeWith(const QUndoCommand* other) override;

private:
    picker_tab* tab_;
    QPoint delta_;
    index_list sel_;
    point_list saved_;
};

// Pushed when a drag ends; redo puts the buttons where the drag left them.
class move_buttons_cmd : public QUndoCommand {
public:
    move_buttons_cmd(picker_tab* tab, const point_list& startPositions, const index_list& indices,
                     const QPoint& shift);

    int id() const override { return cmd_move; }
    void redo() override;
    void undo() override;

private:
    picker_tab* tab_;
    point_list plist_;
    index_list ilist_;
    QPoint shift_;
};

// A command button's name, script and language as its dialog left them.
class edit_button_cmd : public QUndoCommand {
public:
    edit_button_cmd(picker_tab* tab, int index, const buttonAttributes& edited);

    int id() const override { return cmd_edit; }
    void undo() override;
    void redo() override;

private:
    picker_tab* tab_;
    int index_;
    buttonAttributes before_;
    buttonAttributes after_;
};
