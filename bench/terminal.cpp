// 1 MB arriving at 921600 baud (about 92 kB a second, as a board can send) shown by the serial terminal,
// in its text view and in its hex view with time stamps, while the frame's thread is asked to handle an
// event every millisecond: the longest wait of such an event is the longest turn of the event loop, and a
// frame is 16 ms. On a machine shared with other work the wall clock also counts the time others had the
// core: the baseline in the same run, the same flood read by a bare port that shows nothing, shows that
// floor.
#include "BenchMain.h"
#include "NoPrompts.h"
#include "core/Globals.h"
#include "platform/SerialPortQt.h"
#include "terminal/SerialTerminal.h"

#include <QAbstractEventDispatcher>
#include <QCheckBox>
#include <QComboBox>
#include <QTemporaryDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <pthread.h>
#include <pty.h>
#include <termios.h>
#include <thread>
#include <time.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr qsizetype kBytes = 1 << 20;
constexpr double kBytesPerSecond = 921600 / 10.0;  // 8N1: ten bits a byte

double threadCpuMs() {
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
}

// What a board prints: measurements, line by line.
QByteArray boardOutput() {
    QByteArray out;
    for (int n = 0; out.size() < kBytes; ++n)
        out += QByteArray("T=21.5 ADC=") + QByteArray::number(n % 1024).rightJustified(4, '0') + " n=" +
               QByteArray::number(n) + "\r\n";
    out.truncate(kBytes);
    return out;
}

// A pty pair: the board writes to master, paced, from its own thread.
struct Board {
    int master = -1;
    QString slave;
    std::thread writer;
    Board() {
        int s = -1;
        char name[256] = {};
        if (openpty(&master, &s, name, nullptr, nullptr) != 0)
            std::abort();
        termios raw{};
        tcgetattr(master, &raw);
        cfmakeraw(&raw);
        tcsetattr(master, TCSANOW, &raw);
        ::close(s);
        slave = QString::fromLocal8Bit(name);
    }
    void send(const QByteArray& bytes) {
        writer = std::thread([this, bytes] {
            constexpr qsizetype chunk = 1024;
            const auto start = std::chrono::steady_clock::now();
            for (qsizetype at = 0; at < bytes.size(); at += chunk) {
                std::this_thread::sleep_until(start + std::chrono::microseconds(qint64(at / kBytesPerSecond * 1e6)));
                for (qsizetype done = 0, n = std::min(chunk, bytes.size() - at); done < n;) {
                    const ssize_t w = ::write(master, bytes.constData() + at + done, size_t(n - done));
                    if (w > 0)
                        done += w;
                    else
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                }
            }
        });
    }
    ~Board() {
        if (writer.joinable())
            writer.join();
        ::close(master);
    }
};

// How long the event loop keeps a new event waiting while it runs until done() holds: a thread posts a
// stamped event every millisecond, as a key press or a click would come, and the loop notes how late each is
// handled. A late event waited for the turn that was running when it came, so the largest delay is the
// longest turn.
// Each wait is taken twice: on the wall clock, and as the CPU time the frame's thread spent meanwhile, which
// leaves out the time other programs had the core.
class Probe : public QObject {
public:
    Probe() { pthread_getcpuclockid(pthread_self(), &frameClock); }
    clockid_t frameClock{};
    std::vector<double> delays, cpuDelays;
    bool event(QEvent* e) override {
        if (e->type() != kType)
            return QObject::event(e);
        const auto* s = static_cast<Stamped*>(e);
        delays.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - s->at).count());
        cpuDelays.push_back(cpuMs(frameClock) - s->cpuAt);
        return true;
    }
    static double cpuMs(clockid_t clock) {
        timespec ts{};
        clock_gettime(clock, &ts);
        return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
    }
    static constexpr QEvent::Type kType = QEvent::Type(QEvent::User + 25);
    struct Stamped : QEvent {
        explicit Stamped(clockid_t frameClock)
            : QEvent(kType), at(std::chrono::steady_clock::now()), cpuAt(cpuMs(frameClock)) {}
        std::chrono::steady_clock::time_point at;
        double cpuAt;
    };
};

struct Turns {
    std::vector<double> delays, cpuDelays;
    double cpuMs = 0;
    double seconds = 0;
    template <class Done>
    void run(Done done) {
        Probe probe;
        std::atomic<bool> stop = false;
        std::thread poster([&] {
            while (!stop) {
                QCoreApplication::postEvent(&probe, new Probe::Stamped(probe.frameClock));
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
        QEventLoop loop;
        QTimer check;
        QObject::connect(&check, &QTimer::timeout, [&] {
            if (done())
                loop.quit();
        });
        check.start(50);
        QElapsedTimer wall;
        wall.start();
        const double cpuAt = threadCpuMs();
        loop.exec();
        cpuMs = threadCpuMs() - cpuAt;
        seconds = wall.elapsed() / 1e3;
        stop = true;
        poster.join();
        QCoreApplication::removePostedEvents(&probe);
        delays = probe.delays;
        cpuDelays = probe.cpuDelays;
    }
    static double at(std::vector<double> v, double q) {
        std::sort(v.begin(), v.end());
        return v.empty() ? 0 : v[std::min(v.size() - 1, size_t(q * double(v.size())))];
    }
    void report(benchmark::State& state) const {
        state.counters["events"] = double(delays.size());
        state.counters["max_turn_ms"] = at(delays, 1.0);
        state.counters["p99_turn_ms"] = at(delays, 0.99);
        state.counters["median_turn_ms"] = at(delays, 0.5);
        state.counters["max_turn_cpu_ms"] = at(cpuDelays, 1.0);
        state.counters["median_turn_cpu_ms"] = at(cpuDelays, 0.5);
        // The share of one core the frame's thread used while the bytes came.
        state.counters["cpu_share"] = seconds > 0 ? cpuMs / 1e3 / seconds : 0;
    }
};

void BM_Terminal_1MBAt921600(benchmark::State& state) {
    // The terminal keeps its settings: in a settings home of its own.
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
    NoPrompts prompts;
    globals().prompts = &prompts;
    const bool hex = state.range(0) == 1;
    for (auto _ : state) {
        Board board;
        SerialTerminal t(systemSerialPorts());
        t.View->setCurrentText(hex ? "Hex" : "Text");
        t.chkTimeStamps->setChecked(hex);
        t.Baud->setEditText("921600");
        t.Port->setEditText(board.slave);
        t.show();
        QCoreApplication::processEvents();
        t.cmdConnect_Click();
        if (!t.port()) {
            state.SkipWithError("the pty could not be opened");
            return;
        }
        const QByteArray bytes = boardOutput();
        Turns turns;
        board.send(bytes);
        auto received = [&] {
            qsizetype n = 0;
            for (const Traffic& x : t.transcript().record())
                n += x.bytes.size();
            return n;
        };
        turns.run([&] { return received() == kBytes && t.transcript().shownAll(); });
        turns.report(state);
    }
    globals().prompts = nullptr;
}
BENCHMARK(BM_Terminal_1MBAt921600)->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

// The same flood read by a bare port, with nothing shown.
void BM_Baseline_BarePortReads1MB(benchmark::State& state) {
    for (auto _ : state) {
        Board board;
        std::unique_ptr<SerialPort> port = systemSerialPorts().open({board.slave, 921600});
        qsizetype n = 0;
        QObject::connect(port.get(), &SerialPort::received, [&] { n += port->readAll().size(); });
        Turns turns;
        board.send(boardOutput());
        turns.run([&] { return n == kBytes; });
        turns.report(state);
    }
}
BENCHMARK(BM_Baseline_BarePortReads1MB)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
