#include "platform/WineDosPaths.h"

#include "platform/Wine.h"

WineDosPaths::WineDosPaths(Paths& base, const QStringList& known) : base_(base) {
    QStringList posix;
    for (const QString& p : known) {
        const QString s = base_.shortPath(p);
        if (!s.isEmpty())
            posix << s;
    }
    const QStringList dos = wineShortPaths(posix);
    for (qsizetype i = 0; i < posix.size(); ++i)
        forms_.insert(posix[i], dos.value(i));
}

QString WineDosPaths::shortPath(const QString& path) {
    const QString posix = base_.shortPath(path);
    if (posix.isEmpty())
        return {};
    const auto known = forms_.constFind(posix);
    return known != forms_.constEnd() ? *known : wineShortPath(posix);
}
