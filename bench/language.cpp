// What the program's outline, folding and completion cost on a 100,000-line program, against splitting its
// text into lines (the least any reading of the lines does). The explorer scans the whole text again after
// each pause in typing; the fold margin reads it whole too; completion merges the program's names into the
// compiler kind's words, built beforehand, at each opening.
#include "language/Completion.h"
#include "language/Folding.h"
#include "language/ProgramScanner.h"

#include <QString>
#include <QStringList>
#include <benchmark/benchmark.h>

namespace {

// Blocks of a real-looking program, each with names of its own, to 100,000 lines.
const QString& bigProgram() {
    static const QString text = [] {
        const QString block = QStringLiteral(
            "' Section %1: read the sensor, show it: and log it\n"
            "DEFINE ADC_BITS 10\n"
            "LED%1 VAR PORTB.%2\n"
            "reading%1 VAR WORD\n"
            "samples%1 VAR BYTE[16]\n"
            "Limit%1 CON %1\n"
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
            "    movlw %2 ; in assembly: nothing\n"
            "ENDASM\n"
            "    GOTO Start%1\n"
            "REM end of section %1\n");
        QString out;
        out.reserve(100000 * 30);
        for (int i = 0; i < 4000; ++i)  // 25 lines a block
            out += block.arg(i).arg(i % 8);
        return out;
    }();
    return text;
}

void BM_SplitLines_Baseline(benchmark::State& state) {
    const QString& text = bigProgram();
    for (auto _ : state) {
        QStringList lines = text.split(QLatin1Char('\n'));
        benchmark::DoNotOptimize(lines);
    }
    state.counters["lines"] = double(text.count(QLatin1Char('\n')));
}
BENCHMARK(BM_SplitLines_Baseline)->Unit(benchmark::kMillisecond);

void BM_ScanProgram(benchmark::State& state) {
    const QString& text = bigProgram();
    size_t symbols = 0;
    for (auto _ : state) {
        std::vector<ProgramSymbol> found = scanProgram(text);
        symbols = found.size();
        benchmark::DoNotOptimize(found);
    }
    state.counters["symbols"] = double(symbols);
}
BENCHMARK(BM_ScanProgram)->Unit(benchmark::kMillisecond);

void BM_FoldRanges(benchmark::State& state) {
    const QString& text = bigProgram();
    for (auto _ : state) {
        std::vector<FoldLevel> levels = foldLevels(foldRanges(text), 100001);
        benchmark::DoNotOptimize(levels);
    }
}
BENCHMARK(BM_FoldRanges)->Unit(benchmark::kMillisecond);

// Opening the list: the kind's words are ready; the program's 28,000 names are merged in.
void BM_CompletionOpen(benchmark::State& state) {
    const std::vector<ProgramSymbol> symbols = scanProgram(bigProgram());
    CompletionWords words;
    words.setLanguage(true, {0, 6, 8, 8, 0, 0, 0, 0, 0, 0});
    size_t count = 0;
    for (auto _ : state) {
        std::vector<QString> list = words.words(symbols);
        count = list.size();
        benchmark::DoNotOptimize(list);
    }
    state.counters["words"] = double(count);
}
BENCHMARK(BM_CompletionOpen)->Unit(benchmark::kMillisecond);

// A change of compiler kind or device: the kind's words built again.
void BM_CompletionLanguage(benchmark::State& state) {
    int kind = 0;
    for (auto _ : state) {
        CompletionWords words;
        words.setLanguage(++kind % 2 == 0, {0, 6, 8, 8, 0, 0, 0, 0, 0, 0});
        benchmark::DoNotOptimize(words.languageWords().data());
    }
}
BENCHMARK(BM_CompletionLanguage)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
