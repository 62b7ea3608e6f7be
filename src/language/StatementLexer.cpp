#include "language/StatementLexer.h"

#include "language/ReservedWords.h"
#include "language/StatementTable.h"

#include <QChar>
#include <QSet>
#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace lexer {

namespace {

enum Class : unsigned char { Other, Blank, Letter, Digit, Quote, Comment, Colon, Hash };

constexpr std::array<unsigned char, 128> kClasses = [] {
    std::array<unsigned char, 128> t{};
    for (int c = 'a'; c <= 'z'; ++c)
        t[c] = t[c - 32] = Letter;
    for (int c = '0'; c <= '9'; ++c)
        t[c] = Digit;
    t['_'] = Letter;
    t[' '] = t['\t'] = Blank;
    t['"'] = Quote;
    t['\''] = t[';'] = Comment;
    t[':'] = Colon;
    t['#'] = Hash;
    return t;
}();

Class classOf(char16_t c) {
    if (c < 128)
        return Class(kClasses[c]);
    if (QChar::isSpace(c))
        return Blank;
    return QChar::isLetter(c) ? Letter : QChar::isNumber(c) ? Digit : Other;
}

struct Keyword {
    const char* text;
    Key key;
};

const Keyword kKeywordList[] = {
    {"IF", Key::If},         {"DO", Key::Do},           {"ASM", Key::Asm},         {"CON", Key::Con},
    {"VAR", Key::Var},       {"BIT", Key::Bit},         {"FOR", Key::For},         {"END", Key::End},
    {"BYTE", Key::Byte},     {"WORD", Key::Word},       {"LONG", Key::Long},       {"THEN", Key::Then},
    {"NEXT", Key::Next},     {"WEND", Key::Wend},       {"LOOP", Key::Loop},       {"GOSUB", Key::Gosub},
    {"WHILE", Key::While},   {"UNTIL", Key::Until},     {"ENDIF", Key::EndIf},     {"ENDASM", Key::EndAsm},
    {"DEFINE", Key::Define}, {"SYMBOL", Key::Symbol},   {"REPEAT", Key::Repeat},   {"SELECT", Key::Select},
    {"#CONFIG", Key::Config}, {"INCLUDE", Key::Include}, {"ENDSELECT", Key::EndSelect},
    {"#ENDCONFIG", Key::EndConfig},
};
constexpr qsizetype kLongestKeyword = 10;

// Looked up for every word of every line: the keywords by length and first letter.
struct KeywordTable {
    struct Entry {
        const char* text;
        Key key;
    };
    std::array<std::array<std::vector<Entry>, 64>, kLongestKeyword + 1> byLength;
    KeywordTable() {
        for (const Keyword& k : kKeywordList)
            byLength[std::strlen(k.text)][k.text[0] & 63].push_back({k.text, k.key});
    }
};


// REM is a comment; it is no keyword of the readers.
bool isRem(QStringView w) {
    return w.size() == 3 && (w[0].unicode() | 0x20) == u'r' && (w[1].unicode() | 0x20) == u'e' &&
           (w[2].unicode() | 0x20) == u'm';
}

// The keys of either compiler kind's statement table, and the words no table has a row for.
bool isStatementWord(const QString& upper) {
    static const QSet<QString> words = [] {
        QSet<QString> out;
        for (bool usePBP : {true, false}) {
            PBPCodeTable codes{};
            PBPDefineTable defines{};
            fillStatementTable(usePBP, codes, defines);
            for (const PBPCodeRow& row : codes)
                out.insert(row[kCodeKey].toUpper());
        }
        for (const char* w : {"DEFINE", "SYMBOL", "REM"})
            out.insert(QString::fromLatin1(w));
        return out;
    }();
    return words.contains(upper);
}

bool isPbp3Word(const QString& upper) {
    const std::vector<QString>& words = pbp3Words(true);
    return std::find(words.begin(), words.end(), upper) != words.end();
}

}  // namespace

bool isWordStart(char16_t c) { return classOf(c) == Letter; }

bool isWordChar(char16_t c) {
    const Class k = classOf(c);
    return k == Letter || k == Digit;
}

Key keyOf(QStringView word) {
    const qsizetype n = word.size();
    if (n < 2 || n > kLongestKeyword)
        return Key::None;
    char upper[kLongestKeyword];
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = word[i].unicode();
        if (c >= 128)
            return Key::None;
        upper[i] = char(c >= u'a' && c <= u'z' ? c - 32 : c);
    }
    static const KeywordTable table;
    for (const KeywordTable::Entry& e : table.byLength[n][upper[0] & 63])
        if (std::memcmp(e.text, upper, size_t(n)) == 0)
            return e.key;
    return Key::None;
}

bool LineLexer::next(Pieces& out) {
    out.clear();
    if (done_)
        return false;
    const qsizetype n = line_.size();
    const char16_t* s = line_.utf16();
    qsizetype i = pos_;
    auto finish = [&](qsizetype end, bool lineDone) {
        end_ = int(end);
        pos_ = int(end) + 1;
        done_ = lineDone;
        return true;
    };
    while (i < n) {
        const Class k = classOf(s[i]);
        if (k == Blank) {
            ++i;
            continue;
        }
        if (k == Comment)
            return finish(i, true);
        if (k == Colon)
            return finish(i, false);
        const qsizetype start = i;
        Piece piece;
        if (k == Quote) {
            piece.kind = Kind::String;
            const qsizetype close = line_.indexOf(u'"', i + 1);
            i = close < 0 ? n : close + 1;
        } else if (k == Letter || (k == Hash && i + 1 < n && classOf(s[i + 1]) == Letter)) {
            piece.kind = Kind::Word;
            ++i;
            while (i < n && (classOf(s[i]) == Letter || classOf(s[i]) == Digit))
                ++i;
            const QStringView word = line_.sliced(start, i - start);
            if (isRem(word))
                return finish(start, true);
            piece.key = keyOf(word);
        } else if (k == Digit) {
            piece.kind = Kind::Number;
            while (i < n && (classOf(s[i]) == Letter || classOf(s[i]) == Digit))
                ++i;
        } else {
            // A surrogate pair is one character.
            i += (QChar::isHighSurrogate(s[i]) && i + 1 < n && QChar::isLowSurrogate(s[i + 1])) ? 2 : 1;
        }
        piece.start = int(start);
        piece.end = int(i);
        out.push_back(piece);
    }
    return finish(n, true);
}

QStringView LineLexer::rest(int from) const {
    if (from >= end_)
        return {};
    return line_.sliced(from, end_ - from).trimmed();
}

bool isLabel(const LineLexer& lex, const Pieces& pieces, bool firstOfLine) {
    if (!firstOfLine || pieces.size() != 1 || pieces[0].kind != Kind::Word || !lex.endedByColon())
        return false;
    const QStringView word = lex.text(pieces[0]);
    if (word.startsWith(u'#'))
        return false;
    if (word.size() > 16)
        return true;  // longer than any statement word
    const QString upper = word.toString().toUpper();
    if (isStatementWord(upper))
        return false;
    return !isPbp3Word(upper) || pieces[0].end == lex.statementEnd();
}

Key firstKey(QStringView line) {
    const qsizetype n = line.size();
    qsizetype i = 0;
    while (i < n && classOf(line[i].unicode()) == Blank)
        ++i;
    const qsizetype start = i;
    if (i < n && line[i] == u'#')
        ++i;
    if (i >= n || classOf(line[i].unicode()) != Letter)
        return Key::None;
    while (i < n && isWordChar(line[i].unicode()))
        ++i;
    return keyOf(line.sliced(start, i - start));
}

}  // namespace lexer
