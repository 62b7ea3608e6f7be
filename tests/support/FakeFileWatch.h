#pragma once
// File watching as a test tells it: the paths being watched, and a notice sent when the test says.

#include "platform/FileWatch.h"

#include <QStringList>

class FakeFileWatch : public FileWatch {
    Q_OBJECT
public:
    // In the order first watched.
    QStringList watched;
    void watch(const QString& path) override {
        if (!watched.contains(path))
            watched << path;
    }
    void unwatch(const QString& path) override { watched.removeAll(path); }
    // As the system tells a change: only for a path being watched.
    void notice(const QString& path) {
        if (watched.contains(path))
            emit changed(path);
    }
};
