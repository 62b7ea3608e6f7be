#pragma once
// The about box's texts: its version line and the column of binary digit rows that moves upward.

#include <QString>
#include <array>

inline constexpr int kBinScrollRows = 18;
using BinRows = std::array<QString, kBinScrollRows>;

// "Version: 1.7 Build: 1", the numbers unpadded.
QString aboutVersionText(int major, int minor, int revision);

// The rows as the box loads them: each row a rotation of one of four start texts.
BinRows startingBinRows();

// One tick: every row takes the text of the row below it; the top row's text goes to the bottom two.
void scrollBinRows(BinRows& rows);

// The caption of the compiler version label until a compile reports one.
QString pbpVersionStartText();
