#include "document/Positions.h"

#include <Qsci/qsciscintillabase.h>
#include <algorithm>

using Sci = QsciScintillaBase;

namespace {

int clampLine(const QsciScintillaBase& sci, int line) {
    return std::clamp(line, 0, int(sci.SendScintilla(Sci::SCI_GETLINECOUNT)) - 1);
}

}  // namespace

long positionAt(const QsciScintillaBase& sci, int col, int line) {
    line = clampLine(sci, line);
    const long start = sci.SendScintilla(Sci::SCI_POSITIONFROMLINE, line);
    const long end = sci.SendScintilla(Sci::SCI_GETLINEENDPOSITION, line);
    if (col <= 0)
        return start;
    if (col >= sci.SendScintilla(Sci::SCI_COUNTCODEUNITS, start, end))
        return end;
    return sci.SendScintilla(Sci::SCI_POSITIONRELATIVECODEUNITS, start, col);
}

void columnAndLine(const QsciScintillaBase& sci, long pos, int& col, int& line) {
    line = int(sci.SendScintilla(Sci::SCI_LINEFROMPOSITION, pos));
    col = int(sci.SendScintilla(Sci::SCI_COUNTCODEUNITS, sci.SendScintilla(Sci::SCI_POSITIONFROMLINE, line), pos));
}

QString lineText(const QsciScintillaBase& sci, int line) {
    if (line < 0 || line >= sci.SendScintilla(Sci::SCI_GETLINECOUNT))
        return {};
    const long start = sci.SendScintilla(Sci::SCI_POSITIONFROMLINE, line);
    const long length = sci.SendScintilla(Sci::SCI_GETLINEENDPOSITION, line) - start;
    if (length <= 0)
        return {};
    const auto* text = reinterpret_cast<const char*>(sci.SendScintilla(Sci::SCI_GETRANGEPOINTER, start, length));
    return QString::fromUtf8(text, length);
}

int lineLength(const QsciScintillaBase& sci, int line) {
    if (line < 0 || line >= sci.SendScintilla(Sci::SCI_GETLINECOUNT))
        return 0;
    return int(sci.SendScintilla(Sci::SCI_COUNTCODEUNITS, sci.SendScintilla(Sci::SCI_POSITIONFROMLINE, line),
                                 sci.SendScintilla(Sci::SCI_GETLINEENDPOSITION, line)));
}
