// What a user waits for after a double-click on a compiler message in an INCLUDEd file that isn't open:
// from the click to the caret on the message's line, the file open and painted, against opening the same
// file from the File menu, and against the registry's open alone (the menu's open without the dialog and
// the recent files, which the menu writes to the settings). The three run in turns in one benchmark;
// "ratio" is jump over menu, "ratio_open" jump over the bare open, and the "_ms" counters the mean of each.
#include "BenchMain.h"
#include "BenchWorld.h"
#include "compile/CompilerScreen.h"
#include "core/Globals.h"
#include "core/ToolIds.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/SourceViewEditor.h"
#include "document/frmEditor.h"
#include "platform/PosixLauncher.h"
#include "platform/PosixPaths.h"
#include "shell/EditorRegistry.h"
#include "shell/MDIMain.h"

#include <QFile>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kMessageLine = 700;  // of the INCLUDE, from 1


// The File > Open dialog answers with the INCLUDE; no box is expected.
class OpenPrompts : public Prompts {
public:
    QString file;
    Answer message(const QString& text, const QString&, Icon, Buttons) override {
        std::fprintf(stderr, "unexpected message: %s\n", qPrintable(text));
        std::abort();
    }
    std::optional<QString> openFile(const QString&, const QString&) override { return file; }
    std::optional<QString> saveFile(const QString&, const QString&, int&) override { return std::nullopt; }
    std::optional<qint32> chooseColor(qint32) override { return std::nullopt; }
};

struct World : BenchWorld {
    OpenPrompts prompts;
    QString source, include;
    World() : BenchWorld(prompts) {
        source = write("led/blink.pbp", "INCLUDE \"inc/defs.pbp\"\r\nmain:\r\n    HIGH PORTB.0\r\n    GOTO main\r\n");
        QByteArray defs;
        for (int i = 0; i < 1000; ++i)
            defs += "value" + QByteArray::number(i) + " VAR WORD  ' a variable of the program\r\n";
        include = write("led/inc/defs.pbp", defs);
        prompts.file = include;
    }
};

// A double-click as the window system delivers it, the events with their times.
void doubleClick(QWidget* viewport, const QPoint& at, ulong& clock) {
    clock += 10000;  // far from the last iteration's clicks
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick,
                              QEvent::MouseButtonRelease}) {
        QMouseEvent e(type, at, viewport->mapToGlobal(at), Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        e.setTimestamp(clock += 20);
        QApplication::sendEvent(viewport, &e);
    }
}

void BM_MessageJumpIntoUnopenedInclude(benchmark::State& state) {
    World w;
    MDIMain frame(w.source);
    frame.show();
    settle(3);
    CompilerScreen& screen = CompilerScreen::instance();
    screen.show();
    screen.CompilerOutput->SetText(QStringLiteral("PICBASIC PRO(TM) Compiler 3.1, (c) x\nWARNING Line %1: Unused. "
                                                  "(inc/defs.pbp)\n").arg(kMessageLine));
    CompileMessage m;
    m.severity = CompileMessage::Severity::Warning;
    m.file = w.include;
    m.line = kMessageLine;
    m.outputLine = 1;
    screen.showMessages(frame, {m}, w.source);
    settle(3);
    auto& out = SourceViewEditor::of(*screen.CompilerOutput);
    const long at = out.SendScintilla(QsciScintillaBase::SCI_POSITIONFROMLINE, 1UL);
    const QPoint click(int(out.SendScintilla(QsciScintillaBase::SCI_POINTXFROMPOSITION, 0UL, at)) + 3,
                       int(out.SendScintilla(QsciScintillaBase::SCI_POINTYFROMPOSITION, 0UL, at)) + 3);
    Tool& openTool = frame.toolBars().Tools().Item(ToolId::Open);
    const auto closeInclude = [&] {
        if (frmEditor* doc = frame.registry().find(w.include))
            doc->subWindow()->close();
        settle(3);
    };
    const auto at_line = [&](int line) {
        frmEditor* doc = frame.registry().active();
        return doc && doc->Caption() == w.include && doc->View->CaretY() == line;
    };

    ulong clock = 0;
    Clock::time_point lastClick{};
    Clock::duration jump{}, menu{}, open{};
    for (auto _ : state) {
        const auto t0 = Clock::now();
        frame.SSActiveToolBars1_ToolClick(openTool);
        settle(3);
        const auto t1 = Clock::now();
        if (!at_line(0))
            state.SkipWithError("the menu did not open the file");
        closeInclude();
        // QScintilla takes a press within the double-click interval after a double-click for a third click,
        // which selects the line and leaves the caret below it; a user's next double-click comes later.
        while (Clock::now() - lastClick < std::chrono::milliseconds(QApplication::doubleClickInterval() + 50))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        const auto t2 = Clock::now();
        doubleClick(out.viewport(), click, clock);
        settle(3);
        const auto t3 = Clock::now();
        lastClick = t3;
        if (!at_line(kMessageLine - 1))
            state.SkipWithError("the double-click did not reach the line");
        closeInclude();
        const auto t4 = Clock::now();
        frame.registry().show(w.include, false);
        settle(3);
        const auto t5 = Clock::now();
        if (!at_line(0))
            state.SkipWithError("the registry did not open the file");
        closeInclude();
        menu += t1 - t0;
        jump += t3 - t2;
        open += t5 - t4;
        state.SetIterationTime(std::chrono::duration<double>(t3 - t2).count());
    }
    const double n = double(state.iterations());
    state.counters["ratio"] = double(jump.count()) / double(menu.count());
    state.counters["jump_ms"] = std::chrono::duration<double, std::milli>(jump).count() / n;
    state.counters["menu_ms"] = std::chrono::duration<double, std::milli>(menu).count() / n;
    state.counters["ratio_open"] = double(jump.count()) / double(open.count());
    state.counters["open_ms"] = std::chrono::duration<double, std::milli>(open).count() / n;
    screen.close();
    frame.close();
}
BENCHMARK(BM_MessageJumpIntoUnopenedInclude)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [] { globals().reset(); });
}
