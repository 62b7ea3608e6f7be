#pragma once
// Where a program's blocks open and close, for the fold margin: IF...ENDIF (a one-line IF ... THEN
// statement opens nothing), FOR...NEXT, WHILE...WEND, DO...LOOP, REPEAT...UNTIL, SELECT CASE...END SELECT,
// ASM...ENDASM and #CONFIG...#ENDCONFIG. Comments and strings open nothing, nor does anything inside ASM
// or #CONFIG. A closing word closes the nearest open block of its kind and the blocks left open inside it;
// a closing word with none open, and blocks still open at the end, fold nothing.

#include <QStringView>
#include <vector>

struct FoldRange {
    int first = 0;  // the line that opens the block
    int last = 0;   // the line that closes it, folded away with the block's body
    bool operator==(const FoldRange&) const = default;
};

// The blocks that span more than one line, ordered by their first line (outer before inner).
std::vector<FoldRange> foldRanges(QStringView text);

struct FoldLevel {
    int depth = 0;        // blocks around the line, the line that opens one not counted in it
    bool header = false;  // the line opens a block
    bool operator==(const FoldLevel&) const = default;
};

// Each line's level for the margin, from the ranges.
std::vector<FoldLevel> foldLevels(const std::vector<FoldRange>& ranges, int lineCount);
