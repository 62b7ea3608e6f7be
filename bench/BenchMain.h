#pragma once
// The main of every benchmark: an offscreen application unless told otherwise, then Google Benchmark.

#include <QApplication>
#include <benchmark/benchmark.h>

#include <functional>

// atEnd runs while the application still exists.
inline int runBenchmarks(int argc, char** argv, const std::function<void()>& atEnd = {}) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    if (atEnd)
        atEnd();
    return 0;
}
