#pragma once
// The probe of this machine, through POSIX calls, Qt Serial Port and the PATH.

#include "platform/SystemProbe.h"

class PosixSystemProbe : public SystemProbe {
public:
    bool exists(const QString& path) override;
    bool isFile(const QString& path) override;
    bool isDirectory(const QString& path) override;
    bool isExecutable(const QString& path) override;
    QStringList entries(const QString& directory) override;
    QString findOnPath(const QString& name) override;
    std::optional<quint16> peMachine(const QString& path) override;
    QString wine() override;
    bool wineRuns32Bit(const QString& wine) override;
    QString winePrefix() override;
    bool winePrefixFromEnvironment() override;
    QStringList sessionGroups() override;
    QStringList accountGroups() override;
    bool isSuperuser() override;
    QString groupOf(const QString& path) override;
    QStringList serialPorts() override;
};

// The machine's probe; it keeps nothing, so one serves the whole process.
SystemProbe& systemProbe();
