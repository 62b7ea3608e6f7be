#pragma once
// The tests' own wine prefix: made once per build directory by the first test that needs it (a first
// wineboot takes a while), then reused. Tests that run wine call useTestWinePrefix() first.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QString>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

// A Windows test program, or empty when MinGW didn't build it.
inline QString fakeProgram(const QString& name) {
#ifdef QB_FAKES_DIR
    const QString path = QStringLiteral(QB_FAKES_DIR "/") + name;
    return QFileInfo::exists(path) ? path : QString();
#else
    (void)name;
    return {};
#endif
}

// Points WINEPREFIX at the tests' prefix, making it when it isn't there. Empty when all is ready, else
// why the wine tests can't run.
inline QString useTestWinePrefix() {
    const QString wine = QStandardPaths::findExecutable(QStringLiteral("wine"));
    if (wine.isEmpty())
        return QStringLiteral("wine is not installed");
    const QString prefix = QStringLiteral(QB_BINARY_DIR "/wine-test-prefix");
    qputenv("WINEPREFIX", QFile::encodeName(prefix));
    qputenv("WINEDEBUG", "-all");
    // No Mono or Gecko installers and no menu entries in the real home.
    qputenv("WINEDLLOVERRIDES", "mscoree,mshtml=;winemenubuilder.exe=d");
    const QString ready = prefix + QStringLiteral("/.tests-ready");
    // Tests run as separate processes, some at once: one makes the prefix, the others wait for it.
    const int lock = ::open(QFile::encodeName(prefix + QStringLiteral(".lock")).constData(), O_CREAT | O_RDWR, 0644);
    if (lock >= 0)
        ::flock(lock, LOCK_EX);
    QString why;
    if (!QFileInfo::exists(ready)) {
        QProcess boot;
        boot.setStandardOutputFile(QProcess::nullDevice());
        boot.setStandardErrorFile(QProcess::nullDevice());
        boot.start(wine, {QStringLiteral("wineboot"), QStringLiteral("-i")});
        if (!boot.waitForFinished(-1) || boot.exitCode() != 0)
            why = QStringLiteral("wineboot could not make the test prefix");
        else
            QFile(ready).open(QIODevice::WriteOnly);
    }
    if (lock >= 0)
        ::close(lock);
    return why;
}
