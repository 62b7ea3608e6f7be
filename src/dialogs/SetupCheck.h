#pragma once
// What a compile and a launch need of this machine, one row each: ok, missing (with the exact command or
// setting that fixes it) or not needed with these settings. Worked out from the settings' values and a
// probe of the machine, so that every row can be tried with a double.

#include <QList>
#include <QString>
#include <QStringList>

class SystemProbe;

// The settings the rows look at, gathered by whoever opens the check.
struct SetupInputs {
    QString compilerPath;     // the selected compiler kind's path, as stored
    QString compilerOptions;  // its command line options
    QString programmerKind;   // the programmer kind's name, as the options dialog lists it
    QString programmerPath;
    // The programmer's command line split into arguments, the serial port token given the terminal's port.
    QStringList programmerArgs;
    // The programmer's command line takes the terminal's port through its token.
    bool programmerTakesTerminalPort = false;
    QString terminalPort;  // the serial terminal's port as a full path; empty when none is chosen
};

enum class SetupState { Ok, Missing, NotNeeded };

struct SetupRow {
    QString what;    // "Compiler", "Wine prefix", ...
    SetupState state = SetupState::Ok;
    QString detail;  // what was found, or what is wrong
    QString fix;     // for a missing row: the command to run or the setting to change
};

QList<SetupRow> checkSetup(const SetupInputs& in, SystemProbe& probe);

// The serial ports the arguments name: each argument's part from "/dev/" on ("-c/dev/ttyACM0",
// "--port=/dev/ttyUSB0" and "/dev/ttyS0" alike).
QStringList portsNamedIn(const QStringList& args);

// The assembler an option of the compiler chooses ("-ampasm" gives "mpasm"); empty for none.
QString assemblerOption(const QString& compilerOptions);

// The rows as plain text, one line each, for a log or the clipboard.
QString setupReportText(const QList<SetupRow>& rows);
