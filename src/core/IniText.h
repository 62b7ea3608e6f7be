#pragma once
// The settings file's text. Plain "key=value" lines under "[Section]" headers, read as they stand: a value
// is everything behind the first "=" of its line, so what a user types by hand (";", "\", quotes, commas,
// blanks) means just that. Only a value holding a line break can't stand on one line; it is written in an
// escaped form that a hand-typed value does not take by chance.

#include <QByteArray>
#include <QMap>
#include <QString>

// "Section/Key" -> value.
using IniEntries = QMap<QString, QString>;

// Lines that are empty, start with ";" or "#", or hold no "=" outside a header, are passed over. A key
// outside any section goes under "General". Line ends may be LF, CR LF or CR.
IniEntries parseIniText(const QByteArray& utf8);
QByteArray iniText(const IniEntries& entries);
