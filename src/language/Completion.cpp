#include "language/Completion.h"

#include "language/StatementLexer.h"
#include "language/StatementTable.h"

#include <algorithm>

namespace {

char16_t upper(char16_t c) {
    if (c >= u'a' && c <= u'z')
        return char16_t(c - 32);
    return c < 128 ? c : QChar::toUpper(c);
}

int compareNoCase(QStringView a, QStringView b) {
    const qsizetype n = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t x = upper(a[i].unicode()), y = upper(b[i].unicode());
        if (x != y)
            return x < y ? -1 : 1;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

// A word one can type: "ADC_SAMPLEUS 50" and "@" are not.
bool typable(const QString& w) {
    if (w.isEmpty() || !(lexer::isWordStart(w[0].unicode()) || (w[0] == u'#' && w.size() > 1)))
        return false;
    return std::all_of(w.begin() + 1, w.end(), [](QChar c) { return lexer::isWordChar(c.unicode()); });
}

void sortUnique(std::vector<QString>& words) {
    std::stable_sort(words.begin(), words.end(), [](const QString& a, const QString& b) { return completionLess(a, b); });
    words.erase(std::unique(words.begin(), words.end(),
                            [](const QString& a, const QString& b) { return compareNoCase(a, b) == 0; }),
                words.end());
}

}  // namespace

std::optional<int> completionStart(QStringView line, int caret) {
    if (caret < 0 || caret > line.size())
        return std::nullopt;
    // The caret stands in a comment when the statements read up to it end before it.
    lexer::LineLexer lex(line.first(caret));
    lexer::Pieces pieces;
    lexer::Piece last{lexer::Kind::Char, lexer::Key::None, 0, 0};
    bool any = false;
    while (lex.next(pieces)) {
        if (!pieces.empty()) {
            last = pieces.back();
            any = true;
        }
    }
    if (lex.statementEnd() < caret)
        return std::nullopt;
    if (!any || last.end != caret)
        return caret;
    if (last.kind == lexer::Kind::String)
        return last.end - last.start > 1 && line[last.end - 1] == u'"' ? std::optional<int>(caret) : std::nullopt;
    return last.kind == lexer::Kind::Word ? last.start : caret;
}

bool completionLess(QStringView a, QStringView b) { return compareNoCase(a, b) < 0; }

void CompletionWords::setLanguage(bool usePBP, const PortDigits& ports) {
    if (built_ && usePBP == usePBP_ && ports == ports_)
        return;
    built_ = true;
    usePBP_ = usePBP;
    ports_ = ports;
    ++builds_;
    // A table of its own: the shared one may still hold the other kind's rows behind PicBasic's.
    PBPCodeTable codes{};
    PBPDefineTable defines{};
    fillStatementTable(usePBP, codes, defines);
    words_.clear();
    for (const ReservedWord& w : reservedWords(usePBP, codes, defines, ports))
        if (typable(w.word))
            words_.push_back(w.word);
    for (const QString& w : pbp3Words(usePBP))
        words_.push_back(w);
    sortUnique(words_);
}

std::vector<QString> CompletionWords::words(const std::vector<ProgramSymbol>& program) const {
    std::vector<QString> own;
    own.reserve(program.size());
    for (const ProgramSymbol& s : program)
        if (s.kind != SymbolKind::Include && s.kind != SymbolKind::Define && typable(s.name))
            own.push_back(s.name);
    sortUnique(own);
    std::vector<QString> out;
    out.reserve(words_.size() + own.size());
    auto a = words_.cbegin();
    auto b = own.cbegin();
    while (a != words_.cend() || b != own.cend()) {
        const int c = a == words_.cend() ? 1 : b == own.cend() ? -1 : compareNoCase(*a, *b);
        if (c <= 0) {
            out.push_back(*a++);
            if (c == 0)
                ++b;
        } else {
            out.push_back(*b++);
        }
    }
    return out;
}

QString completionText(QStringView typedPrefix, const QString& word) {
    bool letters = false;
    for (QChar c : typedPrefix) {
        if (c.isUpper())
            return word;
        letters = letters || c.isLower();
    }
    return letters ? word.toLower() : word;
}
