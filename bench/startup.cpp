// What a user waits for at start: from the program's start to a frame on the screen with its first document,
// idle, against a bare Qt window with a menu bar, a toolbar and a QScintilla control, in the same run; and a
// start that restores 20 documents against one that restores one.
#include "BenchMain.h"
#include "core/Globals.h"
#include "core/Session.h"
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

// A start that brings back the documents of the last close, to an idle frame: 20 of them against 1, each a
// 400-line program, the last one active.
void BM_StartRestoringSession(benchmark::State& state) {
    World w;
    Session session;
    QByteArray program;
    for (int i = 0; i < 100; ++i)
        program += "' blink an LED\r\nloop:\r\n    HIGH PORTB.0 : PAUSE 500\r\n    LOW PORTB.0 : GOTO loop\r\n";
    for (int i = 0; i < state.range(0); ++i) {
        const QString path = w.app.filePath(QStringLiteral("prog%1.pbp").arg(i));
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) || f.write(program) != program.size())
            state.SkipWithError("cannot write the programs");
        session.documents.append({path, 200});
    }
    session.active = int(session.documents.size()) - 1;
    for (auto _ : state) {
        state.PauseTiming();
        saveSession(session);
        state.ResumeTiming();
        auto* frame = new MDIMain(QString());
        frame->show();
        settle();
        state.PauseTiming();
        if (frame->miDocCount() != state.range(0))
            state.SkipWithError("not every document came back");
        frame->close();
        delete frame;
        settle();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_StartRestoringSession)->Arg(1)->Arg(20)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [] { globals().reset(); });
}
