// What completion offers and how a word goes in, the call tip's syntax line, and PicBasic Pro 3's words in a
// document's colouring.
#include "document/Document.h"
#include "document/Language.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "core/Globals.h"
#include "language/Completion.h"
#include "language/StatementTable.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"

#include <QStringList>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

QStringList listOf(const std::vector<QString>& words) { return QStringList(words.begin(), words.end()); }

// The words that are in the list, of those asked for.
QString present(const QStringList& list, const char* words) {
    QStringList out;
    for (const QString& w : QString::fromLatin1(words).split(' '))
        if (list.contains(w))
            out << w;
    return out.join(' ');
}

bool strictlyOrdered(const QStringList& list) {
    for (qsizetype i = 1; i < list.size(); ++i)
        if (!completionLess(list[i - 1], list[i]))
            return false;
    return true;
}

const PortDigits kPortsAB = {0, 6, 8, 0, 0, 0, 0, 0, 0, 0};

}  // namespace

TEST(Completion, EachCompilerKindOffersItsOwnWordsThePortsAndTheProgramsNamesOnceInListOrder) {
    CompletionWords pro, basic;
    pro.setLanguage(true, kPortsAB);
    basic.setLanguage(false, kPortsAB);
    const QStringList p = listOf(pro.languageWords()), b = listOf(basic.languageWords());
    const char* probe = "HSerout GoSub ADCIN DEFINE OSC ADC_SAMPLEUS INTLHAND BYTE WORD ABS AND ISBIN16 DEC5 REP PORTA "
                        "TRISB PORTC GPIO DO LOOP REPEAT UNTIL EXIT CONTINUE ARRAYREAD #CONFIG #ENDCONFIG #IFNDEF #MSG "
                        "Symbol I2CIN Branch MAX NOT";
    EXPECT_EQ(present(p, probe), "HSerout GoSub ADCIN DEFINE OSC ADC_SAMPLEUS INTLHAND BYTE WORD ABS AND ISBIN16 DEC5 "
                                 "REP PORTA TRISB DO LOOP REPEAT UNTIL EXIT CONTINUE ARRAYREAD #CONFIG #ENDCONFIG "
                                 "#IFNDEF #MSG Branch MAX NOT");
    EXPECT_EQ(present(b, probe), "GoSub AND Symbol I2CIN Branch MAX NOT");
    for (const QStringList* list : {&p, &b}) {
        EXPECT_TRUE(strictlyOrdered(*list)) << "sorted, each word once (AND and INTLHAND stand twice in the tables)";
        EXPECT_FALSE(list->contains("@") || list->contains("ADC_SAMPLEUS 50"));
    }
    EXPECT_TRUE(p.front().startsWith('#'));
    EXPECT_TRUE(completionLess(u"LCD_BITS", u"LCDIn") == false && completionLess(u"LCDIn", u"LCD_BITS"))
        << "'_' after the letters, as the control sorts a list without regard to case";

    // Built once per kind and device.
    pro.setLanguage(true, kPortsAB);
    EXPECT_EQ(pro.builds(), 1);
    pro.setLanguage(true, {1, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(pro.builds(), 2);
    EXPECT_EQ(present(listOf(pro.languageWords()), "GPIO PORTA"), "GPIO");

    // The program's labels, variables, aliases, constants and SYMBOLs come in; includes and DEFINEs don't, and a
    // name that is a word of the kind, or stands twice, comes once.
    const std::vector<ProgramSymbol> program = scanProgram(
        u"INCLUDE \"lib.bas\"\nDEFINE MY_OSC 4\nled VAR PORTB.0\ncnt VAR BYTE\nLimit CON 9\nSYMBOL relay = 1\n"
        "main: GOSUB show\nshow: RETURN\nhigh:\nCNT VAR WORD");
    const QStringList merged = listOf(pro.words(program));
    EXPECT_EQ(present(merged, "lib.bas MY_OSC led cnt CNT Limit relay main show high High"), "led cnt Limit relay main show High");
    EXPECT_EQ(merged.size(), qsizetype(pro.languageWords().size() + 6));
    EXPECT_TRUE(strictlyOrdered(merged));
    EXPECT_EQ(listOf(pro.words({})), listOf(pro.languageWords()));
}

TEST(Completion, AnAllLowerCasePrefixGivesTheWordInLowerCaseAnyOtherAsListed) {
    const struct {
        const char* typed;
        const char* listed;
        const char* inserted;
    } cases[] = {
        {"hse", "HSerout", "hserout"}, {"HSE", "HSerout", "HSerout"}, {"Hse", "HSerout", "HSerout"},
        {"hSe", "HSerout", "HSerout"}, {"i2c", "I2CRead", "i2cread"}, {"#con", "#CONFIG", "#config"},
        {"my_", "My_Label", "my_label"}, {"", "GoSub", "GoSub"},    {"12", "I2CRead", "I2CRead"},
        {"_", "_Temp", "_Temp"},       {"caf\u00e9", "CAF\u00c9", "caf\u00e9"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(completionText(QString::fromUtf8(c.typed), QString::fromUtf8(c.listed)), QString::fromUtf8(c.inserted))
            << c.typed;
}

TEST(Completion, ThePrefixIsTheWordBeforeTheCaretAndNothingIsCompletedInCommentsOrStrings) {
    const std::optional<int> none;
    const struct {
        const char* line;
        int caret;  // -1: the line's end
        std::optional<int> start;
    } cases[] = {
        {"x = hse", -1, 4},   {"  #con", -1, 2},     {"HSEROUT x", 3, 0},   {"x = 1 : ", -1, 8},   {"x :", -1, 3},
        {"", 0, 0},           {"x = 10ms", -1, 8},   {"LCDOUT \"a\"", -1, 10}, {"# ", -1, 2},     {"caf\u00e9", -1, 0},
        {"' hse", -1, none},  {"x ; hse", -1, none}, {"REM hse", -1, none}, {"LCDOUT \"hse", -1, none},
        {"LCDOUT \"", -1, none}, {"x", 2, none},    {"x", -1, 0},
    };
    for (const auto& c : cases) {
        const QString line = QString::fromUtf8(c.line);
        EXPECT_EQ(completionStart(line, c.caret == -1 ? int(line.size()) : c.caret), c.start) << c.line;
    }
}

TEST(CallTip, AStatementWordAndOneBlankLeftOfTheCaretGiveItsRowsSyntax) {
    PBPCodeTable pro{}, basic{};
    PBPDefineTable defines{};
    fillStatementTable(true, pro, defines);
    fillStatementTable(false, basic, defines);
    const std::optional<QString> none;
    const struct {
        const PBPCodeTable& codes;
        const char* line;
        int caret;  // -1: the line's end
        std::optional<QString> tip;
    } cases[] = {
        {pro, "HSEROUT ", -1, "HSEROUT [Item{,Item...}]"}, {pro, "  hSerOut\t", -1, "HSEROUT [Item{,Item...}]"},
        {pro, "x = 1 : GOSUB ", -1, "GOSUB Label"},        {pro, "GOTO main", 5, "GOTO Label"},
        {pro, "IF x THEN ", -1, "IF Comp {AND/OR Comp...} THEN Label"}, {pro, "@ ", -1, "@ Assembly Statement"},
        {basic, "SEROUT ", -1, "SEROUT Pin, Mode, Item{,Item...}"},
        {basic, "HSEROUT ", -1, none},  // not a PicBasic statement
        {pro, "HSEROUT", -1, none},     {pro, "HSEROUT  ", -1, none},  // no blank yet; the tip came at the first
        {pro, "' HSEROUT ", -1, none},  {pro, "x = 1 ; HSEROUT ", -1, none}, {pro, "LCDOUT \"HSEROUT ", -1, none},
        {pro, "xHSEROUT ", -1, none},   {pro, "EndAsm ", -1, none} /* a row without syntax */, {pro, "DO ", -1, none},
        {pro, "HSEROUT ", 0, none},     {pro, "HSEROUT ", 99, none},   {pro, "HSEROUT ", -5, none},
    };
    for (const auto& c : cases) {
        const QString line = QString::fromLatin1(c.line);
        EXPECT_EQ(callTip(line, c.caret == -1 ? int(line.size()) : c.caret, c.codes), c.tip) << c.line << " @" << c.caret;
    }
}

TEST(PicBasicPro3Words, ColourAsStatementsUnderPicBasicProOnlyHashWordsIncluded) {
    TestWorld world;
    FakeFrame frame;
    globals().UsePBP = true;
    frmEditor doc{frame};
    SourceView& view = *doc.View;
    view.SetText("DO : LOOP UNTIL x : #CONFIG #endif #MSG #NOPE # x ARRAYWRITE a");
    auto classes = [&](std::initializer_list<int> columns) {
        QStringList out;
        for (int col : columns) {
            int cls = -1, start = 0, length = 0;
            view.GetTokenAt(col, 0, cls, start, length);
            out << QStringLiteral("%1:%2").arg(cls).arg(view.document().GetLine(0).mid(start, length));
        }
        return out.join(' ');
    };
    const auto columns = {0, 5, 10, 20, 28, 35, 40, 41, 46, 48, 50};
    EXPECT_EQ(classes(columns), "10:DO 10:LOOP 10:UNTIL 10:#CONFIG 10:#endif 10:#MSG 5:# 2:NOPE 5:# 2:x 10:ARRAYWRITE");
    globals().UsePBP = false;
    doc.InitPBPCodes();
    doc.LoadReservedWords();
    EXPECT_EQ(classes(columns), "2:DO 2:LOOP 2:UNTIL 5:# 5:# 5:# 5:# 2:NOPE 5:# 2:x 2:ARRAYWRITE");
    globals().UsePBP = true;
    // The statement table keeps its rows and tips: the new words are no rows.
    doc.InitPBPCodes();
    EXPECT_EQ(globals().PBPCodes.size(), 97u);
    EXPECT_FALSE(statementRow(u"DO", globals().PBPCodes) || statementRow(u"#CONFIG", globals().PBPCodes));
}
