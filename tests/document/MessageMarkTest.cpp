// The marks compiler messages leave: a document's strip mark, which lasts until its line is edited, and the
// tags and notes on the output's lines, which a new text takes away.
#include "document/Document.h"
#include "document/SourceView.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <functional>

TEST(MessageMark, LastsUntilItsLineIsEditedAndFollowsEditsAround) {
    // Lines 0..4; the mark goes on line 2, "c2".
    const QString text = "a0\nb1\nc2\nd3\ne4\n";
    struct Case {
        const char* edit;
        std::function<void(SourceView&)> apply;
        int markAfter;  // -1: gone
    };
    const auto typeAt = [](int col, int line, const QString& s) {
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
    const Case cases[] = {
        {"typing in the line", typeAt(1, 2, "x"), -1},
        {"typing at its start", typeAt(0, 2, "x"), -1},
        {"typing on the line above", typeAt(2, 1, "x"), 2},
        {"a new line above", [](SourceView& v) {
             v.SetSel(2, 0, 2, 0);
             QTest::keyClick(v.editorWidget(), Qt::Key_Return);
         }, 3},
        {"the line above deleted whole", cut(0, 1, 0, 2), 1},
        {"the line below deleted whole", cut(0, 3, 0, 4), 2},
        {"joined to the line above", cut(2, 1, 0, 2), -1},
        {"the line's end deleted", cut(2, 2, 0, 3), -1},
        {"undo of an edit elsewhere", [](SourceView& v) {
             v.SetSel(0, 4, 0, 4);
             QTest::keyClicks(v.editorWidget(), "zz");
             v.document().Undo();
         }, 2},
        {"a reload", [](SourceView& v) { v.SetText("other\ntext\nhere\n"); }, -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.edit);
        SourceView v;
        v.SetText(text);
        v.markMessageLine(2, LineTone::Warning);
        ASSERT_EQ(v.messageMarkLine(), 2);
        c.apply(v);
        EXPECT_EQ(v.messageMarkLine(), c.markAfter);
    }
    // One mark per view; cleared, it is gone.
    SourceView v;
    v.SetText(text);
    v.markMessageLine(1, LineTone::Error);
    v.markMessageLine(3, LineTone::Error);
    EXPECT_EQ(v.messageMarkLine(), 3);
    v.SetSel(0, 1, 0, 1);
    QTest::keyClicks(v.editorWidget(), "x");
    EXPECT_EQ(v.messageMarkLine(), 3) << "the old mark's line is no longer watched";
    v.clearMessageMark();
    EXPECT_EQ(v.messageMarkLine(), -1);
}

TEST(MessageMark, OutputTagsAndNotesGoWithTheTextAndTheViewStaysReadOnly) {
    SourceView out(nullptr, true);
    out.setReadOnly(true);
    out.SetText("banner\nERROR Line 3: x\nWarning w\nError[113] A.ASM 9 : y\n");
    out.setLineTag(1, "error", LineTone::Error);
    out.setLineTag(2, "warning", LineTone::Warning);
    out.setLineTag(3, "error", LineTone::Error);
    out.setLineNote(3, "-> a.pbp line 3");
    out.setLineTag(2, "note", LineTone::Note);  // a second tag replaces the first
    const auto tags = [&] {
        QStringList t;
        for (int line = 0; line < 5; ++line)
            t << out.lineTag(line) + "/" + (out.lineTone(line) ? QString::number(int(*out.lineTone(line))) : "-") +
                     "/" + out.lineNote(line);
        return t;
    };
    EXPECT_EQ(tags(), QStringList({"/-/", "error/0/", "note/2/", "error/0/-> a.pbp line 3", "/-/"}));
    // The user's keys change nothing.
    out.SetSel(0, 1, 0, 1);
    QTest::keyClicks(out.editorWidget(), "typed");
    QTest::keyClick(out.editorWidget(), Qt::Key_Return);
    EXPECT_EQ(out.Text(), "banner\nERROR Line 3: x\nWarning w\nError[113] A.ASM 9 : y\n");
    // A new text, set or loaded, starts without tags, line 0 too.
    out.setLineTag(0, "note", LineTone::Note);
    out.SetText("Compiling Please Wait.....");
    EXPECT_EQ(tags(), QStringList(5, "/-/"));
    out.setLineTag(0, "note", LineTone::Note);
    QTemporaryDir dir;
    QFile f(dir.filePath("temp.dat"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write("fresh\n") == 6);
    f.close();
    out.document().LoadFile(f.fileName());
    EXPECT_EQ(tags(), QStringList(5, "/-/"));
    EXPECT_EQ(out.Text(), "fresh\n");
}
