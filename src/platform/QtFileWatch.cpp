#include "platform/QtFileWatch.h"

#include <QFileInfo>

namespace {
QString folderOf(const QString& path) { return QFileInfo(path).absolutePath(); }
}  // namespace

QtFileWatch::QtFileWatch() {
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &QtFileWatch::onFileChanged);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &QtFileWatch::onDirectoryChanged);
}

void QtFileWatch::watch(const QString& path) {
    if (!files_.contains(path)) {
        files_ << path;
        ++folders_[folderOf(path)];
    }
    rewatch(path);
    const QString folder = folderOf(path);
    if (!watcher_.directories().contains(folder) && QFileInfo(folder).isDir())
        watcher_.addPath(folder);
}

void QtFileWatch::unwatch(const QString& path) {
    if (!files_.removeOne(path))
        return;
    if (watcher_.files().contains(path))
        watcher_.removePath(path);
    const QString folder = folderOf(path);
    if (--folders_[folder] <= 0) {
        folders_.remove(folder);
        if (watcher_.directories().contains(folder))
            watcher_.removePath(folder);
    }
}

bool QtFileWatch::rewatch(const QString& path) {
    if (watcher_.files().contains(path) || !QFileInfo::exists(path))
        return false;
    return watcher_.addPath(path);
}

void QtFileWatch::onFileChanged(const QString& path) {
    if (!files_.contains(path))
        return;
    // A replaced or removed file has lost its watch: a replacement gets it back now, a removed file when
    // its folder sees it come back.
    rewatch(path);
    emit changed(path);
}

void QtFileWatch::onDirectoryChanged(const QString& dir) {
    // Something came, went or was renamed in the folder: a watched file that is back is told.
    for (const QString& path : QStringList(files_))
        if (folderOf(path) == dir && rewatch(path))
            emit changed(path);
}
