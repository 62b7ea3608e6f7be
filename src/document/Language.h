#pragma once
// What the tokeniser is told about a dialect: comment openers, the string delimiter, six word sets.
// Plain logic, no widgets: tested directly.

#include <QHash>
#include <QString>
#include <QStringView>

class Language {
public:
    void setSLCommentStart(const QString& s) { comment1_ = s; ++generation_; }
    void setSLCommentStart2(const QString& s) { comment2_ = s; ++generation_; }
    void setStringDelimiter(const QString& s) { stringDelimiter_ = s; ++generation_; }
    QString SLCommentStart() const { return comment1_; }
    QString SLCommentStart2() const { return comment2_; }
    QString StringDelimiter() const { return stringDelimiter_; }

    // Reserved word sets 0 to 5; a word of set n has the token class 10 + n.
    static constexpr int kWordSets = 6;
    void ClearReservedWords();
    // Words match without regard to case; the same word may be added again.
    void AddReservedWord(int set, const QString& word);

    // The token class of a word: 10 + its set, the lowest set when it stands in several; -1 if reserved in none.
    int wordClass(QStringView word) const;
    // Bumped at every change, so a tokeniser knows its styling is stale.
    quint64 generation() const { return generation_; }

private:
    QString comment1_, comment2_, stringDelimiter_;
    QHash<QString, int> words_;  // upper-case word -> lowest set
    quint64 generation_ = 0;
};

// Token classes the tokeniser gives.
namespace TokenClass {
inline constexpr int None = 0, Symbol = 2, Number = 3, Special = 5, Comment = 6, String = 7, Reserved = 10;
}

struct Token {
    int cls = TokenClass::None;
    int start = 0;   // column, from 0
    int length = 0;  // characters
};

// Splits one line into tokens; blanks between them belong to no token.
// Calls onToken(token) in order; the tokeniser of the editing control and GetTokenAt share it.
template <class Emit>
void tokenizeLine(const Language& lang, QStringView line, Emit&& onToken);

#include "document/Tokenizer.inl"
