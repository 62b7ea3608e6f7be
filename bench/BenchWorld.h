#pragma once
// Folders of its own for a benchmark that runs the real frame, with the platform services in place: it must
// never read a user's settings nor take over the recovery files of a program someone has running.

#include "core/Globals.h"
#include "platform/PosixLauncher.h"
#include "platform/PosixPaths.h"
#include "platform/Prompts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

// Runs the event loop until nothing is left to do.
inline void settle(int turns = 5) {
    for (int i = 0; i < turns; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
}

struct BenchWorld {
    QTemporaryDir config, app, state;
    PosixLauncher launcher;
    PosixPaths paths{app.path()};
    // Only the address of prompts is kept here, so it may be a member of a derived world.
    explicit BenchWorld(Prompts& prompts) {
        qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
        qputenv("XDG_STATE_HOME", state.path().toLocal8Bit());
        QFile::copy(QStringLiteral(QB_SOURCE_DIR "/data/device.ide"), app.filePath(QStringLiteral("device.ide")));
        globals().prompts = &prompts;
        globals().launcher = &launcher;
        globals().paths = &paths;
    }
    // A file in the application folder, with its folders made.
    QString write(const QString& name, const QByteArray& bytes) {
        const QString path = app.filePath(name);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile f(path);
        if (f.open(QIODevice::WriteOnly))
            f.write(bytes);
        return path;
    }
};
