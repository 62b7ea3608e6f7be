#pragma once
// The pieces of a program's lines that the program scanner and the folding read. A line holds statements
// split by ':' outside strings; a comment (', ; or the word REM) ends the line; a string runs to its closing
// quote or the line's end. Nothing carries from one line to the next, so any line can be read alone.
// Runs over every line of a large program at each re-scan: no allocation.

#include <QStringView>
#include <QVarLengthArray>

namespace lexer {

enum class Kind : unsigned char {
    Word,    // letters, digits and '_' from a letter or '_'; also '#' before a letter ("#CONFIG")
    Number,  // from a digit, over letters, digits and '_'
    String,  // with its quotes; the closing one may be missing
    Char,    // any other character but a blank
};

struct Piece {
    Kind kind = Kind::Char;
    int start = 0;  // column of the first character
    int end = 0;    // column behind the last
};

using Pieces = QVarLengthArray<Piece, 24>;

inline bool isAsciiLetter(char16_t c) { return (c | 0x20) >= u'a' && (c | 0x20) <= u'z'; }
inline bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool isWordStart(char16_t c);
bool isWordChar(char16_t c);

// True when the word equals the ASCII upper-case text, letter case ignored.
bool sameWord(QStringView word, const char* upper);

class LineLexer {
public:
    explicit LineLexer(QStringView line) : line_(line) {}
    // The next statement's pieces, in order, without its ':'. False when the line is used up.
    bool next(Pieces& out);
    // Behind the last statement read: where its ':' or the comment stands, or the line's end.
    int statementEnd() const { return end_; }
    // True when a ':' ended it (not a comment or the line's end).
    bool endedByColon() const { return end_ < line_.size() && line_[end_] == u':'; }
    QStringView text(const Piece& p) const { return line_.sliced(p.start, p.end - p.start); }
    QStringView text(int from, int to) const { return line_.sliced(from, to - from); }
    // The statement's text from a column to its end, blanks trimmed.
    QStringView rest(int from) const;

private:
    QStringView line_;
    int pos_ = 0;
    int end_ = 0;
    bool done_ = false;
};

// True for a statement that is a label: the first of its line, one word and a ':' ("main:"). A statement
// word makes no label ("CLEAR: x = 1"), nor does one of PicBasic Pro 3's words with a blank before the ':'
// ("LOOP : GOTO x"); without the blank ("loop:") it is the label that older programs use so often.
bool isLabel(const LineLexer& lex, const Pieces& pieces, bool firstOfLine);

// The first word of a line, or an empty view when the line starts otherwise.
QStringView firstWord(QStringView line);

// Calls onLine(index, line) for each line of the text, without its end (CR LF, LF or a lone CR). A text that
// ends in a line end has an empty last line, as an editor shows it.
template <class OnLine>
int forEachLine(QStringView text, OnLine&& onLine) {
    const char16_t* s = text.utf16();
    const qsizetype n = text.size();
    qsizetype start = 0;
    int index = 0;
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = s[i];
        if (c != u'\n' && c != u'\r')
            continue;
        onLine(index++, text.sliced(start, i - start));
        if (c == u'\r' && i + 1 < n && s[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    onLine(index++, text.sliced(start));
    return index;
}

}  // namespace lexer
