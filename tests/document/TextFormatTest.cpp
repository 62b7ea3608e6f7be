// Character sets and line endings of source files.
#include "document/TextFormat.h"

#include <gtest/gtest.h>

TEST(TextFormat, Windows1252DecodesEveryByteAndEncodesItBack) {
    QByteArray all;
    for (int b = 0; b < 256; ++b)
        all.append(char(b));
    const QString text = decodeWindows1252(all);
    ASSERT_EQ(text.size(), 256);
    EXPECT_EQ(text[0x80], QChar(0x20AC));  // euro sign
    EXPECT_EQ(text[0x92], QChar(0x2019));
    EXPECT_EQ(text[0x9F], QChar(0x0178));
    EXPECT_EQ(text[0xE9], QChar(0x00E9));
    for (int undefined : {0x81, 0x8D, 0x8F, 0x90, 0x9D})
        EXPECT_EQ(text[undefined], QChar(undefined)) << undefined;
    const auto back = encodeWindows1252(text);
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(*back, all);
}

TEST(TextFormat, CharactersOutsideTheCodePageCannotBeEncoded) {
    EXPECT_FALSE(encodeWindows1252(u"\u0100").has_value());
    EXPECT_FALSE(encodeWindows1252(u"\u0080").has_value());  // 0x80 is the euro sign, not U+0080
    EXPECT_FALSE(fromUtf8Text("\xE2\x82\xAC\xE2\x98\x83", TextEncoding::Windows1252).has_value());  // € ☃
    EXPECT_EQ(*fromUtf8Text("\xE2\x82\xAC", TextEncoding::Windows1252), QByteArray("\x80"));
}

TEST(TextFormat, StrictUtf8) {
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_TRUE(isValidUtf8("plain ASCII that is longer than eight bytes"));
    EXPECT_TRUE(isValidUtf8("caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"));
    EXPECT_FALSE(isValidUtf8("caf\xE9"));              // Latin-1 é
    EXPECT_FALSE(isValidUtf8("\xC0\xAF"));             // overlong "/"
    EXPECT_FALSE(isValidUtf8("\xED\xA0\x80"));         // a surrogate
    EXPECT_FALSE(isValidUtf8("\xF4\x90\x80\x80"));     // above U+10FFFF
    EXPECT_FALSE(isValidUtf8("abcdefgh\xE2\x82"));     // cut short at the end, after the fast path
    EXPECT_FALSE(isValidUtf8("\x80"));
}

TEST(TextFormat, FirstLineEndingDecides) {
    EXPECT_EQ(detectLineEnding("a\r\nb\nc"), LineEnding::CrLf);
    EXPECT_EQ(detectLineEnding("a\nb\r\n"), LineEnding::Lf);
    EXPECT_EQ(detectLineEnding("a\rb\r\n"), LineEnding::Cr);
    EXPECT_EQ(detectLineEnding("a\r"), LineEnding::Cr);
    EXPECT_EQ(detectLineEnding("no break"), LineEnding::Lf);
    EXPECT_EQ(detectLineEnding(""), LineEnding::Lf);
}

TEST(TextFormat, DetectsTheEncodingAndKeepsAByteOrderMark) {
    EXPECT_EQ(detectFormat("x = 1\r\n").encoding, TextEncoding::Utf8);
    EXPECT_EQ(detectFormat("caf\xC3\xA9").encoding, TextEncoding::Utf8);
    EXPECT_EQ(detectFormat("caf\xE9").encoding, TextEncoding::Windows1252);
    const QByteArray bom("\xEF\xBB\xBFx\n");
    EXPECT_EQ(detectFormat(bom).encoding, TextEncoding::Utf8Bom);
    EXPECT_EQ(toUtf8Text(bom, TextEncoding::Utf8Bom), QByteArray("x\n"));
    EXPECT_EQ(*fromUtf8Text("x\n", TextEncoding::Utf8Bom), bom);
    EXPECT_EQ(toUtf8Text("caf\xE9", TextEncoding::Windows1252), QByteArray("caf\xC3\xA9"));
}
