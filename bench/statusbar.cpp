// One status bar repaint, as each caret move causes one: a panel text set on the frame's three panels,
// painted into the real pixmap target. Baseline in the same run: a bare fill and the same texts drawn
// with QPainter into a pixmap of the same size.

#include "BenchMain.h"
#include "statusbar/PixmapTarget.h"
#include "statusbar/cNoStatusBar.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include <benchmark/benchmark.h>

namespace {

constexpr int kWidth = 800, kHeight = 22;
const QString kTexts[2] = {QStringLiteral("Line: 120 Col: 14"), QStringLiteral("Line: 121 Col: 15")};
const QString kKind = QStringLiteral("PBP");

void BM_StatusBarRepaint_PanelText(benchmark::State& state) {
    IconTable icons;
    PixmapTarget target(icons, nullptr, QSize(kWidth, kHeight));
    cNoStatusBar bar(icons);
    bar.Create(&target);
    bar.AddPanel(0, kTexts[0], -1, 100, false, false, 0, QString());
    bar.AddPanel(0, QString(), -1, 64, true, false, 0, QString());
    bar.AddPanel(0, kKind, -1, 40, false, false, 0, QString());
    bar.SizeGrip(true);
    int i = 0;
    for (auto _ : state) {
        bar.PanelText(1, kTexts[++i & 1]);
        // What the window shows: the picture with the drawing finished.
        benchmark::DoNotOptimize(target.pixmap().cacheKey());
    }
}
BENCHMARK(BM_StatusBarRepaint_PanelText);

void BM_Baseline_QPainterFillAndText(benchmark::State& state) {
    QPixmap pixmap(kWidth, kHeight);
    const QFont font = QApplication::font();
    int i = 0;
    for (auto _ : state) {
        QPainter p(&pixmap);
        p.fillRect(QRect(0, 0, kWidth, kHeight), QApplication::palette().color(QPalette::Button));
        p.setFont(font);
        p.drawText(QRect(3, 1, 94, 20), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, kTexts[++i & 1]);
        p.drawText(QRect(100, 1, 600, 20), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, QString());
        p.drawText(QRect(703, 1, 94, 20), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, kKind);
        p.end();
        benchmark::DoNotOptimize(pixmap.cacheKey());
    }
}
BENCHMARK(BM_Baseline_QPainterFillAndText);

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
