#pragma once
// Ready-made command lines for the device programmers that run natively on Linux. A preset fills the
// "Other" kind's path and template; the user can edit both before OK stores them.

#include <QList>
#include <QString>
#include <QStringList>

class SystemProbe;

struct ProgrammerPreset {
    QString name;             // as the preset list shows it
    QString program;          // the program's file name, looked up on PATH
    QStringList usualPaths;   // where its installers put it, in this order; one "*" stands for a version folder
    QString typicalPath;      // filled in when it is nowhere to be found; empty: the bare name
    QString options;          // the command line template
};

const QList<ProgrammerPreset>& programmerPresets();

struct PresetPath {
    enum class Found { OnPath, UsualPlace, NotFound };
    QString path;
    Found found = Found::NotFound;
};

// Where the preset's program is: on PATH, else in one of its usual places (the newest version folder
// first), else its typical path or its bare name.
PresetPath presetPath(const ProgrammerPreset& preset, SystemProbe& probe);

// One line that says where the path came from, for the dialog to show beside the preset.
QString presetPathNote(const ProgrammerPreset& preset, const PresetPath& where);
