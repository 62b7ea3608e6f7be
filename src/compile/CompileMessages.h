#pragma once
// The messages in a compile's output: the BASIC compiler's and the assembler's errors, warnings and notes,
// each with the file and line it names. Logic only: no widgets.

#include "compile/AsmTags.h"

#include <QString>
#include <QStringList>
#include <QStringView>
#include <functional>
#include <optional>
#include <vector>

struct CompileMessage {
    enum class Severity { Error, Warning, Note };
    Severity severity = Severity::Error;
    // The file the message is about, as a path of this machine; empty when the output names none (the
    // compiled source is meant then, and `line` still counts).
    QString file;
    int line = 0;        // 1-based; 0 when the message names no line
    QString text;        // the message without its prefix, file and line
    int outputLine = 0;  // its line in the output, 0-based
    // An assembler message shown at a BASIC line keeps the assembler's own place here; empty otherwise.
    QString asmFile;
    int asmLine = 0;
    bool operator==(const CompileMessage&) const = default;
};

// "2 errors, 1 warning"; "1 error"; "no errors". Notes are not counted.
QString messageCountText(const std::vector<CompileMessage>& messages);

// A message as the output states it: its file as the output names it (a DOS path, a name without a
// folder, ...), not looked up yet.
struct OutputMessage {
    CompileMessage message;
    // An assembler's message: its line is one of the .ASM file that the compiler wrote.
    bool fromAssembler = false;
    bool operator==(const OutputMessage&) const = default;
};

// The message one line of output (without its line end) holds, if any. The lines read:
//   ERROR Line 12: Bad expression. (blink.pbp)      the BASIC compilers; the file in brackets may be missing,
//   WARNING Line 3: ...   Fatal ...   ERROR: ...    and so may the line
//   Error BLINK.ASM 47 : [202] illegal character    the PM assembler
//   Error[113] C:\PBP\BLINK.ASM 47 : Symbol ...     MPASM, also Warning[..] and Message[..]
//   blink.asm:47:Error[113]   Symbol ...            gpasm
// ERROR, Error and Fatal are errors, WARNING and Warning warnings, Message notes. An assembler's text
// keeps its number in front: "[113] Symbol not previously defined".
std::optional<OutputMessage> parseMessageLine(QStringView line);

// Every message of a compile's output in order, each with its line there; lines end in CRLF, LF or CR.
std::vector<OutputMessage> parseOutputMessages(QStringView output);

// The messages with their files as paths of this machine: localFile maps a file as the output or an .ASM
// tag names it. An assembler message whose .ASM holds a tag at or above its line is shown at that tag's
// BASIC file and line and keeps its own place in asmFile and asmLine; tagsOf gives an .ASM file's tags
// (asmTagsOfFile reads them from the disk) and is asked once per file.
std::vector<CompileMessage> placeMessages(const std::vector<OutputMessage>& parsed,
                                          const std::function<QString(const QString&)>& localFile,
                                          const std::function<std::vector<AsmTag>(const QString&)>& tagsOf);
