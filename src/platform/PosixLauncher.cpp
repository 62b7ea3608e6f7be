#include "platform/PosixLauncher.h"

#include "platform/Failure.h"
#include "platform/Wine.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
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

}  // namespace

void PosixLauncher::startDetached(const QString& program, const QStringList& args, const QString& workDir) {
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
    QProcess p;
    if (needsWine(resolved)) {
        const QString wine = wineProgram();
        if (wine.isEmpty())
            throw invalidProcedureCall(wineMissingMessage(resolved));
        p.setProgram(wine);
        p.setArguments(QStringList{resolved} + args);
        p.setProcessEnvironment(wineEnvironment(QProcessEnvironment::systemEnvironment()));
        // A first run of wine reports the prefix it creates; nobody reads that.
        p.setStandardErrorFile(QProcess::nullDevice());
    } else {
        p.setProgram(resolved);
        p.setArguments(args);
    }
    if (!workDir.isEmpty())
        p.setWorkingDirectory(workDir);
    qint64 pid = 0;
    if (!p.startDetached(&pid))
        throw Failure(EACCES, p.errorString());
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
