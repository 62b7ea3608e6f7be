// A program's text as any bytes: the scanner, the folding, the comment toggle, the call tip, completion's
// words and the prefix at the caret end and never crash. Symbols and blocks stand on lines of the text, in
// order, blocks nested; the line ends and a comment line put in front change nothing but the line numbers; a
// toggle that adds comments is undone by the next one; completion's list stays ordered with each word once.
#include "FuzzWorld.h"
#include "language/Completion.h"
#include "language/Folding.h"
#include "language/LineEditing.h"
#include "language/ProgramScanner.h"
#include "language/StatementTable.h"

namespace {

struct Tables {
    PBPCodeTable codes{};
    PBPDefineTable defines{};
    CompletionWords words;
    Tables() {
        fillStatementTable(true, codes, defines);
        words.setLanguage(true, {1, 1, 1, 0, 0, 0, 0, 0, 0, 0});
    }
};

QStringList linesOf(const QString& text) {
    QString t = text;
    t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    t.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return t.split(QLatin1Char('\n'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Tables tables;
    const QString text = QString::fromUtf8(fuzzBytes(data, size));
    const QStringList lines = linesOf(text);
    const int lineCount = int(lines.size());

    const std::vector<ProgramSymbol> symbols = scanProgram(text);
    int previous = 0;
    for (const ProgramSymbol& s : symbols) {
        FUZZ_CHECK(s.line >= previous && s.line < lineCount, "symbol %s on line %d of %d", qPrintable(s.name), s.line,
                   lineCount);
        FUZZ_CHECK(!s.name.isEmpty());
        FUZZ_CHECK(lines[s.line].contains(s.name), "%s not on its line %d", qPrintable(s.name), s.line);
        previous = s.line;
    }
    FUZZ_CHECK(scanProgram(lines.join(QLatin1Char('\n'))) == symbols, "the line ends changed the symbols");
    std::vector<ProgramSymbol> shifted = scanProgram(QStringLiteral("' x: y VAR BYTE\r\n") + text);
    FUZZ_CHECK(shifted.size() == symbols.size());
    for (ProgramSymbol& s : shifted)
        --s.line;
    FUZZ_CHECK(shifted == symbols, "a comment line in front changed more than the line numbers");

    const std::vector<FoldRange> ranges = foldRanges(text);
    for (size_t i = 0; i < ranges.size(); ++i) {
        const FoldRange& a = ranges[i];
        FUZZ_CHECK(a.first >= 0 && a.first < a.last && a.last < lineCount, "range %d..%d of %d", a.first, a.last,
                   lineCount);
        for (size_t j = i + 1; j < ranges.size(); ++j) {
            const FoldRange& b = ranges[j];
            FUZZ_CHECK(a.first <= b.first, "ranges out of order");
            if (b.first < a.last)
                FUZZ_CHECK(b.last <= a.last, "%d..%d crosses %d..%d", b.first, b.last, a.first, a.last);
        }
    }
    const std::vector<FoldLevel> levels = foldLevels(ranges, lineCount);
    FUZZ_CHECK(int(levels.size()) == lineCount && levels.back().depth >= 0);

    const std::vector<LineEdit> edits = toggleComment(lines);
    const QStringList toggled = applyEdits(lines, edits);
    if (!edits.empty() && !edits[0].insert.isEmpty())
        FUZZ_CHECK(applyEdits(toggled, toggleComment(toggled)) == lines, "a second toggle doesn't give the lines back");
    FUZZ_CHECK(lineIndent(lines[0]).size() <= lines[0].size());

    for (int caret = -1; caret <= std::min<int>(int(lines[0].size()), 200) + 1; ++caret) {
        if (const std::optional<QString> tip = callTip(lines[0], caret, tables.codes))
            FUZZ_CHECK(!tip->isEmpty());
        if (const std::optional<int> start = completionStart(lines[0], caret))
            FUZZ_CHECK(*start >= 0 && *start <= caret, "prefix from %d at %d", *start, caret);
    }

    const std::vector<QString> words = tables.words.words(symbols);
    FUZZ_CHECK(words.size() >= tables.words.languageWords().size());
    for (size_t i = 1; i < words.size(); ++i)
        FUZZ_CHECK(completionLess(words[i - 1], words[i]), "%s before %s", qPrintable(words[i - 1]), qPrintable(words[i]));
    for (const QString& w : words)
        FUZZ_CHECK(completionText(QString(), w) == w && !completionText(lines[0].left(3), w).isEmpty());
    return 0;
}
