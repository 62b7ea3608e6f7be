#include "language/StatementLexer.h"

#include "language/ReservedWords.h"
#include "language/StatementTable.h"

#include <QChar>
#include <QSet>
#include <algorithm>

namespace lexer {

namespace {

bool isBlank(char16_t c) { return c == u' ' || c == u'\t' || (c > 127 && QChar::isSpace(c)); }

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

bool isWordStart(char16_t c) { return isAsciiLetter(c) || c == u'_' || (c > 127 && QChar::isLetter(c)); }

bool isWordChar(char16_t c) {
    return isAsciiLetter(c) || isDigit(c) || c == u'_' || (c > 127 && QChar::isLetterOrNumber(c));
}

bool sameWord(QStringView word, const char* upper) {
    qsizetype i = 0;
    for (; upper[i]; ++i) {
        if (i >= word.size())
            return false;
        char16_t c = word[i].unicode();
        if (c >= u'a' && c <= u'z')
            c = char16_t(c - 32);
        if (c != char16_t(static_cast<unsigned char>(upper[i])))
            return false;
    }
    return i == word.size();
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
        const char16_t c = s[i];
        if (isBlank(c)) {
            ++i;
            continue;
        }
        if (c == u'\'' || c == u';')
            return finish(i, true);
        if (c == u':')
            return finish(i, false);
        const qsizetype start = i;
        Kind kind = Kind::Char;
        if (c == u'"') {
            kind = Kind::String;
            ++i;
            while (i < n && s[i] != u'"')
                ++i;
            if (i < n)
                ++i;
        } else if (isWordStart(c) || (c == u'#' && i + 1 < n && isWordStart(s[i + 1]))) {
            kind = Kind::Word;
            ++i;
            while (i < n && isWordChar(s[i]))
                ++i;
            if (sameWord(line_.sliced(start, i - start), "REM"))
                return finish(start, true);
        } else if (isDigit(c)) {
            kind = Kind::Number;
            while (i < n && isWordChar(s[i]))
                ++i;
        } else {
            // A surrogate pair is one character.
            i += (QChar::isHighSurrogate(c) && i + 1 < n && QChar::isLowSurrogate(s[i + 1])) ? 2 : 1;
        }
        out.append(Piece{kind, int(start), int(i)});
    }
    return finish(n, true);
}

QStringView LineLexer::rest(int from) const {
    if (from >= end_)
        return {};
    return line_.sliced(from, end_ - from).trimmed();
}

QStringView firstWord(QStringView line) {
    const qsizetype n = line.size();
    qsizetype i = 0;
    while (i < n && isBlank(line[i].unicode()))
        ++i;
    const qsizetype start = i;
    if (i < n && line[i] == u'#')
        ++i;
    if (i >= n || !isWordStart(line[i].unicode()))
        return {};
    while (i < n && isWordChar(line[i].unicode()))
        ++i;
    return line.sliced(start, i - start);
}

}  // namespace lexer
