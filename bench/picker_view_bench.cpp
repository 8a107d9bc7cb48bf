// The canvas under the load of a big rig: relighting every tab when the host selection changes,
// a full repaint at three zooms and two device pixel ratios, a frame of a zoom glide and the
// frame it lands on, and the hit test under the pointer. Each repaint sits beside the baseline
// it is judged against.
#include "picker_view.h"
#include "picker_window.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTabWidget>

#include <memory>

namespace {

constexpr int tab_count = 10;
constexpr int buttons_per_tab = 1000;
constexpr int selected_names = 500;

QString node_name(int i) {
    return QStringLiteral("hero_rig:ctrl_%1").arg(i, 5, 10, QLatin1Char('0'));
}

// 1 to 3 names a button, over a pool of as many nodes as the tab has buttons.
buttonAttributes rig_button(QRandomGenerator& random, int pool, const QPoint& pos) {
    buttonAttributes att;
    att.pos = pos;
    att.size = 12;
    att.color = 0xFFB22222;
    const int names = 1 + static_cast<int>(random.bounded(3));
    for (int n = 0; n < names; ++n)
        att.sel << node_name(static_cast<int>(random.bounded(pool)));
    return att;
}

struct selection_fixture {
    selection_fixture() : window(nullptr) {
        QRandomGenerator random(8);
        while (window.findChild<QTabWidget*>()->count() < tab_count)
            window.new_tab();
        const auto* tabs = window.findChild<QTabWidget*>();
        for (int t = 0; t < tab_count; ++t) {
            auto* view = qobject_cast<picker_view*>(tabs->widget(t));
            button_att_list buttons;
            for (int i = 0; i < buttons_per_tab; ++i)
                buttons << rig_button(random, buttons_per_tab, QPoint(i % 40, i / 40));
            view->tab()->replaceButtons(buttons);
            views.append(view);
        }
        // Two selections that light different buttons, so every call changes lit states.
        for (int i = 0; i < selected_names; ++i) {
            first << node_name(static_cast<int>(random.bounded(buttons_per_tab)));
            second << node_name(static_cast<int>(random.bounded(buttons_per_tab)));
        }
    }
    picker_window window;
    QList<picker_view*> views;
    QStringList first;
    QStringList second;
};

// What the rule says written out literally: the selection de-duplicated by scanning, then every
// name of every button searched for in it, each button's flags and lit state set anew.
void literal_set_selection(const QList<picker_view*>& views, const QStringList& names,
                           QVector<buttonRecord>& lit) {
    button_set set;
    for (const QString& name : names) {
        if (!set.QVector<QString>::contains(name))
            set.QVector<QString>::append(name);
    }
    int b = 0;
    for (picker_view* view : views) {
        for (const buttonRecord& shown : view->tab()->buttons()) {
            buttonRecord& button = lit[b++];
            const QStringList& sel = shown.att.sel;
            button.which.resize(sel.size());
            int hits = 0;
            for (int i = 0; i < sel.size(); ++i) {
                button.which[i] = set.QVector<QString>::contains(sel.at(i)) ? 1 : 0;
                hits += button.which[i];
            }
            button.selected = hits == sel.size() ? buttonRecord::All
                              : hits < 1         ? buttonRecord::None
                                                 : buttonRecord::Some;
        }
        view->update();
    }
}

void BM_SetSelection_10x1000(benchmark::State& state) {
    selection_fixture fixture;
    bool flip = false;
    for (auto _ : state) {
        fixture.window.setSelection(flip ? fixture.first : fixture.second);
        flip = !flip;
    }
}

void BM_SetSelection_10x1000_literal(benchmark::State& state) {
    selection_fixture fixture;
    QVector<buttonRecord> lit(tab_count * buttons_per_tab);
    bool flip = false;
    for (auto _ : state) {
        literal_set_selection(fixture.views, flip ? fixture.first : fixture.second, lit);
        flip = !flip;
    }
}

// 5,000 labelled buttons over a 1920 x 1080 view at zoom 1: both kinds, all three lit states.
std::unique_ptr<picker_view> labelled_view(double zoom) {
    auto view = std::make_unique<picker_view>();
    view->resize(1920, 1080);
    button_att_list buttons;
    button_set lit; // both names of every third button from the second, the first of the third
    for (int i = 0; i < 5000; ++i) {
        buttonAttributes att;
        att.pos = QPoint(10 + (i % 100) * 19, 12 + (i / 100) * 21);
        att.size = 16;
        att.type = i % 2 == 0 ? buttonAttributes::Selection : buttonAttributes::Command;
        att.color = 0xFF3366CC;
        att.tcolor = i % 3 == 0 ? 0xFFFFFFFF : 0xFF000000;
        att.label = QString::number(i % 100);
        att.sel << node_name(2 * i) << node_name(2 * i + 1);
        buttons << att;
        if (i % 3 != 0)
            lit.append(node_name(2 * i));
        if (i % 3 == 1)
            lit.append(node_name(2 * i + 1));
    }
    view->tab()->replaceButtons(buttons);
    view->tab()->conform_to_set(lit);
    view->setZoom(static_cast<float>(zoom), QPoint(0, 0));
    return view;
}

// The surface a window of the view's size paints into at a device pixel ratio.
QImage device_image(const picker_view& view, double dpr) {
    QImage image(view.size() * dpr, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(dpr);
    return image;
}

void BM_Repaint_5000Labelled(benchmark::State& state, double zoom, double dpr) {
    const std::unique_ptr<picker_view> view = labelled_view(zoom);
    QImage image = device_image(*view, dpr);
    for (auto _ : state) {
        QPainter painter(&image);
        view->paint(painter, view->rect());
    }
}

void BM_Repaint_5000Labelled_fill_baseline(benchmark::State& state, double zoom, double dpr) {
    const std::unique_ptr<picker_view> view = labelled_view(zoom);
    QVector<QRect> rects;
    for (int i = 0; i < view->tab()->count(); ++i)
        rects << view->mapToScreen(view->shape(i).bounds);
    QImage image = device_image(*view, dpr);
    const QColor fill(0x33, 0x66, 0xCC);
    for (auto _ : state) {
        QPainter painter(&image);
        for (const QRect& r : rects)
            painter.fillRect(r, fill);
    }
}

// A zoom never shown before, for every frame of every run: the faces of the frame's zoom are
// never cached.
float unseen_zoom() {
    static int frames = 0;
    return 2.5f + 1e-4f * static_cast<float>(++frames);
}

// The first frame of a glide from zoom 1, where every face was drawn, towards a zoom never shown.
void BM_ZoomFrame_5000Labelled(benchmark::State& state, double dpr) {
    const std::unique_ptr<picker_view> view = labelled_view(1.0);
    QImage image = device_image(*view, dpr);
    {
        QPainter painter(&image);
        view->paint(painter, view->rect());
    }
    for (auto _ : state) {
        state.PauseTiming();
        view->setZoom(1.0f, QPoint(0, 0));
        view->zoomWindow(unseen_zoom(), QPoint(0, 0));
        view->animate_zoom();
        state.ResumeTiming();
        QPainter painter(&image);
        view->paint(painter, view->rect());
    }
}

// The frame a glide lands on, drawn exactly: every face of the new zoom drawn anew.
void BM_ZoomSettle_5000Labelled(benchmark::State& state, double dpr) {
    const std::unique_ptr<picker_view> view = labelled_view(1.0);
    QImage image = device_image(*view, dpr);
    for (auto _ : state) {
        state.PauseTiming();
        view->setZoom(unseen_zoom() - 1.5f, QPoint(0, 0));
        state.ResumeTiming();
        QPainter painter(&image);
        view->paint(painter, view->rect());
    }
}

void BM_FindButton_5000(benchmark::State& state) {
    const std::unique_ptr<picker_view> view = labelled_view(1.0);
    // The last button: every other one is tested first.
    const QPoint last = view->mapToScreen(view->tab()->buttons().last().att.pos);
    for (auto _ : state)
        benchmark::DoNotOptimize(view->find_button(last));
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::RegisterBenchmark("BM_SetSelection_10x1000", BM_SetSelection_10x1000)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("BM_SetSelection_10x1000_literal", BM_SetSelection_10x1000_literal)
        ->Unit(benchmark::kMicrosecond);
    for (const double zoom : {0.77, 1.0, 2.5}) {
        for (const double dpr : {1.0, 2.0}) {
            const std::string suffix = "/zoom" + QString::number(zoom).toStdString() + "/dpr" +
                                       QString::number(dpr).toStdString();
            benchmark::RegisterBenchmark(("BM_Repaint_5000Labelled" + suffix).c_str(),
                                         BM_Repaint_5000Labelled, zoom, dpr)
                ->Unit(benchmark::kMillisecond);
            benchmark::RegisterBenchmark(("BM_Repaint_5000Labelled_fill_baseline" + suffix).c_str(),
                                         BM_Repaint_5000Labelled_fill_baseline, zoom, dpr)
                ->Unit(benchmark::kMillisecond);
        }
    }
    for (const double dpr : {1.0, 2.0}) {
        const std::string suffix = "/dpr" + QString::number(dpr).toStdString();
        benchmark::RegisterBenchmark(("BM_ZoomFrame_5000Labelled" + suffix).c_str(),
                                     BM_ZoomFrame_5000Labelled, dpr)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("BM_ZoomSettle_5000Labelled" + suffix).c_str(),
                                     BM_ZoomSettle_5000Labelled, dpr)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("BM_FindButton_5000", BM_FindButton_5000)
        ->Unit(benchmark::kMicrosecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
