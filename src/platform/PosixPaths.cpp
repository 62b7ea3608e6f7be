#include "platform/PosixPaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

QString PosixPaths::shortPath(const QString& path) {
    // No short names here: the compile script quotes every path, so the absolute path serves.
    if (path.isEmpty())
        return {};
    const QFileInfo fi(path);
    if (!fi.exists())
        return {};
    return fi.absoluteFilePath();
}

QString PosixPaths::applicationDirectory() {
    QString dir = appDir_.isEmpty() ? QCoreApplication::applicationDirPath() : appDir_;
    while (dir.size() > 1 && dir.endsWith(QLatin1Char('/')))
        dir.chop(1);
    return dir;
}

QStringList PosixPaths::searchRoots() {
    QStringList roots{QStringLiteral("/"), QDir::homePath()};
    for (const QStorageInfo& vol : QStorageInfo::mountedVolumes()) {
        const QString root = vol.rootPath();
        if (root.startsWith(QStringLiteral("/media/")) || root.startsWith(QStringLiteral("/mnt/")) ||
            root.startsWith(QStringLiteral("/run/media/")))
            if (!roots.contains(root))
                roots << root;
    }
    return roots;
}
