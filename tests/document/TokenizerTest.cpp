// The line tokeniser, the word sets behind it, and the record of stale lines the styling keeps.
#include "document/Language.h"
#include "document/StaleLines.h"
#include "platform/Failure.h"
#include "support/Doubles.h"

#include <gtest/gtest.h>

namespace {

using Tok = std::pair<int, QString>;  // a token's class and text
using V = std::vector<Tok>;

V tokens(const Language& lang, const QString& line) {
    V out;
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

}  // namespace

TEST(Tokenizer, ClassesOfCommentsStringsNumbersAndWords) {
    Language lang;
    lang.setSLCommentStart("'");
    lang.setSLCommentStart2(";");
    lang.setStringDelimiter("\"");
    for (const char* w : {"@", "GoTo", "AND"})
        lang.AddReservedWord(0, w);
    lang.AddReservedWord(4, "AND");  // a word in two sets: the lowest wins
    lang.AddReservedWord(2, "BYTE");
    lang.AddReservedWord(5, "DEC4");
    const QString pair = QString::fromUtf8("\xF0\x9F\x98\x80");  // one character, two UTF-16 units
    const std::pair<QString, V> cases[] = {
        {"x = 1 ' set \"no string\" goto", {{2, "x"}, {5, "="}, {3, "1"}, {6, "' set \"no string\" goto"}}},
        {"  ; whole line", {{6, "; whole line"}}},
        {"\"a;b'c\" ;x", {{7, "\"a;b'c\""}, {6, ";x"}}},  // an opener inside a string is part of it
        {"LCDOut \"Hi\",\"\"", {{2, "LCDOut"}, {7, "\"Hi\""}, {5, ","}, {7, "\"\""}}},
        {"x = \"open to the end", {{2, "x"}, {5, "="}, {7, "\"open to the end"}}},
        {"a=$1F+%1010-255", {{2, "a"}, {5, "="}, {3, "$1F"}, {5, "+"}, {3, "%1010"}, {5, "-"}, {3, "255"}}},
        {"$ %2 10ms", {{5, "$"}, {5, "%"}, {3, "2"}, {3, "10ms"}}},  // a number runs on over letters
        {"I2CRead _tmp1", {{2, "I2CRead"}, {2, "_tmp1"}}},
        {"goto GOTO gOtO GOTOX", {{10, "goto"}, {10, "GOTO"}, {10, "gOtO"}, {2, "GOTOX"}}},
        {"and byte Dec4 dec5 @ nop", {{10, "and"}, {12, "byte"}, {15, "Dec4"}, {2, "dec5"}, {10, "@"}, {2, "nop"}}},
        {"caf\u00e9 = \"\u20ac\" goto", {{2, "caf\u00e9"}, {5, "="}, {7, "\"\u20ac\""}, {10, "goto"}}},
        {pair + "x", {{5, pair}, {2, "x"}}},
        {" \t  ", {}},
        {"", {}},
    };
    for (const auto& [line, expected] : cases)
        EXPECT_EQ(tokens(lang, line), expected) << line.toStdString();

    Language plain;  // the compiler output's control: no comments or strings
    EXPECT_EQ(tokens(plain, "'x \"y"), (V{{5, "'"}, {2, "x"}, {5, "\""}, {2, "y"}}));
    plain.setSLCommentStart("REM");  // longer openers match without case
    plain.setStringDelimiter("''");
    EXPECT_EQ(tokens(plain, "''a'b'' rem note"), (V{{7, "''a'b''"}, {6, "rem note"}}));
}

TEST(Language, TheLowestSetWinsAndEveryChangeBumpsTheGeneration) {
    Language lang;
    lang.AddReservedWord(4, "and");
    lang.AddReservedWord(0, "AND");
    lang.AddReservedWord(4, "And");  // again, in a later set: the lowest stays
    EXPECT_EQ(lang.wordClass(u"and"), 10);
    EXPECT_THROW(lang.AddReservedWord(6, "x"), Failure);
    EXPECT_THROW(lang.AddReservedWord(-1, "x"), Failure);
    const quint64 g = lang.generation();
    lang.ClearReservedWords();
    EXPECT_EQ(lang.wordClass(u"and"), -1);
    lang.setStringDelimiter("'");
    EXPECT_GE(lang.generation(), g + 2);
}

TEST(StaleLines, AddMergesAndRemoveSplits) {
    StaleLines s;
    for (auto [first, last] : {std::pair{10, 20}, {20, 25} /* touching: one range */, {30, 40}, {5, 5} /* empty */})
        s.add(first, last);
    EXPECT_EQ(s.ranges(), (std::vector<StaleLines::Range>{{10, 25}, {30, 40}}));
    s.remove(12, 35);
    EXPECT_EQ(s.within(11, 36), (std::vector<StaleLines::Range>{{11, 12}, {35, 36}}));
    EXPECT_TRUE(s.contains(39) && !s.contains(40) && !s.contains(20));
    s.remove(0, 100);
    EXPECT_TRUE(s.empty());
}
