// The keys and aids of a document while a program is written: bookmarks, comment toggling, Enter's indent,
// the fold margin, the completion list, the call tip, and Alt keys that no menu takes.
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/SourceViewEditor.h"
#include "document/frmEditor.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"
#include "support/Typing.h"

#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>

using Sci = QsciScintillaBase;

namespace {

struct CodingAids : ::testing::Test {
    TestWorld world;
    FakeFrame frame;
    frmEditor doc{frame};
    SourceView& view = *doc.View;

    CodingAids() {
        frame.docs.add(doc);
        doc.resize(800, 600);
        doc.show();
        QApplication::processEvents();
    }
    QWidget* keys() const { return view.editorWidget(); }
    void type(const QString& text) { typeText(keys(), text); }
    void key(Qt::Key k, Qt::KeyboardModifiers mods = Qt::NoModifier) { QTest::keyClick(keys(), k, mods); }
    void caretTo(int line, int col = 0) { view.SetSel(col, line, col, line); }
    QString line(int n) { return view.document().GetLine(n); }
    QStringList lines() { return view.Text().split('\n'); }
    bool lineVisible(int n) const { return SourceViewEditor::of(view).SendScintilla(Sci::SCI_GETLINEVISIBLE, n) != 0; }
};

QStringList listOf(const std::vector<QString>& words) { return QStringList(words.begin(), words.end()); }

}  // namespace

TEST_F(CodingAids, BookmarksToggleWalkBothWaysAroundAndMoveWithTheirLines) {
    view.SetText("a\nb\nc\nd\ne\nf\ng\nh");
    key(Qt::Key_F2);
    EXPECT_EQ(view.CaretY(), 0) << "without bookmarks F2 goes nowhere";
    for (int l : {5, 2}) {
        caretTo(l);
        key(Qt::Key_F2, Qt::ControlModifier);
    }
    EXPECT_EQ(view.bookmarks(), (QList<int>{2, 5}));
    caretTo(0);
    std::vector<int> visited;
    for (int i = 0; i < 3; ++i) {
        key(Qt::Key_F2);
        visited.push_back(view.CaretY());
    }
    for (int i = 0; i < 3; ++i) {
        key(Qt::Key_F2, Qt::ControlModifier | Qt::ShiftModifier);
        visited.push_back(view.CaretY());
    }
    EXPECT_EQ(visited, (std::vector<int>{2, 5, 2, 5, 2, 5})) << "forward from the top, then back, wrapping both ways";

    // Lines typed above and a line deleted above carry the marks along.
    caretTo(0);
    type("new\n\n");
    EXPECT_EQ(view.bookmarks(), (QList<int>{4, 7}));
    view.SetSel(0, 0, 0, 1);
    key(Qt::Key_Delete);
    EXPECT_EQ(view.bookmarks(), (QList<int>{3, 6}));
    EXPECT_EQ(line(3), "c");

    // A compiler message's arrow on a bookmarked line is another mark: each goes its own way.
    view.markMessageLine(3, LineTone::Error);
    caretTo(3);
    key(Qt::Key_F2, Qt::ControlModifier);
    EXPECT_EQ(view.bookmarks(), (QList<int>{6}));
    EXPECT_EQ(view.messageMarkLine(), 3);

    // Shift+F2 stays the font toggle and marks nothing.
    const QString face = setting(Key::FontName);
    key(Qt::Key_F2, Qt::ShiftModifier);
    EXPECT_NE(setting(Key::FontName), face);
    EXPECT_EQ(view.bookmarks(), (QList<int>{6}));
}

TEST_F(CodingAids, CtrlSlashTogglesCommentsOverTheSelectedLinesAsOneUndoStep) {
    const QString text = "main:\n\tHIGH 0\n\t  LOW 0\n\n\tGOTO main";
    view.SetText(text);
    // From inside line 1 to the start of line 4: line 4 isn't taken, the blank line 3 stays as it is.
    view.SetSel(3, 1, 0, 4);
    key(Qt::Key_Slash, Qt::ControlModifier);
    EXPECT_EQ(lines(), (QStringList{"main:", "\t'HIGH 0", "\t'  LOW 0", "", "\tGOTO main"}));
    int sc, sl, ec, el;
    view.GetSel(sc, sl, ec, el);
    EXPECT_EQ((std::array{sc, sl, ec, el}), (std::array{0, 1, 0, 4})) << "the same lines stay selected";
    key(Qt::Key_Slash, Qt::ControlModifier);
    EXPECT_EQ(view.Text(), text) << "a second toggle gives them back";
    key(Qt::Key_Slash, Qt::ControlModifier);
    view.document().Undo();
    EXPECT_EQ(view.Text(), text) << "one undo takes the whole toggle back";

    // Without a selection the caret's line alone; a line with ' and one without: all get one more.
    caretTo(0, 2);
    key(Qt::Key_Slash, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(line(0), "'main:");
    view.SetSel(0, 0, 6, 1);
    key(Qt::Key_Slash, Qt::ControlModifier);
    EXPECT_EQ(lines().mid(0, 2), (QStringList{"''main:", "'\tHIGH 0"})) << "at the smallest indent";
}

TEST_F(CodingAids, EnterKeepsTheIndentOfTheLineAboveInOneUndoStep) {
    type("main:\n\tFOR i = 0 TO 3\n");
    EXPECT_EQ(line(2), "\t");
    type("  x\n");
    EXPECT_EQ(line(3), "\t  ") << "tabs and blanks as they are";
    type("y");
    EXPECT_EQ(lines(), (QStringList{"main:", "\tFOR i = 0 TO 3", "\t  x", "\t  y"}));
    view.document().Undo();
    view.document().Undo();
    EXPECT_EQ(lines(), (QStringList{"main:", "\tFOR i = 0 TO 3", "\t  x"})) << "the new line and its indent go together";
    caretTo(0, 5);
    key(Qt::Key_Return);
    EXPECT_EQ(line(1), "") << "a line without indent gives none";
}

TEST_F(CodingAids, TheFoldMarginFollowsTheBlocksAndFoldsThem) {
    view.SetText("main:\nIF a THEN\n  DO\n    x = x + 1\n  LOOP\nENDIF\nASM\n  nop\nENDASM\nEND");
    view.updateFolds();
    const std::vector<FoldLevel> expected = {{0, false}, {0, true},  {1, true},  {2, false}, {2, false},
                                             {1, false}, {0, true},  {1, false}, {1, false}, {0, false}};
    for (int l = 0; l < int(expected.size()); ++l)
        EXPECT_EQ(view.foldLevel(l), expected[l]) << "line " << l;
    // Folding the IF hides its body and its ENDIF; the ASM block below stays in view.
    SourceViewEditor::of(view).SendScintilla(Sci::SCI_FOLDLINE, 1, long(Sci::SC_FOLDACTION_CONTRACT));
    for (int l = 0; l < 10; ++l)
        EXPECT_EQ(lineVisible(l), l < 2 || l > 5) << "line " << l;

    // Typing changes the blocks: the margin follows after a pause, without anyone asking.
    caretTo(9);
    type("WHILE 1\nWEND\n");
    QTRY_COMPARE_WITH_TIMEOUT(view.foldLevel(9), (FoldLevel{0, true}), 10000);
    EXPECT_EQ(view.foldLevel(10), (FoldLevel{1, false}));
    EXPECT_EQ(view.foldLevel(11), (FoldLevel{0, false}));
}

TEST_F(CodingAids, AnAltKeyThatNoMenuTakesTypesNothing) {
    type("ab");
    for (Qt::Key k : {Qt::Key_Q, Qt::Key_1, Qt::Key_Z})
        key(k, Qt::AltModifier);
    key(Qt::Key_Q, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(view.Text(), "ab");
    key(Qt::Key_Left, Qt::AltModifier);
    type("c");
    EXPECT_EQ(view.Text(), "abc") << "plain typing still goes in";
}

TEST_F(CodingAids, CompletionListsTheKindsWordsPortsAndProgramNamesAndInsertsInTheTypedCase) {
    globals().Ports = {0, 6, 8, 0, 0, 0, 0, 0, 0, 0};
    view.SetText("LedPin VAR PORTB.0\nMaxCount CON 10\nMainLoop:\n");
    caretTo(3);
    const char* probe = "HSerout DO #CONFIG PORTB TRISA Symbol LedPin MaxCount MainLoop";
    const auto listed = [&] {
        QStringList out;
        const QStringList words = listOf(view.completionWords());
        for (const QString& w : QString::fromLatin1(probe).split(' '))
            if (words.contains(w))
                out << w;
        return out.join(' ');
    };
    key(Qt::Key_Space, Qt::ControlModifier);
    ASSERT_TRUE(view.completionShown());
    EXPECT_EQ(listed(), "HSerout DO #CONFIG PORTB TRISA LedPin MaxCount MainLoop");
    key(Qt::Key_Escape);
    globals().UsePBP = false;
    doc.InitPBPCodes();
    key(Qt::Key_Space, Qt::ControlModifier);
    ASSERT_TRUE(view.completionShown());
    EXPECT_EQ(listed(), "Symbol LedPin MaxCount MainLoop") << "PicBasic: its own words, no ports";
    key(Qt::Key_Escape);
    globals().UsePBP = true;
    doc.InitPBPCodes();

    // The typed prefix's case: all lower gives lower, anything else the word as listed. Enter and Tab take
    // the word chosen; a word typed out in full (MAX is a word of the kind) keeps what the key does.
    struct Case {
        const char* typed;
        Qt::Key key;
        const char* line;
    };
    for (const Case& c : {Case{"hsero", Qt::Key_Return, "hserout"}, Case{"HSerO", Qt::Key_Tab, "HSerout"},
                          Case{"hse", Qt::Key_Return, "hserin"}, Case{"mainl", Qt::Key_Return, "mainloop"},
                          Case{"MaxC", Qt::Key_Tab, "MaxCount"}, Case{"Max", Qt::Key_Tab, "Max\t"}}) {
        view.SetText("LedPin VAR PORTB.0\nMaxCount CON 10\nMainLoop:\n");
        caretTo(3);
        type(c.typed);
        key(Qt::Key_Space, Qt::ControlModifier);
        ASSERT_TRUE(view.completionShown()) << c.typed;
        key(c.key);
        EXPECT_FALSE(view.completionShown());
        EXPECT_EQ(view.Text().split('\n').value(3), c.line) << c.typed << ": no new line, no tab";
        if (QString(c.line) == "MaxCount") {
            view.document().Undo();
            EXPECT_EQ(line(3), "MaxC") << "the insertion is one undo step";
        }
    }
}

TEST_F(CodingAids, TheThirdLetterOpensTheListUnlessTheSettingSaysNo) {
    type("hs");
    EXPECT_FALSE(view.completionShown());
    type("e");
    EXPECT_TRUE(view.completionShown());
    key(Qt::Key_Escape);
    type("r");
    EXPECT_FALSE(view.completionShown()) << "closed, it stays closed while the word grows";
    type("\n' hse\n\"hse");
    EXPECT_FALSE(view.completionShown()) << "nothing is completed in a comment or a string";
    saveSetting(Key::AutoComplete, "0");
    type("\nhse");
    EXPECT_FALSE(view.completionShown());
    key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_TRUE(view.completionShown()) << "Ctrl+Space still opens it";
}

TEST_F(CodingAids, ABlankBehindAStatementShowsItsSyntaxBesideTheCaretAndTheStatusTipStays) {
    type("HSEROUT");
    const QString statusTip = frame.panels[2];
    ASSERT_EQ(statusTip, "Hardware asynchronous serial ouput.");
    key(Qt::Key_Escape);
    type(" ");
    EXPECT_TRUE(view.callTipShown());
    EXPECT_EQ(view.callTipText(), "HSEROUT [Item{,Item...}]");
    EXPECT_EQ(frame.panels[2], "") << "the status tip goes on as before: a blank is no statement word";
    key(Qt::Key_Left);
    EXPECT_EQ(frame.panels[2], statusTip);
    key(Qt::Key_End);
    key(Qt::Key_Return);
    EXPECT_FALSE(view.callTipShown());
    type("x = 1 ");
    EXPECT_FALSE(view.callTipShown()) << "no statement, no tip";
    type("' GOSUB ");
    EXPECT_FALSE(view.callTipShown()) << "nor in a comment";
}

TEST_F(CodingAids, TheProgramIsScannedAgainOnlyAfterItsTextChanged) {
    view.SetText("main:\nGOSUB blink\nblink: RETURN");
    const std::vector<ProgramSymbol> first = doc.programSymbols();
    ASSERT_EQ(first.size(), 2u);
    EXPECT_EQ(first[1].kind, SymbolKind::Subroutine);
    const int scans = doc.scans();
    doc.programSymbols();
    EXPECT_EQ(doc.scans(), scans);
    view.SetText(view.Text() + "\nfast:");
    EXPECT_EQ(doc.programSymbols().size(), 3u);
    doc.programSymbols();
    EXPECT_EQ(doc.scans(), scans + 1);
}
