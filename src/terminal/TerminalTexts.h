#pragma once
// The serial terminal's own texts: its status line and its messages.

#include "platform/SerialPort.h"

#include <QString>

struct Failure;

QString terminalTitle();
QString notConnectedText();
QString connectedText(const SerialSettings& s);
// The device went away while open; why is the system's text, may be empty.
QString vanishedText(const QString& port, const QString& why);
// Let go of while a programmer runs.
QString lentText(const QString& port);
// Not taken back after the programmer: the open's failure.
QString notRegainedText(const QString& port, const Failure& f);
// Why Connect failed, as its box says it; a port the user may not open names the group and the command.
QString openFailureText(const QString& port, const Failure& f);
QString noPortText();
QString badBaudText();
// The send field's hex that stops being hex at column (from 0).
QString notHexText(const QString& text, qsizetype column);
// The one command that lets a user open the serial ports.
QString dialoutCommand();
