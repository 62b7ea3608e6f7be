#pragma once
// What a document's file held when the document last read or wrote it, so that another program's change
// can be told from the document's own save. Plain logic.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

struct DiskStamp {
    bool exists = false;
    // False for a folder or anything else that isn't a regular file.
    bool isFile = false;
    qint64 size = 0;
    // Of the bytes: the time stamp's resolution may be too coarse to see a quick second write of the same size.
    QByteArray hash;

    // The stamp of a file that holds these bytes.
    static DiskStamp ofBytes(QByteArrayView bytes);
    // The file as it is now, its bytes read.
    static DiskStamp of(const QString& path);

    // The same bytes, or the same absence. A new time stamp alone (a touch) is no change.
    bool sameAs(const DiskStamp& other) const {
        return exists == other.exists && isFile == other.isFile && size == other.size && hash == other.hash;
    }
};
