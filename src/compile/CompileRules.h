#pragma once
// The rules of a compile that have a number, a text or an order in them: which settings a compiler kind
// reads, what the output's banner and error lines are, when the wait ends.

#include "core/Settings.h"

#include <QString>
#include <optional>

class QIODevice;

// The two compilers and their own keys, so that switching kinds loses nothing.
struct CompilerKind {
    Key pathKey;
    Key optionsKey;
    QString panelText;  // "PBP" or "PBC", as the status bar's third panel shows it
};

// "0" is PicBasic Pro, "1" PicBasic; only these exact texts select a compiler.
std::optional<CompilerKind> compilerKindOf(const QString& compilerType);
// By list index of the compiler options: 0 PicBasic Pro, 1 PicBasic, anything else none.
std::optional<CompilerKind> compilerKindAt(int index);
// The third panel's text for the compiler kind of the whole system.
QString compilerPanelText(bool usePBP);

// The compiler's banner as the about box shows it, in upper case: from "PICBASIC" on, as long as the text up
// to and including the character behind the first comma of the whole output; empty without a banner.
QString compilerVersionText(const QString& output);

// Reads line by line from the top and stops at the first line that holds "ERROR" in any letter case.
bool hasErrorLine(QIODevice& in);

// The script's exit status when the compiler could not be run at all: 126 not executable, 127 not found
// (the shell's numbers, also when wine is the one missing).
bool compilerCouldNotRun(std::optional<int> exitStatus);

// A compile waits this many ticks of one second for its output.
inline constexpr int kCompileWaitTicks = 30;
// True once the wait count, after the tick's own increment, has reached the limit.
inline bool compileTimedOut(int waitCount) { return waitCount >= kCompileWaitTicks; }
