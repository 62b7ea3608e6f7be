#include "document/SourceLexer.h"

#include "document/Language.h"

#include <QVarLengthArray>
#include <Qsci/qsciscintilla.h>
#include <algorithm>
#include <climits>
#include <cstring>

SourceLexer::SourceLexer(const Language& language, QObject* parent) : QsciLexerCustom(parent), lang_(language) {}

QString SourceLexer::description(int style) const {
    static const char* const names[16] = {"No token", "Unused 1", "Symbol", "Number", "Unused 4", "Special",
                                          "Comment", "String", "Unused 8", "Unused 9", "Statements",
                                          "Defines", "Variable sizes", "Math", "Logic", "Modifiers"};
    return style >= 0 && style < 16 ? QString::fromLatin1(names[style]) : QString();
}

long SourceLexer::send(unsigned msg, unsigned long w, long l) const { return editor()->SendScintilla(msg, w, l); }

void SourceLexer::checkLanguage() {
    if (languageSeen_ && generation_ == lang_.generation())
        return;
    if (languageSeen_ && editor())
        stale_.add(0, int(send(QsciScintillaBase::SCI_GETLINECOUNT)));
    generation_ = lang_.generation();
    languageSeen_ = true;
}

std::pair<int, int> SourceLexer::window() const {
    const int top = int(send(QsciScintillaBase::SCI_DOCLINEFROMVISIBLE, send(QsciScintillaBase::SCI_GETFIRSTVISIBLELINE)));
    const int page = std::max(1, int(send(QsciScintillaBase::SCI_LINESONSCREEN)));
    const int lines = int(send(QsciScintillaBase::SCI_GETLINECOUNT));
    return {std::max(0, top - page), std::min(lines - 1, top + 2 * page)};
}

void SourceLexer::styleText(int start, int end) {
    if (!editor())
        return;
    checkLanguage();
    const int first = int(send(QsciScintillaBase::SCI_LINEFROMPOSITION, start));
    const int last = int(send(QsciScintillaBase::SCI_LINEFROMPOSITION, std::max(start, end - 1)));
    // From here on QScintilla asks again for whatever comes on screen, so older records (which an edit
    // may have shifted off their lines) are dropped.
    stale_.remove(first, INT_MAX);
    const auto [wFirst, wLast] = window();
    const int a = std::max(first, wFirst), b = std::min(last, wLast);
    if (a > b) {
        stale_.add(first, last + 1);
    } else {
        stale_.add(first, a);
        stale_.add(b + 1, last + 1);
        styleLines(a, b);
    }
    // QScintilla counts the whole range as styled; the skipped lines wait in stale_.
    const int lines = int(send(QsciScintillaBase::SCI_GETLINECOUNT));
    const long after = last + 1 < lines ? send(QsciScintillaBase::SCI_POSITIONFROMLINE, last + 1)
                                        : send(QsciScintillaBase::SCI_GETLENGTH);
    send(QsciScintillaBase::SCI_STARTSTYLING, after);
}

void SourceLexer::restyleVisible() {
    if (!editor())
        return;
    checkLanguage();
    if (stale_.empty())
        return;
    // Lines from the end of styling on are QScintilla's to ask for; only those before it can be stale here.
    const long endStyled = send(QsciScintillaBase::SCI_GETENDSTYLED);
    const int styledLines = int(send(QsciScintillaBase::SCI_LINEFROMPOSITION, endStyled));
    const auto [wFirst, wLast] = window();
    for (const auto& [a, b] : stale_.within(wFirst, std::min(wLast + 1, styledLines)))
        styleLines(a, b - 1);
    // Styling moved the end of styling back; everything behind it was styled before.
    send(QsciScintillaBase::SCI_STARTSTYLING, endStyled);
}

void SourceLexer::styleAll() {
    if (!editor())
        return;
    checkLanguage();
    stale_.clear();
    styleLines(0, int(send(QsciScintillaBase::SCI_GETLINECOUNT)) - 1);
}

void SourceLexer::styleLines(int first, int last) {
    const int lines = int(send(QsciScintillaBase::SCI_GETLINECOUNT));
    first = std::max(first, 0);
    last = std::min(last, lines - 1);
    if (first > last)
        return;
    const long startPos = send(QsciScintillaBase::SCI_POSITIONFROMLINE, first);
    const long endPos = last + 1 < lines ? send(QsciScintillaBase::SCI_POSITIONFROMLINE, last + 1)
                                         : send(QsciScintillaBase::SCI_GETLENGTH);
    const long length = endPos - startPos;
    styles_.fill(0, length);
    if (length > 0) {
        const char* text = reinterpret_cast<const char*>(
            send(QsciScintillaBase::SCI_GETRANGEPOINTER, startPos, length));
        QVarLengthArray<char16_t, 256> wide;
        QVarLengthArray<int, 256> byteAt;  // byte offset of each UTF-16 unit, and one past the end
        QString decoded;
        for (int line = first; line <= last; ++line) {
            const long lineStart = send(QsciScintillaBase::SCI_POSITIONFROMLINE, line) - startPos;
            const long lineEnd = send(QsciScintillaBase::SCI_GETLINEENDPOSITION, line) - startPos;
            const char* bytes = text + lineStart;
            const int n = int(lineEnd - lineStart);
            char* out = styles_.data() + lineStart;
            bool ascii = true;
            for (int i = 0; i < n && ascii; ++i)
                ascii = static_cast<unsigned char>(bytes[i]) < 0x80;
            if (ascii) {
                // Columns are bytes: widen in place, no allocation.
                wide.resize(n);
                for (int i = 0; i < n; ++i)
                    wide[i] = char16_t(bytes[i]);
                tokenizeLine(lang_, QStringView(wide.constData(), n), [&](const Token& t) {
                    std::memset(out + t.start, t.cls, size_t(t.length));
                });
            } else {
                decoded = QString::fromUtf8(bytes, n);
                byteAt.resize(decoded.size() + 1);
                int b = 0;
                for (qsizetype i = 0; i < decoded.size(); ++i) {
                    byteAt[i] = b;
                    const char16_t c = decoded[i].unicode();
                    if (QChar::isLowSurrogate(c))
                        continue;  // its pair's four bytes were counted at the high half
                    b += c < 0x80 ? 1 : c < 0x800 ? 2 : QChar::isHighSurrogate(c) ? 4 : 3;
                }
                byteAt[decoded.size()] = b;
                tokenizeLine(lang_, decoded, [&](const Token& t) {
                    const int from = byteAt[t.start], to = byteAt[t.start + t.length];
                    std::memset(out + from, t.cls, size_t(to - from));
                });
            }
        }
    }
    send(QsciScintillaBase::SCI_STARTSTYLING, startPos);
    editor()->SendScintilla(QsciScintillaBase::SCI_SETSTYLINGEX, length, styles_.constData());
    stale_.remove(first, last + 1);
    linesStyled_ += last - first + 1;
}
