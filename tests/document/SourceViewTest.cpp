// The editing control and its tokeniser: commands, positions and events, tokens, colours, find and print.
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
#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <Qsci/qsciprinter.h>
#include <gtest/gtest.h>

using Sci = QsciScintillaBase;

namespace {

void setUpPicBasic(Language& lang) {
    lang.setSLCommentStart("'");
    lang.setSLCommentStart2(";");
    lang.setStringDelimiter("\"");
    for (const char* w : {"@", "GoTo", "High", "AND"})
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

using Tok = std::pair<int, QString>;  // a token's class and text
std::vector<Tok> tokens(const Language& lang, const QString& line) {
    std::vector<Tok> out;
    int end = 0;
    tokenizeLine(lang, line, [&](const Token& t) {
        EXPECT_TRUE(t.start >= end && t.length > 0) << "tokens overlap, go backwards or are empty";
        end = t.start + t.length;
        out.push_back({t.cls, line.mid(t.start, t.length)});
    });
    EXPECT_LE(end, line.size());
    return out;
}

}  // namespace

TEST(Tokenizer, ClassesOfCommentsStringsNumbersAndWords) {
    Language lang;
    setUpPicBasic(lang);
    lang.AddReservedWord(4, "and");  // a word in two sets: the lowest wins
    lang.AddReservedWord(5, "DEC4");
    EXPECT_THROW(lang.AddReservedWord(6, "x"), Failure);
    const QString pair = QString::fromUtf8("\xF0\x9F\x98\x80");  // one character, two UTF-16 units
    const std::pair<QString, std::vector<Tok>> cases[] = {
        {"x = 1 ' set \"no string\" goto", {{2, "x"}, {5, "="}, {3, "1"}, {6, "' set \"no string\" goto"}}},
        {"  \"a;b'c\" ;x", {{7, "\"a;b'c\""}, {6, ";x"}}},
        {"\"Hi\",\"\" \"open to the end", {{7, "\"Hi\""}, {5, ","}, {7, "\"\""}, {7, "\"open to the end"}}},
        {"a=$1F+%1010-255", {{2, "a"}, {5, "="}, {3, "$1F"}, {5, "+"}, {3, "%1010"}, {5, "-"}, {3, "255"}}},
        {"$ %2 10ms I2CRead _t1", {{5, "$"}, {5, "%"}, {3, "2"}, {3, "10ms"}, {2, "I2CRead"}, {2, "_t1"}}},
        {"goto gOtO GOTOX", {{10, "goto"}, {10, "gOtO"}, {2, "GOTOX"}}},
        {"and byte Dec4 dec5 @ nop", {{10, "and"}, {12, "byte"}, {15, "Dec4"}, {2, "dec5"}, {10, "@"}, {2, "nop"}}},
        {"caf\u00e9 = \"\u20ac\" goto", {{2, "caf\u00e9"}, {5, "="}, {7, "\"\u20ac\""}, {10, "goto"}}},
        {pair + "x", {{5, pair}, {2, "x"}}},
        {" \t  ", {}},
    };
    for (const auto& [line, expected] : cases)
        EXPECT_EQ(tokens(lang, line), expected) << line.toStdString();
    Language plain;  // the compiler output's control: no comments or strings until set
    EXPECT_EQ(tokens(plain, "'x \"y"), (std::vector<Tok>{{5, "'"}, {2, "x"}, {5, "\""}, {2, "y"}}));
    plain.setSLCommentStart("REM");  // longer openers match without case
    plain.setStringDelimiter("''");
    EXPECT_EQ(tokens(plain, "''a'b'' rem note"), (std::vector<Tok>{{7, "''a'b''"}, {6, "rem note"}}));
}

TEST(SourceView, PositionsAreCharacterColumnsAndCaretAndLineEventsArriveAtOnce) {
    SourceView view;
    view.SetText(QString::fromUtf8("caf\xC3\xA9 x\n\n\xE2\x82\xAC\tab"));
    EXPECT_EQ(view.document().GetLineLength(0), 6);
    view.SetSel(3, 2, 5, 0);  // backwards, across the lines: comes back in order
    EXPECT_EQ(sel(view), (std::array{5, 0, 3, 2}));
    EXPECT_EQ(view.selectedText(), QString::fromUtf8("x\n\n\xE2\x82\xAC\ta"));
    view.SetSel(0, 0, 99, 0);  // a column past the line's end is its end
    EXPECT_EQ(view.selectedText(), QString::fromUtf8("caf\xC3\xA9 x"));
    Log carets, lines;
    record(view, &SourceView::CaretMove, carets);
    record(view, &SourceView::LinesChanged, lines);
    view.SetSel(0, 1, 0, 1);
    view.SetSel(0, 1, 0, 1);  // no move, no event
    EXPECT_EQ(carets, (Log{{0, 1}}));
    view.document().InsertImpl(0, 0, "x\ny\n");
    view.document().UpdateViews();
    EXPECT_EQ(lines, (Log{{0, 2}}));
    EXPECT_EQ(carets.back(), (std::vector{0, 3}));  // the caret's line moved down by two
    lines.clear();  // text changed behind the control's back is told of back in the event loop
    sci(view).SendScintilla(Sci::SCI_DOCUMENTSTART);
    sci(view).SendScintilla(Sci::SCI_ADDTEXT, 2, "z\n");
    QApplication::processEvents();
    EXPECT_EQ(lines, (Log{{0, 1}}));
}

TEST(SourceView, TokensAndTheirStylesComeFromTheTokeniserOnlyWhereTheTextIsSeen) {
    SourceView view;
    setUpPicBasic(view.document().language());
    view.SetText("  GOTO loop ' go\n\"str\" @ $FF\nhigh 5 byte ; c");
    paint(view);
    const std::array<int, 5> cases[] = {  // column, line; the token's class, start and length
        {0, 0, 0, 0, 0},  {5, 0, 10, 2, 4}, {7, 0, 2, 7, 4},  {14, 0, 6, 12, 4}, {2, 1, 7, 0, 5}, {9, 1, 3, 8, 3},
        {7, 2, 12, 7, 4}, {13, 2, 6, 12, 3}, {16, 0, 0, 16, 0} /* past the end */, {0, 9, 0, 0, 0} /* no line */,
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

    view.SetText(QString("    High PORTB.0 : Pause 500 ' blink\r\n").repeated(100000));
    paint(view);
    SourceLexer* lexer = view.sourceLexer();
    EXPECT_TRUE(lexer->linesStyled() > 10 && lexer->linesStyled() < 1000) << lexer->linesStyled();
    sci(view).SendScintilla(Sci::SCI_DOCUMENTEND);
    sci(view).SendScintilla(Sci::SCI_ADDTEXT, 4, "goto");
    paint(view);
    EXPECT_EQ(styleAt(view, 4, 99999), 10);
    EXPECT_EQ(styleAt(view, 0, 100000), 10);
    const long long before = lexer->linesStyled();
    EXPECT_LT(before, 2000);
    view.Refresh();
    paint(view);
    EXPECT_EQ(lexer->linesStyled(), before) << "a Refresh with nothing changed restyles nothing";
    // A new word shows at once on screen, elsewhere as it comes on screen; lines inserted above stale
    // lines keep those stale, not the new ones.
    view.document().language().AddReservedWord(1, "PAUSE");
    view.Refresh();
    paint(view);
    EXPECT_EQ(styleAt(view, 19, 99999), 11);
    view.document().InsertImpl(0, 0, "a\nb\nc\n");
    view.document().UpdateViews();
    for (long line : {50003L, 3L}) {
        sci(view).SendScintilla(Sci::SCI_GOTOLINE, line);
        paint(view);
        EXPECT_EQ(styleAt(view, 19, int(line)), 11) << line;
    }
    EXPECT_LT(lexer->linesStyled() - before, 3000);
}

TEST(SourceView, TokenColoursApplyWhileTheirFlagIsSetAndPrintingUsesItsOwnBesideTheDocument) {
    SourceView view;
    setUpPicBasic(view.document().language());
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

    const std::pair<const char*, const char*> names[] = {
        {"/a.b/prog", "/a.b/prog.pdf"}, {"/home/u/.pbp", "/home/u/.pbp.pdf"},
        {"/w/blink.old.bas", "/w/blink.old.pdf"}, {"/w/prog.", "/w/prog.pdf"}};
    for (const auto& [doc, pdf] : names)
        EXPECT_EQ(pdfNameFor(doc), pdf) << doc;
    QTemporaryDir dir;
    view.document().setPathName(dir.filePath("22-copy.pbp"));
    view.printTokenInfo().SetForegroundColor(6, 0x0000FF, true);
    QsciPrinter printer;
    view.preparePrinter(printer);
    EXPECT_EQ(printer.docName(), "22-copy.pbp");
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(printer.outputFileName());  // as the dialog's "Print to File (PDF)" does
    ASSERT_NO_THROW(view.printTo(printer));
    QFile pdf(dir.filePath("22-copy.pdf"));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.readAll().startsWith("%PDF"));
    EXPECT_EQ(view.sourceLexer()->color(6), QColor(0, 150, 0)) << "the screen's colours are back";
    printer.setOutputFileName(dir.filePath("no/such/dir/out.pdf"));
    EXPECT_THROW(view.printTo(printer), Failure);
}

TEST(SourceView, FindWrapsAroundAndReplaceAllIsOnePassAndOneUndoStep) {
    SourceView view;
    view.SetText("Goto a\ngoto b\nGOTOX c\ngoto d");
    EXPECT_TRUE(view.findText("goto", false, true, true));
    EXPECT_EQ(view.selectedText(), "Goto");
    for (int line : {1, 3, 0}) {  // whole words only, so GOTOX is passed over, and round to the start
        view.FindNext();
        EXPECT_EQ(sel(view)[1], line);
    }
    EXPECT_TRUE(view.findText("goto", true, false, false));  // backwards, matching case: round to line 3
    EXPECT_EQ(sel(view)[1], 3);
    EXPECT_FALSE(view.findText("absent", false, false, true));
    view.SetText("x = 1\ny = x + x\n");  // Replace first finds, then replaces and finds the next
    for (const char* after : {"x = 1\ny = x + x\n", "count = 1\ny = x + x\n"}) {
        EXPECT_TRUE(view.replaceAndFindNext("x", "count", true, false));
        EXPECT_EQ(view.Text(), after);
    }
    EXPECT_EQ(sel(view), (std::array{4, 1, 5, 1}));

    QString original;
    for (int i = 0; i < 3000; ++i)
        original += QString::fromUtf8("GoTo loop%1 ' goto, GOTOX, (goto)\r\n").arg(i);
    view.SetText(original);
    view.SetSel(0, 1500, 0, 1500);  // from the start whatever the caret
    QString expected = original;
    const QRegularExpression word(QStringLiteral("(?<![A-Za-z0-9_])goto(?![A-Za-z0-9_])"),
                                  QRegularExpression::CaseInsensitiveOption);
    const int matches = int(original.count(word));
    expected.replace(word, QStringLiteral("jump goto"));  // holds the searched text: not replaced again
    EXPECT_EQ(view.replaceAll("goto", "jump goto", false, true), matches);
    EXPECT_EQ(view.Text(), expected);
    const int last = view.document().NumLines() - 2;
    const int lastAt = view.document().GetLine(last).lastIndexOf("jump goto");
    EXPECT_EQ(sel(view), (std::array{lastAt, last, lastAt + 9, last}));
    view.document().Undo();
    EXPECT_EQ(view.Text(), original);

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
        n = n == EditCommand::Indent ? 0 : n;  // a zero cancels
    });
    using Key = std::tuple<int, Qt::KeyboardModifiers, QString>;
    for (const auto& [k, mods, text] : {Key{Qt::Key_H, Qt::ShiftModifier, "H"}, Key{Qt::Key_I, Qt::NoModifier, "i"},
                                        Key{Qt::Key_G, Qt::ControlModifier, {}}}) {
        QKeyEvent press(QEvent::KeyPress, k, mods, text), release(QEvent::KeyRelease, k, mods, text);
        QApplication::sendEvent(editor, &press);
        QApplication::sendEvent(editor, &release);
    }
    EXPECT_EQ(keys, (Log{{'H', 1}, {'I', 0}, {'G', 2}}));
    EXPECT_EQ(commands, std::vector<int>{EditCommand::GotoLine}) << "go to line is the window's, once";
    for (int command : {int(EditCommand::Indent), 12345 /* no such command */, int(Sci::SCI_HOME)})
        view.ExecuteCommand(command);
    EXPECT_EQ(commands.size(), 4u) << "the event comes first, for every command";
    EXPECT_EQ(view.Text(), "Hi");
    EXPECT_EQ(carets, (Log{{1, 0}, {2, 0}, {0, 0}}));
    QWidget* area = sci(view).viewport();
    QMouseEvent up(QEvent::MouseButtonRelease, QPointF(7, 5), area->mapToGlobal(QPointF(7, 5)), Qt::RightButton,
                   Qt::NoButton, Qt::ShiftModifier);
    QApplication::sendEvent(area, &up);
    EXPECT_EQ(ups, (Log{{2, 1, 7, 5}}));
}
