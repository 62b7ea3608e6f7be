#pragma once
// The device catalogue device.ide in the application directory: the device list and the port table.
// The file is read again at every call; nothing of it is kept but the list entries and Ports.

#include "core/DeviceCombo.h"

#include <QString>
#include <array>
#include <functional>

inline constexpr int kPortCount = 10;
using PortTable = std::array<int, kPortCount>;

// The marks of Ports' entries, in the order of the table: GPIO, PORTA .. PORTH, PORTJ.
extern const std::array<QString, kPortCount> kPortMarks;

// The catalogue's full path: "device.ide" in the application directory when there is one there, else
// the one in the installed data directory when that exists, else the application directory's (missing).
QString deviceCataloguePath();

// Fills the combo with the names of the device lines, in file order; with globals().UsePBP false only
// the lines that hold "PBC". Failures are reported through globals().prompts.
void GetDevices(DeviceCombo& combo);

// Reads the ports of the device selected in the combo into globals().Ports; then, with ReloadWords
// true and no failure, calls LoadReservedWords (the active document's, if any).
void GetDeviceData(DeviceCombo& combo, bool ReloadWords, const std::function<void()>& LoadReservedWords = {});

// The port marks of one upper-case device line, written into ports in table order. Throws a Failure at
// a mark without a digit behind it; the entries before that one are written already.
void readPortMarks(const QString& upperLine, PortTable& ports);
