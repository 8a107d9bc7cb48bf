#pragma once

#include "picker_edit_cmd.h"

#include <QPoint>
#include <QRect>
#include <QUndoCommand>

class picker_view;

// Aligns or distributes the selected buttons by their centres:
// 0 one row at the mean y, 1 one column at the mean x, 2 spread along x, 3 spread along y.
class arrange_buttons_cmd : public QUndoCommand {
public:
    arrange_buttons_cmd(picker_view* view, int action);

    ~arrange_buttons_cmd() override = default;
    int id() const override { return 1; }
    void redo() override;
    // Hands the saved positions out in sorted order, not back to the buttons they came from.
    void undo() override;

private:
    picker_view* view_;
    int action_;
    index_list sel_;   // in the order of the mode's sort
    point_list saved_; // in list order
    QPoint center_;
    QRect bounds_; // widened so that the spread steps divide it
};
