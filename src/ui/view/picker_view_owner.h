#pragma once

#include "picker_edit_cmd.h"

// What a view asks of the window it sits in. A view on its own (pkrtool, the tests) has none,
// and then acts on its own tab alone.
class picker_view_owner {
public:
    // Unlights the buttons of every tab and empties the selection mirror.
    virtual void clearAllSelected() = 0;
    // Asks the host, on idle, to select exactly the mirror's names; true when it was asked.
    virtual bool postSelection() = 0;
    // What new buttons take.
    virtual toolboxState buttonStyle() const = 0;
    // The view's lit buttons may have changed: the toolbox shows them.
    virtual void updateControls() = 0;
    // The keys go to the window again (after the view's context menu).
    virtual void takeKeys() = 0;
    // The grid a dragged button snaps to, in picker units; 0 while moves are free.
    virtual int moveGrid() const = 0;

protected:
    ~picker_view_owner() = default;
};
