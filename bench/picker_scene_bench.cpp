// The scene write that follows one edit: all tabs streamed, compressed, base64-encoded and issued
// as MEL. Aims: under 5 ms for a 5,000-button picker, under 20 ms with a 2048 x 2048 background.
// Each has the literal way beside it (image re-encoded and zlib level 9 on every write).
#include "picker_file.h"
#include "picker_host.h"
#include "picker_main.h"
#include "picker_stream.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QApplication>
#include <QIODevice>
#include <QLinearGradient>
#include <QPainter>
#include <QTabWidget>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

// Takes the MEL and keeps only its length, so nothing after the write is timed.
class null_host : public picker_host {
public:
    host_status openPlugin(const QString&, const QString&, const QString&) override { return {}; }
    host_status registerCommand(const QString&, picker_command_fn) override { return {}; }
    host_status deregisterCommand(const QString&) override { return {}; }
    QString loadPath() const override { return QString(); }
    picker_callback_id addEventCallback(const QString&, picker_event_fn, void*,
                                        host_status*) override {
        return 1;
    }
    picker_callback_id addNodesChangedCallback(picker_event_fn, void*, host_status*) override {
        return 2;
    }
    host_status removeCallback(picker_callback_id) override { return {}; }
    host_status executeCommandOnIdle(const QString& mel, bool) override {
        issued += mel.size();
        return {};
    }
    host_status executePythonCommandOnIdle(const QString&, bool) override { return {}; }
    host_status activeSelection(QStringList& names) override {
        names.clear();
        return {};
    }
    std::unique_ptr<picker_selection_snapshot> saveSelection(host_status*) override {
        return nullptr;
    }
    host_status selectByName(const QString&, picker_list_adjustment) override { return {}; }
    host_status clearSelectionList() override { return {}; }
    host_status nodesExist(const QStringList& names, QVector<bool>& exist) override {
        exist.fill(true, names.size());
        return {};
    }
    void displayError(const QString&) override {}
    bool hasInterface() const override { return true; }
    QWidget* mainWindow() override { return nullptr; }

    qint64 issued = 0;
};

null_host& host() {
    static null_host instance;
    return instance;
}

void add_buttons(picker_tab* tab, int count) {
    button_att_list buttons;
    for (int i = 0; i < count; ++i) {
        buttonAttributes button;
        button.pos = QPoint(i % 100 * 20, i / 100 * 20);
        button.size = 12;
        button.color = 0xffb22222;
        button.tcolor = 0xff000000;
        button.label = QString::number(i);
        button.sel = QStringList{QStringLiteral("crowd%1:L_hand_ctrl").arg(i),
                                 QStringLiteral("crowd%1:R_hand_ctrl").arg(i)};
        buttons << button;
    }
    tab->replaceButtons(buttons);
}

// A drawn character sheet: gradient, body shapes and outlines, as picker backgrounds are.
QPixmap background2048() {
    QImage image(2048, 2048, QImage::Format_ARGB32);
    QPainter painter(&image);
    QLinearGradient gradient(0, 0, 0, 2048);
    gradient.setColorAt(0, QColor(60, 64, 72));
    gradient.setColorAt(1, QColor(150, 155, 165));
    painter.fillRect(image.rect(), gradient);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, 6));
    painter.setBrush(QColor(220, 190, 160));
    painter.drawEllipse(QPoint(1024, 300), 180, 220);
    painter.drawRoundedRect(QRect(774, 520, 500, 700), 80, 80);
    painter.drawRoundedRect(QRect(500, 560, 240, 700), 60, 60);
    painter.drawRoundedRect(QRect(1308, 560, 240, 700), 60, 60);
    painter.drawRoundedRect(QRect(800, 1240, 200, 760), 60, 60);
    painter.drawRoundedRect(QRect(1048, 1240, 200, 760), 60, 60);
    for (int i = 0; i < 40; ++i)
        painter.drawLine(0, 50 * i, 2048, 50 * i + 400);
    painter.end();
    return QPixmap::fromImage(image);
}

struct bench_window {
    bench_window(int buttons, bool withBackground) {
        window = std::make_unique<picker_window>(nullptr);
        tab = window->frontTab();
        add_buttons(tab, buttons);
        if (withBackground) {
            const QPixmap image = background2048();
            tab->setBackground(QString::number(image.cacheKey()), image);
            // As choosing a background does: its image entry is stored once, before any edit.
            window->setImageData(tab);
        }
    }
    std::unique_ptr<picker_window> window;
    picker_tab* tab = nullptr;
};

// The edit each write follows: one button moved, back and forth.
void edit_one(picker_tab* tab, int iteration) {
    const int index = iteration * 37 % tab->count();
    tab->editButtons({index}, [iteration](buttonAttributes& att, int) {
        att.pos += QPoint(iteration % 2 == 0 ? 1 : -1, 0);
    });
}

void scene_write(benchmark::State& state, int buttons, bool withBackground) {
    bench_window picker(buttons, withBackground);
    int iteration = 0;
    for (auto _ : state) {
        edit_one(picker.tab, iteration++);
        picker.window->flushSceneData();
    }
    state.counters["MEL bytes"] = static_cast<double>(host().issued) / state.iterations();
    host().issued = 0;
}

// As written originally: every write encodes the image again and compresses at level 9.
void scene_write_literal(benchmark::State& state, int buttons, bool withBackground) {
    bench_window picker(buttons, withBackground);
    QTabWidget* tabs = picker.window->findChild<QTabWidget*>();
    int iteration = 0;
    for (auto _ : state) {
        edit_one(picker.tab, iteration++);
        QByteArray bytes;
        {
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out << qint32(4) << qint32(tabs->count()) << qint32(tabs->currentIndex());
            for (int i = 0; i < tabs->count(); ++i) {
                const picker_tab* tab = qobject_cast<picker_view*>(tabs->widget(i))->tab();
                out << qint32(i) << tabs->tabText(i) << tab->backgroundKey();
                if (!tab->backgroundKey().isEmpty())
                    out << tab->background();
                button_att_list list;
                for (const buttonRecord& button : tab->buttons())
                    list << button.att;
                writeButtonList(out, list);
            }
        }
        const QString mel = QStringLiteral("fileInfo \"TalvoraPickerData\" \"") +
                            QString::fromLatin1(qCompress(bytes, 9).toBase64()) +
                            QStringLiteral("\"; file -modified 1;");
        host().executeCommandOnIdle(mel, false);
    }
    state.counters["MEL bytes"] = static_cast<double>(host().issued) / state.iterations();
    host().issued = 0;
}

void BM_SceneWrite_5000Buttons(benchmark::State& state) {
    scene_write(state, 5000, false);
}
void BM_SceneWrite_5000Buttons_literal(benchmark::State& state) {
    scene_write_literal(state, 5000, false);
}
void BM_SceneWrite_Background2048(benchmark::State& state) {
    scene_write(state, 50, true);
}
void BM_SceneWrite_Background2048_literal(benchmark::State& state) {
    scene_write_literal(state, 50, true);
}

BENCHMARK(BM_SceneWrite_5000Buttons)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SceneWrite_5000Buttons_literal)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SceneWrite_Background2048)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SceneWrite_Background2048_literal)->Unit(benchmark::kMillisecond);

} // namespace
