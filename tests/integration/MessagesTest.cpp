// From a compile's messages on the output screen to their lines: tags and count, Enter, double-click, F4 and
// Shift+F4 from the screen and from the frame, an INCLUDEd file opened on the way, an assembler message at
// its tagged BASIC line, the strip marks and their end, and a click that stops the countdown.
#include "RunningFrame.h"

#include "document/SourceViewEditor.h"

#include <QApplication>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Where the user went: the active document's name, its selected text, and its marked line.
QString where(RunningFrame& t) {
    SourceView& v = *t.doc()->View;
    return QFileInfo(t.doc()->Caption()).fileName() + ":" + v.selectedText() + ":" + QString::number(v.messageMarkLine());
}

QPoint onLine(SourceViewEditor& e, int line) {
    const long pos = e.SendScintilla(QsciScintillaBase::SCI_POSITIONFROMLINE, line);
    return {int(e.SendScintilla(QsciScintillaBase::SCI_POINTXFROMPOSITION, 0UL, pos)) + 3,
            int(e.SendScintilla(QsciScintillaBase::SCI_POINTYFROMPOSITION, 0UL, pos)) + 3};
}

}  // namespace

TEST(Messages, FromTheOutputScreenToTheLinesByEnterDoubleClickAndF4) {
    // The compiler double writes a tagged .asm beside the source and prints a message of each kind, one line
    // ended by CR LF, the last about an .asm that isn't there, named from the source's folder.
    QTemporaryDir scratch;
    const QString compiler = writeProgram(
        scratch.filePath("PBPW"),
        "#!/bin/sh\nfor a; do src=$a; done\ndir=$(dirname \"$src\")\n"
        "printf '; %s\\t00003\\tGOTO nowhere\\n\\tgoto nowhere\\n' \"$src\" > \"$dir/blink.asm\"\n"
        "echo 'PICBASIC PRO(TM) Compiler 3.1, (c) 1998 x'\n"
        "printf 'WARNING Line 2: Unused variable. (inc/defs.pbp)\\r\\n'\n"
        "echo 'ERROR Line 4: Syntax error.'\n"
        "echo \"Error[113] $dir/blink.asm 2 : Symbol not previously defined (nowhere)\"\n"
        "echo 'Message[302] gone.asm 60 : Register not in bank 0.'\nexit 1\n");
    CompileFrame t("INCLUDE \"inc/defs.pbp\"\nHIGH PORTB.0\nGOTO nowhere\nEND\n", compiler, true, "led/blink.pbp");
    const QString source = t.w.file("led/blink.pbp"), include = t.w.write("led/inc/defs.pbp", "x VAR BYTE\ny VAR WORD\n");
    SourceView& blink = *t.doc()->View;
    blink.SetSel(2, 1, 2, 1);
    ASSERT_TRUE(t.compileAndWait());
    CompilerScreen& s = t.screen();
    SourceViewEditor& out = SourceViewEditor::of(*s.CompilerOutput);

    // Tagged and counted above the output; no caret moved, nothing marked or opened.
    QStringList tags;
    for (int line = 0; line < 6; ++line)
        tags << s.CompilerOutput->lineTag(line) + "|" + s.CompilerOutput->lineNote(line);
    EXPECT_EQ(tags, QStringList({"|", "warning|", "error|", QString::fromUtf8("error|\u2192 blink.pbp line 3"),
                                 "note|", "|"}));
    const QLabel* count = s.findChild<QLabel*>("MessageCount");
    ASSERT_NE(count, nullptr);
    EXPECT_EQ(s.countText(), "2 errors, 1 warning");
    EXPECT_TRUE(count->isVisible() && count->geometry().bottom() < s.CompilerOutput->geometry().top());
    int c0, l0, c1, l1;
    blink.GetSel(c0, l0, c1, l1);
    EXPECT_EQ(QList<int>({c0, l0, c1, l1, blink.messageMarkLine()}), QList<int>({2, 1, 2, 1, -1}));
    EXPECT_EQ(t.titles().size(), 1);
    auto key = [&](const char* id) {
        return t.f->toolBars().action(t.f->toolBars().Tools().Item(ToolId::CMenu).Menu().Tools().Item(id))->shortcuts();
    };
    EXPECT_EQ(QList<QList<QKeySequence>>({key(ToolId::NextMessage), key(ToolId::PreviousMessage), key(ToolId::CompileAndProgram)}),
              QList<QList<QKeySequence>>({{QKeySequence("F4")}, {QKeySequence("Shift+F4")}, {QKeySequence("Ctrl+F10")}}));

    // Enter on the warning: the INCLUDE, not open yet, opens from the source's folder at its line.
    const QString shown = s.CompilerOutput->Text();
    s.CompilerOutput->SetSel(4, 1, 4, 1);
    QTest::keyClick(&out, Qt::Key_Return);
    EXPECT_EQ(t.titles(), QStringList({source, include}));
    EXPECT_EQ(where(t), "defs.pbp:y VAR WORD:1");
    EXPECT_EQ(s.CompilerOutput->selectedText(), "WARNING Line 2: Unused variable. (inc/defs.pbp)");
    EXPECT_EQ(s.CompilerOutput->Text(), shown);

    // On through the frame's key, its menu and the screen's keys, round at both ends; each document keeps its
    // mark; the note's file isn't there, which is said.
    QApplication::setActiveWindow(t.f.get());
    QTest::keyClick(t.f->mdiArea(), Qt::Key_F4);
    QStringList walk{where(t)};
    t.click(ToolId::NextMessage);
    walk << where(t);
    t.click(ToolId::NextMessage);
    EXPECT_EQ(t.lastBox().text, "File Not Found: " + t.w.file("led/gone.asm"));
    walk << QString::number(s.currentMessage());
    QTest::keyClick(&out, Qt::Key_F4);
    walk << where(t);
    QTest::keyClick(&out, Qt::Key_F4, Qt::ShiftModifier);
    walk << QString::number(s.currentMessage());
    EXPECT_EQ(walk, QStringList({"blink.pbp:END:3", "blink.pbp:GOTO nowhere:2", "3", "defs.pbp:y VAR WORD:1", "3"}));
    EXPECT_EQ(t.w.prompts.boxes.size(), 2u);
    EXPECT_EQ(t.titles().size(), 2);

    // A double-click on a message's line goes there; on another line, and a single click, nowhere. A click
    // stops the countdown.
    QTest::mouseDClick(out.viewport(), Qt::LeftButton, {}, onLine(out, 2));
    EXPECT_EQ(where(t), "blink.pbp:END:3");
    s.startCountdown("5");
    QTest::mouseDClick(out.viewport(), Qt::LeftButton, {}, onLine(out, 0));
    QTest::mouseClick(out.viewport(), Qt::LeftButton, {}, onLine(out, 1));
    EXPECT_EQ(s.currentMessage(), 1);
    EXPECT_FALSE(s.CompileScreenTimer.isActive());
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");

    // An edit of a marked line takes its mark; the next compile takes every mark and the messages, and
    // brings its own.
    SourceView& defs = *t.f->registry().find(include)->View;
    defs.SetSel(0, 1, 0, 1);
    QTest::keyClicks(defs.editorWidget(), "'");
    EXPECT_EQ(QList<int>({defs.messageMarkLine(), blink.messageMarkLine()}), QList<int>({-1, 3}));
    t.f->mdiArea()->setActiveSubWindow(t.f->registry().find(source)->subWindow());
    ASSERT_TRUE(t.compileAndWait());
    EXPECT_EQ(blink.messageMarkLine(), -1);
    EXPECT_EQ(s.messages().size(), 4u);
    EXPECT_EQ(s.currentMessage(), -1);
    // A closed screen leaves nothing to step through.
    EXPECT_TRUE(t.enabled(ToolId::NextMessage));
    s.close();
    EXPECT_FALSE(t.enabled(ToolId::NextMessage) || t.enabled(ToolId::PreviousMessage));
}
