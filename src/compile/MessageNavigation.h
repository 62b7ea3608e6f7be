#pragma once
// Going from a compile's messages to their lines: which file a message leads to, which message an output
// line shows, the next and the previous message, and how a message's line is tagged. Logic only.

#include "compile/CompileMessages.h"

#include <QString>
#include <vector>

// The file a message leads to: the compiled source when it names none; a name without a folder, or a
// relative one, taken in the source's folder, where the compiler looked for its INCLUDEs.
QString messageFilePath(const CompileMessage& message, const QString& sourcePath);
// The message shown on an output line (from 0); -1 for a line that shows none.
int messageAtLine(const std::vector<CompileMessage>& messages, int outputLine);
// The message after current, or before it, going round at either end; from none (-1) the first, or the
// last. -1 when there are no messages.
int stepMessage(const std::vector<CompileMessage>& messages, int current, bool forward);
// The word in front of a message's output line: "error", "warning", "note".
QString messageTag(CompileMessage::Severity severity);
// The line under an assembler message that is shown at its BASIC line: where that is. Empty for any
// other message.
QString mappedLineNote(const CompileMessage& message);
