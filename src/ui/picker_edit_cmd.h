#pragma once

#include "picker_types.h"

#include <QPoint>
#include <QRect>
#include <QRgb>
#include <QString>
#include <QStringList>
#include <QUndoCommand>
#include <QVector>

class picker_view;

// Indices into a view's button list, ascending when taken from the selection.
using index_list = QVector<int>;
// Picker-space positions, parallel to an index_list.
using point_list = QVector<QPoint>;
// QRgb values, parallel to an index_list.
using color_list = QVector<unsigned int>;

// Every command keeps indices and the attributes it changes, never pointers into the list: the
// stack replays them in order, so an index is valid whenever the command runs. Commands that
// act on "the selection" take it in the constructor and change nothing until redo.

class add_button_cmd : public QUndoCommand {
public:
    // A selection button naming the host's selected nodes, styled from the toolbox.
    add_button_cmd(picker_view* view, const QPoint& where, const QString& text);
    // A command button running command through api.
    add_button_cmd(picker_view* view, const QPoint& where, const QString& text, int api,
                   const QString& label, const QString& command);

    // Editable until the command is pushed.
    buttonAttributes* button() { return &ba_; }

    ~add_button_cmd() override = default;
    int id() const override { return 0; }
    void redo() override;
    void undo() override;

private:
    picker_view* view_;
    buttonAttributes ba_;
    int index_ = -1;
};

class delete_buttons_cmd : public QUndoCommand {
public:
    explicit delete_buttons_cmd(picker_view* view);

    ~delete_buttons_cmd() override = default;
    int id() const override { return 6; }
    void undo() override;
    void redo() override;

private:
    picker_view* view_;
    index_list sel_;
    button_att_list saved_;
};

class cut_buttons_cmd : public QUndoCommand {
public:
    explicit cut_buttons_cmd(picker_view* view);

    // What goes to the clipboard, in list order.
    const button_att_list& buttons() const { return saved_; }

    ~cut_buttons_cmd() override = default;
    int id() const override { return 11; }
    void undo() override;
    void redo() override;

private:
    picker_view* view_;
    index_list sel_;
    button_att_list saved_;
};

class paste_buttons_cmd : public QUndoCommand {
public:
    // Unless inplace, the group lands centred in the visible area.
    paste_buttons_cmd(picker_view* view, const QList<buttonAttributes>& buttons, bool inplace);

    ~paste_buttons_cmd() override = default;
    int id() const override { return 12; }
    void undo() override;
    void redo() override;

private:
    picker_view* view_;
    button_att_list paste_;
    index_list pil_;
    QRect bounds_;
    bool inplace_;
};

class change_color_cmd : public QUndoCommand {
public:
    change_color_cmd(picker_view* view, QRgb color);

    ~change_color_cmd() override = default;
    int id() const override { return 3; }
    void undo() override;
    void redo() override;
    bool mergeWith(const QUndoCommand* other) override;

private:
    picker_view* view_;
    QRgb color_;
    index_list sel_;
    color_list saved_;
};

class change_labelc_cmd : public QUndoCommand {
public:
    change_labelc_cmd(picker_view* view, QRgb color);

    ~change_labelc_cmd() override = default;
    int id() const override { return 10; }
    void undo() override;
    void redo() override;
    bool mergeWith(const QUndoCommand* other) override;

private:
    picker_view* view_;
    QRgb color_;
    index_list sel_;
    color_list saved_;
};

class change_size_cmd : public QUndoCommand {
public:
    change_size_cmd(picker_view* view, int size);

    ~change_size_cmd() override = default;
    int id() const override { return 4; }
    void undo() override;
    void redo() override;
    bool mergeWith(const QUndoCommand* other) override;

private:
    picker_view* view_;
    int size_;
    index_list sel_;
    index_list saved_; // old sizes
};

class adjust_size_cmd : public QUndoCommand {
public:
    // inc is added to whatever size each button has when redo runs.
    adjust_size_cmd(picker_view* view, int inc);

    ~adjust_size_cmd() override = default;
    int id() const override { return 5; }
    void undo() override;
    void redo() override;
    bool mergeWith(const QUndoCommand* other) override;

private:
    picker_view* view_;
    int inc_;
    index_list sel_;
    index_list saved_; // old sizes
};

class change_label_cmd : public QUndoCommand {
public:
    change_label_cmd(picker_view* view, const QString& label);

    ~change_label_cmd() override = default;
    int id() const override { return 9; }
    void undo() override;
    void redo() override;

private:
    picker_view* view_;
    QString label_;
    index_list sel_;
    QStringList saved_;
};

class update_buttons_cmd : public QUndoCommand {
public:
    // Rebinds target to selection; a target not in the view makes a command that does nothing.
    update_buttons_cmd(picker_view* view, buttonRecord* target, const QStringList& selection);

    ~update_buttons_cmd() override = default;
    int id() const override { return 7; }
    void undo() override;
    void redo() override;

private:
    picker_view* view_;
    int which_ = -1;
    QStringList selection_;
};

class nudge_buttons_cmd : public QUndoCommand {
public:
    nudge_buttons_cmd(picker_view* view, const QPoint& delta);

    ~nudge_buttons_cmd() override = default;
    int id() const override { return 8; }
    void undo() override;
    void redo() override;
    bool mergeWith(const QUndoCommand* other) override;

private:
    picker_view* view_;
    QPoint delta_;
    index_list sel_;
    point_list saved_;
};

// Pushed once a drag has already moved the buttons live; redo puts them where the drag left them.
class move_buttons_cmd : public QUndoCommand {
public:
    move_buttons_cmd(picker_view* view, const QVector<QPoint>& startPositions,
                     const QVector<int>& indices, const QPoint& shift);

    ~move_buttons_cmd() override = default;
    int id() const override { return 2; }
    void redo() override;
    void undo() override;

private:
    picker_view* view_;
    point_list plist_;
    index_list ilist_;
    QPoint shift_;
};
