#pragma once
// The few facts about the file system that differ between platforms.

#include <QString>
#include <QStringList>

// Whatever gives the short form of a path: the platform's paths, or a program's host.
class ShortPaths {
public:
    virtual ~ShortPaths() = default;
    // The form of an existing path that the compile script can use; empty when there is no such path.
    virtual QString shortPath(const QString& path) = 0;
};

class Paths : public ShortPaths {
public:
    // The directory the program was started from, without a closing separator.
    virtual QString applicationDirectory() = 0;
    // Where a search for the compilers may start.
    virtual QStringList searchRoots() = 0;
    // The directory of the data shipped with an installed program (its device.ide), without a closing
    // separator; empty when the program's files all lie in the application directory.
    virtual QString installedDataDirectory() { return {}; }
};

// The separator the system joins a directory and a name with.
inline QString pathSeparator() {
#ifdef Q_OS_WIN
    return QStringLiteral("\\");
#else
    return QStringLiteral("/");
#endif
}
