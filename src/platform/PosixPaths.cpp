#include "platform/PosixPaths.h"

#include "platform/Wine.h"

#include "platform/Failure.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include <cerrno>
#include <sys/stat.h>

namespace {

const QString kDataName = QStringLiteral("tarnlet");

QString withoutClosingSlash(QString dir) {
    while (dir.size() > 1 && dir.endsWith(QLatin1Char('/')))
        dir.chop(1);
    return dir;
}

}  // namespace

ApplicationPlaces applicationPlaces(const QString& executableDirectory, const QString& xdgDataHome,
                                    const QString& home) {
    const QString exeDir = withoutClosingSlash(executableDirectory);
    const QFileInfo exe(exeDir);
    if (exe.fileName() == QLatin1String("bin")) {
        const QString shared = QDir::cleanPath(exeDir + QStringLiteral("/../share/") + kDataName);
        if (QFileInfo(shared).isDir()) {
            // A relative XDG_DATA_HOME is invalid and ignored, as the base directory rules say.
            QString base = withoutClosingSlash(xdgDataHome);
            if (base.isEmpty() || !QDir::isAbsolutePath(base))
                base = withoutClosingSlash(home) + QStringLiteral("/.local/share");
            return {QDir::cleanPath(base + QLatin1Char('/') + kDataName), shared};
        }
    }
    return {exeDir, QString()};
}

void makeDirectory(const QString& dir) {
    const QString clean = QDir::cleanPath(dir);
    if (QFileInfo(clean).isDir())
        return;
    // One level at a time, so the failure names the level that the file system refused.
    qsizetype at = clean.startsWith(QLatin1Char('/')) ? 1 : 0;
    while (at <= clean.size()) {
        qsizetype next = clean.indexOf(QLatin1Char('/'), at);
        if (next < 0)
            next = clean.size();
        const QString part = clean.left(next);
        if (!part.isEmpty() && ::mkdir(QFile::encodeName(part).constData(), 0700) != 0) {
            const int err = errno;
            if (err != EEXIST)
                throw osFailure(err, part);
            if (!QFileInfo(part).isDir())
                throw osFailure(ENOTDIR, part);
        }
        at = next + 1;
    }
}

PosixPaths::PosixPaths(QString appDir) {
    if (!appDir.isEmpty())
        places_ = ApplicationPlaces{withoutClosingSlash(std::move(appDir)), QString()};
}

const ApplicationPlaces& PosixPaths::places() {
    if (!places_)
        places_ = applicationPlaces(QCoreApplication::applicationDirPath(), qEnvironmentVariable("XDG_DATA_HOME"),
                                    QDir::homePath());
    return *places_;
}

QString PosixPaths::shortPath(const QString& path) {
    // No short names here: the compile script quotes every path, so the absolute path serves.
    if (path.isEmpty())
        return {};
    const QFileInfo fi(path);
    if (!fi.exists())
        return {};
    return fi.absoluteFilePath();
}

QString PosixPaths::applicationDirectory() { return places().applicationDirectory; }

QString PosixPaths::installedDataDirectory() { return places().installedDataDirectory; }

bool PosixPaths::makeApplicationDirectory(Prompts& prompts) {
    const QString dir = places().applicationDirectory;
    try {
        makeDirectory(dir);
        return true;
    } catch (const Failure& f) {
        prompts.message(QStringLiteral("Quillbay Lite cannot make the folder for its own files:\r") + dir +
                            QStringLiteral("\r\r") + f.description +
                            QStringLiteral("\r\rNew documents cannot be saved there, and compiling will fail."),
                        QString(), Icon::Critical, Buttons::Ok);
        return false;
    }
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
    // The Windows compilers are usually installed under Wine's drive C.
    for (const QString& r : wineSearchRoots())
        if (!roots.contains(r))
            roots << r;
    return roots;
}
