// Reading and writing a large picker in memory, and refusing a file that claims far more buttons
// than it holds. Aims: read 10,000 buttons under 20 ms, write under 10 ms, refuse under 50 ms.
#include "picker_file.h"

#include <QBuffer>
#include <QtEndian>

#include <benchmark/benchmark.h>

namespace {

constexpr int button_count = 10000;

picker_tab_record largePicker() {
    picker_tab_record tab;
    tab.title = QStringLiteral("Crowd");
    tab.buttons.reserve(button_count);
    for (int i = 0; i < button_count; ++i) {
        buttonAttributes button;
        button.pos = QPoint(i % 100 * 20, i / 100 * 20);
        button.size = 12;
        button.type = buttonAttributes::Selection;
        button.api = buttonAttributes::Mel;
        button.color = 0xffb22222;
        button.tcolor = 0xff000000;
        button.label = QString::number(i);
        button.sel = QStringList{QStringLiteral("crowd%1:L_hand_ctrl").arg(i),
                                 QStringLiteral("crowd%1:R_hand_ctrl").arg(i)};
        tab.buttons.append(button);
    }
    return tab;
}

QByteArray be32(quint32 value) {
    char bytes[4];
    qToBigEndian(value, bytes);
    return QByteArray(bytes, 4);
}

// 40 bytes: format 4, null title, null key, a count of 2147483647, then the first 24 bytes of
// button 0 (index, position, size, type, api).
QByteArray corruptCountFile() {
    return be32(4) + be32(0xffffffff) + be32(0xffffffff) + be32(0x7fffffff) + be32(0) + be32(0) +
           be32(0) + be32(8) + be32(0) + be32(0);
}

void readLargePicker(benchmark::State& state) {
    const QByteArray bytes = pickerFileBytes(largePicker());
    for (auto _ : state) {
        picker_tab_record tab;
        const picker_read_result result = readPickerFile(bytes, tab);
        if (!result.ok() || tab.buttons.size() != button_count)
            state.SkipWithError("the picker did not read back whole");
        benchmark::DoNotOptimize(tab);
    }
    state.SetItemsProcessed(state.iterations() * button_count);
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void writeLargePicker(benchmark::State& state) {
    const picker_tab_record tab = largePicker();
    QByteArray bytes;
    for (auto _ : state) {
        bytes.clear();
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        writePickerFile(buffer, tab);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetItemsProcessed(state.iterations() * button_count);
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void refuseCorruptCount(benchmark::State& state) {
    const QByteArray bytes = corruptCountFile();
    for (auto _ : state) {
        picker_tab_record tab;
        if (readPickerFile(bytes, tab).ok())
            state.SkipWithError("the corrupt count was accepted");
        benchmark::DoNotOptimize(tab);
    }
}

} // namespace

BENCHMARK(readLargePicker)->Unit(benchmark::kMillisecond);
BENCHMARK(writeLargePicker)->Unit(benchmark::kMillisecond);
BENCHMARK(refuseCorruptCount)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
