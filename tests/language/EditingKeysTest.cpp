// The logic behind the editing keys: fold ranges and levels, the comment toggle, the indent of a new line.
#include "language/Folding.h"
#include "language/LineEditing.h"
#include "support/Doubles.h"

#include <gtest/gtest.h>

namespace {

using Ranges = std::vector<FoldRange>;

const QString kBlocks = QStringLiteral(R"(main:
FOR i = 0 TO 9
    IF i > 5 THEN ' a block
        HIGH LED
    ELSE
        IF i = 0 THEN GOTO main
        LOW LED
    ENDIF
NEXT i
WHILE x < 10 : x = x + 1 : WEND
do
    Repeat
        x = x - 1
    until x = 0
LOOP WHILE y
SELECT CASE x
    CASE 1
        y = 2
END SELECT
ASM
    IF x THEN ; nothing opens in here
    FOR
ENDASM
#CONFIG
    __config 0x3F
#ENDCONFIG
' IF x THEN
LCDOUT "FOR ", 1
IF a THEN : b = 1
END IF
lbl: WHILE x : x = x - 1
WEND)");

}  // namespace

TEST(Folding, EachKindOfBlockNestedOneLineStatementsCommentsStringsAndAssemblyOpenNothing) {
    EXPECT_EQ(foldRanges(kBlocks), (Ranges{{1, 8}, {2, 7}, {10, 14}, {11, 13}, {15, 18}, {19, 22}, {23, 25}, {28, 29},
                                           {30, 31}}));
    QString crlf = kBlocks;
    EXPECT_EQ(foldRanges(crlf.replace('\n', "\r\n")), foldRanges(kBlocks));

    // Unbalanced text folds what closes and never more.
    const std::pair<const char*, Ranges> cases[] = {
        {"NEXT\nWEND\nENDIF\nLOOP", {}},
        {"FOR\nIF x THEN\ny\nNEXT", {{0, 3}}},  // the IF left open closes with its FOR
        {"IF x THEN\nFOR\n", {}},
        {"DO\nDO\nLOOP", {{1, 2}}},
        {"DO\nloop:\nLOOP : x = 1", {{0, 2}}},  // a label "loop:" closes nothing
        {"DO\nREPEAT\nLOOP\nUNTIL", {{0, 2}}},
        {"ASM\nENDIF\nNEXT", {}},                  // assembly to the end of the text
        {"SELECT x\nENDSELECT\n#CONFIG\n#ENDCONFIG", {{0, 1}, {2, 3}}},
        {"FOR i = 1 TO 2 : NEXT", {}},
        {"FOR\n\n\nNEXT : FOR\nNEXT", {{0, 3}, {3, 4}}},
        {"", {}},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(foldRanges(QString::fromLatin1(text)), expected) << text;
}

TEST(Folding, LevelsCountTheBlocksAroundEachLineAndMarkTheLinesThatOpenOne) {
    const std::vector<FoldLevel> levels = foldLevels(foldRanges(u"FOR\n IF x THEN\n  y\n ENDIF\nNEXT\nz"), 6);
    EXPECT_EQ(levels, (std::vector<FoldLevel>{{0, true}, {1, true}, {2, false}, {2, false}, {1, false}, {0, false}}));
    // Ranges past the text are cut at its end; broken ones are skipped.
    EXPECT_EQ(foldLevels({{1, 9}, {2, 2}, {-1, 1}, {5, 7}}, 3),
              (std::vector<FoldLevel>{{0, false}, {0, true}, {1, false}}));
    EXPECT_TRUE(foldLevels({{0, 1}}, 0).empty());
}

TEST(CommentToggle, AddsAtTheSmallestIndentOrTakesEachLinesFirstQuoteLeavingBlankLinesAlone) {
    const std::pair<QStringList, QStringList> cases[] = {
        {{"  x = 1", "", "    y = 2", "\t"}, {"  'x = 1", "", "  '  y = 2", "\t"}},
        {{"' a", "  'b", " "}, {" a", "  b", " "}},
        {{"'a", "b"}, {"''a", "'b"}},  // one line not commented: all get one
        {{"; x", "REM y"}, {"'; x", "'REM y"}},  // only ' counts
        {{"x"}, {"'x"}},
        {{"", "  "}, {"", "  "}},
        {{}, {}},
    };
    for (const auto& [lines, expected] : cases) {
        const std::vector<LineEdit> edits = toggleComment(lines);
        EXPECT_EQ(applyEdits(lines, edits), expected) << lines.join('|').toStdString();
        if (!edits.empty() && !edits[0].insert.isEmpty()) {
            EXPECT_EQ(applyEdits(expected, toggleComment(expected)), lines) << "a second toggle gives them back";
        }
    }
    EXPECT_EQ(toggleComment({"  a", "", " 'b"}), (std::vector<LineEdit>{{0, 1, 0, "'"}, {2, 1, 0, "'"}}));
    EXPECT_EQ(toggleComment({"  'a", "'b"}), (std::vector<LineEdit>{{0, 2, 1, ""}, {1, 0, 1, ""}}));
}

TEST(NewLineIndent, IsTheLeadingBlanksOfTheLineAbove) {
    const std::pair<const char*, const char*> cases[] = {
        {"  x = 1", "  "}, {"\t IF x THEN", "\t "}, {"x", ""}, {"", ""}, {"    ", "    "}, {" \t' c", " \t"},
    };
    for (const auto& [above, indent] : cases)
        EXPECT_EQ(lineIndent(QString::fromLatin1(above)), QString::fromLatin1(indent)) << above;
}
