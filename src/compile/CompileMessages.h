#pragma once
// The messages in a compile's output: the BASIC compiler's and the assembler's errors, warnings and notes,
// each with the file and line it names. Logic only: no widgets.

#include <QString>
#include <QStringList>
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
