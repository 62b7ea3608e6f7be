// What a user waits for after pressing Compile: from the click to the compiler's output on the screen, against
// running the same compiler by hand and waiting for it, in the same run: a native compiler (a shell script)
// and a Windows compiler under a warm Wine.
#include "compile/CompilerScreen.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/SourceView.h"
#include "fakes/WinePrefix.h"
#include "platform/PosixLauncher.h"
#include "platform/PosixPaths.h"
#include "platform/Wine.h"
#include "NoPrompts.h"
#include "platform/Prompts.h"
#include "shell/MDIMain.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

namespace {

const QString kWaiting = QStringLiteral("Compiling Please Wait.....");

// A frame with one document in a temp application directory, its compiler set.
struct CompileWorld {
    QTemporaryDir config, app;
    NoPrompts prompts;
    PosixLauncher launcher;
    PosixPaths paths{app.path()};
    std::unique_ptr<MDIMain> frame;
    QString source;

    explicit CompileWorld(const QString& compiler) {
        qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
        QFile::copy(QStringLiteral(QB_SOURCE_DIR "/data/device.ide"), app.filePath(QStringLiteral("device.ide")));
        globals().prompts = &prompts;
        globals().launcher = &launcher;
        globals().paths = &paths;
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
        frame->SSActiveToolBars1_ToolClick(frame->toolBars().Tools().Item(QStringLiteral("ID_Compile")));
        const QDeadlineTimer guard(60000);
        while (!guard.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
            CompilerScreen* s = CompilerScreen::find();
            if (s && s->CompilerOutput->Text() != kWaiting)
                return true;
        }
        return false;
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

void BM_CompileClickToOutput_Native(benchmark::State& state) {
    QTemporaryDir tools;
    CompileWorld w(writeNativeCompiler(tools.path()));
    w.compile();  // the first compile of a document makes its compile run
    for (auto _ : state)
        if (!w.compile())
            state.SkipWithError("no output");
}
BENCHMARK(BM_CompileClickToOutput_Native)->Unit(benchmark::kMillisecond)->Iterations(20);

void BM_CompilerByHandBaseline_Native(benchmark::State& state) {
    QTemporaryDir tools;
    const QString compiler = writeNativeCompiler(tools.path());
    const QString source = tools.filePath(QStringLiteral("blink.pbp"));
    for (auto _ : state)
        runByHand(compiler, {QStringLiteral("-p16F84A"), source});
}
BENCHMARK(BM_CompilerByHandBaseline_Native)->Unit(benchmark::kMillisecond)->Iterations(20);

QString wineCompilerOrSkip(benchmark::State& state) {
    const QString fake = fakeProgram(QStringLiteral("fakepbp.exe"));
    if (fake.isEmpty()) {
        state.SkipWithError("MinGW did not build the fake Windows compiler");
        return {};
    }
    if (const QString why = useTestWinePrefix(); !why.isEmpty()) {
        state.SkipWithError(qPrintable(why));
        return {};
    }
    // Warm: the IDE's own lasting wine server and the prefix are up before the first timed run (a server
    // left by an earlier short run would end with its last program).
    runByHand(QStringLiteral("wineserver"), {QStringLiteral("-k")});
    keepWineServerWarm();
    runByHand(QStringLiteral("wine"), {fake});
    return fake;
}

void BM_CompileClickToOutput_Wine(benchmark::State& state) {
    const QString fake = wineCompilerOrSkip(state);
    if (fake.isEmpty())
        return;
    CompileWorld w(fake);
    w.compile();  // the first compile through wine asks wine for the short forms, kept from then on
    for (auto _ : state)
        if (!w.compile())
            state.SkipWithError("no output");
}
BENCHMARK(BM_CompileClickToOutput_Wine)->Unit(benchmark::kMillisecond)->Iterations(10);

void BM_CompilerByHandBaseline_Wine(benchmark::State& state) {
    const QString fake = wineCompilerOrSkip(state);
    if (fake.isEmpty())
        return;
    QTemporaryDir work;
    const QString source = work.filePath(QStringLiteral("blink.pbp"));
    QFile(source).open(QIODevice::WriteOnly);
    for (auto _ : state)
        runByHand(QStringLiteral("wine"), {fake, QStringLiteral("-p16F84A"), source});
}
BENCHMARK(BM_CompilerByHandBaseline_Wine)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
