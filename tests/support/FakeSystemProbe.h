#pragma once
// A machine as a test describes it: files, PATH, Windows programs, Wine, groups and ports.

#include "platform/SystemProbe.h"

#include <QHash>
#include <QSet>

class FakeSystemProbe : public SystemProbe {
public:
    QSet<QString> files;        // regular files
    QSet<QString> executables;  // the files of these that may be run
    QSet<QString> directories;
    QSet<QString> devices;      // device files, such as serial ports
    QHash<QString, QString> onPath;             // name -> full path
    QHash<QString, quint16> windowsPrograms;    // path -> machine
    QString winePath;
    bool wine32 = true;
    QString prefix = QStringLiteral("/home/ann/.wine");
    bool prefixFromEnvironment = false;
    QStringList session{QStringLiteral("ann")};
    QStringList account{QStringLiteral("ann")};
    bool superuser = false;
    QHash<QString, QString> deviceGroups;  // device -> owning group
    QStringList ports;

    bool exists(const QString& p) override { return files.contains(p) || directories.contains(p) || devices.contains(p); }
    bool isFile(const QString& p) override { return files.contains(p); }
    bool isDirectory(const QString& p) override { return directories.contains(p); }
    bool isExecutable(const QString& p) override { return executables.contains(p); }
    QStringList entries(const QString& dir) override {
        QStringList names;
        const QString lead = dir.endsWith('/') ? dir : dir + '/';
        for (const QString& f : files + directories)
            if (f.startsWith(lead) && !f.mid(lead.size()).contains('/'))
                names << f.mid(lead.size());
        return names;
    }
    QString findOnPath(const QString& name) override { return onPath.value(name); }
    std::optional<quint16> peMachine(const QString& p) override {
        if (const auto it = windowsPrograms.constFind(p); it != windowsPrograms.constEnd())
            return *it;
        return std::nullopt;
    }
    QString wine() override { return winePath; }
    bool wineRuns32Bit(const QString&) override { return wine32; }
    QString winePrefix() override { return prefix; }
    bool winePrefixFromEnvironment() override { return prefixFromEnvironment; }
    QStringList sessionGroups() override { return session; }
    QStringList accountGroups() override { return account; }
    bool isSuperuser() override { return superuser; }
    QString groupOf(const QString& p) override { return deviceGroups.value(p); }
    QStringList serialPorts() override { return ports; }
};
