#pragma once

#include "picker_edit_cmd.h"

#include <QPoint>
#include <QRect>
#include <QUndoCommand>

// Aligns or distributes the lit buttons by their centres.
class arrange_buttons_cmd : public QUndoCommand {
public:
    enum mode {
        align_horizontal = 0, // one row at the mean y
        align_vertical = 1,   // one column at the mean x
        spread_horizontal = 2,
        spread_vertical = 3,
    };

    arrange_buttons_cmd(picker_tab* tab, int action);

    int id() const override { return cmd_arrange; }
    void redo() override;
    // Every button goes back to where it was.
    void undo() override;

private:
    picker_tab* tab_;
    int action_;
    index_list sel_;   // in list order
    point_list saved_; // parallel to sel_
    index_list order_; // sel_ in the order of the mode's sort
    QPoint center_;
    QRect bounds_; // widened so that the spread steps divide it
};
