// What the Code Explorer and completion cost the user, side by side in one run:
// - start-up to idle with the explorer shown, against the same start with it hidden;
// - a keystroke at the end of a 100,000-line program with the explorer shown, against hidden (the explorer
//   follows after a pause in typing, so its work is measured apart: the scan and list after that pause);
// - opening the completion list (Ctrl+Space, the program's names scanned afresh after an edit) on a
//   400-line and a 100,000-line program, against the bare control showing a list of as many words.
#include "BenchMain.h"
#include "BenchWorld.h"
#include "NoPrompts.h"
#include "core/Globals.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/PosixLauncher.h"
#include "platform/PosixPaths.h"
#include "shell/CodeExplorer.h"
#include "shell/MDIMain.h"

#include <QElapsedTimer>
#include <algorithm>
#include <vector>

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QKeyEvent>
#include <Qsci/qsciscintilla.h>
#include <benchmark/benchmark.h>

namespace {

// A key pressed and let go, as the keyboard gives it.
void key(QWidget* w, Qt::Key k, Qt::KeyboardModifiers mods = Qt::NoModifier, const QString& text = {}) {
    QKeyEvent press(QEvent::KeyPress, k, mods, text);
    QApplication::sendEvent(w, &press);
    QKeyEvent release(QEvent::KeyRelease, k, mods, text);
    QApplication::sendEvent(w, &release);
}

void typeText(QWidget* w, const QString& text) {
    for (const QChar c : text) {
        if (c == QLatin1Char('\n'))
            key(w, Qt::Key_Return);
        else
            key(w, Qt::Key(c.toUpper().unicode()), Qt::NoModifier, QString(c));
    }
}

struct World : BenchWorld {
    NoPrompts prompts;
    World() : BenchWorld(prompts) {}
    // A program of blocks of 25 lines, each block with a define, two variables, an array, an alias, a
    // constant, a label and a subroutine of its own.
    QString program(int lines) {
        const QByteArray block = "' Section %1: read the sensor: and show it\n"
                                 "DEFINE ADC_BITS 10\n"
                                 "LED%1 VAR PORTB.0\n"
                                 "reading%1 VAR WORD\n"
                                 "samples%1 VAR BYTE[16]\n"
                                 "Limit%1 CON 100\n"
                                 "Start%1:\n"
                                 "    FOR i = 0 TO 15\n"
                                 "        ADCIN 0, reading%1\n"
                                 "        IF reading%1 > Limit%1 THEN\n"
                                 "            HIGH LED%1 : PAUSE 10\n"
                                 "        ELSE\n"
                                 "            LOW LED%1 ; off\n"
                                 "        ENDIF\n"
                                 "        samples%1[i] = reading%1.BYTE0\n"
                                 "    NEXT i\n"
                                 "    GOSUB Show%1\n"
                                 "    LCDOUT $FE, 1, \"Value: \", DEC reading%1\n"
                                 "Show%1: HSEROUT [\"R: \", DEC reading%1, 13, 10]\n"
                                 "    RETURN\n"
                                 "ASM\n"
                                 "    movlw 1 ; in assembly: nothing\n"
                                 "ENDASM\n"
                                 "    GOTO Start%1\n"
                                 "REM end of section %1\n";
        QByteArray text;
        for (int i = 0; i < lines / 25; ++i)
            text += QByteArray(block).replace("%1", QByteArray::number(i));
        return write(QStringLiteral("prog%1.pbp").arg(lines), text);
    }
};

// The dock state that a frame closed with the explorer shown (or hidden) leaves for the next start.
void leaveExplorer(bool shown) {
    MDIMain frame{QString()};
    frame.show();
    settle();
    frame.showCodeExplorer(shown);
    frame.close();
    settle();
}

// One start to idle, in ms, with the dock as the last close left it; negative when it wasn't so.
double startOnce(bool shown) {
    leaveExplorer(shown);
    QElapsedTimer t;
    t.start();
    auto* frame = new MDIMain(QString());
    frame->show();
    settle();
    const double ms = double(t.nsecsElapsed()) / 1e6;
    const bool asLeft = frame->codeExplorer()->isVisible() == shown;
    frame->close();
    delete frame;
    settle();
    return asLeft ? ms : -1;
}

// Shown and hidden take turns, so that whatever else the machine does falls on both alike.
void BM_StartToIdle_InTurns(benchmark::State& state) {
    World w;
    std::vector<double> shown, hidden;
    for (auto _ : state) {
        const double s = startOnce(true), h = startOnce(false);
        if (s < 0 || h < 0) {
            state.SkipWithError("the explorer isn't as the last close left it");
            return;
        }
        shown.push_back(s);
        hidden.push_back(h);
        state.SetIterationTime(s / 1e3);
    }
    const auto median = [](std::vector<double> v) {
        std::sort(v.begin(), v.end());
        return v[v.size() / 2];
    };
    state.counters["shown_ms"] = median(shown);
    state.counters["hidden_ms"] = median(hidden);
    state.counters["ratio"] = median(shown) / median(hidden);
}
BENCHMARK(BM_StartToIdle_InTurns)->Iterations(15)->UseManualTime()->Unit(benchmark::kMillisecond);

// A statement typed at the end, key by key, over and over; the completion list opens at the third letters.
void BM_KeystrokeAtEndOf100kLines(benchmark::State& state, bool shown) {
    World w;
    MDIMain frame{w.program(100000)};
    frame.show();
    settle();
    frame.showCodeExplorer(shown);
    settle();
    frmEditor* doc = frame.activeDocument();
    QWidget* keys = doc->View->editorWidget();
    key(keys, Qt::Key_End, Qt::ControlModifier);
    const QString statement = QStringLiteral("    HIGH PORTB.0 : x = x + 1\n");
    qsizetype at = 0;
    for (auto _ : state) {
        const QChar c = statement[at];
        at = (at + 1) % statement.size();
        if (c == QLatin1Char('\n'))
            key(keys, Qt::Key_Return);
        else
            typeText(keys, QString(c));
        QCoreApplication::processEvents();
    }
    state.counters["names"] = double(doc->programSymbols().size());
}
BENCHMARK_CAPTURE(BM_KeystrokeAtEndOf100kLines, ExplorerShown, true)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK_CAPTURE(BM_KeystrokeAtEndOf100kLines, ExplorerHidden, false)->Unit(benchmark::kMicrosecond)->UseRealTime();

// The explorer's work after a pause in typing: the scan of the changed text and the list made anew.
void BM_ExplorerAfterPause(benchmark::State& state) {
    World w;
    MDIMain frame{w.program(int(state.range(0)))};
    frame.show();
    settle();
    frmEditor* doc = frame.activeDocument();
    key(doc->View->editorWidget(), Qt::Key_End, Qt::ControlModifier);
    int n = 0;
    for (auto _ : state) {
        state.PauseTiming();
        typeText(doc->View->editorWidget(), QStringLiteral("\nnew%1:").arg(n++));
        state.ResumeTiming();
        frame.codeExplorer()->refresh();
    }
}
BENCHMARK(BM_ExplorerAfterPause)->Arg(400)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_CompletionOpen(benchmark::State& state) {
    World w;
    MDIMain frame{w.program(int(state.range(0)))};
    frame.show();
    settle();
    frmEditor* doc = frame.activeDocument();
    QWidget* keys = doc->View->editorWidget();
    key(keys, Qt::Key_End, Qt::ControlModifier);
    typeText(keys, QStringLiteral("\nse"));
    for (auto _ : state) {
        state.PauseTiming();
        // An edit first, so the program's names are scanned afresh.
        typeText(keys, QStringLiteral("r"));
        key(keys, Qt::Key_Backspace);
        state.ResumeTiming();
        key(keys, Qt::Key_Space, Qt::ControlModifier);
        QCoreApplication::processEvents();
        state.PauseTiming();
        if (!doc->View->completionShown())
            state.SkipWithError("no list");
        key(keys, Qt::Key_Escape);
        state.ResumeTiming();
    }
    state.counters["words"] = double(doc->View->completionWords().size());
}
BENCHMARK(BM_CompletionOpen)->Arg(400)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();

// The bare control showing a list of as many words, after the same two letters.
void BM_CompletionOpen_BareListBaseline(benchmark::State& state) {
    World w;
    MDIMain frame{w.program(int(state.range(0)))};
    frame.show();
    settle();
    frmEditor* doc = frame.activeDocument();
    key(doc->View->editorWidget(), Qt::Key_End, Qt::ControlModifier);
    typeText(doc->View->editorWidget(), QStringLiteral("\nse"));
    doc->View_CompletionWanted();
    const std::vector<QString> words = doc->View->completionWords();
    QByteArray list;
    for (const QString& word : words)
        list += (list.isEmpty() ? "" : " ") + word.toUtf8();
    QsciScintilla bare;
    bare.resize(600, 400);
    bare.show();
    bare.setText(QStringLiteral("se"));
    bare.SendScintilla(QsciScintillaBase::SCI_GOTOPOS, 2L);
    bare.SendScintilla(QsciScintillaBase::SCI_AUTOCSETIGNORECASE, 1L);
    settle();
    for (auto _ : state) {
        bare.SendScintilla(QsciScintillaBase::SCI_AUTOCSHOW, 2UL, list.constData());
        QCoreApplication::processEvents();
        state.PauseTiming();
        bare.SendScintilla(QsciScintillaBase::SCI_AUTOCCANCEL);
        state.ResumeTiming();
    }
    state.counters["words"] = double(words.size());
}
BENCHMARK(BM_CompletionOpen_BareListBaseline)->Arg(400)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [] { globals().reset(); });
}
