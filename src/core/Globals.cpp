#include "core/Globals.h"

#include <algorithm>

Globals& globals() {
    static Globals g;
    return g;
}

void Globals::addWindow(QWidget* w) {
    if (std::find(loadedWindows.begin(), loadedWindows.end(), w) == loadedWindows.end())
        loadedWindows.push_back(w);
}

void Globals::removeWindow(QWidget* w) {
    loadedWindows.erase(std::remove(loadedWindows.begin(), loadedWindows.end(), w), loadedWindows.end());
}

void Globals::reset() {
    UsePBP = true;
    Ports.fill(0);
    for (auto& row : PBPCodes)
        row.fill(QString());
    PBPDefines.fill(QString());
    ClickedTokenClass = 0;
    runningCompiles.clear();
    wine = {};
    loadedWindows.clear();
}
