// The statement table (its fill per compiler kind, the reload check, the tip search) and the word sets
// handed to a document's tokeniser.
#include "language/ReservedWords.h"
#include "language/StatementTable.h"
#include "platform/Failure.h"

#include <QStringList>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

struct Tables {
    PBPCodeTable codes{};
    PBPDefineTable defines{};
    Tables(std::initializer_list<bool> fills) {
        for (bool usePBP : fills)
            fillStatementTable(usePBP, codes, defines);
    }
};
const Tables pbp{true}, pbc{false}, pbcOverPbp{true, false};
const QString gotoTip = QStringLiteral("Continue execution at specified label.");

// The words for the last fill, and their view by set or by word.
struct Words {
    std::vector<ReservedWord> all;
    Words(const Tables& t, bool usePBP, const PortDigits& ports = {})
        : all(reservedWords(usePBP, t.codes, t.defines, ports)) {}
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

TEST(StatementTable, PicBasicFillsItsOwnRowsOverPicBasicProsAndSwitchingBackRestoresEverything) {
    EXPECT_EQ(pbp.codes[0][kCodeKey], "@");
    EXPECT_EQ(pbc.codes[0][kCodeSyntax], "BRANCH Offset, (Label {,Label...})");
    EXPECT_EQ(pbc.codes[kPBCCodeRows - 1][kCodeKey], "Next");
    EXPECT_EQ(pbc.codes[kPBCCodeRows][kCodeKey], "");
    EXPECT_TRUE(std::all_of(pbc.defines.begin(), pbc.defines.end(), [](auto& d) { return d.isEmpty(); }));
    EXPECT_EQ(QStringList(pbp.defines.begin(), pbp.defines.begin() + 4).join(','),
              "DEFINE,ADC_BITS,ADC_CLOCK,ADC_SAMPLEUS 50");
    EXPECT_EQ(pbcOverPbp.codes[kPBCCodeRows - 1], pbc.codes[kPBCCodeRows - 1]);
    for (int row = kPBCCodeRows; row < kPBPCodeRows; ++row)
        EXPECT_EQ(pbcOverPbp.codes[row], pbp.codes[row]) << "row " << row + 1;
    EXPECT_EQ(pbcOverPbp.defines, pbp.defines);
    EXPECT_EQ(Tables({true, false, true}).codes, pbp.codes);
    // A reload is due when the first key doesn't fit the kind; an empty table is taken for PicBasic's.
    EXPECT_FALSE(statementTableFits(true, Tables{}.codes));
    EXPECT_TRUE(statementTableFits(false, Tables{}.codes));
    for (const Tables* t : {&pbp, &pbc, &pbcOverPbp}) {
        EXPECT_EQ(statementTableFits(true, t->codes), t == &pbp);
        EXPECT_EQ(statementTableFits(false, t->codes), t != &pbp);
    }
}

TEST(StatementTable, TipSearchFoldsCaseTakesTheFirstRowAndTellsNoRowApart) {
    const std::optional<QString> noRow;
    const struct {
        const Tables& t;
        const char* word;
        std::optional<QString> tip;
    } cases[] = {
        {pbp, "goto", gotoTip}, {pbp, "GoTo", gotoTip}, {pbp, "VAR", QString()}, {pbp, "PORTA", noRow},
        {pbp, "GOT", noRow}, {pbp, "GOTOS", noRow}, {pbc, "debug", "Debugging statement not supported by PBC."},
        {pbcOverPbp, "Asm", noRow},  // row 2 is PicBasic's now; the later rows are kept
        {pbcOverPbp, "ReadCode", "Read the word-sized code at location Address into Var"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(statementTip(QString::fromLatin1(c.word), c.t.codes), c.tip) << c.word;
    PBPCodeTable own{};  // the first of two equal keys wins, and an empty key doesn't end the search
    own[1] = {QStringLiteral("Goto"), QString(), QStringLiteral("first")};
    own[2] = {QStringLiteral("GOTO"), QString(), QStringLiteral("second")};
    own[5] = {QStringLiteral("Wend"), QString(), QStringLiteral("behind a gap")};
    EXPECT_EQ(statementTip(u"goto", own), "first");
    EXPECT_EQ(statementTip(u"WEND", own), "behind a gap");

    // The caret's token: empty off statement words, the word read from its line.
    const QString line = QStringLiteral("  goto Loop ' goto");
    EXPECT_EQ(caretTip(10, line, 2, 4, pbp.codes), gotoTip);
    EXPECT_EQ(caretTip(6, line, 12, 6, pbp.codes), QString());
    EXPECT_EQ(caretTip(10, line, 7, 4, pbp.codes), std::nullopt);
    EXPECT_EQ(caretTip(10, line, 14, 9, pbp.codes), gotoTip);  // running past the line's end
    EXPECT_EQ(caretTip(10, line, 40, 3, pbp.codes), std::nullopt);
    EXPECT_THROW(caretTip(10, line, -1, 3, pbp.codes), Failure);
}

TEST(ReservedWords, PicBasicProAddsKeysDefinesSizesMathLogicModifiersThenThePortsInIndexOrder) {
    const Words w(pbp, true, {0, 5, 8, 0, 0, 0, 0, 0, 0, 1});
    QStringList order;
    for (const ReservedWord& r : w.all)
        if (order.isEmpty() || order.back() != QString::number(r.set))
            order << QString::number(r.set);
    EXPECT_EQ(order.join(','), "0,1,2,3,4,5,0");
    EXPECT_EQ(w.set(WordSet::Defines).size(), kPBPDefineCount);
    EXPECT_EQ(w.set(WordSet::VarSize).join(' ') + '|' + w.set(WordSet::Math).join(' '),
              "WORD BYTE BIT|ABS COS DCD DIG MAX MIN NCD REV SIN SQR");
    EXPECT_EQ(w.set(WordSet::Modifiers).size(), 114);
    for (const char* yes : {"ISBIN16", "BIN1", "DEC5", "ISDEC5", "HEX4", "SHEX", "REP", "STR"})
        EXPECT_EQ(w.setsOf(yes), "5") << yes;
    for (const char* no : {"BIN17", "BIN0", "DEC6", "HEX5"})
        EXPECT_EQ(w.setsOf(no), "") << no;
    // A word may stand in two sets; the blank-carrying DEFINE and the doubled one go in as they are.
    EXPECT_EQ(w.setsOf("AND"), "0,4");
    EXPECT_EQ(w.setsOf("ADC_SAMPLEUS 50") + ' ' + w.setsOf("INTLHAND"), "1 1,1");
    EXPECT_EQ(w.set(WordSet::Statements).mid(kPBPCodeRows).join(' '), "PORTA TRISA PORTB TRISB PORTJ TRISJ");
    EXPECT_EQ(Words(pbp, true, {6, 0, 0, 0, 0, 0, 0, 0, 0, 0}).set(WordSet::Statements).mid(kPBPCodeRows),
              QStringList{"GPIO"});
    EXPECT_EQ(Words(pbp, true, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}).set(WordSet::Statements).size(), kPBPCodeRows + 19);
}

TEST(ReservedWords, PicBasicTakesItsKeysUpToTheFirstBlankThenSymbolAndNoPorts) {
    const PortDigits ports = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    const Words first(pbc, false, ports);
    EXPECT_EQ(first.set(WordSet::Statements).mid(kPBCCodeRows - 1).join(' '), "Next Symbol");
    EXPECT_EQ(first.set(WordSet::Math).join(' ') + '|' + first.set(WordSet::Logic).join(' '), "MAX MIN|AND OR XOR NOT");
    EXPECT_EQ(first.all.size(), size_t(kPBCCodeRows + 1 + 2 + 4));
    // After PicBasic Pro the rows behind PicBasic's keep their keys, and the keys run on through them.
    const Words after(pbcOverPbp, false, ports);
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
