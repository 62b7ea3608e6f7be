#pragma once
// The statement table of the active compiler kind (key, syntax, tip per row) and the DEFINE names:
// how they are filled, when they no longer fit the compiler kind, and the tip for a word under the caret.

#include "core/Globals.h"

#include <QString>
#include <QStringView>
#include <array>
#include <optional>

using PBPCodeRow = std::array<QString, 3>;
using PBPCodeTable = std::array<PBPCodeRow, kPBPCodeRows>;
using PBPDefineTable = std::array<QString, kPBPDefineCount>;

// Columns of a row.
inline constexpr int kCodeKey = 0, kCodeSyntax = 1, kCodeTip = 2;
// Rows the PicBasic table writes; the rows behind them keep what they held.
inline constexpr int kPBCCodeRows = 40;

// PicBasic Pro: all rows and all DEFINE names. PicBasic: its rows over the first ones only; the rows
// behind them and the DEFINE names stay as they were.
void fillStatementTable(bool usePBP, PBPCodeTable& codes, PBPDefineTable& defines);

// True when the table's first key says it was filled for this compiler kind ("@" for PicBasic Pro,
// anything else for PicBasic). False means: refill, reload the word sets, redraw.
bool statementTableFits(bool usePBP, const PBPCodeTable& codes);

// The first row whose key equals the word, case ignored; null when no row has it.
const PBPCodeRow* statementRow(QStringView word, const PBPCodeTable& codes);

// The tip of the first row whose key equals the word, case ignored; nullopt when no row has it.
// Runs on every caret move: no allocation.
std::optional<QString> statementTip(QStringView word, const PBPCodeTable& codes);

// The tip panel's next text for the token under the caret, the token given as class, start and length
// within its line: empty for a token that isn't a statement word (class 10), the row's tip for one that
// is, nullopt when no row has it and the panel keeps its text.
std::optional<QString> caretTip(int tokenClass, QStringView line, int start, int length, const PBPCodeTable& codes);

// The call tip beside the caret (a column of the line): when the text left of it is a statement word and
// one blank, outside comments and strings, the syntax of the word's row; nullopt when there is none (no
// such word, no row, or a row without syntax).
std::optional<QString> callTip(QStringView line, int caret, const PBPCodeTable& codes);
