#pragma once
// The system's shared state: one object that every part can reach and every test can reset.

#include "platform/SerialPortHandover.h"
#include "platform/Wine.h"

#include <QString>
#include <QtGlobal>
#include <array>
#include <vector>

class QObject;
class QWidget;
class Prompts;
class Launcher;
class Paths;

inline constexpr int kPBPCodeRows = 97;
inline constexpr int kPBPDefineCount = 66;

struct Globals {
    // True for the PicBasic Pro compiler, false for PicBasic; one value for the whole system.
    bool UsePBP = true;
    // Ports of the selected device: GPIO, PORTA..PORTH, PORTJ.
    std::array<int, 10> Ports{};
    // The statement table, rows 1..97 at 0..96, columns key, syntax, tip.
    std::array<std::array<QString, 3>, kPBPCodeRows> PBPCodes{};
    std::array<QString, kPBPDefineCount> PBPDefines{};
    // Token class under the last mouse button release in any document.
    qint32 ClickedTokenClass = 0;
    // The compiles that wait for their output now, in any document (each a CompileSession), in the
    // order they started; each holds its own script and output file while it waits.
    std::vector<QObject*> runningCompiles;
    // What the wine host keeps between runs: the lasting server the compiles use, wine's short forms.
    WineState wine;
    // The serial ports held open in this process, lent to a programmer that names one.
    SerialPortHandover serialPorts;

    // Loaded top-level windows in loading order: index 0 the frame, then documents and dialogs.
    std::vector<QWidget*> loadedWindows;

    // Platform services; tests put doubles here.
    Prompts* prompts = nullptr;
    Launcher* launcher = nullptr;
    Paths* paths = nullptr;

    void addWindow(QWidget* w);
    void removeWindow(QWidget* w);

    // Back to the state of a fresh start; platform services stay.
    void reset();
};

Globals& globals();
