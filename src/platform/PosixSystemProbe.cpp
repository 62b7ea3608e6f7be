#include "platform/PosixSystemProbe.h"

#include "platform/PeImage.h"
#include "platform/SerialPortQt.h"
#include "platform/Wine.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

namespace {

QString groupName(gid_t gid) {
    const group* g = getgrgid(gid);
    return g ? QString::fromLocal8Bit(g->gr_name) : QString::number(gid);
}

}  // namespace

bool PosixSystemProbe::exists(const QString& path) { return QFileInfo::exists(path); }

bool PosixSystemProbe::isFile(const QString& path) { return QFileInfo(path).isFile(); }

bool PosixSystemProbe::isDirectory(const QString& path) { return QFileInfo(path).isDir(); }

bool PosixSystemProbe::isExecutable(const QString& path) {
    return !path.isEmpty() && access(QFile::encodeName(path).constData(), X_OK) == 0;
}

QStringList PosixSystemProbe::entries(const QString& directory) {
    return QDir(directory).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
}

QString PosixSystemProbe::findOnPath(const QString& name) { return QStandardPaths::findExecutable(name); }

std::optional<quint16> PosixSystemProbe::peMachine(const QString& path) { return peMachineOfFile(path); }

QString PosixSystemProbe::wine() { return wineProgram(); }

bool PosixSystemProbe::wineRuns32Bit(const QString& wine) { return ::wineRuns32Bit(wine); }

QString PosixSystemProbe::winePrefix() { return ::winePrefix(); }

bool PosixSystemProbe::winePrefixFromEnvironment() { return !qEnvironmentVariableIsEmpty("WINEPREFIX"); }

bool PosixSystemProbe::isSuperuser() { return geteuid() == 0; }

QStringList PosixSystemProbe::sessionGroups() {
    QStringList names{groupName(getegid())};
    const int n = getgroups(0, nullptr);
    std::vector<gid_t> gids(n > 0 ? n : 0);
    if (n > 0 && getgroups(n, gids.data()) == n)
        for (gid_t gid : gids)
            names << groupName(gid);
    names.removeDuplicates();
    return names;
}

QStringList PosixSystemProbe::accountGroups() {
    const passwd* pw = getpwuid(getuid());
    if (!pw)
        return sessionGroups();
    const QByteArray user = pw->pw_name;
    const gid_t primary = pw->pw_gid;
    int n = 64;
    std::vector<gid_t> gids(n);
    if (getgrouplist(user.constData(), primary, gids.data(), &n) < 0) {
        gids.resize(n);
        if (getgrouplist(user.constData(), primary, gids.data(), &n) < 0)
            return sessionGroups();
    }
    QStringList names;
    for (int i = 0; i < n; ++i)
        names << groupName(gids[i]);
    names.removeDuplicates();
    return names;
}

QString PosixSystemProbe::groupOf(const QString& path) {
    struct stat st {};
    if (stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return groupName(st.st_gid);
}

QStringList PosixSystemProbe::serialPorts() {
    QStringList paths;
    for (const SerialPortEntry& e : systemSerialPorts().list())
        paths << e.path;
    return paths;
}

SystemProbe& systemProbe() {
    static PosixSystemProbe probe;
    return probe;
}
