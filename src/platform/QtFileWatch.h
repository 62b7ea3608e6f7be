#pragma once
// File watching over QFileSystemWatcher, with the folders of the files watched too: a save that replaces
// a file (a new inode) or a file that comes back after removal loses the system's watch on it, and the
// folder's notice is where it is taken up again.

#include "platform/FileWatch.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QStringList>

class QtFileWatch : public FileWatch {
    Q_OBJECT
public:
    QtFileWatch();
    void watch(const QString& path) override;
    void unwatch(const QString& path) override;

private:
    void onFileChanged(const QString& path);
    void onDirectoryChanged(const QString& dir);
    // Puts the system's watch back on a file that exists and has none; true when it did.
    bool rewatch(const QString& path);

    QFileSystemWatcher watcher_;
    QStringList files_;
    // The folders, each with the number of watched files in it.
    QHash<QString, int> folders_;
};
