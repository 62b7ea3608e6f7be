// SourceView: selection, positions, tokens, commands and searching.
#include "document/Language.h"
#include "document/Positions.h"
#include "document/SourceViewEditor.h"
#include "document/SourceViewImpl.h"

#include <QApplication>
#include <QPointer>
#include <Qsci/qscicommandset.h>

using Sci = QsciScintillaBase;

void SourceView::SetSel(int startCol, int startLine, int endCol, int endLine) {
    // A jump leaves the word a list or a tip was about.
    editor_->SendScintilla(Sci::SCI_AUTOCCANCEL);
    editor_->SendScintilla(Sci::SCI_CALLTIPCANCEL);
    editor_->SendScintilla(Sci::SCI_SETSEL, positionAt(*editor_, startCol, startLine), positionAt(*editor_, endCol, endLine));
    checkCaretMoved();
}

void SourceView::GetSel(int& startCol, int& startLine, int& endCol, int& endLine) const {
    columnAndLine(*editor_, editor_->SendScintilla(Sci::SCI_GETSELECTIONSTART), startCol, startLine);
    columnAndLine(*editor_, editor_->SendScintilla(Sci::SCI_GETSELECTIONEND), endCol, endLine);
}

void SourceView::SelectWord() {
    const long pos = editor_->SendScintilla(Sci::SCI_GETCURRENTPOS);
    editor_->SendScintilla(Sci::SCI_SETSEL, editor_->SendScintilla(Sci::SCI_WORDSTARTPOSITION, pos, 1L),
                           editor_->SendScintilla(Sci::SCI_WORDENDPOSITION, pos, 1L));
    checkCaretMoved();
}

void SourceView::Cut() {
    editor_->cut();
    checkCaretMoved();
}

void SourceView::Copy() { editor_->copy(); }

void SourceView::Paste() {
    editor_->paste();
    checkCaretMoved();
}

// The control's own commands, for a number that no handler cancelled: Indent and Outdent work on the
// lines of the selection (or the caret's line) as one undo step; GotoLine is the document window's
// dialog and has nothing of the control's own behind it; any number that is one of Scintilla's keyboard
// commands (SCI_LINEDOWN, SCI_UNDO ...) runs that command; all others do nothing.
void SourceView::ExecuteCommand(int command) {
    QPointer<SourceView> self(this);
    emit ExecuteCommandEvent(command);
    if (!self || command == 0)
        return;
    SourceViewEditor& e = *editor_;
    if (command == EditCommand::Indent || command == EditCommand::Outdent) {
        int startCol, first, endCol, last;
        GetSel(startCol, first, endCol, last);
        if (!TextSelected())
            first = last = CaretY();
        e.beginUndoAction();
        for (int line = first; line <= last; ++line)
            command == EditCommand::Indent ? e.indent(line) : e.unindent(line);
        e.endUndoAction();
        checkCaretMoved();
        return;
    }
    for (QsciCommand* c : e.standardCommands()->commands()) {
        if (int(c->command()) == command) {
            e.SendScintilla(unsigned(command));
            checkCaretMoved();
            return;
        }
    }
}

// The character under the point, not the caret place nearest to it: a click on the right half of a word's
// last letter is still on that word.
void SourceView::ClientToText(int x, int y, int& col, int& line) const {
    columnAndLine(*editor_, editor_->SendScintilla(Sci::SCI_CHARPOSITIONFROMPOINT, long(x), long(y)), col, line);
}

// The line stays; the column becomes the one on screen, with each tab reaching to the next multiple of four.
void SourceView::TextToDisplay(int col, int line, int& displayCol, int& displayLine) const {
    displayLine = line;
    displayCol = int(editor_->SendScintilla(Sci::SCI_GETCOLUMN, positionAt(*editor_, col, line)));
}

void SourceView::GetTokenAt(int col, int line, int& tokenClass, int& start, int& length) const {
    tokenClass = TokenClass::None;
    start = col;
    length = 0;
    const QString text = lineText(*editor_, line);
    if (col < 0 || col >= text.size())
        return;
    bool found = false;
    tokenizeLine(d->document->language(), text, [&](const Token& t) {
        if (!found && col >= t.start && col < t.start + t.length) {
            found = true;
            tokenClass = t.cls;
            start = t.start;
            length = t.length;
        }
    });
}

bool SourceView::findText(const QString& what, bool matchCase, bool wholeWord, bool forward) {
    d->search = Impl::Search{what, matchCase, wholeWord, forward};
    if (what.isEmpty())
        return false;
    // Forward from the end of the selection, back from its start, so a found text isn't found again.
    SourceViewEditor& e = *editor_;
    int line = 0, index = 0;
    e.lineIndexFromPosition(int(e.SendScintilla(forward ? Sci::SCI_GETSELECTIONEND : Sci::SCI_GETSELECTIONSTART)), &line, &index);
    const bool found = e.findFirst(what, false, matchCase, wholeWord, true, forward, line, index);
    checkCaretMoved();
    return found;
}

bool SourceView::replaceAndFindNext(const QString& what, const QString& replacement, bool matchCase, bool wholeWord) {
    if (what.isEmpty())
        return false;
    if (TextSelected() && selectedText().compare(what, matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0)
        editor_->replaceSelectedText(replacement);
    return findText(what, matchCase, wholeWord, true);
}

// One pass with Scintilla's target: each match is replaced in place and the search goes on behind the
// replacement, with no selection, scrolling or repaint in between (the per-match selecting and showing of
// a find loop made a large Replace All take seconds). The selection ends on the last replacement.
int SourceView::replaceAll(const QString& what, const QString& replacement, bool matchCase, bool wholeWord) {
    d->search = Impl::Search{what, matchCase, wholeWord, true};
    if (what.isEmpty())
        return 0;
    SourceViewEditor& e = *editor_;
    const QByteArray find = what.toUtf8(), with = replacement.toUtf8();
    e.SendScintilla(Sci::SCI_SETSEARCHFLAGS, long((matchCase ? Sci::SCFIND_MATCHCASE : 0) | (wholeWord ? Sci::SCFIND_WHOLEWORD : 0)));
    int count = 0;
    long from = 0, lastStart = -1, lastEnd = -1;
    e.SendScintilla(Sci::SCI_BEGINUNDOACTION);
    for (;;) {
        e.SendScintilla(Sci::SCI_SETTARGETRANGE, from, e.SendScintilla(Sci::SCI_GETLENGTH));
        if (e.SendScintilla(Sci::SCI_SEARCHINTARGET, uintptr_t(find.size()), find.constData()) < 0)
            break;
        lastStart = e.SendScintilla(Sci::SCI_GETTARGETSTART);
        e.SendScintilla(Sci::SCI_REPLACETARGET, uintptr_t(with.size()), with.constData());
        lastEnd = from = e.SendScintilla(Sci::SCI_GETTARGETEND);
        ++count;
    }
    e.SendScintilla(Sci::SCI_ENDUNDOACTION);
    if (count > 0)
        e.SendScintilla(Sci::SCI_SETSEL, lastStart, lastEnd);
    checkCaretMoved();
    return count;
}

void SourceView::Find() {
    if (!d->findDialog)
        d->findDialog = new FindDialog(*this);
    d->findDialog->showFor(false);
}

void SourceView::Replace() {
    if (!d->findDialog)
        d->findDialog = new FindDialog(*this);
    d->findDialog->showFor(true);
}

void SourceView::FindNext() {
    if (!d->search || d->search->what.isEmpty()) {
        Find();
        return;
    }
    if (!findText(d->search->what, d->search->matchCase, d->search->wholeWord, d->search->forward))
        QApplication::beep();
}
