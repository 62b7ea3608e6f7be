#include "platform/WineDosPaths.h"

#include "platform/Wine.h"

WineDosPaths::WineDosPaths(Paths& base, const QStringList& known, QHash<QString, QString>* cache) : base_(base) {
    // Wine makes a file's short name from its long one, so a form once fetched stays right for that file in
    // that prefix; a cache keeps the two wine runs out of every compile but the first.
    const QString prefix = qEnvironmentVariable("WINEPREFIX") + QLatin1Char('\n');
    QStringList missing;
    for (const QString& p : known) {
        const QString s = base_.shortPath(p);
        if (s.isEmpty())
            continue;
        if (cache && cache->contains(prefix + s))
            forms_.insert(s, cache->value(prefix + s));
        else
            missing << s;
    }
    const QStringList dos = wineShortPaths(missing);
    for (qsizetype i = 0; i < missing.size(); ++i) {
        forms_.insert(missing[i], dos.value(i));
        if (cache && !dos.value(i).isEmpty())
            cache->insert(prefix + missing[i], dos.value(i));
    }
}

QString WineDosPaths::shortPath(const QString& path) {
    const QString posix = base_.shortPath(path);
    if (posix.isEmpty())
        return {};
    const auto known = forms_.constFind(posix);
    return known != forms_.constEnd() ? *known : wineShortPath(posix);
}
