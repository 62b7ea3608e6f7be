// Costs as the work grows: the memory each open document takes beyond its text (1, 20 and 200 of them in
// the real frame), and 100,000 lines of compiler output on the output screen, with its messages tagged and
// painted, against the same text in a bare control.
#include "BenchMain.h"
#include "BenchWorld.h"
#include "NoPrompts.h"
#include "compile/CompileMessages.h"
#include "compile/CompilerScreen.h"
#include "core/Globals.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "document/frmEditorRecovery.h"
#include "platform/PosixLauncher.h"
#include "platform/PosixPaths.h"
#include "shell/MDIMain.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <Qsci/qsciscintilla.h>
#include <benchmark/benchmark.h>

#include <malloc.h>

namespace {

// Resident memory in MB, after the allocator has given back what it can.
double residentMb() {
    malloc_trim(0);
    QFile f(QStringLiteral("/proc/self/statm"));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = f.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toDouble() * double(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0) : 0;
}

struct World : BenchWorld {
    NoPrompts prompts;
    World() : BenchWorld(prompts) {}
};

// Each document a 400-line program (12 kB); its text counts twice in the control, once for the characters
// and once for their styles, and that is left out of the figure.
void BM_MemoryPerDocument(benchmark::State& state) {
    World w;
    QByteArray program;
    for (int i = 0; i < 100; ++i)
        program += "' blink an LED\r\nloop:\r\n    HIGH PORTB.0 : PAUSE 500\r\n    LOW PORTB.0 : GOTO loop\r\n";
    const int documents = int(state.range(0));
    QStringList paths;
    for (int i = 0; i < documents; ++i)
        paths << w.write(QStringLiteral("prog%1.pbp").arg(i), program);
    for (auto _ : state) {
        auto* frame = new MDIMain(QString());
        frame->show();
        settle();
        // The first document of a start is there already. One more of the same program stays open before
        // the measure: it makes what is made once (the allocator's first growth, the area's controls for a
        // second window), and the code explorer lists one active program of that size before as after.
        // The measure is of what each document adds.
        frame->createDocument(w.write(QStringLiteral("first.pbp"), program), false);
        settle();
        const double before = residentMb();
        for (const QString& p : paths)
            frame->createDocument(p, false);
        settle();
        const double after = residentMb();
        const double text = 2.0 * double(program.size()) / (1024.0 * 1024.0);
        state.counters["mb_per_document"] = (after - before) / documents - text;
        state.counters["mb_before"] = before;
        state.PauseTiming();
        frame->close();
        delete frame;
        settle();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_MemoryPerDocument)->Arg(1)->Arg(20)->Arg(200)->Iterations(1)->Unit(benchmark::kMillisecond);

// A 3 MB program, edited, then its recovery copy written, as after two quiet seconds: resident memory
// after the copy against before the edit. The copy takes the text from the control's own buffer.
void BM_RecoveryCopyMemory_3MB(benchmark::State& state) {
    World w;
    QByteArray program;
    for (int i = 0; program.size() < 3 * 1024 * 1024; ++i)
        program += "    HSEROUT [\"Line \", DEC " + QByteArray::number(i) + ", 13, 10]  ' report\r\n";
    const QString path = w.write(QStringLiteral("big.pbp"), program);
    for (auto _ : state) {
        auto* frame = new MDIMain(QString());
        frame->show();
        settle();
        frmEditor* doc = frame->createDocument(path, false);
        settle();
        const double before = residentMb();
        doc->View->SetSel(0, 0, 0, 0);
        doc->View->document().InsertImpl(0, 0, QStringLiteral("' edited\r\n"));
        doc->View->document().UpdateViews();
        settle();
        if (RecoveryWatch* watch = recoveryOf(*doc))
            watch->RecoveryTimer_Timer();
        else
            state.SkipWithError("the document has no recovery watch");
        settle();
        const double after = residentMb();
        state.counters["mb_before"] = before;
        state.counters["mb_after"] = after;
        state.counters["ratio"] = after / before;
        state.PauseTiming();
        doc->View->document().Undo();
        frame->close();
        delete frame;
        settle();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_RecoveryCopyMemory_3MB)->Iterations(1)->Unit(benchmark::kMillisecond);

// Compiler output of 100,000 lines, one in fifty an error naming the program.
QString bigOutput() {
    QString out;
    for (int i = 0; i < 100000; ++i) {
        if (i % 50 == 7)
            out += QStringLiteral("ERROR Line %1: Syntax error. (blink.pbp)\r\n").arg(i % 400 + 1);
        else
            out += QStringLiteral("Warning[302] C:\\PBP\\BLINK.ASM %1 : Register in operand not in bank 0.\r\n").arg(i);
    }
    return out;
}

void BM_OutputShown_100kLines(benchmark::State& state) {
    World w;
    auto* frame = new MDIMain(QString());
    frame->show();
    settle();
    const QString output = bigOutput();
    const QString source = w.app.filePath(QStringLiteral("blink.pbp"));
    for (auto _ : state) {
        CompilerScreen& screen = CompilerScreen::fresh();
        screen.show();
        screen.CompilerOutput->SetText(output);
        screen.showMessages(*frame, placeMessages(parseOutputMessages(output), [](const QString& f) { return f; },
                                                  [](const QString&) { return std::vector<AsmTag>{}; }),
                            source);
        settle();
        state.PauseTiming();
        screen.close();
        delete &screen;
        settle();
        state.ResumeTiming();
    }
    frame->close();
    delete frame;
    settle();
}
BENCHMARK(BM_OutputShown_100kLines)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_OutputShown_BareControl(benchmark::State& state) {
    const QString output = bigOutput();
    for (auto _ : state) {
        auto* view = new QsciScintilla;
        view->resize(430, 210);
        view->show();
        view->setText(output);
        settle();
        state.PauseTiming();
        delete view;
        settle();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OutputShown_BareControl)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [] { globals().reset(); });
}
