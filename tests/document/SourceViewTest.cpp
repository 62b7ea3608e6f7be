// The editing control: commands, positions and events, tokens, colours, find and print.
#include "document/Document.h"
#include "document/Language.h"
#include "document/PdfName.h"
#include "document/SourceLexer.h"
#include "document/SourceView.h"
#include "document/SourceViewEditor.h"
#include "document/TokenInfo.h"
#include "platform/Failure.h"
#include "platform/SystemColors.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QFileInfo>
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
    for (const char* w : {"@", "GoTo", "High"})
        lang.AddReservedWord(0, w);
    lang.AddReservedWord(2, "BYTE");
}

// Lays the view out and paints it, as the screen would.
void paint(SourceView& view) {
    view.resize(800, 600);
    view.show();
    (void)view.grab();
}

SourceViewEditor& sci(SourceView& view) { return SourceViewEditor::of(view); }

int styleAt(SourceView& view, int col, int line) {
    return int(sci(view).SendScintilla(Sci::SCI_GETSTYLEAT, sci(view).positionFromLineIndex(line, col)));
}

std::array<int, 4> sel(const SourceView& view) {
    std::array<int, 4> s{};
    view.GetSel(s[0], s[1], s[2], s[3]);
    return s;
}

// Every delivery of one of the view's events, as its arguments.
using Log = std::vector<std::vector<int>>;
template <class... A>
void record(SourceView& view, void (SourceView::*event)(A...), Log& log) {
    QObject::connect(&view, event, [&log](A... a) { log.push_back({a...}); });
}

}  // namespace

TEST(SourceView, ExecuteCommandDeliversTheEventFirstAndAZeroCancels) {
    SourceView view;
    view.SetText("a\nb\nc");
    std::vector<int> seen;
    QObject::connect(&view, &SourceView::ExecuteCommandEvent, [&](int& n) {
        seen.push_back(n);
        n = seen.size() == 1 ? 0 : n;  // the first is cancelled
    });
    view.SetSel(0, 0, 1, 1);
    const std::vector<int> commands{EditCommand::Indent, EditCommand::Indent, EditCommand::Outdent,
                                    12345 /* no such command: nothing */, int(Sci::SCI_DOCUMENTEND)};
    for (int command : commands)
        view.ExecuteCommand(command);
    EXPECT_EQ(seen, commands);
    EXPECT_EQ(view.CaretY(), 2);
    EXPECT_EQ(view.Text(), "a\nb\nc");
    view.document().Undo();  // indent and outdent work over the selection's lines, each one undo step
    EXPECT_EQ(view.Text(), "\ta\n\tb\nc");
    view.document().Undo();
    EXPECT_FALSE(view.document().CanUndo());
}

TEST(SourceView, PositionsAreCharacterColumnsAndCaretAndLineEventsArriveAtOnce) {
    SourceView view;
    view.SetText(QString::fromUtf8("caf\xC3\xA9 x\n\n\xE2\x82\xAC\tab"));
    EXPECT_EQ(view.document().GetLineLength(0), 6);
    EXPECT_EQ(view.document().GetLineLength(1), 0);
    view.SetSel(3, 2, 5, 0);  // backwards, across the lines: comes back in order
    EXPECT_EQ(sel(view), (std::array{5, 0, 3, 2}));
    EXPECT_EQ(view.selectedText(), QString::fromUtf8("x\n\n\xE2\x82\xAC\ta"));
    view.SetSel(0, 0, 99, 0);  // a column past the line's end is its end
    EXPECT_EQ(view.selectedText(), QString::fromUtf8("caf\xC3\xA9 x"));
    Log carets, lines;
    record(view, &SourceView::CaretMove, carets);
    view.SetSel(0, 1, 0, 1);  // column 0 of the empty line
    view.SetSel(0, 1, 0, 1);  // no move, no event
    EXPECT_EQ(sel(view), (std::array{0, 1, 0, 1}));
    EXPECT_EQ(carets, (Log{{0, 1}}));

    record(view, &SourceView::LinesChanged, lines);
    view.document().InsertImpl(0, 0, "x\ny\n", false);
    view.document().UpdateViews(128, 0, 0, 0, 0);
    EXPECT_EQ(lines, (Log{{0, 2}}));
    EXPECT_EQ(carets.back(), (std::vector{0, 3}));  // the caret's line moved down by two
    lines.clear();  // text changed behind the control's back is told of back in the event loop
    sci(view).SendScintilla(Sci::SCI_DOCUMENTSTART);
    sci(view).SendScintilla(Sci::SCI_ADDTEXT, 2, "z\n");
    QApplication::processEvents();
    EXPECT_EQ(lines, (Log{{0, 1}}));
}

TEST(SourceView, TokensAndTheirStylesComeFromTheTokeniser) {
    SourceView view;
    setUpPicBasic(view);
    view.SetText("  GOTO loop ' go\n\"str\" @ $FF\nhigh 5 byte ; c");
    paint(view);
    const std::array<int, 5> cases[] = {  // column, line; the token's class, start and length
        {0, 0, 0, 0, 0},   {5, 0, 10, 2, 4}, {7, 0, 2, 7, 4},  {14, 0, 6, 12, 4}, {2, 1, 7, 0, 5},
        {6, 1, 10, 6, 1},  {9, 1, 3, 8, 3},  {4, 2, 0, 4, 0},  {7, 2, 12, 7, 4},  {13, 2, 6, 12, 3},
        {16, 0, 0, 16, 0} /* past the end */, {0, 9, 0, 0, 0} /* no such line */,
    };
    for (const auto& [col, line, cls, start, length] : cases) {
        SCOPED_TRACE(testing::Message() << col << "," << line);
        std::array<int, 3> got{};
        view.GetTokenAt(col, line, got[0], got[1], got[2]);
        EXPECT_EQ(got, (std::array{cls, start, length}));
        if (col < view.document().GetLineLength(line)) {
            EXPECT_EQ(styleAt(view, col, line), cls);  // the screen shows the same class
        }
    }
}

TEST(SourceView, ALargeFileIsStyledOnlyWhereItIsSeen) {
    SourceView view;
    setUpPicBasic(view);
    view.SetText(QString("    High PORTB.0 : Pause 500 ' blink\r\n").repeated(100000));
    paint(view);
    SourceLexer* lexer = view.sourceLexer();
    EXPECT_TRUE(lexer->linesStyled() > 10 && lexer->linesStyled() < 1000) << lexer->linesStyled();

    // To the end and type: still only what is on screen.
    sci(view).SendScintilla(Sci::SCI_DOCUMENTEND);
    sci(view).SendScintilla(Sci::SCI_ADDTEXT, 4, "goto");
    paint(view);
    EXPECT_LT(lexer->linesStyled(), 2000);
    EXPECT_EQ(styleAt(view, 4, 99999), 10);
    EXPECT_EQ(styleAt(view, 0, 100000), 10);

    // A Refresh with nothing changed restyles nothing.
    const long long before = lexer->linesStyled();
    view.Refresh();
    paint(view);
    EXPECT_EQ(lexer->linesStyled(), before);

    // A new word list shows at once on screen, and elsewhere as it comes on screen; lines inserted above
    // stale lines keep those lines stale, not the new ones.
    view.document().language().AddReservedWord(1, "PAUSE");
    view.Refresh();
    paint(view);
    EXPECT_EQ(styleAt(view, 19, 99999), 11);
    EXPECT_LT(lexer->linesStyled() - before, 1000);
    view.document().InsertImpl(0, 0, "a\nb\nc\n", false);
    view.document().UpdateViews(128, 0, 3, 0, 3);
    for (long line : {50003L, 3L}) {
        sci(view).SendScintilla(Sci::SCI_GOTOLINE, line);
        paint(view);
        EXPECT_EQ(styleAt(view, 19, int(line)), 11) << line;
    }
    EXPECT_LT(lexer->linesStyled() - before, 3000);
}

TEST(SourceView, TokenInfoColoursApplyOnlyWhileTheirFlagIsSetAndPrintingUsesItsOwn) {
    SourceView view;
    setUpPicBasic(view);
    view.SetText("GOTO loop ' forever\nx = \"text\"\n");
    TokenInfo& ti = view.tokenInfo();
    view.setForeColor(0x00123456);
    ti.SetForegroundColor(6, 180, false);  // without a colour of its own a class takes the view's ForeColor
    EXPECT_EQ(view.sourceLexer()->color(6), QColor(0x56, 0x34, 0x12));
    ti.SetForegroundColor(6, 38400, true);
    EXPECT_EQ(view.sourceLexer()->color(6), QColor(0, 150, 0));
    ti.SetBackgroundColor(7, QStringLiteral("-2147483643"), true);  // a system colour, as decimal text
    EXPECT_EQ(view.sourceLexer()->paper(7), toQColor(systemColor(kColorWindow)));
    EXPECT_THROW(ti.SetBackgroundColor(7, QStringLiteral("blue"), true), Failure);
    EXPECT_THROW(ti.SetForegroundColor(16, 0, true), Failure);
    ti.SetFontStyle(10, 1, true);
    EXPECT_TRUE(view.sourceLexer()->font(10).bold() && !view.sourceLexer()->font(2).bold());

    // Printed with the print colours, then the screen's are back.
    view.printTokenInfo().SetForegroundColor(6, 0x0000FF, true);
    QTemporaryDir dir;
    QsciPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(dir.filePath("out.pdf"));
    ASSERT_NO_THROW(view.printTo(printer));
    EXPECT_GT(QFileInfo(dir.filePath("out.pdf")).size(), 500);
    EXPECT_EQ(view.sourceLexer()->color(6), QColor(0, 150, 0));
    printer.setOutputFileName(dir.filePath("no/such/dir/out.pdf"));
    EXPECT_THROW(view.printTo(printer), Failure);
}

TEST(SourceView, FindFindNextAndReplace) {
    SourceView view;
    view.SetText("Goto a\ngoto b\nGOTOX c\ngoto d");
    EXPECT_TRUE(view.findText("goto", false, true, true));
    EXPECT_EQ(view.selectedText(), "Goto");
    for (int line : {1, 3, 0}) {  // whole words only, so GOTOX is passed over, and round to the start
        view.FindNext();
        EXPECT_EQ(sel(view)[1], line);
    }
    EXPECT_TRUE(view.findText("goto", true, false, false));  // backwards, matching case: from line 0 round to 3
    EXPECT_EQ(sel(view)[1], 3);
    EXPECT_FALSE(view.findText("absent", false, false, true));
    EXPECT_EQ(view.replaceAll("goto", "GoTo", false, true), 3);
    EXPECT_EQ(view.Text(), "GoTo a\nGoTo b\nGOTOX c\nGoTo d");
    view.document().Undo();
    EXPECT_EQ(view.Text(), "Goto a\ngoto b\nGOTOX c\ngoto d");
    view.SetText("a a");  // a replacement that holds the searched text isn't replaced again
    EXPECT_EQ(view.replaceAll("a", "aa", true, false), 2);
    EXPECT_EQ(view.Text(), "aa aa");

    // Replace finds the first, then replaces it and finds the next.
    view.SetText("x = 1\ny = x + x\n");  // the caret at the start
    for (const char* after : {"x = 1\ny = x + x\n", "count = 1\ny = x + x\n"}) {
        EXPECT_TRUE(view.replaceAndFindNext("x", "count", true, false));
        EXPECT_EQ(view.Text(), after);
    }
    EXPECT_EQ(sel(view), (std::array{4, 1, 5, 1}));
}

TEST(SourceView, KeysAndMouseReachTheEditorThroughTheControl) {
    SourceView view;
    view.resize(400, 300);
    view.show();
    view.activateWindow();
    view.setFocus();
    QApplication::processEvents();
    QWidget* editor = view.editorWidget();
    EXPECT_TRUE(editor->hasFocus());  // focus given to the control goes to what takes the typing

    Log keys, ups, carets;
    std::vector<int> commands;
    record(view, &SourceView::KeyDown, keys);
    record(view, &SourceView::CaretMove, carets);
    record(view, &SourceView::MouseUp, ups);
    QObject::connect(&view, &SourceView::ExecuteCommandEvent, [&](int& n) {
        commands.push_back(n);
        n = 0;
    });
    auto key = [&](int k, Qt::KeyboardModifiers mods, const QString& text) {
        QKeyEvent press(QEvent::KeyPress, k, mods, text);
        QApplication::sendEvent(editor, &press);
        QKeyEvent release(QEvent::KeyRelease, k, mods, text);
        QApplication::sendEvent(editor, &release);
    };
    key(Qt::Key_H, Qt::ShiftModifier, "H");
    key(Qt::Key_I, Qt::NoModifier, "i");
    key(Qt::Key_G, Qt::ControlModifier, {});  // go to line is the document window's, through the event
    EXPECT_EQ(view.Text(), "Hi");
    EXPECT_EQ(keys, (Log{{'H', 1}, {'I', 0}, {'G', 2}}));
    EXPECT_EQ(carets, (Log{{1, 0}, {2, 0}}));
    EXPECT_EQ(commands, std::vector<int>{EditCommand::GotoLine});

    QWidget* area = sci(view).viewport();
    QMouseEvent up(QEvent::MouseButtonRelease, QPointF(7, 5), area->mapToGlobal(QPointF(7, 5)), Qt::RightButton,
                   Qt::NoButton, Qt::ShiftModifier);
    QApplication::sendEvent(area, &up);
    EXPECT_EQ(ups, (Log{{2, 1, 7, 5}}));
}

TEST(SourceView, ReplaceAllIsOnePassAndOneUndoStep) {
    SourceView view;
    QString original;
    for (int i = 0; i < 3000; ++i)
        original += QString::fromUtf8("GoTo loop%1 ' goto, GOTOX, (goto)\r\n").arg(i);
    view.SetText(original);
    view.SetSel(0, 1500, 0, 1500);  // from the start whatever the caret
    // Whole words, any case: GOTOX is no match.
    QString expected = original;
    const QRegularExpression word(QStringLiteral("(?<![A-Za-z0-9_])goto(?![A-Za-z0-9_])"),
                                  QRegularExpression::CaseInsensitiveOption);
    int matches = 0;
    for (auto it = word.globalMatch(original); it.hasNext(); it.next())
        ++matches;
    expected.replace(word, QStringLiteral("jump goto"));  // holds the searched text: not replaced again
    EXPECT_EQ(view.replaceAll("goto", "jump goto", false, true), matches);
    EXPECT_EQ(view.Text(), expected);
    const int last = view.document().NumLines() - 2;
    const int lastAt = view.document().GetLine(last).lastIndexOf("jump goto");
    EXPECT_EQ(sel(view), (std::array{lastAt, last, lastAt + 9, last}));
    view.document().Undo();
    EXPECT_EQ(view.Text(), original);
    view.document().Redo();
    EXPECT_EQ(view.Text(), expected);

    const std::tuple<const char*, const char*, const char*, bool, bool, int, const char*> cases[] = {
        // text, what, with, match case, whole word; count, text after
        {"banana", "a", "", true, false, 3, "bnn"},
        {"goto GOTO GoTo", "GOTO", "x", true, false, 1, "goto x GoTo"},
        {"aaa", "aa", "b", false, false, 1, "ba"},
        {"caf\xC3\xA9 CAF\xC3\xA9s CAF\xC3\xA9", "caf\xC3\xA9", "bar", false, true, 2, "bar CAF\xC3\xA9s bar"},
        {"nothing here", "absent", "x", false, false, 0, "nothing here"},
    };
    for (const auto& [text, what, with, matchCase, whole, count, after] : cases) {
        SCOPED_TRACE(text);
        view.SetText(QString::fromUtf8(text));
        EXPECT_EQ(view.replaceAll(QString::fromUtf8(what), with, matchCase, whole), count);
        EXPECT_EQ(view.Text(), QString::fromUtf8(after));
    }
}

TEST(SourceView, PrintToPdfProposesAndWritesTheFileBesideTheDocument) {
    const std::pair<const char*, const char*> names[] = {
        {"/tmp/work/22-copy.pbp", "/tmp/work/22-copy.pdf"}, {"/a.b/prog", "/a.b/prog.pdf"},
        {"/home/u/.pbp", "/home/u/.pbp.pdf"},               {"/w/blink.old.bas", "/w/blink.old.pdf"},
        {"/w/prog.", "/w/prog.pdf"},
    };
    for (const auto& [doc, pdf] : names)
        EXPECT_EQ(pdfNameFor(doc), pdf) << doc;

    QTemporaryDir dir;
    SourceView view;
    view.SetText("HIGH PORTB.0\n");
    view.document().setPathName(dir.filePath("22-copy.pbp"));
    QsciPrinter printer;
    view.preparePrinter(printer);
    EXPECT_EQ(printer.outputFileName(), dir.filePath("22-copy.pdf"));
    EXPECT_EQ(printer.docName(), "22-copy.pbp");
    // What the dialog's "Print to File (PDF)" does with the name it shows.
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(printer.outputFileName());
    ASSERT_NO_THROW(view.printTo(printer));
    QFile pdf(dir.filePath("22-copy.pdf"));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.readAll().startsWith("%PDF"));
}
