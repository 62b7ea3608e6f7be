#pragma once
// The compile's own rules around its script: the device it is for and the options' "-oq". The script
// writers themselves are the platform's (RunpbScripts.h), since the compiler's host chooses among them.

#include "platform/RunpbScripts.h"

#include <QString>

class DeviceCombo;

// The device entry without its first three characters, the "PIC": PIC16F84 gives 16F84.
QString compilerDevice(const QString& entry);

// The device a compile is for: a selection outside the list, or none, becomes the first entry and stays
// selected; gives compilerDevice of the selected entry. An empty list has no entry to select: Failure 380.
QString selectCompileDevice(DeviceCombo& combo);

// The options rule of the compiler options' OK: "-ampasm" without "-oq" (letter case ignored) gives the
// text without blanks at either end, followed by " -oq"; anything else stays as typed.
QString optionsWithOq(const QString& options);

