// What a user waits for at start: from the program's start to a frame on the screen with its first document,
// idle, against a bare Qt window with a menu bar, a toolbar and a QScintilla control, in the same run; and a
// start that restores 20 documents against one that restores one.
#include "BenchMain.h"
#include "BenchWorld.h"
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

struct World : BenchWorld {
    NoPrompts prompts;
    World() : BenchWorld(prompts) {}
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

// A start that brings back the documents of the last close, 20 of them against 1, each a 400-line program
// with its caret in the middle, the last one active. Two moments: the frame on the screen with the active
// document, answering (one turn of the event loop after the show); and every document back, idle.
struct SessionWorld : World {
    Session session;
    explicit SessionWorld(int documents) {
        QByteArray program;
        for (int i = 0; i < 100; ++i)
            program += "' blink an LED\r\nloop:\r\n    HIGH PORTB.0 : PAUSE 500\r\n    LOW PORTB.0 : GOTO loop\r\n";
        for (int i = 0; i < documents; ++i) {
            const QString path = app.filePath(QStringLiteral("prog%1.pbp").arg(i));
            QFile f(path);
            if (f.open(QIODevice::WriteOnly))
                f.write(program);
            session.documents.append({path, 200});
        }
        session.active = documents - 1;
    }
};

void restoreSessionBenchmark(benchmark::State& state, bool allBack) {
    SessionWorld w(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        saveSession(w.session);
        state.ResumeTiming();
        auto* frame = new MDIMain(QString());
        frame->show();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        if (allBack) {
            while (frame->restoring())
                QCoreApplication::processEvents(QEventLoop::AllEvents);
            settle();
        }
        state.PauseTiming();
        frame->finishRestoring();
        if (frame->miDocCount() != state.range(0))
            state.SkipWithError("not every document came back");
        frame->close();
        delete frame;
        settle();
        state.ResumeTiming();
    }
}
void BM_StartRestoringSession_FrameAnswers(benchmark::State& state) { restoreSessionBenchmark(state, false); }
void BM_StartRestoringSession_AllBack(benchmark::State& state) { restoreSessionBenchmark(state, true); }
BENCHMARK(BM_StartRestoringSession_FrameAnswers)->Arg(1)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StartRestoringSession_AllBack)->Arg(1)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [] { globals().reset(); });
}
