#pragma once

#include "picker_mirror.h"

#include <QString>

class QWidget;

// What Mirror Buttons asks: the axis, as twice its value, and the colours to swap.
struct picker_mirror_choice {
    int axisTwice = 0;
    picker_color_swaps swaps;
};

// The swaps as the dialog shows them: "#RRGGBB=#RRGGBB" pairs between blanks.
QString colorSwapsText(const picker_color_swaps& swaps);

// Asks over parent, starting from choice; false when cancelled. Pairs that do not read are
// named under the field and keep the dialog open.
bool ask_mirror_choice(QWidget* parent, picker_mirror_choice& choice);
