#include "programmer/ProgrammerPresets.h"

#include "platform/SystemProbe.h"

#include <QDir>
#include <QVersionNumber>

#include <algorithm>

const QList<ProgrammerPreset>& programmerPresets() {
    // The hex path is one token inside one argument: a path with blanks stays one argument.
    static const QList<ProgrammerPreset> presets = {
        {QStringLiteral("pk2cmd, pk2cmd-minus"), QStringLiteral("pk2cmd"),
         {QStringLiteral("/usr/local/bin/pk2cmd"), QStringLiteral("/usr/share/pk2/pk2cmd")}, {},
         QStringLiteral("-P{DeviceFullName} -F{HexFileWinPath} -M -Y")},
        {QStringLiteral("MPLAB IPE (ipecmd.sh)"), QStringLiteral("ipecmd.sh"),
         {QStringLiteral("/opt/microchip/mplabx/*/mplab_platform/mplab_ipe/ipecmd.sh")},
         QStringLiteral("/opt/microchip/mplabx/v6.20/mplab_platform/mplab_ipe/ipecmd.sh"),
         QStringLiteral("-TPPK4 -P{DeviceName} -F{HexFileWinPath} -M -Y")},
        {QStringLiteral("picpro"), QStringLiteral("picpro"),
         {QDir::homePath() + QStringLiteral("/.local/bin/picpro"), QStringLiteral("/usr/local/bin/picpro")}, {},
         QStringLiteral("program -p {SerialPort} -i {HexFileWinPath} -t {DeviceName}")},
        {QStringLiteral("a-p-prog (pp3)"), QStringLiteral("pp3"), {QStringLiteral("/usr/local/bin/pp3")}, {},
         QStringLiteral("-c {SerialPort} -t {DeviceNameLower} {HexFileWinPath}")},
        {QStringLiteral("ardpicprog"), QStringLiteral("ardpicprog"), {QStringLiteral("/usr/local/bin/ardpicprog")}, {},
         QStringLiteral("-d {DeviceFullNameLower} -p {SerialPort} --erase --burn -i {HexFileWinPath}")},
        {QStringLiteral("usbpicprog"), QStringLiteral("usbpicprog"),
         {QStringLiteral("/usr/bin/usbpicprog"), QStringLiteral("/usr/local/bin/usbpicprog")}, {},
         QStringLiteral("-p {DeviceFullName} -e -w -f {HexFileWinPath}")},
    };
    return presets;
}

namespace {

// The files a usual path stands for, the newest version folder first.
QStringList expand(const QString& usual, SystemProbe& probe) {
    const qsizetype star = usual.indexOf(QLatin1Char('*'));
    if (star < 0)
        return {usual};
    const QString parent = usual.left(star);
    const QString rest = usual.mid(star + 1);
    QStringList versions = probe.entries(parent);
    // By number, not by letters: v6.20 is newer than v6.5.
    const auto number = [](const QString& folder) {
        qsizetype digit = 0;
        while (digit < folder.size() && !folder[digit].isDigit())
            ++digit;
        return QVersionNumber::fromString(folder.mid(digit));
    };
    std::sort(versions.begin(), versions.end(), [&](const QString& a, const QString& b) {
        const int byNumber = QVersionNumber::compare(number(a), number(b));
        return byNumber != 0 ? byNumber > 0 : a > b;
    });
    QStringList paths;
    for (const QString& v : versions)
        paths << parent + v + rest;
    return paths;
}

}  // namespace

PresetPath presetPath(const ProgrammerPreset& preset, SystemProbe& probe) {
    if (const QString onPath = probe.findOnPath(preset.program); !onPath.isEmpty())
        return {onPath, PresetPath::Found::OnPath};
    for (const QString& usual : preset.usualPaths)
        for (const QString& path : expand(usual, probe))
            if (probe.isFile(path))
                return {path, PresetPath::Found::UsualPlace};
    return {preset.typicalPath.isEmpty() ? preset.program : preset.typicalPath, PresetPath::Found::NotFound};
}

QString presetPathNote(const ProgrammerPreset& preset, const PresetPath& where) {
    switch (where.found) {
    case PresetPath::Found::OnPath:
        return preset.program + QStringLiteral(" found on PATH.");
    case PresetPath::Found::UsualPlace:
        return preset.program + QStringLiteral(" found in its usual place (not on PATH).");
    case PresetPath::Found::NotFound:
        break;
    }
    return preset.typicalPath.isEmpty()
               ? preset.program + QStringLiteral(" not found: the bare name is filled in; install it on PATH or "
                                                 "browse to it.")
               : preset.program + QStringLiteral(" not found: a typical install path is filled in; browse to "
                                                 "yours.");
}
