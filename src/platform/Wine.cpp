#include "platform/Wine.h"

#include "platform/PeImage.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

namespace {

// A first run of wine creates the prefix, which can take a minute on a slow machine.
constexpr int kWinepathWaitMs = 180 * 1000;
// A wine run fails now and then and prints nothing (its server ending as it starts, a prefix just made):
// it is asked again before a compile is told that a path has no form.
constexpr int kWinepathAttempts = 3;
constexpr int kWinepathRetryMs = 250;

QStringList runWinepath(const QString& flag, const QStringList& paths) {
    const QString wine = wineProgram();
    QStringList result(paths.size());
    if (wine.isEmpty() || paths.isEmpty())
        return result;
    for (int attempt = 1;; ++attempt) {
        QProcess p;
        p.setProcessEnvironment(wineEnvironment(QProcessEnvironment::systemEnvironment()));
        p.setStandardInputFile(QProcess::nullDevice());
        p.setStandardErrorFile(QProcess::nullDevice());
        p.start(wine, QStringList{QStringLiteral("winepath.exe"), flag} + paths);
        if (!p.waitForFinished(kWinepathWaitMs)) {
            p.kill();
            p.waitForFinished();
            return QStringList(paths.size());
        }
        // One line per path; winepath leaves a line empty for a path it can't convert.
        const QStringList lines = QString::fromLocal8Bit(p.readAllStandardOutput()).split(QLatin1Char('\n'));
        bool whole = p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
        for (qsizetype i = 0; i < paths.size(); ++i) {
            QString line = lines.value(i);
            if (line.endsWith(QLatin1Char('\r')))
                line.chop(1);
            result[i] = line;
            whole = whole && !line.isEmpty();
        }
        if (whole || attempt == kWinepathAttempts)
            return result;
        QThread::msleep(kWinepathRetryMs);
    }
}

}  // namespace

QString wineProgram() { return QStandardPaths::findExecutable(QStringLiteral("wine")); }

namespace {

// Ours stays ten minutes after its last program; a compile within nine of the last one finds it up.
constexpr int kServerPersistSeconds = 600;
constexpr qint64 kServerSureMs = 9 * 60 * 1000;

}  // namespace

QString winePrefix() {
    const QString prefix = qEnvironmentVariable("WINEPREFIX");
    return prefix.isEmpty() ? QDir::homePath() + QStringLiteral("/.wine") : prefix;
}

bool wineServerCheckDue(const WineServerRecord& ours, const QString& prefix, qint64 nowMs) {
    return ours.lastUseMs < 0 || ours.prefix != prefix || nowMs < ours.lastUseMs ||
           nowMs - ours.lastUseMs >= kServerSureMs;
}

void keepWineServerWarm(WineServerRecord& ours, qint64 nowMs) {
    const QString prefix = winePrefix();
    if (!wineServerCheckDue(ours, prefix, nowMs)) {
        ours.lastUseMs = nowMs;
        return;
    }
    ours = {};
    const QString server = QStandardPaths::findExecutable(QStringLiteral("wineserver"));
    if (server.isEmpty())
        return;
    // A server that a compile's wine starts ends a few seconds after its last program, and the next
    // compile boots the prefix again (most of a second). This one stays ten minutes. It goes into a
    // session of its own, so ending a compile's process group never takes it along. When a server of the
    // prefix runs already, this one finds it and ends at once with a failure.
    QProcess p;
    p.setProgram(server);
    p.setArguments({QStringLiteral("-p%1").arg(kServerPersistSeconds)});
    p.setProcessEnvironment(wineEnvironment(QProcessEnvironment::systemEnvironment()));
    p.setStandardInputFile(QProcess::nullDevice());
    p.setStandardOutputFile(QProcess::nullDevice());
    p.setStandardErrorFile(QProcess::nullDevice());
    p.start();
    // It returns once the server is up, so the compile's wine finds it.
    if (!p.waitForFinished(5000)) {
        p.kill();
        p.waitForFinished();
        return;
    }
    if (p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0)
        ours = {prefix, nowMs};
}

bool needsWine(const QString& program) { return isPeImageFile(program); }

QString wineMissingMessage(const QString& program) {
    return program +
           QStringLiteral(" is a Windows program. It runs here only through Wine, and there is no wine "
                          "program on the PATH.\r\rTo install Wine on Debian or Ubuntu: sudo apt install wine\r"
                          "32-bit programs such as the PicBasic compilers also need wine32: "
                          "sudo dpkg --add-architecture i386 && sudo apt update && sudo apt install wine32");
}

bool wineRuns32Bit(const QString& wine, const QString& root) {
    const QString wrapper = QFileInfo(root + QStringLiteral("/usr/bin/wine")).canonicalFilePath();
    if (wrapper.isEmpty() || QFileInfo(wine).canonicalFilePath() != wrapper)
        return true;
    const QString loaders = root + QStringLiteral("/usr/lib/wine/");
    return !QFileInfo(loaders + QStringLiteral("wine64")).isExecutable() ||
           QFileInfo(loaders + QStringLiteral("wine")).isExecutable();
}

QString wine32MissingMessage(const QString& program) {
    return program +
           QStringLiteral(" is a 32-bit Windows program, and the Wine installed here runs only 64-bit programs: "
                          "32-bit Wine (wine32) is missing.\r\rTo install it on Debian or Ubuntu:\r"
                          "sudo dpkg --add-architecture i386 && sudo apt update && sudo apt install wine32");
}

QProcessEnvironment wineEnvironment(QProcessEnvironment base, const QString& searchDirectory) {
    base.insert(QStringLiteral("WINEDEBUG"), QStringLiteral("-all"));
    if (!searchDirectory.isEmpty())
        base.insert(QStringLiteral("WINEPATH"), searchDirectory);
    return base;
}

QStringList wineWindowsPaths(const QStringList& paths) {
    QStringList absolute;
    for (const QString& p : paths)
        absolute << QFileInfo(p).absoluteFilePath();
    return runWinepath(QStringLiteral("-w"), absolute);
}

QStringList wineShortPaths(const QStringList& paths) {
    // winepath -s wants Windows paths; those of missing files come back empty.
    QStringList windows = wineWindowsPaths(paths);
    for (qsizetype i = 0; i < paths.size(); ++i)
        if (!QFileInfo::exists(paths[i]))
            windows[i].clear();
    QStringList known;
    for (const QString& w : windows)
        if (!w.isEmpty())
            known << w;
    const QStringList shortForms = runWinepath(QStringLiteral("-s"), known);
    QStringList result;
    qsizetype k = 0;
    for (const QString& w : windows)
        result << (w.isEmpty() ? QString() : shortForms.value(k++));
    return result;
}

QString wineWindowsPath(const QString& path) { return wineWindowsPaths({path}).value(0); }

QString wineShortPath(const QString& path) { return wineShortPaths({path}).value(0); }

QStringList wineSearchRoots() {
    const QString driveC = QDir(winePrefix()).filePath(QStringLiteral("drive_c"));
    return QFileInfo(driveC).isDir() ? QStringList{QDir::cleanPath(driveC)} : QStringList{};
}
