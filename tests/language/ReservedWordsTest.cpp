// The word sets handed to a document's tokeniser, per compiler kind, statement table and device.
#include "language/ReservedWords.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

struct Words {
    std::vector<ReservedWord> all;
    // The table filled for each kind in turn; the words for the last kind.
    explicit Words(std::initializer_list<bool> fills, const PortDigits& ports = {}) {
        PBPCodeTable codes{};
        PBPDefineTable defines{};
        for (bool usePBP : fills)
            fillStatementTable(usePBP, codes, defines);
        all = reservedWords(*(fills.end() - 1), codes, defines, ports);
    }
    // The words of one set, or the sets of one word, in the order of adding.
    QStringList set(int s) const {
        QStringList out;
        for (const ReservedWord& w : all)
            if (w.set == s)
                out << w.word;
        return out;
    }
    QString setsOf(const char* word) const {
        QStringList out;
        for (const ReservedWord& w : all)
            if (w.word == QLatin1StringView(word))
                out << QString::number(w.set);
        return out.join(',');
    }
};

TEST(ReservedWords, PicBasicProAddsKeysDefinesSizesMathLogicModifiersThenPorts) {
    const Words w({true}, {0, 1, 0, 0, 0, 0, 0, 0, 0, 0});
    QStringList order;
    for (const ReservedWord& r : w.all)
        if (order.isEmpty() || order.back() != QString::number(r.set))
            order << QString::number(r.set);
    EXPECT_EQ(order.join(','), "0,1,2,3,4,5,0");
    EXPECT_EQ(w.set(WordSet::Statements).size(), kPBPCodeRows + 2);
    EXPECT_EQ(w.set(WordSet::Defines).size(), kPBPDefineCount);
    EXPECT_EQ(w.set(WordSet::VarSize).join(' '), "WORD BYTE BIT");
    EXPECT_EQ(w.set(WordSet::Math).join(' '), "ABS COS DCD DIG MAX MIN NCD REV SIN SQR");
    const QStringList mods = w.set(WordSet::Modifiers);
    EXPECT_EQ(mods.size(), 114);
    EXPECT_EQ(mods.mid(0, 8).join(' '), "BIN IBIN SBIN ISBIN BIN1 IBIN1 SBIN1 ISBIN1");
    EXPECT_EQ(mods.mid(mods.size() - 6).join(' '), "HEX4 IHEX4 SHEX4 ISHEX4 REP STR");
    for (const char* yes : {"ISBIN16", "DEC5", "ISDEC5", "HEX4"})
        EXPECT_EQ(w.setsOf(yes), "5") << yes;
    for (const char* no : {"BIN17", "BIN0", "DEC6", "HEX5"})
        EXPECT_EQ(w.setsOf(no), "") << no;
    // A word may stand in two sets; the blank-carrying DEFINE and the doubled one go in as they are.
    EXPECT_EQ(w.setsOf("AND"), "0,4");
    EXPECT_EQ(w.setsOf("ADC_SAMPLEUS 50") + ' ' + w.setsOf("INTLHAND"), "1 1,1");
}

TEST(ReservedWords, PortWordsFollowTheDevicesPortsInIndexOrder) {
    const struct {
        PortDigits ports;
        const char* words;
    } cases[] = {
        {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, ""},
        {{6, 0, 0, 0, 0, 0, 0, 0, 0, 0}, "GPIO"},
        {{0, 5, 8, 0, 0, 0, 0, 0, 0, 1}, "PORTA TRISA PORTB TRISB PORTJ TRISJ"},
        {{1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, "GPIO PORTA TRISA PORTB TRISB PORTC TRISC PORTD TRISD PORTE TRISE "
                                         "PORTF TRISF PORTG TRISG PORTH TRISH PORTJ TRISJ"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Words({true}, c.ports).set(WordSet::Statements).mid(kPBPCodeRows).join(' '), c.words);
}

TEST(ReservedWords, PicBasicTakesItsKeysUpToTheFirstBlankThenSymbolAndNoPorts) {
    const PortDigits ports = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    const Words first({false}, ports);
    EXPECT_EQ(first.set(WordSet::Statements).mid(kPBCCodeRows - 1).join(' '), "Next Symbol");
    EXPECT_EQ(first.set(WordSet::Math).join(' ') + '|' + first.set(WordSet::Logic).join(' '), "MAX MIN|AND OR XOR NOT");
    EXPECT_EQ(first.all.size(), size_t(kPBCCodeRows + 1 + 2 + 4));
    for (const char* word : {"BYTE", "DEC", "DEFINE", "GPIO"})
        EXPECT_EQ(first.setsOf(word), "") << word;
    // After PicBasic Pro the rows behind PicBasic's keep their keys, and the keys run on through them.
    const Words after({true, false}, ports);
    EXPECT_EQ(after.set(WordSet::Statements).size(), kPBPCodeRows + 1);
    EXPECT_EQ(after.setsOf("AND"), "0,4");

    PBPCodeTable codes{};
    codes[0][kCodeKey] = QStringLiteral(" Asm ");
    codes[1][kCodeKey] = QStringLiteral("   ");
    codes[2][kCodeKey] = QStringLiteral("Low");
    const auto words = reservedWords(false, codes, PBPDefineTable{}, PortDigits{});
    ASSERT_GE(words.size(), 2u);
    EXPECT_EQ(words[0], (ReservedWord{WordSet::Statements, " Asm "}));
    EXPECT_EQ(words[1], (ReservedWord{WordSet::Statements, "Symbol"}));
}

}  // namespace
