#include "programmer/ProgrammerTemplate.h"

#include "core/DeviceCombo.h"
#include "core/DosPath.h"
#include "core/Convert.h"
#include "platform/Paths.h"
#include "platform/ProgramHost.h"

#include <QProcess>

namespace {

bool isToken(const QString& token, const char* name) {
    return token.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}

}  // namespace

std::optional<ProgrammerKind> programmerKindAt(int type) {
    switch (type) {
    case 0:
        return ProgrammerKind{Key::ProgrammerPathName, Key::ProgrammerCommandLineOptions,
                              QStringLiteral("EPICWin"),
                              QStringLiteral("EPICWin Programmer|Epicwin.exe|All Files (*.*)|*.*|")};
    case 1:
        return ProgrammerKind{Key::ProgrammerPathNameMeLoader, Key::ProgrammerCommandLineOptionsMeLoader,
                              QStringLiteral("melabs Loader"),
                              QStringLiteral("melabs Loader|Meloader.exe|All Files (*.*)|*.*|")};
    case 2:
        return ProgrammerKind{Key::ProgrammerPathName1, Key::ProgrammerCommandLineOptions1,
                              QStringLiteral("PicStart Plus (MPLAB)"),
                              QStringLiteral("PicStart Plus Programmer|MPLAB.EXE|All Files (*.*)|*.*|")};
    case 3:
        return ProgrammerKind{Key::ProgrammerPathNameOther, Key::ProgrammerCommandLineOptionsOther,
                              QStringLiteral("Other"), QStringLiteral("All Files (*.*)|*.*|")};
    default:
        return std::nullopt;
    }
}

QString hexFileName(const QString& pathName) {
    // The first dot of the whole path, so a dotted directory cuts the name there: users know this rule.
    const qsizetype dot = pathName.indexOf(QLatin1Char('.'));
    return pathName.left(dot + 1) + QStringLiteral("hex");
}

QString selectProgrammerDevice(DeviceCombo& combo) { return selectDeviceForTools(combo); }

QString TokenValue(const QString& token, const QString& pathName, DeviceCombo& devices, ProgramHost& host) {
    if (isToken(token, "{FILENAMEDOSPATH}"))
        return GetDosPath(pathName, host);
    if (isToken(token, "{FILENAMEWINPATH}"))
        return host.fullPath(pathName);
    if (isToken(token, "{HEXFILEDOSPATH}"))
        return GetDosPath(hexFileName(pathName), host);
    if (isToken(token, "{HEXFILEWINPATH}"))
        return host.fullPath(hexFileName(pathName));
    if (isToken(token, "{DEVICENAME}"))
        return selectProgrammerDevice(devices);
    return {};
}

void ExpandCommandLineTokens(QString& options, const TokenValueFn& tokenValue) {
    // Positions from 0 here. The cursor is not corrected for what a replacement removes or inserts, so a
    // token right behind one that vanished is passed over, and an inserted value is scanned from its second
    // character on.
    //
    // Values may hold braces (a document path holding "{FileNameWinPath}"), and replacing "while the text
    // holds the token" would then never end. So each token is worked out and replaced once per expansion:
    // one pass over the text, left to right, not searching the value it has just inserted; an occurrence
    // that a value brings in later stays as it is. Unknown tokens give "", so only the five known ones can
    // insert text, and the expansion ends.
    QStringList done;
    qsizetype cursor = 0;
    for (;;) {
        const qsizetype open = options.indexOf(QLatin1Char('{'), cursor);
        if (open < 0)
            return;
        const qsizetype close = options.indexOf(QLatin1Char('}'), open);
        if (close < 0) {
            ++cursor;  // the same "{" is found again until the cursor has passed it; it stays
            continue;
        }
        const QString token = options.mid(open, close - open + 1);
        cursor = open + 1;
        if (done.contains(token, Qt::CaseInsensitive))
            continue;
        done << token;
        const QString value = tokenValue(token);
        // Every occurrence in the whole text, in any letter case.
        for (qsizetype at = 0; (at = options.indexOf(token, at, Qt::CaseInsensitive)) >= 0; at += value.size())
            options.replace(at, token.size(), value);
    }
}

std::optional<QString> programmerDirectory(const QString& pathName) {
    const qsizetype sep = pathName.lastIndexOf(pathSeparator());
    if (sep < 0)
        return std::nullopt;
    // A programmer in the root directory runs there; the text before its separator is empty.
    return sep == 0 ? pathSeparator() : pathName.left(sep);
}

ProgrammerCommand programmerCommand(const QString& pathName, const QString& expandedOptions) {
    // QProcess's rule: blanks separate, double quotes keep an argument together, tripled quotes give one.
    return {trimBlanks(pathName), QProcess::splitCommand(trimBlanks(expandedOptions))};
}
