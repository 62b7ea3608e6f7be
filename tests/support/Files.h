#pragma once
// Files and waits for the tests that run real programs.

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>

// A file's bytes, or "<missing>" when it can't be read.
inline QByteArray readFile(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

// Writes the bytes as an executable file, making its folders; gives the path.
inline QString writeProgram(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write(bytes);
    f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
    return path;
}

// Writes the bytes as a plain file, making its folders; false when not all of them went in.
inline bool writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

// Another program's atomic save: a new file in the old one's place.
inline bool replaceFile(const QString& path, const QByteArray& bytes) {
    QSaveFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size() && f.commit();
}

// The id of a process that has ended and been reaped.
inline qint64 deadProcessId() {
    QProcess p;
    p.start(QStringLiteral("true"), {});
    p.waitForStarted();
    const qint64 pid = p.processId();
    p.waitForFinished();
    return pid;
}

// An environment variable set until the end of the scope, whatever ends it; then as it was, or unset.
struct ScopedEnv {
    const char* name;
    const bool was = qEnvironmentVariableIsSet(name);
    const QByteArray old = qgetenv(name);
    ScopedEnv(const char* name, const QByteArray& value) : name(name) { qputenv(name, value); }
    ~ScopedEnv() { was ? qputenv(name, old) : qunsetenv(name); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;
};

// Processes events until done() holds; the deadline only keeps a broken run from hanging.
template <class Done>
bool waitFor(Done done) {
    QDeadlineTimer deadline(180000);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

// The smallest head of a PE image: "MZ", the header offset at 0x3C, "PE\0\0" there.
inline QByteArray peHead(quint32 offset = 0x40) {
    QByteArray b(offset + 8, '\0');
    b[0] = 'M', b[1] = 'Z';
    for (int i = 0; i < 4; ++i)
        b[0x3C + i] = char((offset >> (8 * i)) & 0xFF);
    return b.replace(offset, 4, QByteArray("PE\0\0", 4));
}
