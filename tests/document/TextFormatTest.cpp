// Character sets of source files.
#include "document/TextFormat.h"

#include <gtest/gtest.h>

TEST(TextFormat, Windows1252DecodesEveryByteAndEncodesOnlyItsOwnCharacters) {
    QByteArray all;
    for (int b = 0; b < 256; ++b)
        all.append(char(b));
    const QString text = decodeWindows1252(all);
    ASSERT_EQ(text.size(), 256);
    EXPECT_EQ(text[0x80], QChar(0x20AC));  // euro sign
    EXPECT_EQ(text[0x9F], QChar(0x0178));
    for (int undefined : {0x81, 0x8D, 0x8F, 0x90, 0x9D})
        EXPECT_EQ(text[undefined], QChar(undefined)) << undefined;
    EXPECT_EQ(encodeWindows1252(text).value_or("<none>"), all);
    EXPECT_FALSE(encodeWindows1252(u"\u0100").has_value());
    EXPECT_FALSE(encodeWindows1252(u"\u0080").has_value());  // 0x80 is the euro sign, not U+0080
}

TEST(TextFormat, StrictUtf8) {
    EXPECT_TRUE(isValidUtf8("plain ASCII that is longer than eight bytes"));
    EXPECT_TRUE(isValidUtf8("caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"));
    for (const char* bad : {"caf\xE9", "\xC0\xAF" /* overlong */, "\xED\xA0\x80" /* surrogate */,
                            "\xF4\x90\x80\x80" /* above U+10FFFF */, "abcdefgh\xE2\x82" /* cut short */, "\x80"})
        EXPECT_FALSE(isValidUtf8(bad)) << QByteArray(bad).toHex().toStdString();
}
