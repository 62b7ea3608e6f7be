#include "compile/CompilerSearch.h"

#include "platform/Paths.h"

#include <QDirIterator>
#include <QFileInfo>

#include <memory>
#include <vector>

namespace {

struct Directory {
    explicit Directory(const QString& p)
        : path(p), entries(p, QDir::AllEntries | QDir::Hidden | QDir::System) {}
    QString path;  // with its closing separator
    QDirIterator entries;
};

bool isPseudoFileSystem(const QString& rootPath, const QString& dirPath) {
    if (rootPath != QLatin1String("/"))
        return false;
    return dirPath == QLatin1String("/proc/") || dirPath == QLatin1String("/sys/") ||
           dirPath == QLatin1String("/dev/");
}

}  // namespace

QString TrimToNul(const QString& text) {
    const qsizetype nul = text.indexOf(QChar(0));
    return nul < 0 ? text : text.left(nul);
}

bool isCompilerFileName(const QString& name) {
    const QString upper = name.toUpper();
    return upper == QLatin1String("PBC.EXE") || upper == QLatin1String("PBP.EXE") ||
           upper == QLatin1String("PBPW.EXE") || upper == QLatin1String("PBPX.EXE");
}

void FindCompilerFiles(const QString& root, const CompilerSearchHooks& hooks) {
    if (root.isEmpty())
        return;
    const QString sep = pathSeparator();
    const QString rootPath = root.endsWith(sep) ? root : root + sep;
    auto announce = [&](const QString& path) {
        if (hooks.progress)
            hooks.progress(QStringLiteral("Searching: ") + path);
        return hooks.processEvents ? hooks.processEvents() : true;
    };

    // A stack of open directories instead of recursion: a deep tree costs heap, not stack.
    std::vector<std::unique_ptr<Directory>> open;
    open.push_back(std::make_unique<Directory>(rootPath));
    while (!open.empty()) {
        Directory& dir = *open.back();
        if (!dir.entries.hasNext()) {
            open.pop_back();
            // Back in the parent after a subdirectory: its progress comes now, as after a recursive call.
            if (!open.empty() && !announce(open.back()->path))
                return;
            continue;
        }
        dir.entries.next();
        const QString name = TrimToNul(dir.entries.fileName());
        const QFileInfo info = dir.entries.fileInfo();
        if (info.isDir()) {
            const QString child = dir.path + name + sep;
            if (name != QLatin1String(".") && name != QLatin1String("..") && !info.isSymLink() &&
                !isPseudoFileSystem(rootPath, child)) {
                open.push_back(std::make_unique<Directory>(child));
                continue;
            }
            if (!announce(dir.path))
                return;
        } else if (isCompilerFileName(name)) {
            if (hooks.found)
                hooks.found(dir.path + name);
            if (hooks.processEvents && !hooks.processEvents())
                return;
        }
    }
}
