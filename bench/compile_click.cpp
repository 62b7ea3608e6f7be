// What a user waits for after pressing Compile: from the click to the compiler's output on the screen, against
// running the same compiler by hand and waiting for it, in turns in the same run: a native compiler (a shell
// script) and a Windows compiler under a warm Wine.
#include "BenchMain.h"
#include "BenchWorld.h"
#include "core/ToolIds.h"
#include "compile/CompilerScreen.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/SourceView.h"
#include "fakes/WinePrefix.h"
#include "platform/Wine.h"
#include "NoPrompts.h"
#include "platform/Prompts.h"
#include "shell/MDIMain.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QEventLoop>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace {

const QString kWaiting = QStringLiteral("Compiling Please Wait.....");

// A frame with one document in a temp application directory, its compiler set.
struct CompileWorld : BenchWorld {
    NoPrompts prompts;
    std::unique_ptr<MDIMain> frame;
    QString source;

    explicit CompileWorld(const QString& compiler) : BenchWorld(prompts) {
        saveSetting(Key::CompilerPathName, compiler);
        saveSetting(Key::AutoCloseCW, QStringLiteral("0"));
        source = app.filePath(QStringLiteral("blink.pbp"));
        QFile f(source);
        f.open(QIODevice::WriteOnly);
        f.write("HIGH PORTB.0\r\n");
        f.close();
        frame = std::make_unique<MDIMain>(source);
        frame->show();
    }
    ~CompileWorld() {
        frame.reset();
        globals().reset();
    }
    // One compile from the click; false when the output never came.
    bool compile() {
        frame->SSActiveToolBars1_ToolClick(frame->toolBars().Tools().Item(QLatin1String(ToolId::Compile)));
        // Sleeps in the event loop as the IDE does; a busy poll here would take a core from the compiler.
        QEventLoop loop;
        QTimer poll;
        bool shown = false;
        QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
            CompilerScreen* s = CompilerScreen::find();
            if (s && s->CompilerOutput->Text() != kWaiting) {
                shown = true;
                loop.quit();
            }
        });
        poll.start(1);
        QTimer::singleShot(60000, &loop, &QEventLoop::quit);
        loop.exec();
        return shown;
    }
};

// The native stand-in for a compiler: prints a banner and writes the hex file beside the source.
QString writeNativeCompiler(const QString& dir) {
    const QString path = dir + QStringLiteral("/PBPW");
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write("#!/bin/sh\necho 'PICBASIC PRO(TM) COMPILER 3.1.6.4, (c) 1998, 2022'\n"
            "for a; do last=$a; done\n: > \"${last%.*}.hex\"\necho Done.\n");
    f.close();
    f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
    return path;
}

void runByHand(const QString& program, const QStringList& args) {
    QProcess p;
    p.setStandardOutputFile(QProcess::nullDevice());
    p.start(program, args);
    p.waitForFinished(-1);
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

// Wine's server keeps working for some milliseconds after a program ends; a user's next compile comes
// seconds later. Each timed run starts after a pause, so neither pays for the other's end.
void settle() {
    QEventLoop loop;
    QTimer::singleShot(150, &loop, &QEventLoop::quit);
    loop.exec();
}

// The click and the run by hand take turns, so that whatever else the machine does falls on both alike; the
// medians are the figures.
void clickAgainstByHand(benchmark::State& state, CompileWorld& w, const std::function<void()>& byHand) {
    byHand();
    w.compile();  // the first compile (for wine, it asks for the short forms, kept for later compiles)
    std::vector<double> clicks, hands;
    for (auto _ : state) {
        settle();
        QElapsedTimer t;
        t.start();
        byHand();
        hands.push_back(t.nsecsElapsed() / 1e6);
        settle();
        t.restart();
        if (!w.compile())
            state.SkipWithError("no output");
        clicks.push_back(t.nsecsElapsed() / 1e6);
        state.SetIterationTime(clicks.back() / 1e3);
    }
    const double hand = median(hands);
    state.counters["click_ms"] = median(clicks);
    state.counters["by_hand_ms"] = hand;
    state.counters["goal_ms"] = 1.2 * hand + 50;
}

void BM_CompileClick_Native(benchmark::State& state) {
    QTemporaryDir tools;
    const QString compiler = writeNativeCompiler(tools.path());
    CompileWorld w(compiler);
    const QString source = tools.filePath(QStringLiteral("blink.pbp"));
    clickAgainstByHand(state, w, [&] { runByHand(compiler, {QStringLiteral("-p16F84A"), source}); });
}
BENCHMARK(BM_CompileClick_Native)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(40);

void BM_CompileClick_Wine(benchmark::State& state) {
    const QString fake = fakeProgram(QStringLiteral("fakepbp.exe"));
    if (fake.isEmpty())
        return state.SkipWithError("MinGW did not build the fake Windows compiler");
    const TestWinePrefix prefix;
    if (!prefix.why().isEmpty())
        return state.SkipWithError(qPrintable(prefix.why()));
    // Warm: a lasting server, the prefix up and its services settled before the first timed run.
    WineServerRecord server;
    keepWineServerWarm(server, 0);
    for (int i = 0; i < 3; ++i)
        runByHand(QStringLiteral("wine"), {fake});
    QTemporaryDir work;
    const QString source = work.filePath(QStringLiteral("blink.pbp"));
    QFile(source).open(QIODevice::WriteOnly);
    CompileWorld w(fake);
    clickAgainstByHand(state, w, [&] {
        runByHand(QStringLiteral("wine"), {fake, QStringLiteral("-p16F84A"), source});
    });
}
BENCHMARK(BM_CompileClick_Wine)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
