#include "platform/PosixLauncher.h"

#include "platform/Failure.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <cerrno>
#include <fcntl.h>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The script runs in a process group of its own, so ending the group ends the compiler it started too.
class PosixHiddenProcess : public HiddenProcess {
public:
    explicit PosixHiddenProcess(pid_t pid) : pid_(pid) {}
    ~PosixHiddenProcess() override { reap(); }
    void terminate() override {
        if (pid_ > 0) {
            ::kill(-pid_, SIGKILL);
            reap();
        }
    }
    bool running() const override { return pid_ > 0 && ::kill(pid_, 0) == 0 && !exited(); }

private:
    bool exited() const {
        int status = 0;
        const pid_t r = ::waitpid(pid_, &status, WNOHANG);
        if (r == pid_) {
            pid_ = -1;
            return true;
        }
        return false;
    }
    void reap() {
        if (pid_ > 0) {
            int status = 0;
            // Blocking only after the group was killed or the script ended; bounded by the kernel.
            if (::kill(-pid_, 0) != 0 || ::waitpid(pid_, &status, WNOHANG) == pid_) {
                pid_ = -1;
                return;
            }
            ::kill(-pid_, SIGKILL);
            ::waitpid(pid_, &status, 0);
            pid_ = -1;
        }
    }
    mutable pid_t pid_;
};

}  // namespace

void PosixLauncher::startDetached(const QString& program, const QStringList& args, const QString& workDir) {
    const QFileInfo fi(program);
    QString resolved = program;
    if (!program.contains(QLatin1Char('/'))) {
        resolved = QStandardPaths::findExecutable(program);
        if (resolved.isEmpty())
            throw fileNotFound();
    } else if (!fi.exists()) {
        throw fileNotFound();
    }
    QProcess p;
    p.setProgram(resolved);
    p.setArguments(args);
    if (!workDir.isEmpty())
        p.setWorkingDirectory(workDir);
    qint64 pid = 0;
    if (!p.startDetached(&pid))
        throw Failure(EACCES, p.errorString());
}

std::unique_ptr<HiddenProcess> PosixLauncher::startHidden(const QString& script, const QString& workDir) {
    const QByteArray sh = "/bin/sh";
    const QByteArray path = script.toLocal8Bit();
    const QByteArray dir = workDir.toLocal8Bit();
    const pid_t pid = ::fork();
    if (pid < 0)
        throw osFailure(errno);
    if (pid == 0) {
        ::setsid();
        // No terminal: the compiler's text goes to temp.dat, the script's own chatter nowhere.
        const int devnull = ::open("/dev/null", O_RDWR);
        if (devnull >= 0) {
            ::dup2(devnull, 0);
            ::dup2(devnull, 1);
            ::dup2(devnull, 2);
            if (devnull > 2)
                ::close(devnull);
        }
        if (!dir.isEmpty() && ::chdir(dir.constData()) != 0)
            ::_exit(127);
        ::execl(sh.constData(), "sh", path.constData(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    return std::make_unique<PosixHiddenProcess>(pid);
}

bool PosixLauncher::startInTerminal(const QString& script, const QString& workDir) {
    QStringList candidates;
    const QString env = qEnvironmentVariable("TERMINAL");
    if (!env.isEmpty())
        candidates << env;
    candidates << QStringLiteral("x-terminal-emulator") << QStringLiteral("xterm");
    // The terminal stays open after the script so that the user can read the compiler's text.
    const QString hold = QStringLiteral("sh '%1'; printf '\\nPress Enter to close.'; read _").arg(script);
    for (const QString& term : candidates) {
        const QString exe = QStandardPaths::findExecutable(term);
        if (exe.isEmpty())
            continue;
        if (QProcess::startDetached(exe, {QStringLiteral("-e"), QStringLiteral("sh"), QStringLiteral("-c"), hold},
                                    workDir))
            return true;
    }
    return false;
}

bool PosixLauncher::openUrl(const QString& url) { return QDesktopServices::openUrl(QUrl(url)); }
