#include "document/Language.h"

#include "platform/Failure.h"

#include <QVarLengthArray>

namespace {

// Upper case one character at a time, so a key never changes length ("ß" stays one character).
template <class Out>
void upperInto(QStringView word, Out& out) {
    out.resize(word.size());
    for (qsizetype i = 0; i < word.size(); ++i) {
        const char16_t c = word[i].unicode();
        out[i] = (c >= u'a' && c <= u'z') ? QChar(char16_t(c - 32)) : (c < 128 ? QChar(c) : QChar(c).toUpper());
    }
}

}  // namespace

void Language::ClearReservedWords() {
    words_.clear();
    ++generation_;
}

void Language::AddReservedWord(int set, const QString& word) {
    if (set < 0 || set >= kWordSets)
        throw invalidProcedureCall(QStringLiteral("There is no word set %1; the sets are 0 to %2.").arg(set).arg(kWordSets - 1));
    if (word.isEmpty())
        return;
    QString key;
    upperInto(word, key);
    auto it = words_.find(key);
    if (it == words_.end())
        words_.insert(key, set);
    else if (set < *it)
        *it = set;
    ++generation_;
}

int Language::wordClass(QStringView word) const {
    if (word.isEmpty() || words_.isEmpty())
        return -1;
    // Looked up on every word the tokeniser meets: upper-case into a stack buffer, no allocation.
    QVarLengthArray<QChar, 64> upper;
    upperInto(word, upper);
    const auto it = words_.constFind(QString::fromRawData(upper.constData(), upper.size()));
    return it == words_.cend() ? -1 : TokenClass::Reserved + *it;
}
