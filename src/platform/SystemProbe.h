#pragma once
// The facts about this machine that decide whether a compile and a launch can work: files, the PATH,
// Windows programs and Wine, the user's groups and the serial ports. Asked, never changed; tests give a
// double with the answers they want.

#include <QString>
#include <QStringList>
#include <optional>

class SystemProbe {
public:
    virtual ~SystemProbe() = default;
    // Anything is there: a file, a directory, a device.
    virtual bool exists(const QString& path) = 0;
    // A file (not a directory) is there.
    virtual bool isFile(const QString& path) = 0;
    virtual bool isDirectory(const QString& path) = 0;
    // This user may run it.
    virtual bool isExecutable(const QString& path) = 0;
    // The names in a directory, files and directories alike; empty for one that isn't there.
    virtual QStringList entries(const QString& directory) = 0;
    // The full path of a program found on PATH; empty when none is.
    virtual QString findOnPath(const QString& name) = 0;
    // The machine field of a Windows program (PeImage.h); none for anything else.
    virtual std::optional<quint16> peMachine(const QString& path) = 0;
    // The wine program on PATH, empty when none; whether it runs 32-bit programs.
    virtual QString wine() = 0;
    virtual bool wineRuns32Bit(const QString& wine) = 0;
    // The prefix wine would run in, and whether WINEPREFIX names it (else it is wine's default).
    virtual QString winePrefix() = 0;
    virtual bool winePrefixFromEnvironment() = 0;
    // The groups this process runs with, and those the user's account has: a group added to the account
    // reaches the processes only at the next login.
    virtual QStringList sessionGroups() = 0;
    virtual QStringList accountGroups() = 0;
    // The superuser opens any device whatever its group.
    virtual bool isSuperuser() = 0;
    // The group that owns a device file; empty when it isn't there.
    virtual QString groupOf(const QString& path) = 0;
    // The serial ports present, by path.
    virtual QStringList serialPorts() = 0;
};
