// The statement table: its texts, the PicBasic fill over a PicBasic Pro one, the reload check, the tip search.
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

TEST(StatementTable, RowsAndDefinesCarryTheShippedTextsPerCompilerKind) {
    const struct {
        const Tables& t;
        int row, column;
        const char* text;
    } cases[] = {
        {pbp, 1, kCodeKey, "@"},
        {pbp, 3, kCodeSyntax, ""},
        {pbp, 26, kCodeTip, "Coditionally execute statements."},
        {pbp, 62, kCodeTip, "Generate tone or white-nose on specified pin."},
        {pbp, 70, kCodeSyntax, "XOUT DataPin,ZeroPin,[HouseCode\\KeyCode{\\Repeate}{....}]"},
        {pbp, 97, kCodeKey, "STEP"},
        {pbc, 1, kCodeSyntax, "BRANCH Offset, (Label {,Label...})"},
        {pbc, 4, kCodeTip, "Debugging statement not supported by PBC."},
        {pbc, 40, kCodeKey, "Next"},
        {pbc, 41, kCodeKey, ""},
    };
    for (const auto& e : cases)
        EXPECT_EQ(e.t.codes[e.row - 1][e.column], QString::fromLatin1(e.text)) << "row " << e.row;
    const QStringList defines(pbp.defines.begin(), pbp.defines.end());
    EXPECT_EQ(defines.mid(0, 5).join(','), "DEFINE,ADC_BITS,ADC_CLOCK,ADC_SAMPLEUS 50,BUTTON_PAUSE");
    EXPECT_EQ(defines.mid(40, 5).join(','), "ADC_SAMPLEUS,HSER_CLROERR,INTLHAND,INTLHAND,INTHAND8");
    EXPECT_EQ(defines.back(), "XOUTXLAT_OFF");
    EXPECT_TRUE(std::all_of(pbc.defines.begin(), pbc.defines.end(), [](auto& d) { return d.isEmpty(); }));
}

TEST(StatementTable, PicBasicFillKeepsTheRowsBehindItsOwnAndSwitchingBackRestoresEverything) {
    EXPECT_EQ(pbcOverPbp.codes[kPBCCodeRows - 1], pbc.codes[kPBCCodeRows - 1]);
    for (int row = kPBCCodeRows; row < kPBPCodeRows; ++row)
        EXPECT_EQ(pbcOverPbp.codes[row], pbp.codes[row]) << "row " << row + 1;
    EXPECT_EQ(pbcOverPbp.defines, pbp.defines);
    EXPECT_EQ(Tables({true, false, true}).codes, pbp.codes);
}

TEST(StatementTable, ReloadIsDueWhenTheFirstKeyDoesNotFitTheCompilerKind) {
    const Tables empty{};
    EXPECT_FALSE(statementTableFits(true, empty.codes));
    EXPECT_TRUE(statementTableFits(false, empty.codes));  // no "@": taken for PicBasic's
    for (const Tables* t : {&pbp, &pbc, &pbcOverPbp}) {
        const bool forPBP = t == &pbp;
        EXPECT_EQ(statementTableFits(true, t->codes), forPBP);
        EXPECT_EQ(statementTableFits(false, t->codes), !forPBP);
    }
}

TEST(StatementTable, TipSearchFoldsCaseTakesTheFirstRowAndTellsNoRowApart) {
    const std::optional<QString> noRow;
    const struct {
        const Tables& t;
        const char* word;
        std::optional<QString> tip;
    } cases[] = {
        {pbp, "goto", gotoTip}, {pbp, "GoTo", gotoTip}, {pbp, "GOTO", gotoTip},
        {pbp, "VAR", QString()}, {pbp, "PORTA", noRow}, {pbp, "GOT", noRow}, {pbp, "GOTOS", noRow},
        {pbc, "debug", "Debugging statement not supported by PBC."}, {pbc, "Asm", noRow},
        {pbcOverPbp, "Asm", noRow},  // row 2 is PicBasic's now; the later rows are kept
        {pbcOverPbp, "ReadCode", "Read the word-sized code at location Address into Var"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(statementTip(QString::fromLatin1(c.word), c.t.codes), c.tip) << c.word;

    // The first of two equal keys wins, and an empty key doesn't end the search.
    PBPCodeTable own{};
    own[1] = {QStringLiteral("Goto"), QString(), QStringLiteral("first")};
    own[2] = {QStringLiteral("GOTO"), QString(), QStringLiteral("second")};
    own[5] = {QStringLiteral("Wend"), QString(), QStringLiteral("behind a gap")};
    EXPECT_EQ(statementTip(u"goto", own), "first");
    EXPECT_EQ(statementTip(u"WEND", own), "behind a gap");
}

TEST(StatementTable, CaretTipEmptiesThePanelOffStatementWordsAndReadsTheWordFromItsLine) {
    const QString line = QStringLiteral("  goto Loop ' goto");
    EXPECT_EQ(caretTip(10, line, 2, 4, pbp.codes), gotoTip);
    EXPECT_EQ(caretTip(6, line, 12, 6, pbp.codes), QString());  // a comment
    EXPECT_EQ(caretTip(10, line, 7, 4, pbp.codes), std::nullopt);
    EXPECT_EQ(caretTip(10, line, 14, 9, pbp.codes), gotoTip);   // running past the line's end
    EXPECT_EQ(caretTip(10, line, 40, 3, pbp.codes), std::nullopt);
    EXPECT_THROW(caretTip(10, line, -1, 3, pbp.codes), Failure);
}

}  // namespace
