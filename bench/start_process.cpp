// A start as the user waits for it: the real executable, from the process's start to the first moment its
// event loop would wait (the program says so on its output), against a floor built in the same tree (a
// window of the frame's size with a menu bar, a toolbar, a status bar and one QScintilla), in turns. Both
// run with settings of their own that an earlier start made, as a user's second start has.
#include "BenchMain.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace {

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

struct Homes {
    QTemporaryDir config, state, data;
    QProcessEnvironment env() const {
        QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
        e.insert(QStringLiteral("XDG_CONFIG_HOME"), config.path());
        e.insert(QStringLiteral("XDG_STATE_HOME"), state.path());
        e.insert(QStringLiteral("XDG_DATA_HOME"), data.path());
        e.insert(QStringLiteral("TARNLET_QUIT_AT_IDLE"), QStringLiteral("1"));
        // GLib's dispatcher says it would wait on entering each turn, before the first paint has run; Qt's
        // own says so only when nothing is left to do, so the first paint is counted.
        e.insert(QStringLiteral("QT_NO_GLIB"), QStringLiteral("1"));
        if (!e.contains(QStringLiteral("QT_QPA_PLATFORM")))
            e.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        return e;
    }
};

// Milliseconds from the start to the line the program writes at its first idle moment; negative when it
// failed. Its ending is not counted: the user works while it lasts.
double runOnce(const QString& program, const Homes& homes) {
    QProcess p;
    p.setProcessEnvironment(homes.env());
    p.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer t;
    t.start();
    p.start(program, {});
    QByteArray said;
    double ms = -1;
    while (ms < 0 && p.waitForReadyRead(30000)) {
        said += p.readAllStandardOutput();
        if (said.contains("idle\n"))
            ms = double(t.nsecsElapsed()) / 1e6;
    }
    if (!p.waitForFinished(30000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        return -1;
    return ms;
}

void BM_StartProcessToIdle(benchmark::State& state) {
    Homes ours, floor;
    // The first start makes the settings and the recovery folder.
    if (runOnce(QStringLiteral(QB_TARNLET), ours) < 0 || runOnce(QStringLiteral(QB_START_FLOOR), floor) < 0) {
        state.SkipWithError("a program did not reach its idle moment");
        return;
    }
    std::vector<double> real, base;
    for (auto _ : state) {
        for (int i = 0; i < int(state.range(0)); ++i) {
            const double r = runOnce(QStringLiteral(QB_TARNLET), ours), f = runOnce(QStringLiteral(QB_START_FLOOR), floor);
            if (r < 0 || f < 0) {
                state.SkipWithError("a program did not reach its idle moment");
                return;
            }
            real.push_back(r);
            base.push_back(f);
        }
        state.SetIterationTime(median(real) / 1e3);
    }
    state.counters["start_ms"] = median(real);
    state.counters["floor_ms"] = median(base);
    state.counters["ratio"] = median(real) / median(base);
}
BENCHMARK(BM_StartProcessToIdle)->Arg(15)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
