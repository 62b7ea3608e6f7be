#include "document/DiskStamp.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

namespace {
constexpr auto kHash = QCryptographicHash::Sha1;
}

DiskStamp DiskStamp::ofBytes(QByteArrayView bytes) {
    return {true, true, bytes.size(), QCryptographicHash::hash(bytes, kHash)};
}

DiskStamp DiskStamp::of(const QString& path) {
    const QFileInfo info(path);
    DiskStamp s;
    s.exists = info.exists();
    s.isFile = info.isFile();
    if (!s.isFile)
        return s;
    s.size = info.size();
    QFile file(path);
    QCryptographicHash hash(kHash);
    // Unreadable now: not what was read before, whatever its size.
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)) {
        s.hash = QByteArrayLiteral("unreadable");
        return s;
    }
    s.hash = hash.result();
    return s;
}
