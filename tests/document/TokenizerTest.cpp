// The line tokeniser, the word sets behind it, and the record of stale lines the styling keeps.
#include "document/Language.h"
#include "document/StaleLines.h"
#include "platform/Failure.h"

#include <gtest/gtest.h>

namespace {

struct Tok {
    int cls;
    QString text;
    bool operator==(const Tok& o) const { return cls == o.cls && text == o.text; }
};

void PrintTo(const Tok& t, std::ostream* os) { *os << "{" << t.cls << ", \"" << t.text.toStdString() << "\"}"; }

Language picBasic() {
    Language lang;
    lang.setSLCommentStart("'");
    lang.setSLCommentStart2(";");
    lang.setStringDelimiter("\"");
    lang.AddReservedWord(0, "@");
    lang.AddReservedWord(0, "GoTo");
    lang.AddReservedWord(0, "AND");  // a key of the statement table ...
    lang.AddReservedWord(4, "AND");  // ... and a logic operator
    lang.AddReservedWord(2, "BYTE");
    lang.AddReservedWord(5, "DEC4");
    return lang;
}

std::vector<Tok> tokens(const Language& lang, const QString& line) {
    std::vector<Tok> out;
    int end = 0;
    tokenizeLine(lang, line, [&](const Token& t) {
        EXPECT_GE(t.start, end) << "tokens overlap or go backwards";
        EXPECT_GT(t.length, 0);
        end = t.start + t.length;
        out.push_back({t.cls, line.mid(t.start, t.length)});
    });
    EXPECT_LE(end, line.size());
    return out;
}

using V = std::vector<Tok>;

}  // namespace

TEST(Tokenizer, CommentsRunToTheLineEndFromEitherOpener) {
    const Language lang = picBasic();
    EXPECT_EQ(tokens(lang, "x = 1 ' set x \"not a string\" goto"),
              (V{{2, "x"}, {5, "="}, {3, "1"}, {6, "' set x \"not a string\" goto"}}));
    EXPECT_EQ(tokens(lang, "  ; whole line"), (V{{6, "; whole line"}}));
    // An opener inside a string is part of the string.
    EXPECT_EQ(tokens(lang, "\"a;b'c\" ;x"), (V{{7, "\"a;b'c\""}, {6, ";x"}}));
}

TEST(Tokenizer, StringsEndAtTheDelimiterOrTheLineEnd) {
    const Language lang = picBasic();
    EXPECT_EQ(tokens(lang, "LCDOut \"Hi\",\"\""), (V{{2, "LCDOut"}, {7, "\"Hi\""}, {5, ","}, {7, "\"\""}}));
    EXPECT_EQ(tokens(lang, "x = \"open to the end"), (V{{2, "x"}, {5, "="}, {7, "\"open to the end"}}));
}

TEST(Tokenizer, NumbersInDecimalHexAndBinary) {
    const Language lang = picBasic();
    EXPECT_EQ(tokens(lang, "a=$1F+%1010-255"),
              (V{{2, "a"}, {5, "="}, {3, "$1F"}, {5, "+"}, {3, "%1010"}, {5, "-"}, {3, "255"}}));
    // "$" and "%" without their digits are special; a number runs on over letters.
    EXPECT_EQ(tokens(lang, "$ %2 10ms"), (V{{5, "$"}, {5, "%"}, {3, "2"}, {3, "10ms"}}));
    // Digits inside a word keep it a word.
    EXPECT_EQ(tokens(lang, "I2CRead _tmp1"), (V{{2, "I2CRead"}, {2, "_tmp1"}}));
}

TEST(Tokenizer, ReservedWordsMatchInAnyCaseAndTheLowestSetWins) {
    const Language lang = picBasic();
    EXPECT_EQ(tokens(lang, "goto GOTO GoTo gOtO"), (V{{10, "goto"}, {10, "GOTO"}, {10, "GoTo"}, {10, "gOtO"}}));
    EXPECT_EQ(tokens(lang, "and byte Dec4 dec5"), (V{{10, "and"}, {12, "byte"}, {15, "Dec4"}, {2, "dec5"}}));
    // A single character that is itself a reserved word.
    EXPECT_EQ(tokens(lang, "@ nop"), (V{{10, "@"}, {2, "nop"}}));
    // Part of a word is no word: "GOTOX" is an ordinary symbol.
    EXPECT_EQ(tokens(lang, "GOTOX"), (V{{2, "GOTOX"}}));
    EXPECT_EQ(lang.wordClass(u"And"), 10);
    EXPECT_EQ(lang.wordClass(u"ANDY"), -1);
}

TEST(Tokenizer, NonAsciiTextKeepsUtf16Columns) {
    const Language lang = picBasic();
    EXPECT_EQ(tokens(lang, "caf\u00e9 = \"\u20ac\" goto"), (V{{2, "caf\u00e9"}, {5, "="}, {7, "\"\u20ac\""}, {10, "goto"}}));
    const QString pair = QString::fromUtf8("\xF0\x9F\x98\x80");  // one character, two UTF-16 units
    EXPECT_EQ(tokens(lang, pair + "x"), (V{{5, pair}, {2, "x"}}));
}

TEST(Tokenizer, BlankAndEmptyLinesHaveNoTokens) {
    const Language lang = picBasic();
    EXPECT_TRUE(tokens(lang, "").empty());
    EXPECT_TRUE(tokens(lang, " \t  ").empty());
}

TEST(Tokenizer, EmptyDelimitersMeanNoCommentsOrStrings) {
    Language plain;  // the compiler output's control has no language set up
    EXPECT_EQ(tokens(plain, "'x \"y"), (V{{5, "'"}, {2, "x"}, {5, "\""}, {2, "y"}}));
}

TEST(Tokenizer, MultiCharacterOpenersMatchWithoutCase) {
    Language lang;
    lang.setSLCommentStart("REM");
    lang.setStringDelimiter("''");
    EXPECT_EQ(tokens(lang, "x rem note"), (V{{2, "x"}, {6, "rem note"}}));
    EXPECT_EQ(tokens(lang, "''a'b'' c"), (V{{7, "''a'b''"}, {2, "c"}}));
}

TEST(Language, ClearingAndReAddingWordsGivesTheSameSetsAndAGenerationChange) {
    Language lang = picBasic();
    const quint64 before = lang.generation();
    lang.ClearReservedWords();
    EXPECT_EQ(lang.wordClass(u"GOTO"), -1);
    EXPECT_GT(lang.generation(), before);
    lang.AddReservedWord(4, "and");
    lang.AddReservedWord(0, "AND");
    lang.AddReservedWord(4, "And");  // again, in a later set: the lowest stays
    EXPECT_EQ(lang.wordClass(u"and"), 10);
    EXPECT_THROW(lang.AddReservedWord(6, "x"), Failure);
    EXPECT_THROW(lang.AddReservedWord(-1, "x"), Failure);
    const quint64 g = lang.generation();
    lang.setStringDelimiter("'");
    EXPECT_GT(lang.generation(), g);
}

TEST(StaleLines, AddMergesAndRemoveSplits) {
    StaleLines s;
    s.add(10, 20);
    s.add(20, 25);  // touching: one range
    s.add(30, 40);
    s.add(5, 5);    // empty: nothing
    EXPECT_EQ(s.ranges(), (std::vector<StaleLines::Range>{{10, 25}, {30, 40}}));
    s.remove(12, 35);
    EXPECT_EQ(s.ranges(), (std::vector<StaleLines::Range>{{10, 12}, {35, 40}}));
    EXPECT_EQ(s.within(11, 36), (std::vector<StaleLines::Range>{{11, 12}, {35, 36}}));
    EXPECT_TRUE(s.contains(39));
    EXPECT_FALSE(s.contains(40));
    s.remove(0, 100);
    EXPECT_TRUE(s.empty());
}
