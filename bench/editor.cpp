// What a user waits for in the editor: opening a 100,000-line file and typing at its end, with our
// tokeniser (word sets of about 200 words) against a plain QScintilla control without one, in one run;
// and a Replace All over that file against the plain control's own find and replace loop.
#include "BenchMain.h"
#include "document/Document.h"
#include "document/Language.h"
#include "document/SourceLexer.h"
#include "document/SourceView.h"
#include "document/SourceViewEditor.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <Qsci/qsciscintilla.h>
#include <benchmark/benchmark.h>

#include <type_traits>

namespace {

const char* const kStatements[] = {
    "@", "Asm", "EndAsm", "Branch", "BranchL", "Button", "Call", "Clear", "Count", "Data", "Debug", "Disable",
    "DTMFOut", "EEPROM", "Enable", "End", "For", "FreqOut", "GoSub", "GoTo", "High", "HSerin", "HSerout",
    "I2CRead", "I2CWrite", "IF", "Then", "Else", "EndIF", "Input", "LET", "LCDOut", "LookDown", "LookDown2",
    "LookUp", "LookUp2", "Low", "NAP", "INTERRUPT", "Output", "Pause", "PauseUs", "Peek", "Poke", "Pot",
    "PulsIn", "PulsOut", "PWM", "Random", "RCTime", "Read", "Resume", "Return", "Reverse", "SerIn", "SerIn2",
    "SerOut", "SerOut2", "ShiftIn", "ShiftOut", "Sleep", "Sound", "Stop", "Swap", "Toggle", "While", "Wend",
    "Write", "XIn", "XOut", "Next", "Step", "To", "Var", "Con", "Symbol", "Include", "Define", "AND",
    "PORTA", "TRISA", "PORTB", "TRISB", "PORTC", "TRISC"};

void fillWordSets(Language& lang) {
    lang.setSLCommentStart("'");
    lang.setSLCommentStart2(";");
    lang.setStringDelimiter("\"");
    lang.ClearReservedWords();
    for (const char* w : kStatements)
        lang.AddReservedWord(0, w);
    for (const char* w : {"OSC", "LCD_DREG", "LCD_DBIT", "LCD_RSREG", "LCD_RSBIT", "LCD_EREG", "LCD_EBIT",
                          "ADC_BITS", "ADC_CLOCK", "ADC_SAMPLEUS", "HSER_BAUD", "HSER_RCSTA", "HSER_TXSTA"})
        lang.AddReservedWord(1, w);
    for (const char* w : {"WORD", "BYTE", "BIT"})
        lang.AddReservedWord(2, w);
    for (const char* w : {"ABS", "COS", "DCD", "DIG", "MAX", "MIN", "NCD", "REV", "SIN", "SQR"})
        lang.AddReservedWord(3, w);
    for (const char* w : {"AND", "OR", "XOR", "NOT"})
        lang.AddReservedWord(4, w);
    for (const char* base : {"BIN", "IBIN", "SBIN", "ISBIN", "DEC", "IDEC", "SDEC", "ISDEC", "HEX", "IHEX",
                             "SHEX", "ISHEX"}) {
        lang.AddReservedWord(5, base);
        for (int i = 1; i <= 8; ++i)
            lang.AddReservedWord(5, QString::fromLatin1(base) + QString::number(i));
    }
}

// A realistic mix: comments of both kinds, labels, statements, strings, decimal, hex and binary numbers.
QByteArray sourceText(int lines) {
    static const char* const pattern[] = {
        "' Blink an LED and count on the LCD, block {n}\r\n",
        "DEFINE OSC 20\r\n",
        "counter{n} VAR WORD          ; loop counter\r\n",
        "loop{n}:\r\n",
        "    High PORTB.0 : Pause 500\r\n",
        "    Low PORTB.0 : Pause 500\r\n",
        "    LCDOut $FE, 1, \"Count: \", DEC4 counter{n}\r\n",
        "    TRISB = {n}1110000 : PORTA = $1F\r\n",
        "    IF counter{n} > 1000 AND PORTA.1 = 1 THEN GoTo done{n}\r\n",
        "    counter{n} = counter{n} + 1 MIN 10\r\n",
        "    GoTo loop{n}\r\n",
        "done{n}: SerOut2 PORTC.6, 84, [\"Done \", HEX4 counter{n}, 13, 10]\r\n",
    };
    QByteArray out;
    out.reserve(lines * 36);
    for (int i = 0; i < lines; ++i)
        out += QByteArray(pattern[i % std::size(pattern)]).replace("{n}", QByteArray::number(i / int(std::size(pattern))));
    return out;
}

// A source of `lines` lines, written once per size.
QString sourceFile(int lines = 100000) {
    static QTemporaryDir dir;
    const QString p = dir.filePath(QStringLiteral("big%1.pbp").arg(lines));
    if (!QFile::exists(p)) {
        QFile f(p);
        f.open(QIODevice::WriteOnly);
        f.write(sourceText(lines));
    }
    return p;
}

// Each editor opens the file its own way: ours through Document, the plain one by reading it whole.
struct Ours {
    SourceView view;
    Ours() { fillWordSets(view.document().language()); }
    QWidget& window() { return view; }
    QsciScintilla& widget() { return SourceViewEditor::of(view); }
    void open(const QString& path) { view.document().LoadFile(path); }
    // How many lines the tokeniser styled: what was on screen, not the 100,000.
    double linesStyled() const { return double(view.sourceLexer()->linesStyled()); }
};

struct Plain {
    QsciScintilla view;
    QWidget& window() { return view; }
    QsciScintilla& widget() { return view; }
    void open(const QString& path) {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        view.SendScintilla(QsciScintilla::SCI_SETTEXT, uintptr_t(0), f.readAll().constData());
    }
};

// QScintilla counts characters from the start of the text at each edit and repaint for its accessible;
// SourceView avoids that (see SourceViewAccessible). This baseline avoids it the same way, so that the
// ratio to it is the cost of our tokeniser and events alone.
QAccessibleInterface* plainAccessible(const QString& className, QObject* object) {
    if (className == QLatin1String("TunedPlainView"))
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::EditableText);
    return nullptr;
}

class TunedPlainView : public QsciScintilla {
    Q_OBJECT
public:
    TunedPlainView() {
        static const bool installed = (QAccessible::installFactory(plainAccessible), true);
        (void)installed;
        SendScintilla(SCI_SETMODEVENTMASK, long(SC_MOD_BEFOREINSERT | SC_MOD_BEFOREDELETE));
    }
};

struct PlainTuned {
    TunedPlainView tuned;
    QWidget& window() { return tuned; }
    QsciScintilla& widget() { return tuned; }
    void open(const QString& path) {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        tuned.SendScintilla(QsciScintilla::SCI_SETTEXT, uintptr_t(0), f.readAll().constData());
    }
};

void show(QWidget& w) {
    w.resize(800, 600);
    w.show();
    QApplication::processEvents();
}

void typeChar(QsciScintilla& w) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, "x");
    QApplication::sendEvent(&w, &press);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_X, Qt::NoModifier, "x");
    QApplication::sendEvent(&w, &release);
    QApplication::processEvents();  // the repaint the user sees
}

template <class Editor>
void OpenFileAndTypeAtEnd(benchmark::State& state) {
    const QString path = sourceFile(int(state.range(0)));
    for (auto _ : state) {
        Editor e;
        show(e.window());
        e.open(path);
        QApplication::processEvents();
        e.widget().SendScintilla(QsciScintilla::SCI_DOCUMENTEND);
        QApplication::processEvents();
        typeChar(e.widget());
        if constexpr (std::is_same_v<Editor, Ours>)
            state.counters["lines_styled"] = e.linesStyled();
    }
}

template <class Editor>
void KeystrokeAtEndOfFile(benchmark::State& state) {
    Editor e;
    show(e.window());
    e.open(sourceFile(int(state.range(0))));
    e.widget().SendScintilla(QsciScintilla::SCI_DOCUMENTEND);
    QApplication::processEvents();
    for (auto _ : state) {
        typeChar(e.widget());
        // Take the character out again, untimed, so every keystroke meets the same line.
        state.PauseTiming();
        e.widget().SendScintilla(QsciScintilla::SCI_DELETEBACK);
        QApplication::processEvents();
        state.ResumeTiming();
    }
}

// The compile timer's once-a-second Refresh, against a plain control's repaint of the same screen.
void RefreshDuringCompile_Ours(benchmark::State& state) {
    Ours e;
    show(e.window());
    e.open(sourceFile());
    e.widget().SendScintilla(QsciScintilla::SCI_DOCUMENTEND);
    QApplication::processEvents();
    for (auto _ : state) {
        e.view.Refresh();
        QApplication::processEvents();
    }
}

void RefreshDuringCompile_Plain(benchmark::State& state) {
    PlainTuned e;
    show(e.window());
    e.open(sourceFile());
    e.widget().SendScintilla(QsciScintilla::SCI_DOCUMENTEND);
    QApplication::processEvents();
    for (auto _ : state) {
        e.widget().viewport()->update();
        QApplication::processEvents();
    }
}

// Replace All of a word the file holds 16,666 times (GoTo, whole words, any case). The baseline is the
// control with the accessibility fix: as it comes, it counts the text's characters at each of the
// replacements and takes minutes.
const QString kFind = QStringLiteral("GoTo"), kReplacement = QStringLiteral("Jump");

int replaceAllIn(Ours& e) { return e.view.replaceAll(kFind, kReplacement, false, true); }

// What the plain control offers: find the first, replace it, find the next, as one undo step.
template <class Editor>
int replaceAllIn(Editor& e) {
    QsciScintilla& w = e.widget();
    int count = 0;
    w.beginUndoAction();
    if (w.findFirst(kFind, false, false, true, false, true, 0, 0, false)) {
        do {
            w.replace(kReplacement);
            ++count;
        } while (w.findNext());
    }
    w.endUndoAction();
    return count;
}

template <class Editor>
void ReplaceAllInLargeFile(benchmark::State& state) {
    Editor e;
    show(e.window());
    int count = 0;
    for (auto _ : state) {
        state.PauseTiming();
        e.open(sourceFile());
        QApplication::processEvents();
        state.ResumeTiming();
        count = replaceAllIn(e);
        QApplication::processEvents();  // the repaint the user sees
    }
    state.counters["replacements"] = count;
}

}  // namespace

BENCHMARK_TEMPLATE(OpenFileAndTypeAtEnd, Plain)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_TEMPLATE(OpenFileAndTypeAtEnd, PlainTuned)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_TEMPLATE(OpenFileAndTypeAtEnd, Ours)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_TEMPLATE(KeystrokeAtEndOfFile, Plain)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK_TEMPLATE(KeystrokeAtEndOfFile, PlainTuned)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK_TEMPLATE(KeystrokeAtEndOfFile, Ours)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(RefreshDuringCompile_Plain)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(RefreshDuringCompile_Ours)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK_TEMPLATE(ReplaceAllInLargeFile, PlainTuned)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_TEMPLATE(ReplaceAllInLargeFile, Ours)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }

#include "editor.moc"
