// SourceView: selection, positions, tokens, commands and searching.
#include "document/Language.h"
#include "document/Positions.h"
#include "document/SourceViewImpl.h"

#include <QApplication>
#include <QPointer>
#include <Qsci/qscicommandset.h>

using Sci = QsciScintillaBase;

void SourceView::SetSel(int startCol, int startLine, int endCol, int endLine) {
    SendScintilla(SCI_SETSEL, positionAt(*this, startCol, startLine), positionAt(*this, endCol, endLine));
    checkCaretMoved();
}

void SourceView::GetSel(int& startCol, int& startLine, int& endCol, int& endLine) const {
    columnAndLine(*this, SendScintilla(SCI_GETSELECTIONSTART), startCol, startLine);
    columnAndLine(*this, SendScintilla(SCI_GETSELECTIONEND), endCol, endLine);
}

void SourceView::SelectWord() {
    const long pos = SendScintilla(SCI_GETCURRENTPOS);
    SendScintilla(SCI_SETSEL, SendScintilla(SCI_WORDSTARTPOSITION, pos, 1L), SendScintilla(SCI_WORDENDPOSITION, pos, 1L));
    checkCaretMoved();
}

void SourceView::Cut() {
    cut();
    checkCaretMoved();
}

void SourceView::Copy() { copy(); }

void SourceView::Paste() {
    paste();
    checkCaretMoved();
}

// The control's own commands, for a number that no handler cancelled: 43 and 44 indent and outdent the
// lines of the selection (or the caret's line) as one undo step; 39, go to line, is the document window's
// dialog and has nothing of the control's own behind it; any number that is one of Scintilla's keyboard
// commands (SCI_LINEDOWN, SCI_UNDO ...) runs that command; all others do nothing.
void SourceView::ExecuteCommand(int command) {
    QPointer<SourceView> self(this);
    emit ExecuteCommandEvent(command);
    if (!self || command == 0)
        return;
    if (command == 43 || command == 44) {
        int startCol, first, endCol, last;
        GetSel(startCol, first, endCol, last);
        if (!TextSelected())
            first = last = CaretY();
        beginUndoAction();
        for (int line = first; line <= last; ++line)
            command == 43 ? indent(line) : unindent(line);
        endUndoAction();
        checkCaretMoved();
        return;
    }
    for (QsciCommand* c : standardCommands()->commands()) {
        if (int(c->command()) == command) {
            SendScintilla(unsigned(command));
            checkCaretMoved();
            return;
        }
    }
}

void SourceView::ClientToText(int x, int y, int& col, int& line) const {
    columnAndLine(*this, SendScintilla(SCI_POSITIONFROMPOINT, long(x), long(y)), col, line);
}

// The line stays; the column becomes the one on screen, with each tab reaching to the next multiple of four.
void SourceView::TextToDisplay(int col, int line, int& displayCol, int& displayLine) const {
    displayLine = line;
    displayCol = int(SendScintilla(SCI_GETCOLUMN, positionAt(*this, col, line)));
}

void SourceView::GetTokenAt(int col, int line, int& tokenClass, int& start, int& length) const {
    tokenClass = TokenClass::None;
    start = col;
    length = 0;
    const QString text = lineText(*this, line);
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
    int line = 0, index = 0;
    lineIndexFromPosition(int(SendScintilla(forward ? SCI_GETSELECTIONEND : SCI_GETSELECTIONSTART)), &line, &index);
    const bool found = findFirst(what, false, matchCase, wholeWord, true, forward, line, index);
    checkCaretMoved();
    return found;
}

bool SourceView::replaceAndFindNext(const QString& what, const QString& replacement, bool matchCase, bool wholeWord) {
    if (what.isEmpty())
        return false;
    if (TextSelected() && selectedText().compare(what, matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0)
        replaceSelectedText(replacement);
    return findText(what, matchCase, wholeWord, true);
}

int SourceView::replaceAll(const QString& what, const QString& replacement, bool matchCase, bool wholeWord) {
    d->search = Impl::Search{what, matchCase, wholeWord, true};
    if (what.isEmpty())
        return 0;
    int count = 0;
    beginUndoAction();
    // No wrap, from the start: each search goes on behind the last replacement, so a replacement that
    // holds the searched text is not replaced again.
    if (findFirst(what, false, matchCase, wholeWord, false, true, 0, 0, false)) {
        do {
            replace(replacement);
            ++count;
        } while (findNext());
    }
    endUndoAction();
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
