#pragma once
// Files and waits for the tests that run real programs.

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>

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
