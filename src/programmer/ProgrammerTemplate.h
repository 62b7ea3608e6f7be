#pragma once
// The programmer kinds and the rules that turn a kind's path and command line template into a launch:
// the brace tokens, the hex file name, the programmer's directory and the split into arguments.

#include "core/Settings.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

class DeviceCombo;
class ProgramHost;

// One programmer kind with its own two keys, so that switching kinds loses nothing.
struct ProgrammerKind {
    Key pathKey;
    Key optionsKey;
    QString name;    // as the options dialog lists it
    QString filter;  // the browse filter, "description|pattern|..."
};

inline constexpr int kProgrammerKinds = 4;
// 0 EPICWin, 1 melabs Loader, 2 PicStart Plus (MPLAB), 3 Other; anything else none.
std::optional<ProgrammerKind> programmerKindAt(int type);

// The document's path up to and including the first "." of its file name, then "hex"; a name without a
// dot gets ".hex" added. Folders are never cut: /home/ann.lee/led/a.b.bas gives /home/ann.lee/led/a.hex.
QString hexFileName(const QString& pathName);
// The template holds a token for the hex file, in any letter case.
bool namesHexFile(const QString& options);

// The entry selected in the device list, from its fourth character on (PIC16F84 gives 16F84). A list
// without a selection, or with one past its end, selects its first entry; an empty list is a Failure.
QString selectProgrammerDevice(DeviceCombo& combo);

// Gives the value of one brace token, braces included.
using TokenValueFn = std::function<QString(const QString& token)>;

// The device forms the command line tokens give for a device list entry such as PIC16F628A:
// {DeviceName} 16F628A, {DeviceNameLower} 16f628a, {DeviceFullName} PIC16F628A, {DeviceFullNameLower}
// pic16f628a. Empty for a token that is none of these.
QString deviceTokenValue(const QString& token, const QString& entry);

// The token values for a programmer that runs on host: the Win tokens the whole paths as it reads them,
// the DOS tokens GetDosPath with the host (which reports a missing file itself and gives the empty
// string), the device tokens the selected device in their forms, {SerialPort} the serial terminal's port
// as a full path. Unknown tokens give "".
QString TokenValue(const QString& token, const QString& pathName, DeviceCombo& devices, ProgramHost& host);

// One of the two tokens whose value is a short form: empty when its file isn't there.
bool isShortFormToken(const QString& token);

// Replaces the tokens of a text in place, each token's value worked out once through tokenValue.
void ExpandCommandLineTokens(QString& options, const TokenValueFn& tokenValue);

// The directory to run the programmer in: the text before the last separator of its path name; none for a
// path without one (the launch then goes by the platform's search).
std::optional<QString> programmerDirectory(const QString& pathName);

// The arguments of a template: first split as a command line (blanks separate, double quotes keep one
// argument together, three in a row give one quote), then the tokens replaced within each argument, so a
// value stays within its argument whatever blanks or quotes it holds. Each token is worked out once for
// the whole template; an argument that comes out empty is dropped, as a token with no value vanishes.
// Without tokenValue the words are taken as they stand.
QStringList templateArguments(const QString& options, const TokenValueFn& tokenValue = {});

// What is started: the program's path (blanks allowed) and the template's arguments. No shell sees any
// of it.
struct ProgrammerCommand {
    QString program;
    QStringList args;
};
ProgrammerCommand programmerCommand(const QString& pathName, const QString& options,
                                    const TokenValueFn& tokenValue = {});

// The command as one line for people to read: a word with a blank or a quote, and an empty one, stands in
// double quotes, each quote in it tripled, so that the line splits back into the same words.
QString commandLineText(const ProgrammerCommand& command);
