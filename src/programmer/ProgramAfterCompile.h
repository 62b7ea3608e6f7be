#pragma once
// Compile and Program: whether a compile that has ended may hand its hex file to the programmer, and if
// not, the line that says why. Logic only.

#include <QString>
#include <optional>

struct CompileResult {
    bool errorLine = false;         // the output holds a line with "ERROR" in it
    std::optional<int> exitStatus;  // none when the compiler left none
    QString source;                 // the compiled document's path
    QString hexFile;                // the hex file the programmer would be given
};

// None when the programmer may start: no error line, exit status 0, and a hex file no older than the
// source. Otherwise the reason, the first that holds in that order.
std::optional<QString> notProgrammedReason(const CompileResult& result);
