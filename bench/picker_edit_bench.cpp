// Edit commands on a large picker. Aims: redo plus undo of a nudge, a recolour and a resize of
// 100 selected buttons out of 5,000 under 0.5 ms each; a held arrow key over 1,000 selected
// buttons stays one undo step, 60 merged nudges under 5 ms in all.
#include "picker_field_cmd.h"
#include "picker_view.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

constexpr int button_count = 5000;

// A 5,000-button picker with every (count / 5000)-th button lit, shown by a view that follows
// every change.
std::unique_ptr<picker_view> large_picker(int selected) {
    auto view = std::make_unique<picker_view>();
    picker_tab* tab = view->tab();
    const int every = button_count / selected;
    button_att_list buttons;
    for (int i = 0; i < button_count; ++i) {
        buttonAttributes button;
        button.pos = QPoint(i % 100 * 20, i / 100 * 20);
        button.size = 12;
        button.color = 0xffb22222;
        button.tcolor = 0xff000000;
        button.sel = QStringList{QStringLiteral("crowd%1:L_hand_ctrl").arg(i)};
        buttons.append(button);
    }
    tab->replaceButtons(buttons);
    for (int i = 0; i < button_count; i += every)
        tab->select(i, false);
    return view;
}

template <typename Command, typename Value>
void redo_undo(benchmark::State& state, Value value) {
    const std::unique_ptr<picker_view> view = large_picker(100);
    Command command(view->tab(), value);
    for (auto _ : state) {
        command.redo();
        command.undo();
    }
}

void BM_Nudge_100of5000(benchmark::State& state) {
    redo_undo<nudge_buttons_cmd>(state, QPoint(1, 0));
}

void BM_Recolour_100of5000(benchmark::State& state) {
    redo_undo<change_color_cmd>(state, QRgb(0xff3366cc));
}

void BM_Resize_100of5000(benchmark::State& state) {
    redo_undo<change_size_cmd>(state, 20);
}

// Sixty pushes as the key repeats, each taking the selection again, merging into the first.
void BM_HeldNudge_60x1000of5000(benchmark::State& state) {
    const std::unique_ptr<picker_view> view = large_picker(1000);
    QUndoStack* stack = view->tab()->undoer();
    for (auto _ : state) {
        for (int i = 0; i < 60; ++i)
            stack->push(new nudge_buttons_cmd(view->tab(), QPoint(1, 0)));
        state.PauseTiming();
        if (stack->count() != 1)
            state.SkipWithError("the held key made more than one undo step");
        stack->undo();
        stack->clear();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(BM_Nudge_100of5000);
BENCHMARK(BM_Recolour_100of5000);
BENCHMARK(BM_Resize_100of5000);
BENCHMARK(BM_HeldNudge_60x1000of5000)->Unit(benchmark::kMillisecond);
