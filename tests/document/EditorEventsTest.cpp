// The document window's answers to its view's events: status panels, tools, indent, margin click and
// context menu, the font toggle, the word sets and the modified mark.
#include "document/Document.h"
#include "core/ToolIds.h"
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

const QString kGotoTip = QStringLiteral("Continue execution at specified label.");
const QString kPauseTip = QStringLiteral("Delay (1mSec resolution).");

struct EditorEvents : ::testing::Test {
    TestWorld world;
    FakeFrame frame;
    frmEditor doc{frame};
    SourceView& view = *doc.View;

    EditorEvents() {
        frame.docs.add(doc);
        doc.resize(800, 600);
        doc.show();
        QApplication::processEvents();
    }
    QWidget* keys() const { return view.editorWidget(); }
    void type(const QString& text) { typeText(keys(), text); }
    // The tip panel after the caret is put here.
    QString tipAt(int col, int line) {
        view.SetSel(col, line, col, line);
        return frame.panels[2];
    }
    bool tool(const char* id) const { return frame.tools.value(QString::fromLatin1(id).toUpper()); }
    static int classAt(SourceView& v, int col, int line) {
        int cls = -1, start = 0, length = 0;
        v.GetTokenAt(col, line, cls, start, length);
        return cls;
    }
    std::array<int, 4> selection() const {
        std::array<int, 4> s{};
        view.GetSel(s[0], s[1], s[2], s[3]);
        return s;
    }
    // A press and release on the text, at the left edge of a column (or x), half a line down.
    void click(Qt::MouseButton button, int col, int line, int x = -1) {
        SourceViewEditor& e = SourceViewEditor::of(view);
        const long pos = e.positionFromLineIndex(line, col);
        const QPoint at(x >= 0 ? x : int(e.SendScintilla(Sci::SCI_POINTXFROMPOSITION, 0UL, pos)) + 1,
                        int(e.SendScintilla(Sci::SCI_POINTYFROMPOSITION, 0UL, pos)) + e.textHeight(line) / 2);
        QTest::mousePress(e.viewport(), button, Qt::NoModifier, at);
        QTest::mouseRelease(e.viewport(), button, Qt::NoModifier, at);
    }
};

}  // namespace

TEST_F(EditorEvents, CaretMoveShowsThePositionAndTheTipOfTheWordLeftOfTheCaret) {
    type("goto");
    EXPECT_EQ(frame.panels[1], "Line: 1 Col: 5");
    EXPECT_EQ(frame.panels[2], kGotoTip);
    type("\nHigh GoTo PORTA var");
    EXPECT_EQ(frame.panels[1], "Line: 2 Col: 20");
    EXPECT_EQ(frame.panels[2], "") << "VAR's row has no tip";
    // A statement word that no row has, such as a port, keeps the tip standing.
    globals().Ports[1] = 4;
    doc.LoadReservedWords();
    ASSERT_EQ(classAt(view, 11, 1), 10);
    EXPECT_EQ(tipAt(9, 1), kGotoTip);
    EXPECT_EQ(tipAt(15, 1), kGotoTip);
    // A keyword inside a comment, a string or a number is no keyword.
    type("\nPause ' goto\nx = \"goto\" + 10goto");
    for (const auto& [col, line] : std::vector<std::pair<int, int>>{{12, 2}, {9, 3}, {19, 3}}) {
        ASSERT_EQ(tipAt(5, 2), kPauseTip);
        EXPECT_EQ(tipAt(col, line), "") << "column " << col << " of line " << line;
    }
    EXPECT_EQ(tipAt(0, 2), kPauseTip) << "at column 0 the token at column 0";
    EXPECT_EQ(frame.panels[1], "Line: 3 Col: 1");
    QTest::keyClick(keys(), Qt::Key_End, Qt::ControlModifier);
    type("\n\tx");
    EXPECT_EQ(frame.panels[1], "Line: 5 Col: 6") << "the column on screen: a tab reaches to the next multiple of 4";
    // Text that changes under a caret that stays is told again: Delete, and a recovery's replacement.
    view.SetText("Pause goto");
    ASSERT_EQ(frame.panels[2], kPauseTip);
    for (int i = 0; i < 6; ++i)
        QTest::keyClick(keys(), Qt::Key_Delete);
    EXPECT_EQ(frame.panels[2], kGotoTip);
    view.document().DeleteImpl(0, 0, 4, 0);
    view.document().InsertImpl(0, 0, QStringLiteral("pause"));
    view.document().UpdateViews();
    EXPECT_EQ(frame.panels[2], kPauseTip);
}

TEST_F(EditorEvents, WordSetsGiveEachKindOfTokenItsClassAndFollowTheCompilerKind) {
    globals().Ports = {0, 1, 8, 0, 0, 0, 0, 0, 0, 0};
    doc.LoadReservedWords();
    view.SetText("x VAR BYTE : DEFINE OSC 20 ABS y AND $1F OR DEC4 \"s\" PORTB TRISC ; note");
    // x, VAR, BYTE, ":", DEFINE, OSC, 20, ABS, AND (a statement key before a logic word), $1F, OR, DEC4,
    // the string, PORTB of the device, TRISC (the device has no port C), the comment, a blank.
    const std::vector<std::pair<int, int>> expected = {
        {0, 2},  {2, 10}, {6, 12},  {11, 5},  {13, 11}, {20, 11}, {24, 3}, {27, 13}, {33, 10},
        {37, 3}, {41, 14}, {44, 15}, {49, 7}, {53, 10}, {59, 2},  {65, 6}, {1, 0}};
    for (const auto& [col, cls] : expected)
        EXPECT_EQ(classAt(view, col, 0), cls) << "column " << col;

    // A change of kind reloads the sets of the first document whose caret moves; the others keep theirs.
    frmEditor other{frame};
    other.View->SetText("BYTE");
    globals().UsePBP = false;
    QTest::keyClick(keys(), Qt::Key_End);
    EXPECT_EQ(globals().PBPCodes[0][0], "Branch");
    // PicBasic has no DEFINE names, sizes or modifiers, and no port words.
    for (const auto& [col, cls] : std::vector<std::pair<int, int>>{{6, 2}, {13, 2}, {44, 2}, {53, 2}, {41, 14}})
        EXPECT_EQ(classAt(view, col, 0), cls) << "column " << col;
    other.View->SetSel(2, 0, 2, 0);
    EXPECT_EQ(classAt(*other.View, 0, 0), 12);
    globals().UsePBP = true;
    QTest::keyClick(keys(), Qt::Key_Home);
    EXPECT_EQ(globals().PBPCodes[0][0], "@");
    EXPECT_EQ(classAt(view, 6, 0), 12);
}

TEST_F(EditorEvents, IndentAndOutdentWorkOnTheSelectedLinesAsOneStepAndLeaveThemSelected) {
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
    view.SetSel(1, 2, 1, 2);  // nothing selected: the caret's line, selected afterwards
    view.ExecuteCommand(EditCommand::Indent);
    EXPECT_EQ(view.Text(), "a\nb\n\t  c\n\td\ne\n\nf");
    EXPECT_EQ(selection(), (std::array<int, 4>{0, 2, 4, 2}));
    view.document().Undo();
    EXPECT_EQ(view.Text(), "a\nb\n  c\n\td\ne\n\nf");
    view.ExecuteCommand(EditCommand::GotoLine);
    EXPECT_EQ(frame.modals, QStringList{"Goto Line"});
}

TEST_F(EditorEvents, TheToolsFollowSelectionUndoClipboardAndMarginClicks) {
    type("abc");
    QApplication::processEvents();
    EXPECT_EQ(std::make_tuple(tool(ToolId::Cut), tool(ToolId::Copy), tool(ToolId::Undo), tool(ToolId::Redo)),
              std::make_tuple(false, false, true, false));
    QTest::keyClick(keys(), Qt::Key_Home, Qt::ShiftModifier);
    EXPECT_TRUE(tool(ToolId::Cut) && tool(ToolId::Copy));
    view.document().Undo();
    QApplication::processEvents();
    EXPECT_TRUE(tool(ToolId::Redo));
    frame.tools["ID_PASTE"] = false;
    QTest::mouseMove(SourceViewEditor::of(view).viewport(), QPoint(100, 30));
    EXPECT_TRUE(tool(ToolId::Paste));

    // A release in the margin selects the line; any release remembers the token class.
    view.SetText("High PORTB\n\n' note");
    click(Qt::LeftButton, 0, 0, 5);
    EXPECT_EQ(selection(), (std::array<int, 4>{0, 0, 10, 0}));
    EXPECT_EQ(std::make_tuple(tool(ToolId::Cut), globals().ClickedTokenClass, tool(ToolId::TokenColor)),
              std::make_tuple(true, 10, true));
    click(Qt::LeftButton, 0, 1, 5);  // an empty line: nothing to select, nothing to colour
    EXPECT_EQ(std::make_tuple(view.TextSelected(), globals().ClickedTokenClass, tool(ToolId::TokenColor)),
              std::make_tuple(false, 0, false));
    EXPECT_TRUE(frame.popups.isEmpty());
    click(Qt::RightButton, 3, 2);  // the comment: its class, and the Edit menu as a context menu
    EXPECT_EQ(std::make_tuple(globals().ClickedTokenClass, tool(ToolId::TokenColor)), std::make_tuple(6, true));
    EXPECT_EQ(frame.popups, QStringList{ToolId::Edit});
}

TEST_F(EditorEvents, ShiftF2TogglesTheFontFaceAndSavesIt) {
    QTest::keyClick(keys(), Qt::Key_F2);
    QTest::keyClick(keys(), Qt::Key_F2, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_TRUE(world.prompts.boxes.empty());
    QTest::keyClick(keys(), Qt::Key_F2, Qt::ShiftModifier);
    EXPECT_EQ(view.FontName(), "Courier New");
    QTest::keyClick(keys(), Qt::Key_F2, Qt::ShiftModifier);
    ASSERT_EQ(world.prompts.boxes.size(), 2u);
    const Box& box = world.prompts.boxes[0];
    EXPECT_EQ(box.text + "|" + box.title, "Edit window font set to: Courier New|Toggle Font");
    EXPECT_EQ(std::make_pair(box.icon, box.buttons), std::make_pair(Icon::Information, Buttons::Ok));
    EXPECT_EQ(world.prompts.boxes[1].text, "Edit window font set to: Courier");
    EXPECT_EQ(view.FontName(), "Courier");
    saveSetting(Key::FontName, "courier");  // only "Courier" exactly becomes "Courier New"
    QTest::keyClick(keys(), Qt::Key_F2, Qt::ShiftModifier);
    EXPECT_EQ(setting(Key::FontName), "Courier");
}

TEST(EditorWindow, TheSubWindowMarksAChangedTextWhileTheCaptionStaysThePath) {
    TestWorld world;
    FakeFrame frame;
    QMdiArea area;
    auto* doc = new frmEditor(frame);
    doc->setCaption(world.file("b[*].pbp"));
    QMdiSubWindow* sub = area.addSubWindow(doc);
    area.show();
    sub->show();
    EXPECT_EQ(sub->windowTitle(), world.file("b[*][*].pbp") + "[*]");
    EXPECT_FALSE(sub->isWindowModified());
    typeText(doc->View->editorWidget(), "x");
    EXPECT_TRUE(sub->isWindowModified());
    EXPECT_EQ(doc->Caption(), world.file("b[*].pbp"));
    doc->View->document().SaveFile(world.file("b.pbp"));
    EXPECT_FALSE(sub->isWindowModified());
}
