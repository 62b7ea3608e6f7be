#pragma once
// The words each of the six word sets of a document's tokeniser holds, per compiler kind.

#include "language/StatementTable.h"

#include <QString>
#include <array>
#include <vector>

// The word sets, by the token class their words get (10 + set).
namespace WordSet {
inline constexpr int Statements = 0, Defines = 1, VarSize = 2, Math = 3, Logic = 4, Modifiers = 5;
}

struct ReservedWord {
    int set = WordSet::Statements;
    QString word;
    bool operator==(const ReservedWord&) const = default;
};

// GPIO, PORTA .. PORTH, PORTJ: the digit read for each port of the device, 0 when it lacks the port.
using PortDigits = std::array<int, 10>;

// Every word to add after clearing the sets, in the order of adding: the table's keys up to the first
// blank one (untrimmed), then for PicBasic Pro the DEFINE names, the sizes, math, logic, the output
// modifiers and the device's port words; for PicBasic "Symbol", its math and logic words and no ports.
std::vector<ReservedWord> reservedWords(bool usePBP, const PBPCodeTable& codes, const PBPDefineTable& defines,
                                        const PortDigits& ports);

// The PicBasic Pro output modifiers: BIN, DEC and HEX in their plain, I, S and IS forms, with the widths
// the compiler knows (binary to 16, decimal to 5, hexadecimal to 4), then REP and STR.
const std::vector<QString>& pbpModifiers();

// The statement words PicBasic Pro 3 added, which the statement table has no rows for: coloured as
// statements and offered by completion, for PicBasic Pro only (empty for PicBasic).
const std::vector<QString>& pbp3Words(bool usePBP);
