#pragma once
// Column and line positions over QScintilla's byte positions. A column counts UTF-16 units, as GetLine's
// string does, so a column taken from the text of a line indexes that same string.

#include <QString>

class QsciScintillaBase;

// A column past the line's end gives its end; a line past the last gives the last line.
long positionAt(const QsciScintillaBase& sci, int col, int line);
void columnAndLine(const QsciScintillaBase& sci, long pos, int& col, int& line);
// The text of a line without its line ending; empty for a line that doesn't exist.
QString lineText(const QsciScintillaBase& sci, int line);
int lineLength(const QsciScintillaBase& sci, int line);
