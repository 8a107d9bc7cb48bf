#pragma once

#include "picker_tab.h"

// Walks the tab's buttons upward and takes, for each lit one, its index and field(attributes).
// Held keys push a command per repeat over thousands of buttons, so the scan writes indices in
// place.
template <typename Saved, typename Field>
void capture_selected(const picker_tab& tab, index_list& sel, Saved& saved, Field field) {
    const button_list& buttons = tab.buttons();
    const int count = static_cast<int>(buttons.size());
    sel.resize(count);
    int* out = sel.data();
    int taken = 0;
    auto button = buttons.cbegin();
    for (int i = 0; i < count; ++i, ++button) {
        if (button->selected != buttonRecord::None)
            out[taken++] = i;
    }
    sel.resize(taken);
    sel.squeeze();
    saved.reserve(taken);
    for (const int index : std::as_const(sel))
        saved.append(field(buttons.at(index).att));
}
