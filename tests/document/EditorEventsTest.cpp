// The document window's answers to its view's events: the status panels, the tools, indent and outdent,
// the margin click and the context menu, the font toggle, the word sets and the modified mark.
#include "document/Document.h"
#include "document/Language.h"
#include "document/SourceView.h"
#include "document/SourceViewEditor.h"
#include "document/frmEditor.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"
#include "support/Typing.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>
#include <gtest/gtest.h>

using Sci = QsciScintillaBase;

namespace {

struct EditorEvents : ::testing::Test {
    TestWorld world;
    FakeFrame frame;
    frmEditor doc{frame};
    SourceView& view = *doc.View;

    EditorEvents() {
        doc.resize(800, 600);
        doc.show();
        QApplication::processEvents();
    }
    QWidget* keys() const { return view.editorWidget(); }
    void type(const QString& text) { typeText(keys(), text); }
    QString tip() const { return frame.panels[2]; }
    bool tool(const char* id) const { return frame.tools.value(QString::fromLatin1(id).toUpper()); }
    int classAt(int col, int line) const {
        int cls = -1, start = 0, length = 0;
        view.GetTokenAt(col, line, cls, start, length);
        return cls;
    }
    std::array<int, 4> selection() const {
        std::array<int, 4> s{};
        view.GetSel(s[0], s[1], s[2], s[3]);
        return s;
    }
    // A client point on the text: the left edge of a column of a line, half a line down.
    QPoint pointAt(int col, int line) {
        SourceViewEditor& e = SourceViewEditor::of(view);
        const long pos = e.positionFromLineIndex(line, col);
        return {int(e.SendScintilla(Sci::SCI_POINTXFROMPOSITION, 0UL, pos)) + 1,
                int(e.SendScintilla(Sci::SCI_POINTYFROMPOSITION, 0UL, pos)) + e.textHeight(line) / 2};
    }
    void release(Qt::MouseButton button, QPoint at) {
        QWidget* viewport = SourceViewEditor::of(view).viewport();
        QTest::mousePress(viewport, button, Qt::NoModifier, at);
        QTest::mouseRelease(viewport, button, Qt::NoModifier, at);
    }
};

}  // namespace

TEST_F(EditorEvents, CaretMoveShowsThePositionAndTheTipOfTheWordLeftOfTheCaret) {
    type("goto");
    EXPECT_EQ(frame.panels[1], "Line: 1 Col: 5");
    EXPECT_EQ(tip(), "Continue execution at specified label.");
    type("\nHigh");
    EXPECT_EQ(tip(), "Make pin output high.");
    type(" GoTo PORTA var");
    EXPECT_EQ(frame.panels[1], "Line: 2 Col: 20");
    EXPECT_EQ(tip(), "");  // VAR's row has no tip

    // A statement word that no row has, such as a port, keeps the tip standing.
    globals().Ports[1] = 4;
    doc.LoadReservedWords();
    ASSERT_EQ(classAt(11, 1), 10);
    view.SetSel(9, 1, 9, 1);
    EXPECT_EQ(tip(), "Continue execution at specified label.");
    view.SetSel(15, 1, 15, 1);
    EXPECT_EQ(tip(), "Continue execution at specified label.");

    // A keyword inside a comment, a string or a number is no keyword.
    type("\nPause ' goto\nx = \"goto\" + 10goto");
    for (const auto& [col, line] : std::vector<std::pair<int, int>>{{12, 2}, {9, 3}, {19, 3}}) {
        view.SetSel(5, 2, 5, 2);
        ASSERT_EQ(tip(), "Delay (1mSec resolution).");
        view.SetSel(col, line, col, line);
        EXPECT_EQ(tip(), "") << "column " << col << " of line " << line;
    }

    // At column 0 the token at column 0 is taken, there being nothing left of the caret.
    view.SetSel(0, 2, 0, 2);
    EXPECT_EQ(frame.panels[1], "Line: 3 Col: 1");
    EXPECT_EQ(tip(), "Delay (1mSec resolution).");

    // The column shown is the one on screen: a tab reaches to the next multiple of four.
    QTest::keyClick(keys(), Qt::Key_End, Qt::ControlModifier);
    type("\n\tx");
    EXPECT_EQ(frame.panels[1], "Line: 5 Col: 6");
}

TEST_F(EditorEvents, WordSetsGiveEachKindOfTokenItsClass) {
    globals().Ports = {0, 1, 8, 0, 0, 0, 0, 0, 0, 0};
    doc.LoadReservedWords();
    view.SetText("x VAR BYTE : DEFINE OSC 20 ABS y AND $1F OR DEC4 \"s\" PORTB TRISC ; note");
    // x, VAR, BYTE, ":", DEFINE, OSC, 20, ABS, AND (a statement key before a logic word), $1F, OR, DEC4,
    // the string, PORTB of the device, TRISC (the device has no port C), the comment, a blank.
    const std::vector<std::pair<int, int>> expected = {
        {0, 2},  {2, 10}, {6, 12},  {11, 5},  {13, 11}, {20, 11}, {24, 3}, {27, 13}, {33, 10},
        {37, 3}, {41, 14}, {44, 15}, {49, 7}, {53, 10}, {59, 2},  {65, 6}, {1, 0}};
    for (const auto& [col, cls] : expected)
        EXPECT_EQ(classAt(col, 0), cls) << "column " << col;

    // PicBasic has no DEFINE names, sizes or modifiers, and no port words.
    globals().UsePBP = false;
    doc.InitPBPCodes();
    doc.LoadReservedWords();
    for (const auto& [col, cls] : std::vector<std::pair<int, int>>{{6, 2}, {13, 2}, {44, 2}, {53, 2}, {41, 14}})
        EXPECT_EQ(classAt(col, 0), cls) << "column " << col;
}

TEST_F(EditorEvents, ACompilerKindChangeReloadsTheWordSetsOfTheFirstDocumentWhoseCaretMoves) {
    frmEditor other{frame};
    view.SetText("BYTE");
    other.View->SetText("BYTE");
    ASSERT_EQ(classAt(0, 0), 12);

    globals().UsePBP = false;
    QTest::keyClick(keys(), Qt::Key_End);
    EXPECT_EQ(globals().PBPCodes[0][0], "Branch");
    EXPECT_EQ(classAt(0, 0), 2);
    // The table fits again, so the other document keeps the sets it had.
    other.View->SetSel(2, 0, 2, 0);
    int cls = 0, start = 0, length = 0;
    other.View->GetTokenAt(0, 0, cls, start, length);
    EXPECT_EQ(cls, 12);

    globals().UsePBP = true;
    QTest::keyClick(keys(), Qt::Key_Home);
    EXPECT_EQ(globals().PBPCodes[0][0], "@");
    EXPECT_EQ(classAt(0, 0), 12);
}

TEST_F(EditorEvents, IndentAndOutdentWorkOnTheSelectedLinesAndLeaveThemSelected) {
    view.SetText("a\n  b\n      c\n \td\n\te\n\nf");
    view.SetSel(0, 0, 0, 6);  // ends at column 0 of the last line: that line counts too
    view.ExecuteCommand(EditCommand::Indent);
    EXPECT_EQ(view.Text(), "\ta\n\t  b\n\t      c\n\t \td\n\t\te\n\t\n\tf");
    EXPECT_EQ(selection(), (std::array<int, 4>{0, 0, 2, 6}));

    view.ExecuteCommand(EditCommand::Outdent);
    view.ExecuteCommand(EditCommand::Outdent);
    // One tab, or up to four blanks, a step; a blank and then a tab lose the blank only.
    EXPECT_EQ(view.Text(), "a\nb\n  c\n\td\ne\n\nf");
    EXPECT_EQ(selection(), (std::array<int, 4>{0, 0, 1, 6}));

    // Nothing selected: the caret's line, selected afterwards.
    view.SetSel(1, 2, 1, 2);
    view.ExecuteCommand(EditCommand::Indent);
    EXPECT_EQ(view.Text(), "a\nb\n\t  c\n\td\ne\n\nf");
    EXPECT_EQ(selection(), (std::array<int, 4>{0, 2, 4, 2}));

    // The whole indent is one undo step.
    view.document().Undo();
    EXPECT_EQ(view.Text(), "a\nb\n  c\n\td\ne\n\nf");

    view.ExecuteCommand(EditCommand::GotoLine);
    EXPECT_EQ(frame.modals, QStringList{"Goto Line"});
    EXPECT_EQ(view.Text(), "a\nb\n  c\n\td\ne\n\nf");
}

TEST_F(EditorEvents, TheToolsFollowSelectionUndoAndClipboard) {
    type("abc");
    QApplication::processEvents();
    EXPECT_FALSE(tool("ID_Cut"));
    EXPECT_FALSE(tool("ID_Copy"));
    EXPECT_TRUE(tool("ID_Undo"));
    EXPECT_FALSE(tool("ID_Redo"));

    QTest::keyClick(keys(), Qt::Key_Home, Qt::ShiftModifier);
    EXPECT_TRUE(tool("ID_Cut"));
    EXPECT_TRUE(tool("ID_Copy"));

    view.document().Undo();
    QApplication::processEvents();
    EXPECT_EQ(tool("ID_Undo"), view.document().CanUndo());
    EXPECT_TRUE(tool("ID_Redo"));

    frame.tools["ID_PASTE"] = false;
    QTest::mouseMove(SourceViewEditor::of(view).viewport(), QPoint(100, 30));
    EXPECT_TRUE(tool("ID_Paste"));
}

TEST_F(EditorEvents, AReleaseInTheMarginSelectsTheLineAndAnyReleaseRemembersTheTokenClass) {
    view.SetText("High PORTB\n\n' note");
    const int x = 5;
    release(Qt::LeftButton, QPoint(x, pointAt(0, 0).y()));
    EXPECT_EQ(selection(), (std::array<int, 4>{0, 0, 10, 0}));
    EXPECT_TRUE(tool("ID_Cut"));
    EXPECT_EQ(globals().ClickedTokenClass, 10);
    EXPECT_TRUE(tool("ID_TokenColor"));

    // An empty line: nothing to select, nothing to colour.
    release(Qt::LeftButton, QPoint(x, pointAt(0, 1).y()));
    EXPECT_FALSE(view.TextSelected());
    EXPECT_FALSE(tool("ID_Cut"));
    EXPECT_EQ(globals().ClickedTokenClass, 0);
    EXPECT_FALSE(tool("ID_TokenColor"));
    EXPECT_TRUE(frame.popups.isEmpty());

    // The right button on the comment: its class, and the Edit menu as a context menu.
    release(Qt::RightButton, pointAt(3, 2));
    EXPECT_EQ(globals().ClickedTokenClass, 6);
    EXPECT_TRUE(tool("ID_TokenColor"));
    EXPECT_EQ(frame.popups, QStringList{"ID_Edit"});
}

TEST_F(EditorEvents, ShiftF2TogglesTheFontFaceAndSavesIt) {
    QTest::keyClick(keys(), Qt::Key_F2);
    EXPECT_TRUE(world.prompts.boxes.empty());

    QTest::keyClick(keys(), Qt::Key_F2, Qt::ShiftModifier);
    QTest::keyClick(keys(), Qt::Key_F2, Qt::ShiftModifier);
    ASSERT_EQ(world.prompts.boxes.size(), 2u);
    EXPECT_EQ(world.prompts.boxes[0].text, "Edit window font set to: Courier New");
    EXPECT_EQ(world.prompts.boxes[0].title, "Toggle Font");
    EXPECT_EQ(world.prompts.boxes[0].icon, Icon::Information);
    EXPECT_EQ(world.prompts.boxes[0].buttons, Buttons::Ok);
    EXPECT_EQ(world.prompts.boxes[1].text, "Edit window font set to: Courier");
    EXPECT_EQ(setting(Key::FontName), "Courier");
    EXPECT_EQ(view.FontName(), "Courier");

    // Only "Courier" exactly becomes "Courier New"; any other face becomes "Courier".
    saveSetting(Key::FontName, "courier");
    QTest::keyClick(keys(), Qt::Key_F2, Qt::ShiftModifier);
    EXPECT_EQ(setting(Key::FontName), "Courier");
    QTest::keyClick(keys(), Qt::Key_F2, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_EQ(world.prompts.boxes.size(), 3u);
}

TEST(EditorWindow, TheSubWindowMarksAChangedTextWhileTheCaptionStaysThePath) {
    TestWorld world;
    FakeFrame frame;
    QMdiArea area;
    auto* doc = new frmEditor(frame);
    const QString path = world.file("a.pbp");
    doc->setCaption(path);
    QMdiSubWindow* sub = area.addSubWindow(doc);
    area.show();
    sub->show();
    EXPECT_EQ(sub->windowTitle(), path + "[*]");
    EXPECT_FALSE(sub->isWindowModified());

    typeText(doc->View->editorWidget(), "x");
    EXPECT_TRUE(sub->isWindowModified());
    EXPECT_EQ(doc->Caption(), path);

    doc->setCaption(world.file("b[*].pbp"));
    EXPECT_EQ(sub->windowTitle(), world.file("b[*][*].pbp") + "[*]");
    doc->View->document().SaveFile(world.file("b.pbp"));
    EXPECT_FALSE(sub->isWindowModified());
    EXPECT_EQ(doc->Caption(), world.file("b[*].pbp"));
}
