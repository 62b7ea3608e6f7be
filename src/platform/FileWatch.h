#pragma once
// Watching files on disk for another program's changes.

#include <QObject>
#include <QString>

class FileWatch : public QObject {
    Q_OBJECT
public:
    // Watches a file: a write, its replacement by another file (as an atomic save does), its removal, and
    // its coming back. A path watched twice is watched once; a path that doesn't exist yet is told when
    // it comes.
    virtual void watch(const QString& path) = 0;
    virtual void unwatch(const QString& path) = 0;

signals:
    // Something happened to the file at path, exactly as it was given to watch. What, the receiver looks
    // at for itself: several writes may come as one notice, and one write as several.
    void changed(const QString& path);
};
