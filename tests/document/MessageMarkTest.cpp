// The mark a compiler message leaves in a document's strip lasts until its line is edited and follows edits
// around it; the output's tags go with its text.
#include "document/Document.h"
#include "document/SourceView.h"

#include <QTest>
#include <gtest/gtest.h>

#include <functional>

TEST(MessageMark, LastsUntilItsLineIsEditedAndFollowsEditsAround) {
    const auto typeAt = [](int col, int line, const char* s) {
        return [=](SourceView& v) {
            v.SetSel(col, line, col, line);
            QTest::keyClicks(v.editorWidget(), s);
        };
    };
    const auto cut = [](int c0, int l0, int c1, int l1) {
        return [=](SourceView& v) {
            v.SetSel(c0, l0, c1, l1);
            v.Cut();
        };
    };
    // The mark goes on line 2 of "a0 b1 c2 d3 e4"; where it is after the edit, -1 when gone.
    const std::tuple<const char*, std::function<void(SourceView&)>, int> cases[] = {
        {"typing in the line", typeAt(1, 2, "x"), -1},
        {"typing at its start", typeAt(0, 2, "x"), -1},
        {"a new line above", typeAt(2, 1, "\r"), 3},
        {"the line above deleted whole", cut(0, 1, 0, 2), 1},
        {"the line below deleted whole", cut(0, 3, 0, 4), 2},
        {"joined to the line above", cut(2, 1, 0, 2), -1},
        {"its line end deleted", cut(2, 2, 0, 3), -1},
        {"a new text", [](SourceView& v) { v.SetText("other\ntext\nhere\n"); }, -1},
        {"a second mark", [](SourceView& v) { v.markMessageLine(4, LineTone::Error); }, 4},
    };
    for (const auto& [edit, apply, after] : cases) {
        SCOPED_TRACE(edit);
        SourceView v;
        v.SetText("a0\nb1\nc2\nd3\ne4\n");
        v.markMessageLine(2, LineTone::Warning);
        apply(v);
        EXPECT_EQ(v.messageMarkLine(), after);
    }
    // Tags and notes of a plain view go with its text, line 0's too.
    SourceView out(nullptr, true);
    out.SetText("one\ntwo\n");
    out.setLineTag(0, "error", LineTone::Error);
    out.setLineNote(0, "note");
    EXPECT_EQ(out.lineTone(0), LineTone::Error);
    out.SetText("Compiling Please Wait.....");
    EXPECT_EQ(out.lineTag(0) + out.lineNote(0), "");
    EXPECT_EQ(out.lineTone(0), std::nullopt);
}
