// The editing control: selection and positions, commands, events, tokens, colours, find and print.
#include "document/Document.h"
#include "document/FindDialog.h"
#include "document/Language.h"
#include "document/SourceLexer.h"
#include "document/SourceView.h"
#include "document/SourceViewAccessible.h"
#include "document/TokenInfo.h"
#include "platform/Failure.h"
#include "platform/SystemColors.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QFontInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <Qsci/qsciprinter.h>
#include <gtest/gtest.h>

using Sci = QsciScintillaBase;

namespace {

void setUpPicBasic(SourceView& view) {
    Language& lang = view.document().language();
    lang.setSLCommentStart("'");
    lang.setSLCommentStart2(";");
    lang.setStringDelimiter("\"");
    lang.AddReservedWord(0, "@");
    lang.AddReservedWord(0, "GoTo");
    lang.AddReservedWord(0, "High");
    lang.AddReservedWord(2, "BYTE");
    lang.AddReservedWord(4, "AND");
}

// Lays the view out and paints it, as the screen would.
void paint(SourceView& view) {
    if (!view.isVisible()) {
        view.resize(800, 600);
        view.show();
    }
    (void)view.grab();
}

int styleAt(SourceView& view, int col, int line) {
    const long pos = view.positionFromLineIndex(line, col);
    return int(view.SendScintilla(Sci::SCI_GETSTYLEAT, pos));
}

struct Events {
    std::vector<std::pair<int, int>> carets, lines, keysDown, keysUp;
    std::vector<std::array<int, 4>> mouseUps, mouseMoves;
    int dblClicks = 0;
    explicit Events(SourceView& v) {
        QObject::connect(&v, &SourceView::CaretMove, [this](int x, int y) { carets.emplace_back(x, y); });
        QObject::connect(&v, &SourceView::LinesChanged, [this](int a, int b) { lines.emplace_back(a, b); });
        QObject::connect(&v, &SourceView::KeyDown, [this](int k, int s) { keysDown.emplace_back(k, s); });
        QObject::connect(&v, &SourceView::KeyUp, [this](int k, int s) { keysUp.emplace_back(k, s); });
        QObject::connect(&v, &SourceView::MouseUp,
                         [this](int b, int s, int x, int y) { mouseUps.push_back({b, s, x, y}); });
        QObject::connect(&v, &SourceView::MouseMove,
                         [this](int b, int s, int x, int y) { mouseMoves.push_back({b, s, x, y}); });
        QObject::connect(&v, &SourceView::DblClick, [this] { ++dblClicks; });
    }
};

}  // namespace

TEST(SourceView, AnEmptyLineHasLengthZeroAndCanBeSelectedAtColumnZero) {
    SourceView view;
    view.SetText("first\n\nthird");
    EXPECT_EQ(view.document().NumLines(), 3);
    EXPECT_EQ(view.document().GetLineLength(1), 0);
    EXPECT_EQ(view.document().GetLineLength(0), 5);
    view.SetSel(0, 1, 0, 1);
    int sc, sl, ec, el;
    view.GetSel(sc, sl, ec, el);
    EXPECT_EQ((std::array{sc, sl, ec, el}), (std::array{0, 1, 0, 1}));
    EXPECT_EQ(view.CaretY(), 1);
    EXPECT_FALSE(view.TextSelected());
}

TEST(SourceView, SelectionsUseCharacterColumnsAndComeBackInOrder) {
    SourceView view;
    view.SetText(QString::fromUtf8("caf\xC3\xA9 x\n\xE2\x82\xAC y"));
    view.SetSel(5, 0, 6, 0);
    EXPECT_EQ(view.selectedText(), "x");
    view.SetSel(3, 1, 0, 0);  // backwards, across the lines
    int sc, sl, ec, el;
    view.GetSel(sc, sl, ec, el);
    EXPECT_EQ((std::array{sc, sl, ec, el}), (std::array{0, 0, 3, 1}));
    EXPECT_TRUE(view.TextSelected());
    EXPECT_EQ(view.CaretY(), 0);
    // A column past the line's end is its end.
    view.SetSel(0, 0, 99, 0);
    EXPECT_EQ(view.selectedText(), QString::fromUtf8("caf\xC3\xA9 x"));
    view.SetSel(1, 0, 1, 0);
    view.SelectWord();
    EXPECT_EQ(view.selectedText(), QString::fromUtf8("caf\xC3\xA9"));
}

TEST(SourceView, ExecuteCommandDeliversTheEventFirstAndAZeroCancels) {
    SourceView view;
    view.SetText("a\nb\nc");
    std::vector<int> seen;
    bool cancel = true;
    QObject::connect(&view, &SourceView::ExecuteCommandEvent, [&](int& n) {
        seen.push_back(n);
        if (cancel)
            n = 0;
    });
    view.SetSel(0, 0, 1, 1);
    view.ExecuteCommand(43);
    EXPECT_EQ(seen, std::vector<int>{43});
    EXPECT_EQ(view.Text(), "a\nb\nc");
    EXPECT_FALSE(view.document().CanUndo());

    // Passed through, indent and outdent are the control's own, over the selection's lines, one undo step.
    cancel = false;
    view.ExecuteCommand(43);
    EXPECT_EQ(view.Text(), "\ta\n\tb\nc");
    view.ExecuteCommand(44);
    EXPECT_EQ(view.Text(), "a\nb\nc");
    view.document().Undo();
    EXPECT_EQ(view.Text(), "\ta\n\tb\nc");
    view.document().Undo();
    EXPECT_EQ(view.Text(), "a\nb\nc");
    EXPECT_FALSE(view.document().CanUndo());

    // Goto line has no fallback; an unknown number does nothing; a Scintilla command number runs it.
    view.SetSel(0, 0, 0, 0);
    view.ExecuteCommand(39);
    view.ExecuteCommand(12345);
    EXPECT_EQ(view.Text(), "a\nb\nc");
    view.ExecuteCommand(Sci::SCI_DOCUMENTEND);
    EXPECT_EQ(view.CaretY(), 2);
    EXPECT_EQ(seen, (std::vector<int>{43, 43, 44, 39, 12345, Sci::SCI_DOCUMENTEND}));
}

TEST(SourceView, CaretMoveAndLinesChangedAreDeliveredAtOnce) {
    SourceView view;
    Events ev(view);
    view.SetText("one\ntwo");
    ev.carets.clear();
    ev.lines.clear();
    view.SetSel(2, 1, 2, 1);
    EXPECT_EQ(ev.carets, (std::vector<std::pair<int, int>>{{2, 1}}));
    view.SetSel(2, 1, 2, 1);  // no move, no event
    EXPECT_EQ(ev.carets.size(), 1u);
    QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
    QApplication::sendEvent(&view, &right);
    EXPECT_EQ(ev.carets.back(), std::make_pair(3, 1));

    view.document().InsertImpl(0, 0, "x\ny\n", false);
    view.document().UpdateViews(128, 0, 0, 0, 0);
    ASSERT_FALSE(ev.lines.empty());
    EXPECT_EQ(ev.lines.back(), std::make_pair(0, 2));
    EXPECT_EQ(ev.carets.back(), std::make_pair(3, 3));  // the caret's line moved down by two
    EXPECT_TRUE(view.document().CanUndo());
    const size_t before = ev.lines.size();
    view.document().Undo();
    EXPECT_GT(ev.lines.size(), before);

    // Text changed behind the control's back is told of once control returns to the event loop.
    ev.lines.clear();
    view.SendScintilla(Sci::SCI_DOCUMENTSTART);
    view.SendScintilla(Sci::SCI_ADDTEXT, 2, "z\n");
    QApplication::processEvents();
    EXPECT_EQ(ev.lines, (std::vector<std::pair<int, int>>{{0, 1}}));
}

TEST(SourceView, AssistiveTechnologyGetsTextAndOffsetsInCharacters) {
    SourceView view;
    view.SetText(QString::fromUtf8("caf\xC3\xA9\n\xE2\x82\xAC x"));
    QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(dynamic_cast<SourceViewAccessible*>(iface), nullptr) << "QScintilla's own accessible came first";
    QAccessibleTextInterface* text = iface->textInterface();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->characterCount(), 8);
    EXPECT_EQ(text->text(3, 7), QString::fromUtf8("\xC3\xA9\n\xE2\x82\xAC "));
    view.SetSel(2, 1, 2, 1);
    EXPECT_EQ(text->cursorPosition(), 7);
    text->setSelection(0, 5, 8);
    EXPECT_EQ(view.selectedText(), QString::fromUtf8("\xE2\x82\xAC x"));
    int start = -1, end = -1;
    text->selection(0, &start, &end);
    EXPECT_EQ(std::make_pair(start, end), std::make_pair(5, 8));
    text->setCursorPosition(4);
    EXPECT_EQ(view.selectedText(), "");
    EXPECT_EQ(text->cursorPosition(), 4);
}

TEST(SourceView, KeysAndMouseArriveAsVirtualKeysButtonsAndClientPixels) {
    SourceView view;
    Events ev(view);
    view.SetText("abc");
    QKeyEvent f2(QEvent::KeyPress, Qt::Key_F2, Qt::ShiftModifier);
    QApplication::sendEvent(&view, &f2);
    QKeyEvent f2up(QEvent::KeyRelease, Qt::Key_F2, Qt::ShiftModifier);
    QApplication::sendEvent(&view, &f2up);
    QKeyEvent repeat(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier, "a", true);
    QApplication::sendEvent(&view, &repeat);
    EXPECT_EQ(ev.keysDown, (std::vector<std::pair<int, int>>{{113, 1}}));
    EXPECT_EQ(ev.keysUp, (std::vector<std::pair<int, int>>{{113, 1}}));

    paint(view);
    QWidget* vp = view.viewport();
    const QPointF at(60, 5);
    QMouseEvent press(QEvent::MouseButtonPress, at, vp->mapToGlobal(at), Qt::RightButton, Qt::RightButton,
                      Qt::ControlModifier);
    QApplication::sendEvent(vp, &press);
    QMouseEvent move(QEvent::MouseMove, at, vp->mapToGlobal(at), Qt::NoButton, Qt::RightButton, Qt::ControlModifier);
    QApplication::sendEvent(vp, &move);
    QMouseEvent release(QEvent::MouseButtonRelease, at, vp->mapToGlobal(at), Qt::RightButton, Qt::NoButton,
                        Qt::ControlModifier);
    QApplication::sendEvent(vp, &release);
    ASSERT_EQ(ev.mouseUps.size(), 1u);
    EXPECT_EQ(ev.mouseUps[0], (std::array{2, 2, 60, 5}));
    ASSERT_FALSE(ev.mouseMoves.empty());
    EXPECT_EQ(ev.mouseMoves.back(), (std::array{2, 2, 60, 5}));
    QMouseEvent dbl(QEvent::MouseButtonDblClick, at, vp->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
    QApplication::sendEvent(vp, &dbl);
    EXPECT_EQ(ev.dblClicks, 1);
}

TEST(SourceView, ClientToTextAndTextToDisplay) {
    SourceView view;
    view.SetText("x = 1\n\tab\tc");
    paint(view);
    const long pos = view.positionFromLineIndex(1, 2);
    const int x = int(view.SendScintilla(Sci::SCI_POINTXFROMPOSITION, 0UL, pos));
    const int y = int(view.SendScintilla(Sci::SCI_POINTYFROMPOSITION, 0UL, pos));
    int col = -1, line = -1;
    view.ClientToText(x + 1, y + 2, col, line);
    EXPECT_EQ(std::make_pair(col, line), std::make_pair(2, 1));
    // Tabs reach to the next multiple of four.
    int dc, dl;
    view.TextToDisplay(1, 1, dc, dl);
    EXPECT_EQ(std::make_pair(dc, dl), std::make_pair(4, 1));
    view.TextToDisplay(4, 1, dc, dl);
    EXPECT_EQ(dc, 8);
    view.TextToDisplay(2, 0, dc, dl);
    EXPECT_EQ(std::make_pair(dc, dl), std::make_pair(2, 0));
}

TEST(SourceView, GetTokenAtUsesTheTokeniserOnTheLine) {
    SourceView view;
    setUpPicBasic(view);
    view.SetText("  GOTO loop ' go\n\"str\" @ $FF\n");
    auto token = [&](int col, int line) {
        int cls, start, length;
        view.GetTokenAt(col, line, cls, start, length);
        return std::array{cls, start, length};
    };
    EXPECT_EQ(token(0, 0), (std::array{0, 0, 0}));     // a blank
    EXPECT_EQ(token(5, 0), (std::array{10, 2, 4}));    // inside GOTO
    EXPECT_EQ(token(7, 0), (std::array{2, 7, 4}));
    EXPECT_EQ(token(14, 0), (std::array{6, 12, 4}));
    EXPECT_EQ(token(16, 0), (std::array{0, 16, 0}));   // past the end
    EXPECT_EQ(token(2, 1), (std::array{7, 0, 5}));
    EXPECT_EQ(token(6, 1), (std::array{10, 6, 1}));
    EXPECT_EQ(token(9, 1), (std::array{3, 8, 3}));
    EXPECT_EQ(token(0, 2), (std::array{0, 0, 0}));     // the empty last line
    EXPECT_EQ(token(0, 9), (std::array{0, 0, 0}));     // no such line
}

TEST(SourceView, TheScreenIsStyledByTokenClass) {
    SourceView view;
    setUpPicBasic(view);
    view.SetText("high 5 ' on\nx = \"s\" and BYTE ; c");
    paint(view);
    EXPECT_EQ(styleAt(view, 0, 0), 10);
    EXPECT_EQ(styleAt(view, 4, 0), 0);
    EXPECT_EQ(styleAt(view, 5, 0), 3);
    EXPECT_EQ(styleAt(view, 9, 0), 6);
    EXPECT_EQ(styleAt(view, 0, 1), 2);
    EXPECT_EQ(styleAt(view, 2, 1), 5);
    EXPECT_EQ(styleAt(view, 5, 1), 7);
    EXPECT_EQ(styleAt(view, 8, 1), 14);
    EXPECT_EQ(styleAt(view, 12, 1), 12);
    EXPECT_EQ(styleAt(view, 17, 1), 6);
}

TEST(SourceView, ALargeFileIsStyledOnlyWhereItIsSeen) {
    QTemporaryDir dir;
    QFile f(dir.filePath("big.pbp"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    for (int i = 0; i < 100000; ++i)
        f.write("    High PORTB.0 : Pause 500 ' blink " + QByteArray::number(i) + "\r\n");
    f.close();
    SourceView view;
    setUpPicBasic(view);
    view.document().LoadFile(f.fileName());
    paint(view);
    SourceLexer* lexer = view.sourceLexer();
    ASSERT_NE(lexer, nullptr);
    EXPECT_GT(lexer->linesStyled(), 10);
    EXPECT_LT(lexer->linesStyled(), 1000);
    EXPECT_EQ(styleAt(view, 4, 0), 10);

    // To the end and type: still only what is on screen.
    view.SendScintilla(Sci::SCI_DOCUMENTEND);
    paint(view);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_G, Qt::NoModifier, "g");
    QApplication::sendEvent(&view, &key);
    view.SendScintilla(Sci::SCI_ADDTEXT, 3, "oto");
    paint(view);
    EXPECT_LT(lexer->linesStyled(), 2000);
    EXPECT_EQ(styleAt(view, 4, 99999), 10);
    EXPECT_EQ(styleAt(view, 0, 100000), 10);  // the typed "goto"

    // A Refresh with nothing changed restyles nothing.
    long long before = lexer->linesStyled();
    view.Refresh();
    paint(view);
    EXPECT_EQ(lexer->linesStyled(), before);

    // A new word list shows at once on screen, and elsewhere as it comes on screen.
    view.document().language().AddReservedWord(1, "PAUSE");
    view.Refresh();
    paint(view);
    EXPECT_EQ(styleAt(view, 19, 99999), 11);
    EXPECT_LT(lexer->linesStyled() - before, 1000);
    view.SendScintilla(Sci::SCI_GOTOLINE, 50000L);
    paint(view);
    EXPECT_EQ(styleAt(view, 19, 50000), 11);
    view.SendScintilla(Sci::SCI_DOCUMENTSTART);
    paint(view);
    EXPECT_EQ(styleAt(view, 19, 0), 11);
    EXPECT_EQ(styleAt(view, 19, 1), 11);
    EXPECT_LT(lexer->linesStyled() - before, 3000);

    // Lines inserted above stale lines keep those lines stale, not the new ones.
    view.document().InsertImpl(0, 0, "a\nb\nc\n", false);
    view.document().UpdateViews(128, 0, 3, 0, 3);
    view.SendScintilla(Sci::SCI_GOTOLINE, 70003L);
    paint(view);
    EXPECT_EQ(styleAt(view, 19, 70003), 11);
}

TEST(SourceView, TokenInfoKeepsColoursFlagsAndStylesAndTheScreenFollows) {
    SourceView view;
    TokenInfo& ti = view.tokenInfo();
    qint32 color = -1;
    bool set = true;
    ti.GetForegroundColor(6, color, set);
    EXPECT_FALSE(set);
    ti.SetForegroundColor(6, 38400, true);
    ti.GetForegroundColor(6, color, set);
    EXPECT_EQ(color, 38400);
    EXPECT_TRUE(set);
    EXPECT_EQ(view.sourceLexer()->color(6), QColor(0, 150, 0));
    ti.SetForegroundColor(6, 180, false);
    ti.GetForegroundColor(6, color, set);
    EXPECT_FALSE(set);
    // Without a colour of its own a class takes the view's ForeColor.
    view.setForeColor(0x00123456);
    EXPECT_EQ(view.sourceLexer()->color(6), QColor(0x56, 0x34, 0x12));

    ti.SetBackgroundColor(7, QStringLiteral("-2147483643"), true);
    EXPECT_EQ(ti.background(7), systemColor(kColorWindow));
    EXPECT_EQ(view.sourceLexer()->paper(7), toQColor(systemColor(kColorWindow)));
    EXPECT_THROW(ti.SetBackgroundColor(7, QStringLiteral("blue"), true), Failure);
    EXPECT_THROW(ti.SetForegroundColor(16, 0, true), Failure);

    ti.SetFontStyle(10, 1, true);
    EXPECT_EQ(ti.fontStyle(10), 1);
    EXPECT_TRUE(view.sourceLexer()->font(10).bold());
    EXPECT_FALSE(view.sourceLexer()->font(2).bold());
}

TEST(SourceView, FontColoursAndMarginsAreApplied) {
    SourceView view;
    EXPECT_EQ(view.FontName(), "Courier New");
    view.setFontName("Courier");
    EXPECT_EQ(view.FontName(), "Courier");
    const QFont f = view.sourceLexer()->font(2);
    EXPECT_TRUE(QFontInfo(f).fixedPitch()) << f.family().toStdString();
    EXPECT_DOUBLE_EQ(f.pointSizeF(), 9.75);
    EXPECT_EQ(f.weight(), QFont::Normal);

    view.setSelBackColor(systemColor(kColorHighlight));
    view.setSelForeColor(0x0000FF);
    view.setBackColor(0x00E0E0E0);
    view.setTextBackColor(0x00F0F0F0);
    EXPECT_EQ(view.SelBackColor(), systemColor(kColorHighlight));
    EXPECT_EQ(view.SelForeColor(), 0x0000FF);
    EXPECT_EQ(view.BackColor(), 0x00E0E0E0);
    EXPECT_EQ(view.SendScintilla(Sci::SCI_STYLEGETBACK, long(Sci::STYLE_DEFAULT)), 0x00E0E0E0);
    EXPECT_EQ(view.sourceLexer()->paper(2), QColor(0xF0, 0xF0, 0xF0));

    EXPECT_EQ(view.MarginStyle(), 1);
    EXPECT_EQ(view.marginWidth(1), 20);
    view.setMarginStyle(0);
    EXPECT_EQ(view.marginWidth(0) + view.marginWidth(1) + view.marginWidth(2), 0);
    view.setMarginStyle(2);
    EXPECT_TRUE(view.marginLineNumbers(0));
    EXPECT_GT(view.marginWidth(0), 0);
    EXPECT_EQ(view.marginWidth(1), 20);

    SourceView output(nullptr, true);  // the compiler's output: plain text, no margin
    EXPECT_EQ(output.sourceLexer(), nullptr);
    EXPECT_EQ(output.MarginStyle(), 0);
    output.SetText("Compiling Please Wait.....");
    EXPECT_EQ(output.Text(), "Compiling Please Wait.....");
}

TEST(SourceView, PrintingToAPdfUsesThePrintColoursAndRestoresTheScreen) {
    QTemporaryDir dir;
    SourceView view;
    setUpPicBasic(view);
    view.SetText("GOTO loop ' forever\nx = \"text\"\n");
    view.tokenInfo().SetForegroundColor(6, 38400, true);
    view.printTokenInfo().SetForegroundColor(6, 0x0000FF, true);
    QsciPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(dir.filePath("out.pdf"));
    ASSERT_NO_THROW(view.printTo(printer));
    QFile pdf(dir.filePath("out.pdf"));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_GT(pdf.size(), 500);
    EXPECT_TRUE(pdf.read(5) == "%PDF-");
    EXPECT_EQ(view.sourceLexer()->color(6), QColor(0, 150, 0));

    QsciPrinter nowhere;
    nowhere.setOutputFormat(QPrinter::PdfFormat);
    nowhere.setOutputFileName(dir.filePath("no/such/dir/out.pdf"));
    EXPECT_THROW(view.printTo(nowhere), Failure);
}

TEST(SourceView, FindFindNextAndReplace) {
    SourceView view;
    view.SetText("Goto a\ngoto b\nGOTOX c\ngoto d");
    view.SetSel(0, 0, 0, 0);
    EXPECT_TRUE(view.findText("goto", false, true, true));
    EXPECT_EQ(view.selectedText(), "Goto");
    view.FindNext();
    int sc, sl, ec, el;
    view.GetSel(sc, sl, ec, el);
    EXPECT_EQ(std::make_pair(sc, sl), std::make_pair(0, 1));
    view.FindNext();  // whole words only: GOTOX is passed over
    view.GetSel(sc, sl, ec, el);
    EXPECT_EQ(sl, 3);
    view.FindNext();  // and round to the start
    view.GetSel(sc, sl, ec, el);
    EXPECT_EQ(sl, 0);
    EXPECT_TRUE(view.findText("goto", true, false, false));  // backwards, matching case: from line 0 round to 3
    view.GetSel(sc, sl, ec, el);
    EXPECT_EQ(sl, 3);
    EXPECT_FALSE(view.findText("absent", false, false, true));

    EXPECT_EQ(view.replaceAll("goto", "GoTo", false, true), 3);
    EXPECT_EQ(view.Text(), "GoTo a\nGoTo b\nGOTOX c\nGoTo d");
    view.document().Undo();
    EXPECT_EQ(view.Text(), "Goto a\ngoto b\nGOTOX c\ngoto d");
    // A replacement that holds the searched text isn't replaced again.
    view.SetText("a a");
    EXPECT_EQ(view.replaceAll("a", "aa", true, false), 2);
    EXPECT_EQ(view.Text(), "aa aa");
}

TEST(SourceView, TheFindDialogSearchesAndReplacesTheView) {
    SourceView view;
    view.SetText("x = 1\ny = x + x\n");
    view.SetSel(0, 0, 0, 0);
    view.Replace();
    FindDialog* dlg = view.findDialog();
    ASSERT_NE(dlg, nullptr);
    EXPECT_FALSE(dlg->isModal());
    EXPECT_TRUE(dlg->replaceAllButton->isVisibleTo(dlg));
    dlg->findWhat->setText("x");
    dlg->replaceWith->setText("count");
    dlg->matchCase->setChecked(true);
    dlg->replaceButton->click();  // finds the first
    EXPECT_EQ(view.Text(), "x = 1\ny = x + x\n");
    EXPECT_EQ(view.selectedText(), "x");
    dlg->replaceButton->click();  // replaces it and finds the next
    EXPECT_EQ(view.Text(), "count = 1\ny = x + x\n");
    int sc, sl, ec, el;
    view.GetSel(sc, sl, ec, el);
    EXPECT_EQ(std::make_pair(sc, sl), std::make_pair(4, 1));
    dlg->replaceAllButton->click();
    EXPECT_EQ(view.Text(), "count = 1\ny = count + count\n");
    EXPECT_EQ(dlg->status->text(), "2 occurrence(s) replaced.");

    view.Find();
    EXPECT_FALSE(dlg->replaceAllButton->isVisibleTo(dlg));
    dlg->findWhat->setText("zz");
    dlg->findNextButton->click();
    EXPECT_EQ(dlg->status->text(), "Cannot find \"zz\".");
    dlg->findWhat->setText("count");
    dlg->up->setChecked(true);
    view.SetSel(0, 1, 0, 1);
    dlg->findNextButton->click();
    view.GetSel(sc, sl, ec, el);
    EXPECT_EQ(std::make_pair(sc, sl), std::make_pair(0, 0));
    EXPECT_TRUE(dlg->status->text().isEmpty());
}
