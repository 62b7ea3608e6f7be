#include "programmer/ProgrammerTemplate.h"

#include "core/DeviceCombo.h"
#include "core/DosPath.h"
#include "core/Convert.h"
#include "platform/Paths.h"
#include "platform/SerialPort.h"
#include "platform/ProgramHost.h"

#include <QHash>
#include <QProcess>

#include <algorithm>

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
    // The first dot of the file's own name: a dotted folder (/home/ann.lee) is no extension.
    const qsizetype nameStart =
        std::max(pathName.lastIndexOf(QLatin1Char('/')), pathName.lastIndexOf(pathSeparator())) + 1;
    const qsizetype dot = pathName.indexOf(QLatin1Char('.'), nameStart);
    return (dot < 0 ? pathName + QLatin1Char('.') : pathName.left(dot + 1)) + QStringLiteral("hex");
}

bool namesHexFile(const QString& options) {
    return options.contains(QLatin1String("{HEXFILEWINPATH}"), Qt::CaseInsensitive) ||
           options.contains(QLatin1String("{HEXFILEDOSPATH}"), Qt::CaseInsensitive);
}

bool isShortFormToken(const QString& token) {
    return isToken(token, "{FILENAMEDOSPATH}") || isToken(token, "{HEXFILEDOSPATH}");
}

QString selectProgrammerDevice(DeviceCombo& combo) { return selectDeviceForTools(combo); }

QString deviceTokenValue(const QString& token, const QString& entry) {
    // Each tool takes the device in its own form: with or without the PIC, in upper or lower case.
    if (isToken(token, "{DEVICENAME}"))
        return entry.mid(3);
    if (isToken(token, "{DEVICENAMELOWER}"))
        return entry.mid(3).toLower();
    if (isToken(token, "{DEVICEFULLNAME}"))
        return entry;
    if (isToken(token, "{DEVICEFULLNAMELOWER}"))
        return entry.toLower();
    return {};
}

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
    if (isToken(token, "{DEVICENAMELOWER}") || isToken(token, "{DEVICEFULLNAME}") ||
        isToken(token, "{DEVICEFULLNAMELOWER}")) {
        selectProgrammerDevice(devices);  // repairs the selection as {DeviceName} does
        return deviceTokenValue(token, devices.List(devices.ListIndex()));
    }
    if (isToken(token, "{SERIALPORT}"))
        return serialPortPath(setting(Key::Port));
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

QStringList templateArguments(const QString& options, const TokenValueFn& tokenValue) {
    // QProcess's rule: blanks separate, double quotes keep an argument together, tripled quotes give one.
    const QStringList words = QProcess::splitCommand(trimBlanks(options));
    if (!tokenValue)
        return words;
    QHash<QString, QString> known;
    const TokenValueFn once = [&](const QString& token) {
        const QString key = token.toUpper();
        if (const auto it = known.constFind(key); it != known.constEnd())
            return *it;
        return *known.insert(key, tokenValue(token));
    };
    QStringList args;
    for (QString word : words) {
        ExpandCommandLineTokens(word, once);
        // As a token with no value vanishes from a command line, so does the argument it was.
        if (!word.isEmpty())
            args << word;
    }
    return args;
}

ProgrammerCommand programmerCommand(const QString& pathName, const QString& options, const TokenValueFn& tokenValue) {
    return {trimBlanks(pathName), templateArguments(options, tokenValue)};
}

QString commandLineText(const ProgrammerCommand& command) {
    QStringList words;
    for (const QString& word : QStringList{command.program} + command.args) {
        if (!word.isEmpty() && !word.contains(QLatin1Char('"')) &&
            std::none_of(word.begin(), word.end(), [](QChar c) { return c.isSpace(); })) {
            words << word;
            continue;
        }
        QString quoted = word;
        quoted.replace(QLatin1Char('"'), QLatin1String("\"\"\""));
        words << QLatin1Char('"') + quoted + QLatin1Char('"');
    }
    return words.join(QLatin1Char(' '));
}
