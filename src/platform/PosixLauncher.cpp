#include "platform/PosixLauncher.h"

#include "platform/Failure.h"
#include "platform/PeImage.h"
#include "platform/Wine.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace {

// The script runs in a process group of its own, so ending the group ends the compiler it started too,
// with every process the compiler started in turn (a Windows compiler's wine process and its assembler).
// Wine's shared processes (wineserver, services.exe, explorer.exe) put themselves in sessions of their
// own, so the user's other Windows programs keep them.
class PosixHiddenProcess : public HiddenProcess {
public:
    explicit PosixHiddenProcess(std::unique_ptr<QProcess> p) : p_(std::move(p)) {
        pid_ = p_->processId();
        finished_ = QObject::connect(p_.get(), &QProcess::finished, p_.get(),
                                     [this](int code, QProcess::ExitStatus status) {
                                         // SIGKILL from terminate() is a crash to QProcess: no status then.
                                         if (status == QProcess::NormalExit)
                                             status_ = code;
                                         if (!terminated_ && callback_)
                                             callback_();
                                     });
    }
    ~PosixHiddenProcess() override {
        if (!running())
            return;
        if (!letRun_) {
            terminate();
            return;
        }
        // The process goes on without us; it is reaped at its end, or ended with the application.
        QObject::disconnect(finished_);
        QProcess* p = p_.release();
        p->setParent(QCoreApplication::instance());
        QObject::connect(p, &QProcess::finished, p, &QObject::deleteLater);
    }
    void terminate() override {
        terminated_ = true;
        if (pid_ > 0)
            ::kill(-pid_, SIGKILL);
        if (p_->state() != QProcess::NotRunning)
            p_->waitForFinished(-1);  // bounded: the process was just killed
    }
    bool running() const override { return p_->state() != QProcess::NotRunning; }
    void whenFinished(std::function<void()> callback) override { callback_ = std::move(callback); }
    qint64 processId() const override { return pid_; }
    std::optional<int> exitStatus() const override { return status_; }
    void letRun() override {
        letRun_ = true;
        callback_ = {};
    }

private:
    std::unique_ptr<QProcess> p_;
    qint64 pid_ = 0;
    bool terminated_ = false;
    bool letRun_ = false;
    std::optional<int> status_;
    std::function<void()> callback_;
    QMetaObject::Connection finished_;
};

// The program found as the platform's launch would find it, and how it runs: natively, or through wine.
struct Prepared {
    QString resolved;
    bool wine = false;
};

Prepared prepare(const QString& program, const QString& workDir, QProcess& p, const QStringList& args) {
    const QFileInfo fi(program);
    QString resolved = program;
    if (!program.contains(QLatin1Char('/'))) {
        resolved = QStandardPaths::findExecutable(program);
        if (resolved.isEmpty()) {
            // A Windows program is rarely executable here; one in the working directory still counts.
            const QFileInfo local(workDir.isEmpty() ? program : workDir + QLatin1Char('/') + program);
            if (!local.isFile() || !needsWine(local.absoluteFilePath()))
                throw fileNotFound();
            resolved = local.absoluteFilePath();
        }
    } else if (!fi.exists()) {
        throw fileNotFound();
    }
    Prepared out{resolved, needsWine(resolved)};
    if (out.wine) {
        const QString wine = wineProgram();
        if (wine.isEmpty())
            throw invalidProcedureCall(wineMissingMessage(resolved));
        // A 64-bit-only wine runs a 32-bit programmer as if it had done nothing.
        if (peMachineOfFile(resolved) == kPeMachineI386 && !wineRuns32Bit(wine))
            throw invalidProcedureCall(wine32MissingMessage(resolved));
        p.setProgram(wine);
        p.setArguments(QStringList{resolved} + args);
        p.setProcessEnvironment(wineEnvironment(QProcessEnvironment::systemEnvironment()));
    } else {
        p.setProgram(resolved);
        p.setArguments(args);
    }
    if (!workDir.isEmpty())
        p.setWorkingDirectory(workDir);
    return out;
}

// The program runs in a process group of its own, so that stopping it ends what it started too: a
// Windows program's wine process, a script's children.
class PosixWatchedProcess : public WatchedProcess {
public:
    PosixWatchedProcess(std::unique_ptr<QProcess> p, ProcessEvents events)
        : p_(std::move(p)), events_(std::move(events)) {
        QProcess* p_raw = p_.get();
        QObject::connect(p_raw, &QProcess::readyReadStandardOutput, p_raw, [this] { drain(); });
        QObject::connect(p_raw, &QProcess::readyReadStandardError, p_raw, [this] { drain(); });
        QObject::connect(p_raw, &QProcess::finished, p_raw, [this](int code, QProcess::ExitStatus status) {
            drain();
            ProcessEnd end;
            if (stopped_)
                end.how = ProcessEnd::How::Stopped;
            else if (status == QProcess::CrashExit)
                end.how = ProcessEnd::How::Crashed;
            else
                end.exitStatus = code;
            tell(end);
        });
        // Queued, so that a start that fails at once is still told from the event loop.
        QObject::connect(
            p_raw, &QProcess::errorOccurred, p_raw,
            [this](QProcess::ProcessError error) {
                if (error == QProcess::FailedToStart)
                    tell({ProcessEnd::How::FailedToStart, 0, p_->errorString()});
            },
            Qt::QueuedConnection);
    }
    ~PosixWatchedProcess() override {
        QObject::disconnect(p_.get(), nullptr, nullptr, nullptr);
        if (!running())
            return;
        signalGroup(SIGKILL);
        p_->waitForFinished(5000);  // the group was just killed; only a process stuck in the kernel lasts
    }
    void start() { p_->start(); }
    bool running() const override { return p_->state() != QProcess::NotRunning; }
    void stop() override {
        if (!running() || stopped_)
            return;
        stopped_ = true;
        // A programmer gets the chance to let go of its device before it is killed.
        signalGroup(SIGTERM);
        QTimer::singleShot(3000, p_.get(), [this] {
            if (running())
                signalGroup(SIGKILL);
        });
    }

private:
    void signalGroup(int sig) {
        const qint64 pid = p_->processId();
        if (pid > 0)
            ::kill(pid_t(-pid), sig);
    }
    void drain() {
        if (const QByteArray out = p_->readAllStandardOutput(); !out.isEmpty() && events_.output)
            events_.output(ProcessEvents::Channel::Out, out);
        if (const QByteArray err = p_->readAllStandardError(); !err.isEmpty() && events_.output)
            events_.output(ProcessEvents::Channel::Err, err);
    }
    void tell(const ProcessEnd& end) {
        if (told_)
            return;
        told_ = true;
        if (events_.ended)
            events_.ended(end);
    }

    std::unique_ptr<QProcess> p_;
    ProcessEvents events_;
    bool stopped_ = false;
    bool told_ = false;
};

}  // namespace

void PosixLauncher::startDetached(const QString& program, const QStringList& args, const QString& workDir) {
    QProcess p;
    if (prepare(program, workDir, p, args).wine) {
        // A first run of wine reports the prefix it creates; nobody reads that.
        p.setStandardErrorFile(QProcess::nullDevice());
    }
    qint64 pid = 0;
    if (!p.startDetached(&pid))
        throw Failure(EACCES, p.errorString());
}

std::unique_ptr<WatchedProcess> PosixLauncher::startWatched(const QString& program, const QStringList& args,
                                                            const QString& workDir, ProcessEvents events) {
    auto p = std::make_unique<QProcess>();
    const Prepared prepared = prepare(program, workDir, *p, args);
    // What can be told before the start is told as a launch failure, as startDetached's would be.
    if (const QFileInfo fi(prepared.resolved); !prepared.wine && !(fi.isFile() && fi.isExecutable()))
        throw osFailure(EACCES, prepared.resolved);
    p->setStandardInputFile(QProcess::nullDevice());
    p->setChildProcessModifier([] { ::setsid(); });
    auto watched = std::make_unique<PosixWatchedProcess>(std::move(p), std::move(events));
    watched->start();
    return watched;
}

std::unique_ptr<HiddenProcess> PosixLauncher::startHidden(const QString& script, const QString& workDir) {
    auto p = std::make_unique<QProcess>();
    p->setProgram(QStringLiteral("/bin/sh"));
    p->setArguments({script});
    if (!workDir.isEmpty())
        p->setWorkingDirectory(workDir);
    // No terminal: the compiler's text goes to temp.dat, the script's own chatter nowhere.
    p->setStandardInputFile(QProcess::nullDevice());
    p->setStandardOutputFile(QProcess::nullDevice());
    p->setStandardErrorFile(QProcess::nullDevice());
    p->setChildProcessModifier([] { ::setsid(); });
    p->start();
    if (!p->waitForStarted(-1))
        throw pathFileAccessError(p->errorString());
    return std::make_unique<PosixHiddenProcess>(std::move(p));
}

bool PosixLauncher::startInTerminal(const QString& script, const QString& workDir) {
    QStringList candidates;
    const QString env = qEnvironmentVariable("TERMINAL");
    if (!env.isEmpty())
        candidates << env;
    candidates << QStringLiteral("x-terminal-emulator") << QStringLiteral("xterm");
    for (const QString& term : candidates) {
        const QString exe = QStandardPaths::findExecutable(term);
        if (exe.isEmpty())
            continue;
        if (QProcess::startDetached(exe, {QStringLiteral("-e"), QStringLiteral("sh"), QStringLiteral("-c"),
                                          terminalCommand(script)},
                                    workDir))
            return true;
    }
    return false;
}

QString PosixLauncher::terminalCommand(const QString& script) {
    // The terminal stays open after the script so that the user can read the compiler's text.
    return QStringLiteral("sh ") + shellQuote(script) + QStringLiteral("; printf '\\nPress Enter to close.'; read _");
}

bool PosixLauncher::openUrl(const QString& url) { return QDesktopServices::openUrl(QUrl(url)); }
