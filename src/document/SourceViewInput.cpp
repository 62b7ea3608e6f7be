// SourceView: keyboard and mouse events, in the numbers the system's handlers read, and printing.
#include "document/PdfName.h"
#include "document/SourceViewEditor.h"
#include "document/SourceViewImpl.h"
#include "platform/Failure.h"
#include "platform/KeyCodes.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QPrintDialog>
#include <Qsci/qsciprinter.h>

using Sci = QsciScintillaBase;

namespace {

QPoint clientPoint(const QMouseEvent* e) { return e->position().toPoint(); }

}  // namespace

SourceViewEditor::SourceViewEditor(SourceView& view) : QsciScintilla(&view), view_(view) {}

void SourceViewEditor::keyPressEvent(QKeyEvent* e) {
    QPointer<SourceView> self(&view_);
    emit view_.KeyDown(virtualKeyCode(e->key(), e->modifiers()), shiftState(e->modifiers()));
    if (!self)
        return;  // the handler closed the window
    // The control's own keys for finding and going to a line; everything else is Scintilla's.
    const int mods = e->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    const bool enter = e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
    // The coding keys belong to a program's text, not to the compiler's output.
    const bool source = view_.sourceLexer() != nullptr;
    // A word typed out in full needs nothing from the list: Enter and Tab do what they do without it.
    if (source && mods == 0 && (enter || e->key() == Qt::Key_Tab) && isListActive() && view_.d->wordComplete())
        SendScintilla(SCI_AUTOCCANCEL);
    if (mods == Qt::ControlModifier && e->key() == Qt::Key_F)
        view_.Find();
    else if (mods == Qt::ControlModifier && e->key() == Qt::Key_H)
        view_.Replace();
    else if (mods == Qt::ControlModifier && e->key() == Qt::Key_G)
        view_.ExecuteCommand(EditCommand::GotoLine);
    else if (mods == 0 && e->key() == Qt::Key_F3)
        view_.FindNext();
    else if (source && mods == Qt::ControlModifier && e->key() == Qt::Key_Space)
        emit view_.CompletionWanted();
    else if (source && (mods & ~Qt::ShiftModifier) == Qt::ControlModifier && e->key() == Qt::Key_Slash)
        view_.toggleLineComments();
    else if (source && e->key() == Qt::Key_F2 && mods == Qt::ControlModifier)
        view_.toggleBookmark(view_.CaretY());
    else if (source && e->key() == Qt::Key_F2 && (mods == 0 || mods == int(Qt::ControlModifier | Qt::ShiftModifier)))
        view_.gotoBookmark(mods == 0);
    else if (isReadOnly() && enter)
        ;  // nothing to break: the key is the KeyDown handler's, and the selection stays
    else if (source && enter && mods == 0 && !isListActive()) {
        beginUndoAction();
        QsciScintilla::keyPressEvent(e);
        view_.d->newLineKeepingIndent();
        endUndoAction();
    } else if ((mods & Qt::AltModifier) && !(mods & Qt::ControlModifier) && !e->text().isEmpty() &&
               e->text().at(0).isPrint())
        ;  // an Alt key that no menu took: Scintilla would type its letter
    else
        QsciScintilla::keyPressEvent(e);
    if (self)
        view_.checkCaretMoved();
}

void SourceViewEditor::keyReleaseEvent(QKeyEvent* e) {
    QsciScintilla::keyReleaseEvent(e);
    // A held key repeats its key down only, as on the platform the system came from.
    if (!e->isAutoRepeat())
        emit view_.KeyUp(virtualKeyCode(e->key(), e->modifiers()), shiftState(e->modifiers()));
}

void SourceViewEditor::mousePressEvent(QMouseEvent* e) {
    QsciScintilla::mousePressEvent(e);
    QPointer<SourceView> self(&view_);
    view_.checkCaretMoved();
    if (!self)
        return;
    const QPoint p = clientPoint(e);
    emit view_.MouseDown(mouseButtons(e->button()), shiftState(e->modifiers()), p.x(), p.y());
}

void SourceViewEditor::mouseMoveEvent(QMouseEvent* e) {
    QsciScintilla::mouseMoveEvent(e);
    view_.checkCaretMoved();
    const QPoint p = clientPoint(e);
    emit view_.MouseMove(mouseButtons(e->buttons()), shiftState(e->modifiers()), p.x(), p.y());
}

void SourceViewEditor::mouseReleaseEvent(QMouseEvent* e) {
    QsciScintilla::mouseReleaseEvent(e);
    QPointer<SourceView> self(&view_);
    view_.checkCaretMoved();
    if (!self)
        return;
    const QPoint p = clientPoint(e);
    emit view_.MouseUp(mouseButtons(e->button()), shiftState(e->modifiers()), p.x(), p.y());
}

void SourceViewEditor::mouseDoubleClickEvent(QMouseEvent* e) {
    QsciScintilla::mouseDoubleClickEvent(e);
    QPointer<SourceView> self(&view_);
    view_.checkCaretMoved();
    if (self)
        emit view_.DblClick();
}

void SourceViewEditor::paintEvent(QPaintEvent* e) {
    if (SourceLexer* lexer = view_.sourceLexer())
        lexer->restyleVisible();
    QsciScintilla::paintEvent(e);
}

void SourceView::preparePrinter(QsciPrinter& printer) const {
    const QString path = d->document->PathName();
    printer.setDocName(QFileInfo(path).fileName());
    // The print dialog offers the printer's file name for a PDF; without one it would put the document's
    // name behind the home folder. Setting the name makes the printer a PDF one, so the printer is put
    // back where one is installed.
    if (!path.isEmpty()) {
        printer.setOutputFileName(pdfNameFor(path));
        printer.setOutputFormat(QPrinter::NativeFormat);
    }
}

void SourceView::PrintText() {
    QsciPrinter printer(QPrinter::HighResolution);
    preparePrinter(printer);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    printTo(printer);
}

void SourceView::printTo(QsciPrinter& printer) {
    printer.setWrapMode(QsciScintilla::WrapWord);
    // QsciPrinter reports success even when its painter never started (a PDF file that can't be created).
    QPainter painter;
    if (!painter.begin(&printer))
        throw printerError(QStringLiteral("The printer could not be started; nothing was printed."));
    if (d->lexer)
        d->lexer->styleAll();
    d->applyPrintLook();
    const long mode = editor_->SendScintilla(Sci::SCI_GETPRINTCOLOURMODE);
    editor_->SendScintilla(Sci::SCI_SETPRINTCOLOURMODE,
                           long(d->lexer ? Sci::SC_PRINT_COLOURONWHITE : Sci::SC_PRINT_BLACKONWHITE));
    const bool ok = printer.printRange(editor_, painter);
    painter.end();
    editor_->SendScintilla(Sci::SCI_SETPRINTCOLOURMODE, mode);
    d->applyLook();
    if (!ok)
        throw printerError(QStringLiteral("The text could not be printed."));
}
