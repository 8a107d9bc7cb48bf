// What the picker lays over its buttons. Aims: one keystroke in the find field, matched over 20
// tabs of 5,000 buttons each, under 5 ms; the embedded host's scene asked about every name of a
// 5,000-button picker and the buttons marked, under 5 ms.
#include "picker_embedded_host.h"
#include "picker_find.h"
#include "picker_tab.h"
#include "picker_window.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

constexpr int button_count = 5000;

// A crowd rig's picker: each button names a control of one character, every tenth both hands.
button_att_list crowd_picker(int tab) {
    static const char* const controls[] = {"L_hand_ctrl", "R_hand_ctrl", "L_foot_ik", "R_foot_ik",
                                           "spine_01_fk", "spine_02_fk", "head_ctrl", "neck_fk",
                                           "hips_ctrl",   "root_ctrl"};
    button_att_list buttons;
    for (int i = 0; i < button_count; ++i) {
        buttonAttributes button;
        button.pos = QPoint(i % 100 * 20, i / 100 * 20);
        button.size = 12;
        button.color = 0xffb22222;
        button.tcolor = 0xff000000;
        const QString ns = QStringLiteral("t%1_crowd%2:").arg(tab).arg(i / 10);
        button.sel = QStringList{ns + QLatin1String(controls[i % 10])};
        if (i % 10 == 0) {
            button.label = QStringLiteral("Hands");
            button.sel << ns + QLatin1String(controls[1]);
        }
        buttons.append(button);
    }
    return buttons;
}

// Typing "ha", then "han": every button of every tab matched against the new text.
void BM_Find_20x5000(benchmark::State& state) {
    std::vector<std::unique_ptr<picker_tab>> tabs;
    for (int t = 0; t < 20; ++t) {
        tabs.push_back(std::make_unique<picker_tab>());
        tabs.back()->replaceButtons(crowd_picker(t));
    }
    const picker_find_pattern typed[] = {picker_find_pattern(QStringLiteral("ha")),
                                         picker_find_pattern(QStringLiteral("han"))};
    int keystroke = 0;
    int found = 0;
    for (auto _ : state) {
        picker_name_matcher matcher(typed[keystroke++ % 2]);
        for (const auto& tab : tabs)
            found += tab->mark_found(matcher);
    }
    benchmark::DoNotOptimize(found);
}

// Half of the picker's characters are in the scene.
void BM_MissingNodes_5000(benchmark::State& state) {
    picker_embedded_host host;
    const button_att_list buttons = crowd_picker(0);
    for (int i = 0; i < button_count / 2; ++i)
        host.addNode(buttons.at(i).sel.first());
    picker_tab tab;
    tab.replaceButtons(buttons);
    const QVector<picker_tab*> tabs{&tab};
    for (auto _ : state)
        mark_missing_nodes(host, tabs);
}

} // namespace

BENCHMARK(BM_Find_20x5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MissingNodes_5000)->Unit(benchmark::kMillisecond);
