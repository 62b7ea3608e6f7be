// What a user waits for in the device catalogue: the device list filled at start and after a change of
// compiler, and one device switch (every document activation), against plain reading of the file.
#include "devices/DeviceCatalogue.h"
#include "platform/PosixPaths.h"
#include "NoPrompts.h"
#include "support/FakeDeviceCombo.h"
#include "platform/Prompts.h"
#include "core/Globals.h"

#include <QFile>
#include <QStringList>
#include <QTextStream>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

namespace {

using ListCombo = FakeDeviceCombo;

PosixPaths paths(QStringLiteral(QB_SOURCE_DIR "/data"));
NoPrompts prompts;

void useShippedCatalogue() {
    globals().paths = &paths;
    globals().prompts = &prompts;
    globals().UsePBP = true;
}

void BM_ReadCatalogueLines_Baseline(benchmark::State& state) {
    useShippedCatalogue();
    for (auto _ : state) {
        QFile file(deviceCataloguePath());
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            state.SkipWithError("no data/device.ide");
        QTextStream in(&file);
        int lines = 0;
        while (!in.atEnd()) {
            QString line = in.readLine();
            benchmark::DoNotOptimize(line);
            ++lines;
        }
        benchmark::DoNotOptimize(lines);
    }
}
BENCHMARK(BM_ReadCatalogueLines_Baseline);

void BM_FillDeviceList(benchmark::State& state) {
    useShippedCatalogue();
    globals().UsePBP = state.range(0) != 0;
    ListCombo combo;
    for (auto _ : state) {
        GetDevices(combo);
        benchmark::DoNotOptimize(combo.entries.size());
    }
    state.counters["devices"] = double(combo.entries.size());
}
BENCHMARK(BM_FillDeviceList)->ArgName("UsePBP")->Arg(1)->Arg(0);

// One device switch: the ports of the selected device, first or last in the file.
void BM_DeviceSwitch(benchmark::State& state) {
    useShippedCatalogue();
    ListCombo combo;
    GetDevices(combo);
    combo.index = state.range(0) == 0 ? 0 : combo.ListCount() - 1;
    int reloads = 0;
    for (auto _ : state) {
        GetDeviceData(combo, true, [&] { ++reloads; });
        benchmark::DoNotOptimize(globals().Ports);
    }
    benchmark::DoNotOptimize(reloads);
}
BENCHMARK(BM_DeviceSwitch)->ArgName("last")->Arg(0)->Arg(1);

// What a start does: fill the list, then read the selected device's ports.
void BM_FillListAndSwitch(benchmark::State& state) {
    useShippedCatalogue();
    ListCombo combo;
    for (auto _ : state) {
        GetDevices(combo);
        combo.index = combo.ListCount() - 1;
        GetDeviceData(combo, false);
        benchmark::DoNotOptimize(globals().Ports);
    }
}
BENCHMARK(BM_FillListAndSwitch);

}  // namespace

BENCHMARK_MAIN();
