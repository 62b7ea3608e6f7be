#pragma once
// The pieces of a program's lines that the program scanner and the folding read. A line holds statements
// split by ':' outside strings; a comment (', ; or the word REM) ends the line; a string runs to its closing
// quote or the line's end. Nothing carries from one line to the next, so any line can be read alone.
// Runs over every line of a large program at each re-scan: no allocation per line, and each word is told apart
// from the few keywords the readers look for once, as it is read.

#include <QStringView>
#include <vector>

namespace lexer {

enum class Kind : unsigned char {
    Word,    // letters, digits and '_' from a letter or '_'; also '#' before a letter ("#CONFIG")
    Number,  // from a digit, over letters, digits and '_'
    String,  // with its quotes; the closing one may be missing
    Char,    // any other character but a blank
};

// The words the scanner and the folding act on, whatever their letter case.
enum class Key : unsigned char {
    None, Asm, EndAsm, Config, EndConfig, Include, Define, Symbol, Con, Var, Gosub, Bit, Byte, Word, Long,
    If, Then, For, Next, While, Wend, Do, Loop, Repeat, Until, Select, End, EndIf, EndSelect,
};

struct Piece {
    Kind kind = Kind::Char;
    Key key = Key::None;
    int start = 0;  // column of the first character
    int end = 0;    // column behind the last
};

// Kept by the reader from line to line, so that it grows once.
using Pieces = std::vector<Piece>;

inline bool isAsciiLetter(char16_t c) { return (c | 0x20) >= u'a' && (c | 0x20) <= u'z'; }
inline bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool isWordStart(char16_t c);
bool isWordChar(char16_t c);

// The keyword a word is; Key::None for any other.
Key keyOf(QStringView word);

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
    // True when the piece is this one character.
    bool is(const Piece& p, char16_t c) const { return p.kind == Kind::Char && p.end == p.start + 1 && line_[p.start] == c; }
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

// The keyword that starts a line, Key::None when it starts otherwise.
Key firstKey(QStringView line);

// Calls onLine(index, line) for each line of the text, without its end (CR LF, LF or a lone CR). A text that
// ends in a line end has an empty last line, as an editor shows it. Gives the number of lines.
template <class OnLine>
int forEachLine(QStringView text, OnLine&& onLine) {
    int index = 0;
    qsizetype start = 0;
    const bool anyCr = text.contains(u'\r');
    for (;;) {
        // Line feeds are found a block at a time; a lone CR is rare and looked for within the line.
        qsizetype lf = text.indexOf(u'\n', start);
        const bool found = lf >= 0;
        if (!found)
            lf = text.size();
        QStringView line = text.sliced(start, lf - start);
        if (anyCr) {
            if (found && line.endsWith(u'\r'))
                line.chop(1);
            for (qsizetype cr; (cr = line.indexOf(u'\r')) >= 0; line = line.sliced(cr + 1))
                onLine(index++, line.first(cr));
        }
        onLine(index++, line);
        if (!found)
            return index;
        start = lf + 1;
    }
}

}  // namespace lexer
