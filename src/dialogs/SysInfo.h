#pragma once
// Starting the desktop's system information program from the about box.

#include <QStringList>

// The programs looked for on PATH, in order of preference.
QStringList sysInfoPrograms();

// Starts the first of them found, without waiting; when none is found or it cannot start, says that
// system information is unavailable.
void StartSysInfo();
