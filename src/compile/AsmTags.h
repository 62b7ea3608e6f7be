#pragma once
// The tags the BASIC compiler leaves in its .ASM output: a comment before the code of each statement
// that names the statement's file and line,
//   ; C:\PBP\BLINK~1.PBP<tab>00012<tab>HIGH PORTB.0
// so that an assembler's message about an .ASM line leads back to the BASIC line. Logic only.

#include <QByteArrayView>
#include <QString>
#include <vector>

struct AsmTag {
    int asmLine = 0;  // the tag's own line in the .ASM, 1-based
    QString file;     // the BASIC file as the compiler named it
    int line = 0;     // the statement's line in that file, 1-based
    bool operator==(const AsmTag&) const = default;
};

// The tags of an .ASM text in the order of their lines. Lines end in LF or CRLF, as the assemblers count
// them; a name that isn't UTF-8 is read as Latin-1.
std::vector<AsmTag> readAsmTags(QByteArrayView text);
// The tags of an .ASM file; none when it can't be read.
std::vector<AsmTag> asmTagsOfFile(const QString& path);
// The nearest tag at or above asmLine; null when there is none.
const AsmTag* tagAbove(const std::vector<AsmTag>& tags, int asmLine);
