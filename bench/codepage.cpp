// What a user waits for when a file isn't UTF-8: opening a 1 MB Turkish (Windows-1254) source with the
// code page detector, against reading it in that code page given beforehand (as Reopen with Encoding
// does). The two run in turns in one benchmark, and the ratio of their sums is its counter "ratio"; the
// same for the bytes to text step alone.
#include "BenchMain.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/TextFormat.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;
constexpr char kPage[] = "windows-1254";

QByteArray turkishMegabyte() {
    QByteArray programs;
    for (const char* name : {"tr-1254-yanip-sonen-led.pbp", "tr-1254-sicaklik-olcer.pbp"}) {
        QFile f(QStringLiteral(QB_SOURCE_DIR "/tests/document/codepages/") + QLatin1String(name));
        f.open(QIODevice::ReadOnly);
        programs += f.readAll();
    }
    QByteArray out;
    while (out.size() < 1024 * 1024)
        out += programs;
    return out;
}

const QString& turkishFile() {
    static QTemporaryDir dir;
    static const QString path = [] {
        const QString p = dir.filePath("turkish.pbp");
        QFile f(p);
        f.open(QIODevice::WriteOnly);
        f.write(turkishMegabyte());
        return p;
    }();
    return path;
}

// Runs both in turns; the benchmark's time is the detected one's.
template <class Detected, class Fixed>
void inTurns(benchmark::State& state, Detected detected, Fixed fixed) {
    Clock::duration withDetector{}, inPage{};
    for (auto _ : state) {
        const auto t0 = Clock::now();
        fixed();
        const auto t1 = Clock::now();
        detected();
        const auto t2 = Clock::now();
        inPage += t1 - t0;
        withDetector += t2 - t1;
        state.SetIterationTime(std::chrono::duration<double>(t2 - t1).count());
    }
    state.counters["ratio"] = double(withDetector.count()) / double(inPage.count());
    state.counters["fixed_ms"] = std::chrono::duration<double, std::milli>(inPage).count() / double(state.iterations());
}

void OpenNonUtf8File(benchmark::State& state) {
    SourceView view;
    Document& doc = view.document();
    doc.setPathName(turkishFile());
    inTurns(
        state,
        [&] {
            doc.LoadFile(turkishFile());
            if (doc.encoding() != kPage)
                state.SkipWithError("not read as Turkish");
        },
        [&] { doc.ReloadFile(kPage); });
}

void DecodeNonUtf8Bytes(benchmark::State& state) {
    const QByteArray bytes = turkishMegabyte();
    inTurns(
        state,
        [&] {
            const TextFormat f = detectFormat(bytes);
            benchmark::DoNotOptimize(toUtf8Text(bytes, f.encoding, f.codePage));
        },
        [&] {
            const TextFormat f = *formatIn(bytes, kPage);
            benchmark::DoNotOptimize(toUtf8Text(bytes, f.encoding, f.codePage));
        });
}

}  // namespace

BENCHMARK(OpenNonUtf8File)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(DecodeNonUtf8Bytes)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
