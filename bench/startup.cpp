// What a user waits for at start: from the program's start to a frame on the screen with its first document,
// idle, against a bare Qt window with a menu bar, a toolbar and a QScintilla control, in the same run.
#include "BenchMain.h"
#include "core/Globals.h"
#include "platform/PosixLauncher.h"
#include "platform/PosixPaths.h"
#include "NoPrompts.h"
#include "platform/Prompts.h"
#include "shell/MDIMain.h"

#include <QApplication>
#include <QFile>
#include <QMainWindow>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QToolBar>
#include <Qsci/qsciscintilla.h>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

namespace {

// Runs the event loop until nothing is left to do.
void settle() {
    for (int i = 0; i < 5; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
}

struct World {
    QTemporaryDir config, app;
    NoPrompts prompts;
    PosixLauncher launcher;
    PosixPaths paths{app.path()};
    World() {
        qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
        QFile::copy(QStringLiteral(QB_SOURCE_DIR "/data/device.ide"), app.filePath(QStringLiteral("device.ide")));
        globals().prompts = &prompts;
        globals().launcher = &launcher;
        globals().paths = &paths;
    }
};

void BM_StartToIdle_Frame(benchmark::State& state) {
    World w;
    for (auto _ : state) {
        auto* frame = new MDIMain(QString());
        frame->show();
        settle();
        state.PauseTiming();
        frame->close();
        delete frame;
        settle();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_StartToIdle_Frame)->Unit(benchmark::kMillisecond);

void BM_StartToIdle_BareWindowBaseline(benchmark::State& state) {
    for (auto _ : state) {
        auto* frame = new QMainWindow;
        frame->menuBar()->addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("&New"));
        frame->addToolBar(QStringLiteral("Standard"))->addAction(QStringLiteral("New"));
        frame->setCentralWidget(new QsciScintilla);
        frame->resize(600, 400);
        frame->show();
        settle();
        state.PauseTiming();
        delete frame;
        settle();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_StartToIdle_BareWindowBaseline)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [] { globals().reset(); });
}
