#pragma once
#include "platform/Paths.h"

class PosixPaths : public Paths {
public:
    // appDir empty: the directory of the running executable.
    explicit PosixPaths(QString appDir = {}) : appDir_(std::move(appDir)) {}
    QString shortPath(const QString& path) override;
    QString applicationDirectory() override;
    QStringList searchRoots() override;

private:
    QString appDir_;
};
