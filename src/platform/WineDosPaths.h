#pragma once
// GetDosPath with wine's meaning, for a compile through wine: while a WineDosPaths is in use, the short
// form of a path is wine's short DOS form of it (Z:\home\ann\MYPR~4UZ\blink.pbp), and a path without one
// gets GetDosPath's own message.

#include "platform/Paths.h"

#include <QHash>
#include <QStringList>

class WineDosPaths : public Paths {
public:
    // base gives the POSIX form first (and decides what exists); the wine forms of known are fetched at
    // once, since each question to wine costs a run of it.
    // cache, when given, holds forms fetched before and takes the new ones.
    WineDosPaths(Paths& base, const QStringList& known, QHash<QString, QString>* cache = nullptr);
    QString shortPath(const QString& path) override;
    QString applicationDirectory() override { return base_.applicationDirectory(); }
    QStringList searchRoots() override { return base_.searchRoots(); }

private:
    Paths& base_;
    QHash<QString, QString> forms_;
};
