// The line tokeniser and the word sets behind it.
#include "document/Language.h"
#include "platform/Failure.h"

#include <gtest/gtest.h>

namespace {

using Tok = std::pair<int, QString>;  // a token's class and text
using V = std::vector<Tok>;

V tokens(const Language& lang, const QString& line) {
    V out;
    int end = 0;
    tokenizeLine(lang, line, [&](const Token& t) {
        EXPECT_TRUE(t.start >= end && t.length > 0) << "tokens overlap, go backwards or are empty";
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
    lang.AddReservedWord(4, "and");  // a word in two sets: the lowest wins
    lang.AddReservedWord(2, "BYTE");
    lang.AddReservedWord(5, "DEC4");
    EXPECT_THROW(lang.AddReservedWord(6, "x"), Failure);
    const QString pair = QString::fromUtf8("\xF0\x9F\x98\x80");  // one character, two UTF-16 units
    const std::pair<QString, V> cases[] = {
        {"x = 1 ' set \"no string\" goto", {{2, "x"}, {5, "="}, {3, "1"}, {6, "' set \"no string\" goto"}}},
        {"  \"a;b'c\" ;x", {{7, "\"a;b'c\""}, {6, ";x"}}},  // an opener inside a string is part of it
        {"\"Hi\",\"\" \"open to the end", {{7, "\"Hi\""}, {5, ","}, {7, "\"\""}, {7, "\"open to the end"}}},
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
