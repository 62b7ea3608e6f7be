#pragma once
// The line tokeniser shared by the editing control's styling and GetTokenAt.
//
// Nothing carries from one line to the next (comments and strings end at the line end), so any line can
// be tokenised alone: the control styles only the lines on screen, and GetTokenAt reads one line.
// At each position, blanks first, which belong to no token (class 0); then the first rule that fits:
//  - a comment opener (either one): a comment (6) to the end of the line;
//  - the string delimiter: a string (7) up to and with the closing delimiter, or to the line end if unclosed;
//  - a letter or "_": a word of letters, digits and "_": its word set's class (10-15), else symbol (2);
//  - "#" before a letter or "_": such a word with its "#" ("#CONFIG") when that is reserved;
//  - a digit: a number (3); it runs on over letters, digits and "_", so "10ms" or "0x1F" stays one token;
//  - "$" before a hex digit, "%" before 0 or 1: a hex or binary number (3) of those digits;
//  - any other character alone: special (5), unless it is itself a reserved word, like "@".

#include <QChar>

namespace tokenizer_detail {

inline bool isBlank(QChar c) { return c == u' ' || c == u'\t' || (c.unicode() > 127 && c.isSpace()); }
inline bool isWordStart(QChar c) { return c == u'_' || c.isLetter(); }
inline bool isWordChar(QChar c) { return c == u'_' || c.isLetterOrNumber(); }
inline bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }
inline bool isHexDigit(QChar c) {
    return isDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}
inline bool isBinaryDigit(QChar c) { return c == u'0' || c == u'1'; }

inline bool opensAt(QStringView line, qsizetype i, const QString& opener) {
    if (opener.isEmpty() || line[i].toCaseFolded() != opener[0].toCaseFolded())
        return false;
    return opener.size() == 1 || line.sliced(i).startsWith(opener, Qt::CaseInsensitive);
}

}  // namespace tokenizer_detail

// The callback isn't named "emit": Qt defines that word away.
template <class Emit>
void tokenizeLine(const Language& lang, QStringView line, Emit&& onToken) {
    using namespace tokenizer_detail;
    const QString& comment1 = lang.SLCommentStart();
    const QString& comment2 = lang.SLCommentStart2();
    const QString& quote = lang.StringDelimiter();
    const qsizetype n = line.size();
    qsizetype i = 0;
    auto token = [&](int cls, qsizetype start, qsizetype end) {
        onToken(Token{cls, int(start), int(end - start)});
    };
    while (i < n) {
        const QChar c = line[i];
        if (isBlank(c)) {
            ++i;
            continue;
        }
        const qsizetype start = i;
        if (opensAt(line, i, comment1) || opensAt(line, i, comment2)) {
            token(TokenClass::Comment, start, n);
            return;
        }
        if (opensAt(line, i, quote)) {
            qsizetype close = line.indexOf(quote, i + quote.size(), Qt::CaseInsensitive);
            i = close < 0 ? n : close + quote.size();
            token(TokenClass::String, start, i);
            continue;
        }
        if (c == u'#' && i + 1 < n && isWordStart(line[i + 1])) {
            qsizetype end = i + 1;
            while (end < n && isWordChar(line[end]))
                ++end;
            if (const int reserved = lang.wordClass(line.sliced(start, end - start)); reserved >= 0) {
                i = end;
                token(reserved, start, i);
                continue;
            }
        }
        if (isWordStart(c)) {
            while (i < n && isWordChar(line[i]))
                ++i;
            const int reserved = lang.wordClass(line.sliced(start, i - start));
            token(reserved >= 0 ? reserved : TokenClass::Symbol, start, i);
            continue;
        }
        if (isDigit(c)) {
            while (i < n && isWordChar(line[i]))
                ++i;
            token(TokenClass::Number, start, i);
            continue;
        }
        if (i + 1 < n && ((c == u'$' && isHexDigit(line[i + 1])) || (c == u'%' && isBinaryDigit(line[i + 1])))) {
            const bool hex = c == u'$';
            ++i;
            while (i < n && (hex ? isHexDigit(line[i]) : isBinaryDigit(line[i])))
                ++i;
            token(TokenClass::Number, start, i);
            continue;
        }
        // A surrogate pair is one character.
        i += (c.isHighSurrogate() && i + 1 < n && line[i + 1].isLowSurrogate()) ? 2 : 1;
        const int reserved = lang.wordClass(line.sliced(start, i - start));
        token(reserved >= 0 ? reserved : TokenClass::Special, start, i);
    }
}
