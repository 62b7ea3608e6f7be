// One caret move in a 100,000-line document, as every keystroke makes one: the document window's
// handler (reload check, token lookup, tip search) and its two status panel texts, held back for the
// status picture's next paint as the frame holds them. A second row paints them after every move, as a
// frame does when each key gets a paint of its own. Baseline in the same run: the bare control's own caret
// move, with no handler connected; it too leaves its painting to the next paint.
#include "BenchMain.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/OpenSave.h"
#include "statusbar/PixmapTarget.h"
#include "statusbar/cNoStatusBar.h"
#include "core/DeviceCombo.h"
#include "core/Frame.h"
#include "core/Globals.h"
#include "core/ToolState.h"

#include <QApplication>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>

#include <functional>
#include <benchmark/benchmark.h>

namespace {

class BenchCombo : public DeviceCombo {
public:
    void Clear() override {}
    void AddItem(const QString&) override {}
    int ListCount() const override { return 1; }
    QString List(int) const override { return QStringLiteral("PIC16F84A"); }
    int ListIndex() const override { return 0; }
    void SetListIndex(int) override {}
};

// One document, the active one, kept in a list as the frame's registry keeps its documents.
class BenchEditors : public Editors {
public:
    void set(frmEditor& d) { docs = {&d}; }
    frmEditor& show(const QString&, bool) override { return *docs.value(0); }
    frmEditor* find(const QString&) const override { return docs.value(0); }
    frmEditor* titled(const QString&) const override { return docs.value(0); }
    frmEditor* active() const override { return docs.value(0); }
    QList<frmEditor*> all() const override { return docs; }

private:
    QList<frmEditor*> docs;
};

// The frame's part in a caret move: the tools' enabled states and the status bar with its three panels.
class BenchFrame : public Frame {
public:
    BenchFrame() : target(icons, nullptr, QSize(800, 22)), bar(icons) {
        bar.Create(&target);
        bar.AddPanel(0, QStringLiteral("Line: 1 Col: 1"), -1, 100, false, false, 0, QString());
        bar.AddPanel(0, QString(), -1, 64, true, false, 0, QString());
        bar.AddPanel(0, QStringLiteral("PBP"), -1, 40, false, false, 0, QString());
        bar.SizeGrip(true);
    }
    IconTable icons;
    PixmapTarget target;
    cNoStatusBar bar;
    BenchCombo combo;
    OpenSave dialog;
    QWidget window;
    QHash<QString, bool> tools;
    BenchEditors docs;
    std::optional<ToolState> last;
    bool paint = true;

    void ShowError(const Failure&) override {}
    // What the frame does: the state read, and the tools written only when it changed.
    void EnableTools() override {
        ToolState state = documentToolState(docs);
        state.clipboardText = true;
        if (last == state)
            return;
        last = state;
        for (const auto& [id, enabled] : toolStates(state))
            tools[QLatin1String(id)] = enabled;
    }
    void setPanelText(int panel, const QString& text) override {
        if (!paint)
            return;
        bar.PanelTextLater(panel, text, !bar.PanelSpring(panel));
    }
    // The status picture's paint: the held-back panels drawn, the picture finished.
    void paintStatus() {
        bar.DrawPending();
        benchmark::DoNotOptimize(target.pixmap().cacheKey());
    }
    Editors& editors() override { return docs; }
    DeviceCombo& deviceCombo() override { return combo; }
    int deviceListIndex() override { return 0; }
    void setDeviceListIndex(int) override {}
    void GetDevices() override {}
    void GetDeviceData(bool) override {}
    OpenSave& openSave() override { return dialog; }
    void setPBPVersion(const QString&) override {}
    void showGotoLine() override {}
    void showSetupCheck() override {}
    void popupMenu(const QString&) override {}
    int runModal(QDialog&) override { return 0; }
    QWidget* frameWindow() override { return &window; }
};

// A realistic mix of statements, comments, strings and numbers.
const QString& sourceFile() {
    static QTemporaryDir dir;
    static const QString path = [] {
        static const char* const pattern[] = {
            "' Blink an LED and count on the LCD\r\n",
            "counter VAR WORD          ; loop counter\r\n",
            "loop:\r\n",
            "    High PORTB.0 : Pause 500\r\n",
            "    LCDOut $FE, 1, \"Count: \", DEC4 counter\r\n",
            "    IF counter > 1000 AND PORTA.1 = 1 THEN GoTo done\r\n",
            "    GoTo loop\r\n",
            "done: SerOut2 PORTC.6, 84, [\"Done \", HEX4 counter, 13, 10]\r\n",
        };
        QByteArray text;
        for (int i = 0; i < 100000; ++i)
            text += pattern[i % std::size(pattern)];
        const QString p = dir.filePath("big.pbp");
        QFile f(p);
        f.open(QIODevice::WriteOnly);
        f.write(text);
        return p;
    }();
    return path;
}

// Two caret places in the middle of the file, each just behind a statement word with a tip, so every
// move looks up a token, searches the table and writes both panels.
constexpr int kLine = 50003;  // "    High PORTB.0 : Pause 500"
constexpr int kCols[2] = {8, 24};

void moveCaretBackAndForth(benchmark::State& state, SourceView& view, const std::function<void()>& paint = {}) {
    view.document().LoadFile(sourceFile());
    view.resize(800, 600);
    view.show();
    view.SetSel(kCols[0], kLine, kCols[0], kLine);
    QApplication::processEvents();
    int i = 0;
    for (auto _ : state) {
        const int col = kCols[++i & 1];
        view.SetSel(col, kLine, col, kLine);
        if (paint)
            paint();
    }
}

void BM_CaretMove_DocumentWindow(benchmark::State& state) {
    BenchFrame frame;
    frmEditor doc(frame);
    frame.docs.set(doc);
    moveCaretBackAndForth(state, *doc.View);
    if (frame.bar.PanelText(2) != QLatin1String("Delay (1mSec resolution).") &&
        frame.bar.PanelText(2) != QLatin1String("Make pin output high."))
        state.SkipWithError("the tip panel shows no statement tip");
}
BENCHMARK(BM_CaretMove_DocumentWindow);

void BM_CaretMove_DocumentWindowPaintedEachMove(benchmark::State& state) {
    BenchFrame frame;
    frmEditor doc(frame);
    frame.docs.set(doc);
    moveCaretBackAndForth(state, *doc.View, [&] { frame.paintStatus(); });
}
BENCHMARK(BM_CaretMove_DocumentWindowPaintedEachMove);

// The handler's own share: the same move with the panel texts not painted.
void BM_CaretMove_DocumentWindowWithoutStatusBar(benchmark::State& state) {
    BenchFrame frame;
    frame.paint = false;
    frmEditor doc(frame);
    frame.docs.set(doc);
    moveCaretBackAndForth(state, *doc.View);
}
BENCHMARK(BM_CaretMove_DocumentWindowWithoutStatusBar);

void BM_Baseline_BareControlCaretMove(benchmark::State& state) {
    SourceView view;
    moveCaretBackAndForth(state, view);
}
BENCHMARK(BM_Baseline_BareControlCaretMove);

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
