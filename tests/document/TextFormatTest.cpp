// Code pages: every byte keeps its place, characters a page lacks are found, odd names fall back safely.
#include "core/Settings.h"
#include "document/TextFormat.h"

#include <QLocale>
#include <QSet>
#include <gtest/gtest.h>

TEST(CodePages, EveryHighByteRoundTripsAndTheUndefinedOnesStayDistinct) {
    QByteArray high;
    for (int c = 0x80; c <= 0xFF; ++c)
        high.append(char(c));
    // A byte each page defines, and one it leaves undefined, which the converter alone would lose.
    const std::tuple<const char*, char, QChar, char> pages[] = {
        {"windows-1250", '\xA5', QChar(0x0104), '\x81'}, {"windows-1251", '\xC0', QChar(0x0410), '\x98'},
        {"windows-1253", '\xC1', QChar(0x0391), '\xD2'}, {"windows-1254", '\xDE', QChar(0x015E), '\x8E'},
        {"windows-1252", '\x80', QChar(0x20AC), '\x9D'},
    };
    for (const auto& [name, known, letter, undefined] : pages) {
        SCOPED_TRACE(name);
        const CodePage& page = CodePage::named(name);
        ASSERT_TRUE(page.name() == name && page.singleByte());
        const QString text = page.decode(high);
        ASSERT_EQ(text.size(), high.size());
        EXPECT_EQ(QSet<QChar>(text.begin(), text.end()).size(), high.size());  // no two bytes alike
        EXPECT_FALSE(text.contains(QChar::ReplacementCharacter));
        EXPECT_EQ(text[uchar(known) - 0x80], letter);
        EXPECT_NE(text[uchar(undefined) - 0x80], QChar(0x1A));
        EXPECT_EQ(page.encode(text), high);
        EXPECT_EQ(fromUtf8Text(toUtf8Text(high, TextEncoding::CodePage, name), TextEncoding::CodePage, name), high);
    }
}

TEST(CodePages, CharactersAPageLacksAreFoundWhereTheyStand) {
    const CodePage& turkish = CodePage::named("windows-1254");
    EXPECT_EQ(turkish.encode(QStringLiteral("€ Şş")), QByteArray("\x80 \xDE\xFE"));
    const QString typed = QStringLiteral("a = 1 ' ok ✓ γ");
    EXPECT_EQ(turkish.encode(typed), std::nullopt);
    EXPECT_EQ(turkish.firstMissing(typed), typed.indexOf(QChar(0x2713)));
    EXPECT_EQ(turkish.firstMissing(QStringLiteral("x \U0001F600")), 2);  // a surrogate pair
    EXPECT_EQ(turkish.firstMissing(QStringLiteral("Şşığ")), -1);
    // A multi-byte page is converted in pieces: the search looks past the first and never splits a pair.
    const CodePage& japanese = CodePage::named("Shift_JIS");
    const CodePage& chinese = CodePage::named("GB18030");  // has every character, the pair too
    ASSERT_FALSE(japanese.singleByte() || chinese.singleByte());
    QString long_ = QString(4095, u'\x65E5') + QStringLiteral("\U0001F600") + QString(100, u'a');
    EXPECT_EQ(japanese.firstMissing(long_), 4095);
    EXPECT_EQ(chinese.firstMissing(long_), -1);
    long_[4095] = u'x', long_[4096] = u'y';
    EXPECT_EQ(japanese.firstMissing(long_), -1);
    long_ += QChar(0x2713);
    EXPECT_EQ(japanese.firstMissing(long_), long_.size() - 1);
    const QByteArray sjis("\x93\xfa\x96\x7b ' nihon");
    EXPECT_EQ(japanese.encode(japanese.decode(sjis)), sjis);
}

TEST(CodePages, FormatFallsBackToWindows1252WhereThePageCannotKeepTheBytes) {
    const QByteArray latin("' caf\xE9\r\n"), sjis("' \x93\xfa\x96\x7b\n");
    const std::tuple<const char*, QByteArray, QByteArray> cases[] = {  // setting, bytes, page used
        {"windows-1254", latin, "windows-1254"}, {"cp1251", latin, "cp1251"}, {"klingon", latin, "windows-1252"},
        {"", latin, "windows-1252"},           {"UTF-16LE", latin, "windows-1252"},  // Unicode is no code page
        {"Shift_JIS", sjis, "Shift_JIS"},      {"Shift_JIS", latin, "windows-1252"},
    };
    for (const auto& [name, bytes, used] : cases) {
        SCOPED_TRACE(name);
        const TextFormat f = detectFormat(bytes, name);
        EXPECT_EQ(std::make_pair(f.encoding, f.codePage), std::make_pair(TextEncoding::CodePage, used));
        EXPECT_EQ(fromUtf8Text(toUtf8Text(bytes, f.encoding, f.codePage), f.encoding, f.codePage), bytes);
    }
    EXPECT_EQ(detectFormat("' caf\xC3\xA9", "windows-1254").encoding, TextEncoding::Utf8);
    EXPECT_EQ(detectFormat("\xEF\xBB\xBF' \xE9", "windows-1254").codePage, "windows-1254");
}

TEST(CodePages, TheDefaultFollowsTheLanguageOfTheLocale) {
    const std::pair<const char*, const char*> cases[] = {
        {"tr_TR", "windows-1254"}, {"pl_PL", "windows-1250"}, {"cs_CZ", "windows-1250"}, {"hu_HU", "windows-1250"},
        {"hr_HR", "windows-1250"}, {"ro_RO", "windows-1250"}, {"ru_RU", "windows-1251"}, {"uk_UA", "windows-1251"},
        {"bg_BG", "windows-1251"}, {"sr_Cyrl_RS", "windows-1251"}, {"sr_Latn_RS", "windows-1250"},
        {"el_GR", "windows-1253"}, {"en_US", "windows-1252"}, {"de_DE", "windows-1252"}, {"C", "windows-1252"},
    };
    for (const auto& [locale, page] : cases) {
        EXPECT_EQ(legacyEncodingFor(QLocale(locale)), page) << locale;
        EXPECT_EQ(CodePage::named(page).name(), page) << "a name the converters know";
    }
}
