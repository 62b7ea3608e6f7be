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

// Points WINEPREFIX at the tests' prefix, making it when it isn't there, and holds the prefix for the
// test's length. Tests run as separate processes, some at once; wine programs of two tests in one prefix
// were seen to die or answer nothing (a compile's ending kills its process group, which can hold a
// wineserver still starting), so one test at a time uses it, as one IDE compiles one program at a time.
class TestWinePrefix {
public:
    TestWinePrefix() {
        const QString wine = QStandardPaths::findExecutable(QStringLiteral("wine"));
        if (wine.isEmpty()) {
            why_ = QStringLiteral("wine is not installed");
            return;
        }
        const QString prefix = QStringLiteral(QB_BINARY_DIR "/wine-test-prefix");
        qputenv("WINEPREFIX", QFile::encodeName(prefix));
        qputenv("WINEDEBUG", "-all");
        // No Mono or Gecko installers and no menu entries in the real home.
        qputenv("WINEDLLOVERRIDES", "mscoree,mshtml=;winemenubuilder.exe=d");
        lock_ = ::open(QFile::encodeName(prefix + QStringLiteral(".lock")).constData(), O_CREAT | O_RDWR | O_CLOEXEC,
                       0644);
        if (lock_ >= 0)
            ::flock(lock_, LOCK_EX);
        const QString ready = prefix + QStringLiteral("/.tests-ready");
        if (QFileInfo::exists(ready))
            return;
        QProcess boot;
        boot.setStandardOutputFile(QProcess::nullDevice());
        boot.setStandardErrorFile(QProcess::nullDevice());
        boot.start(wine, {QStringLiteral("wineboot"), QStringLiteral("-i")});
        if (!boot.waitForFinished(-1) || boot.exitCode() != 0)
            why_ = QStringLiteral("wineboot could not make the test prefix");
        else
            QFile(ready).open(QIODevice::WriteOnly);
    }
    ~TestWinePrefix() {
        if (lock_ >= 0)
            ::close(lock_);
    }
    TestWinePrefix(const TestWinePrefix&) = delete;
    TestWinePrefix& operator=(const TestWinePrefix&) = delete;
    // Empty when all is ready, else why the wine tests can't run.
    const QString& why() const { return why_; }

private:
    QString why_;
    int lock_ = -1;
};
