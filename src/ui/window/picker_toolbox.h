#pragma once

#include "picker_edit_cmd.h"
#include "picker_tab.h"

#include <QObject>
#include <QPointer>
#include <QRgb>
#include <QString>

class QAction;
class QCheckBox;
class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QVBoxLayout;
class picker_window;

// The row under the tabs that shows the selection's colour, size, label and label colour and
// applies a chosen value to the front picker's selection as one undo step. The state outlives
// the row: hidden, the controls are gone but new buttons still take the last values shown.
class picker_toolbox : public QObject {
    Q_OBJECT

public:
    // Appends the row, between two 4-pixel spacings, to wlist, whose first item is the tabs;
    // togglex is the menu entry whose text follows whether the row is shown.
    picker_toolbox(picker_window* window, QVBoxLayout* wlist, QAction* togglex);

    const toolboxState& current() const { return current_; }
    bool isShown() const;

    QPushButton* colorButton() const { return colorm_; }
    QPushButton* sizeButton() const { return sizem_; }
    QLineEdit* labelField() const { return labelf_; }
    QPushButton* labelColorButton() const { return labelc_; }
    // Whether a dragged button snaps to the grid; kept while the row is hidden.
    bool snaps() const { return snap_; }

    // Shows the front picker's selection in the controls and makes it the state new buttons
    // take; with nothing selected the colour and size stay and the label empties.
    void updateControls();
    // Another tab came to the front: a label typed for the last one goes to it first.
    void frontChanged();

public slots:
    void set_button_color(QRgb color);
    void set_label_color(QRgb color);
    void set_button_size(QAction* action);
    void set_button_label();
    void do_color_menu();
    void do_labelcolor_menu();
    void toggle_toolbox();

private:
    void make_toolbox();
    void add_row();
    // The front tab when it has a selection to apply a value to.
    picker_tab* selecting_tab() const;
    // Highlights the size list's entry for size; none for 0.
    void show_size_entry(int size);

    picker_window* window_;
    QPushButton* colorm_ = nullptr;
    QPushButton* sizem_ = nullptr;
    QLineEdit* labelf_ = nullptr;
    QPushButton* labelc_ = nullptr;
    QCheckBox* snapc_ = nullptr;
    QHBoxLayout* toolbox_ = nullptr;
    QAction* togglex_;
    QVBoxLayout* wlist_;
    toolboxState current_;
    bool snap_ = false;
    QPointer<picker_tab> labelTab_; // where the label being typed goes
};
