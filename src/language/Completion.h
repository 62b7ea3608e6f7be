#pragma once
// The words Ctrl+Space offers, and the case they go in with. The compiler kind's words are those the
// colouring knows (statements, DEFINE names, sizes, math and logic words, modifiers, the device's port
// words, PicBasic Pro 3's words), read from a freshly filled statement table of that kind; they are built
// again only when the kind or the device's ports change. The program's labels, variables, aliases,
// constants and SYMBOLs are merged in at each opening.

#include "language/ProgramScanner.h"
#include "language/ReservedWords.h"

#include <QString>
#include <QStringView>
#include <optional>
#include <vector>

class CompletionWords {
public:
    // The kind's words for these ports: built at the first call and after a change, else kept.
    void setLanguage(bool usePBP, const PortDigits& ports);
    // The kind's words, each once (letter case ignored), in the list's order.
    const std::vector<QString>& languageWords() const { return words_; }
    // The kind's words and the program's, each once, in the list's order: letter case ignored, and by
    // character code, so that '#' words come first and '_' after the letters. A name the program shares
    // with a word of the kind is listed as the kind spells it.
    std::vector<QString> words(const std::vector<ProgramSymbol>& program) const;
    // How often the kind's words were built (a test sees that an unchanged kind is kept).
    int builds() const { return builds_; }

private:
    std::vector<QString> words_;
    bool built_ = false, usePBP_ = true;
    PortDigits ports_{};
    int builds_ = 0;
};

// Where the word being typed at the caret (a column of the line) starts: the prefix completion matches.
// The caret itself when no word stands before it; nullopt inside a comment or a string, where nothing is
// completed.
std::optional<int> completionStart(QStringView line, int caret);

// The list's order: a before b.
bool completionLess(QStringView a, QStringView b);

// The word as it goes in after the typed prefix: in lower case when the prefix has letters and all are
// lower case, else as listed.
QString completionText(QStringView typedPrefix, const QString& word);
