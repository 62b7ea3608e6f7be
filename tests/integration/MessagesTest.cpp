// From the output screen's messages to their lines: tags and count, Enter, double-click, F4 and Shift+F4
// from the screen and from the frame, an INCLUDEd file opened on the way, the strip marks and their end.
#include "RunningFrame.h"

#include "document/SourceViewEditor.h"

#include <QApplication>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

namespace {

using S = CompileMessage::Severity;

CompileMessage message(S severity, const QString& file, int line, int outputLine) {
    CompileMessage m;
    m.severity = severity;
    m.file = file;
    m.line = line;
    m.outputLine = outputLine;
    return m;
}

// A frame with blink.pbp open and its INCLUDE not, and an output screen that shows a compile's messages.
struct MessagesFrame : RunningFrame {
    QString source, include, asmFile;
    frmEditor* blink = nullptr;
    CompilerScreen* screen = nullptr;
    std::vector<CompileMessage> messages;

    MessagesFrame() : RunningFrame(QString(), false) {
        source = w.write("led/blink.pbp", "INCLUDE \"inc/defs.pbp\"\nHIGH PORTB.0\nGOTO nowhere\nEND\n");
        include = w.write("led/inc/defs.pbp", "x VAR BYTE\ny VAR WORD\nz CON 3\n");
        asmFile = w.file("led/BLINK.ASM");  // not written: a message that leads nowhere
        start(source);
        blink = doc();
        blink->View->SetSel(1, 0, 1, 0);
        screen = &CompilerScreen::instance();
        screen->show();
        screen->CompilerOutput->SetText("PICBASIC PRO(TM) Compiler 3.1, (c) x\n"
                                        "ERROR Line 3: Bad expression. (blink.pbp)\n"
                                        "WARNING Line 2: Unused. (inc/defs.pbp)\n"
                                        "Error[113] " + asmFile + " 47 : Symbol not previously defined (nowhere)\n"
                                        "Message[302] " + asmFile + " 60 : Register not in bank 0.\n");
        CompileMessage mapped = message(S::Error, source, 3, 3);
        mapped.asmFile = asmFile;
        mapped.asmLine = 47;
        messages = {message(S::Error, "", 3, 1), message(S::Warning, "inc/defs.pbp", 2, 2), mapped,
                    message(S::Note, asmFile, 60, 4)};
        screen->showMessages(*f, messages, source);
    }
    ~MessagesFrame() {
        if (CompilerScreen* s = CompilerScreen::find())
            s->close();
    }
    // Where the user went: the active document's name, its selected text, and its marked line.
    QString where() {
        SourceView& v = *doc()->View;
        return QFileInfo(doc()->Caption()).fileName() + ":" + v.selectedText() + ":" + QString::number(v.messageMarkLine());
    }
    QPoint outputLinePoint(int line) {
        auto& e = SourceViewEditor::of(*screen->CompilerOutput);
        const long pos = e.SendScintilla(QsciScintillaBase::SCI_POSITIONFROMLINE, line);
        return {int(e.SendScintilla(QsciScintillaBase::SCI_POINTXFROMPOSITION, 0UL, pos)) + 3,
                int(e.SendScintilla(QsciScintillaBase::SCI_POINTYFROMPOSITION, 0UL, pos)) + 3};
    }
    QWidget* outputViewport() { return SourceViewEditor::of(*screen->CompilerOutput).viewport(); }
};

}  // namespace

TEST(Messages, TheScreenTagsAndCountsThemAndMovesNoCaret) {
    MessagesFrame t;
    CompilerScreen& s = *t.screen;
    EXPECT_EQ(s.countText(), "2 errors, 1 warning");
    QStringList tags;
    for (int line = 0; line < 5; ++line)
        tags << s.CompilerOutput->lineTag(line) + "|" + s.CompilerOutput->lineNote(line);
    EXPECT_EQ(tags, QStringList({"|", "error|", "warning|", QString::fromUtf8("error|\u2192 blink.pbp line 3"), "note|"}));
    EXPECT_EQ(s.CompilerOutput->lineTone(2), LineTone::Warning);
    // The count stands above the output, both in the window.
    const QLabel* count = s.findChild<QLabel*>("MessageCount");
    ASSERT_NE(count, nullptr);
    EXPECT_TRUE(count->isVisible());
    EXPECT_LE(count->geometry().bottom(), s.CompilerOutput->geometry().top());
    EXPECT_GT(count->width(), count->fontMetrics().horizontalAdvance(count->text()));
    // Shown, nothing moved: the document keeps its caret and is not marked.
    EXPECT_EQ(t.titles().size(), 1);
    EXPECT_EQ(t.where(), "blink.pbp::-1");
    EXPECT_EQ(t.blink->View->CaretY(), 0);
    EXPECT_EQ(s.currentMessage(), -1);
    EXPECT_TRUE(t.enabled(ToolId::NextMessage) && t.enabled(ToolId::PreviousMessage));
    // The keys of the Compile menu.
    auto key = [&](const char* id) {
        return t.f->toolBars().action(t.f->toolBars().Tools().Item(ToolId::CMenu).Menu().Tools().Item(id))->shortcuts();
    };
    EXPECT_EQ(QList<QList<QKeySequence>>({key(ToolId::NextMessage), key(ToolId::PreviousMessage), key(ToolId::CompileAndProgram)}),
              QList<QList<QKeySequence>>({{QKeySequence("F4")}, {QKeySequence("Shift+F4")}, {QKeySequence("Ctrl+F10")}}));
}

TEST(Messages, EnterDoubleClickAndF4GoToTheLinesOpeningTheIncludeOnTheWay) {
    MessagesFrame t;
    CompilerScreen& s = *t.screen;
    QWidget* output = s.CompilerOutput->editorWidget();
    // Enter on the warning: the INCLUDE, not open yet, opens from the source's folder at its line.
    s.CompilerOutput->SetSel(4, 2, 4, 2);
    QTest::keyClick(output, Qt::Key_Return);
    EXPECT_EQ(t.titles(), QStringList({t.source, t.include}));
    EXPECT_EQ(t.where(), "defs.pbp:y VAR WORD:1");
    EXPECT_EQ(s.currentMessage(), 1);
    EXPECT_EQ(s.CompilerOutput->selectedText(), "WARNING Line 2: Unused. (inc/defs.pbp)");
    EXPECT_EQ(s.CompilerOutput->Text().count('\n'), 5) << "Enter changed the output";

    // F4 through the frame's key: the assembler's error at its BASIC line, in the open source.
    QApplication::setActiveWindow(t.f.get());
    QTest::keyClick(t.f->mdiArea(), Qt::Key_F4);
    EXPECT_EQ(t.where(), "blink.pbp:GOTO nowhere:2");
    EXPECT_EQ(t.titles().size(), 2);
    // Each document keeps its own mark.
    EXPECT_EQ(t.f->registry().find(t.include)->View->messageMarkLine(), 1);

    // On to the note, whose file isn't there: said, nothing opened.
    t.click(ToolId::NextMessage);
    EXPECT_EQ(s.currentMessage(), 3);
    EXPECT_EQ(t.lastBox().text, "File Not Found: " + t.asmFile);
    EXPECT_EQ(t.titles().size(), 2);
    // Round to the first, a message that names no file: the compiled source.
    t.click(ToolId::NextMessage);
    EXPECT_EQ(s.currentMessage(), 0);
    EXPECT_EQ(t.where(), "blink.pbp:GOTO nowhere:2");
    // Shift+F4 in the screen goes back round; F4 there goes on.
    QTest::keyClick(output, Qt::Key_F4, Qt::ShiftModifier);
    EXPECT_EQ(s.currentMessage(), 3);
    QTest::keyClick(output, Qt::Key_F4);
    QTest::keyClick(output, Qt::Key_F4);
    EXPECT_EQ(s.currentMessage(), 1);
    EXPECT_EQ(t.where(), "defs.pbp:y VAR WORD:1");
    EXPECT_EQ(t.w.prompts.boxes.size(), 2u);

    // A double-click on a message's line; one on a line without a message goes nowhere.
    QTest::mouseDClick(t.outputViewport(), Qt::LeftButton, {}, t.outputLinePoint(1));
    EXPECT_EQ(s.currentMessage(), 0);
    EXPECT_EQ(t.where(), "blink.pbp:GOTO nowhere:2");
    QTest::mouseDClick(t.outputViewport(), Qt::LeftButton, {}, t.outputLinePoint(0));
    EXPECT_EQ(s.currentMessage(), 0);

    // An edit of the marked line takes its mark; the next compile takes every mark and the messages.
    SourceView& inc = *t.f->registry().find(t.include)->View;
    inc.SetSel(0, 1, 0, 1);
    QTest::keyClicks(inc.editorWidget(), "'");
    EXPECT_EQ(inc.messageMarkLine(), -1);
    EXPECT_EQ(t.blink->View->messageMarkLine(), 2);
    t.f->mdiArea()->setActiveSubWindow(t.blink->subWindow());
    saveSetting(Key::CompilerPathName, "/bin/true");
    t.click(ToolId::Compile);
    EXPECT_EQ(t.blink->View->messageMarkLine(), -1);
    EXPECT_TRUE(s.messages().empty());
    EXPECT_EQ(s.countText(), "");
    EXPECT_FALSE(t.enabled(ToolId::NextMessage) || t.enabled(ToolId::PreviousMessage));
    const size_t boxes = t.w.prompts.boxes.size();
    t.click(ToolId::NextMessage);
    EXPECT_EQ(t.w.prompts.boxes.size(), boxes);
}

TEST(Messages, AClickIntoTheScreenStopsItsCountdownAndAClosedScreenHasNoMessagesToStep) {
    MessagesFrame t;
    CompilerScreen& s = *t.screen;
    s.startCountdown("5");
    QTest::mouseClick(t.outputViewport(), Qt::LeftButton, {}, t.outputLinePoint(0));
    EXPECT_FALSE(s.CompileScreenTimer.isActive());
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_TRUE(s.isVisible());
    EXPECT_EQ(s.currentMessage(), -1) << "a single click goes nowhere";
    s.close();
    EXPECT_EQ(CompilerScreen::withMessages(), nullptr);
    EXPECT_FALSE(t.enabled(ToolId::NextMessage));
}

TEST(Messages, ACompilesOwnMessagesLeadToTheirLinesTheAssemblersToTheTaggedBasicLine) {
    // The compiler double writes a tagged .ASM beside the source and prints a message of each kind.
    QTemporaryDir scratch;
    const QString compiler = writeProgram(
        scratch.filePath("PBPW"),
        "#!/bin/sh\nfor a; do src=$a; done\ndir=$(dirname \"$src\")\n"
        "printf '; %s\\t00003\\tGOTO nowhere\\n\\tgoto nowhere\\n' \"$src\" > \"$dir/blink.asm\"\n"
        "echo 'PICBASIC PRO(TM) Compiler 3.1, (c) 1998 x'\n"
        "echo 'WARNING Line 2: Unused variable. (defs.pbp)'\n"
        "echo 'ERROR Line 4: Syntax error.'\n"
        "echo \"Error[113] $dir/blink.asm 2 : Symbol not previously defined (nowhere)\"\nexit 1\n");
    CompileFrame t("INCLUDE \"defs.pbp\"\nHIGH PORTB.0\nGOTO nowhere\nEND\n", compiler, true, "led/blink.pbp");
    t.w.write("led/defs.pbp", "x VAR BYTE\ny VAR WORD\n");
    SourceView& blink = *t.doc()->View;
    blink.SetSel(2, 1, 2, 1);
    ASSERT_TRUE(t.compileAndWait());
    CompilerScreen& s = t.screen();
    EXPECT_EQ(s.countText(), "2 errors, 1 warning");
    QStringList tags;
    for (int line = 0; line < 4; ++line)
        tags << s.CompilerOutput->lineTag(line) + "|" + s.CompilerOutput->lineNote(line);
    EXPECT_EQ(tags, QStringList({"|", "warning|", "error|", QString::fromUtf8("error|\u2192 blink.pbp line 3")}));
    // The compile moved no caret and marked nothing.
    int c0, l0, c1, l1;
    blink.GetSel(c0, l0, c1, l1);
    EXPECT_EQ(QList<int>({c0, l0, c1, l1, blink.messageMarkLine()}), QList<int>({2, 1, 2, 1, -1}));
    EXPECT_EQ(t.titles().size(), 1);
    const auto where = [&] {
        SourceView& v = *t.doc()->View;
        return QFileInfo(t.doc()->Caption()).fileName() + ":" + v.selectedText() + ":" + QString::number(v.messageMarkLine());
    };
    QStringList walk;
    for (int i = 0; i < 3; ++i) {
        t.click(ToolId::NextMessage);
        walk << where();
    }
    EXPECT_EQ(walk, QStringList({"defs.pbp:y VAR WORD:1", "blink.pbp:END:3", "blink.pbp:GOTO nowhere:2"}));
    EXPECT_TRUE(t.w.prompts.boxes.empty());
}
