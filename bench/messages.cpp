// What every compile's output costs on its way to the messages: reading 10,000 output lines of every format
// (six in ten of them messages), against splitting the same text into its lines as the session already does
// for outputLines(); and placing the assembler messages of that output at the BASIC lines of a 20,000-line
// tagged .ASM, against reading that file and splitting it into lines. The two run in turns in one
// benchmark; the ratio of their sums is its counter "ratio", the message side's time per run "ms", and
// its processor time "cpu_ms".
#include "BenchMain.h"
#include "compile/CompileMessages.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>

namespace {

using Clock = std::chrono::steady_clock;

// Ten lines a compile may print, four of them messages of the assembler and two of the compiler's.
QString outputOf(int lines) {
    const char* ten[] = {
        "PICBASIC PRO(TM) Compiler 3.1.5, (c) 1997, 2022 microEngineering Labs, Inc.",
        "ERROR Line %1: Bad expression. (blink.pbp)",
        "Error[113] /home/ann/led work/blink.asm %1 : Symbol not previously defined (nowhere)",
        "Writing /home/ann/led work/blink.hex",
        "WARNING Line %1: Variable already an internal variable.",
        "blink.asm:%1:Warning[219] Invalid RAM location specified.",
        "All Rights Reserved.",
        "Error BLINK.ASM %1 : [202] illegal character",
        "Message[302] /home/ann/led work/blink.asm %1 : Register in operand not in bank 0.",
        "        movwf   PORTB",
    };
    QString out;
    for (int i = 0; i < lines; ++i)
        out += QString::fromLatin1(ten[i % 10]).replace(QLatin1String("%1"), QString::number(i * 2 + 1)) +
               QStringLiteral("\r\n");
    return out;
}

QByteArray taggedAsm(int lines) {
    QByteArray out;
    for (int i = 1; i <= lines / 2; ++i)
        out += "; /home/ann/led work/blink.pbp\t" + QByteArray::number(i).rightJustified(5, '0') +
               "\tHIGH PORTB.0\r\n\tbsf PORTB, 0\r\n";
    return out;
}

// This thread's processor time in ms: on a busy machine the clock on the wall also counts other programs.
double threadMs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
}

template <class Measured, class Baseline>
void inTurns(benchmark::State& state, Measured measured, Baseline baseline) {
    Clock::duration inMessages{}, inBaseline{};
    double cpuMs = 0;
    for (auto _ : state) {
        const auto t0 = Clock::now();
        baseline();
        const auto t1 = Clock::now();
        const double c0 = threadMs();
        measured();
        cpuMs += threadMs() - c0;
        const auto t2 = Clock::now();
        inBaseline += t1 - t0;
        inMessages += t2 - t1;
        state.SetIterationTime(std::chrono::duration<double>(t2 - t1).count());
    }
    state.counters["cpu_ms"] = cpuMs / double(state.iterations());
    state.counters["ratio"] = double(inMessages.count()) / double(inBaseline.count());
    state.counters["ms"] = std::chrono::duration<double, std::milli>(inMessages).count() / double(state.iterations());
    state.counters["baseline_ms"] =
        std::chrono::duration<double, std::milli>(inBaseline).count() / double(state.iterations());
}

void ParseTenThousandOutputLines(benchmark::State& state) {
    const QString output = outputOf(10000);
    static const QRegularExpression lineEnd(QStringLiteral("\r\n|\r|\n"));
    size_t found = 0;
    inTurns(
        state, [&] { found = parseOutputMessages(output).size(); },
        [&] { benchmark::DoNotOptimize(output.split(lineEnd)); });
    if (found != 6000)
        state.SkipWithError("not every message was read");
}

void PlaceAssemblerMessagesAtTaggedLines(benchmark::State& state) {
    QTemporaryDir dir;
    const QString asmFile = dir.filePath(QStringLiteral("blink.asm"));
    QFile f(asmFile);
    f.open(QIODevice::WriteOnly);
    f.write(taggedAsm(20000));
    f.close();
    const std::vector<OutputMessage> parsed = parseOutputMessages(outputOf(10000));
    const auto local = [&](const QString& named) { return named.endsWith(QLatin1String(".asm"), Qt::CaseInsensitive) ? asmFile : named; };
    size_t atBasic = 0;
    inTurns(
        state,
        [&] {
            atBasic = 0;
            for (const CompileMessage& m : placeMessages(parsed, local, asmTagsOfFile))
                atBasic += !m.asmFile.isEmpty();
        },
        [&] {
            QFile asmText(asmFile);
            asmText.open(QIODevice::ReadOnly);
            benchmark::DoNotOptimize(asmText.readAll().split('\n'));
        });
    if (atBasic != 4000)
        state.SkipWithError("not every assembler message reached its BASIC line");
}

}  // namespace

BENCHMARK(ParseTenThousandOutputLines)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(PlaceAssemblerMessagesAtTaggedLines)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
