// SourceView: keyboard and mouse events, in the numbers the system's handlers read, and printing.
#include "document/SourceViewImpl.h"
#include "platform/Failure.h"
#include "platform/KeyCodes.h"

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

void SourceView::keyPressEvent(QKeyEvent* e) {
    QPointer<SourceView> self(this);
    emit KeyDown(virtualKeyCode(e->key(), e->modifiers()), shiftState(e->modifiers()));
    if (!self)
        return;  // the handler closed the window
    // The control's own keys for finding and going to a line; everything else is Scintilla's.
    const int mods = e->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    if (mods == Qt::ControlModifier && e->key() == Qt::Key_F)
        Find();
    else if (mods == Qt::ControlModifier && e->key() == Qt::Key_H)
        Replace();
    else if (mods == Qt::ControlModifier && e->key() == Qt::Key_G)
        ExecuteCommand(39);
    else if (mods == 0 && e->key() == Qt::Key_F3)
        FindNext();
    else
        QsciScintilla::keyPressEvent(e);
    if (self)
        checkCaretMoved();
}

void SourceView::keyReleaseEvent(QKeyEvent* e) {
    QsciScintilla::keyReleaseEvent(e);
    // A held key repeats its key down only, as on the platform the system came from.
    if (!e->isAutoRepeat())
        emit KeyUp(virtualKeyCode(e->key(), e->modifiers()), shiftState(e->modifiers()));
}

void SourceView::mousePressEvent(QMouseEvent* e) {
    QsciScintilla::mousePressEvent(e);
    checkCaretMoved();
}

void SourceView::mouseMoveEvent(QMouseEvent* e) {
    QsciScintilla::mouseMoveEvent(e);
    checkCaretMoved();
    const QPoint p = clientPoint(e);
    emit MouseMove(mouseButtons(e->buttons()), shiftState(e->modifiers()), p.x(), p.y());
}

void SourceView::mouseReleaseEvent(QMouseEvent* e) {
    QsciScintilla::mouseReleaseEvent(e);
    QPointer<SourceView> self(this);
    checkCaretMoved();
    if (!self)
        return;
    const QPoint p = clientPoint(e);
    emit MouseUp(mouseButtons(e->button()), shiftState(e->modifiers()), p.x(), p.y());
}

void SourceView::mouseDoubleClickEvent(QMouseEvent* e) {
    QsciScintilla::mouseDoubleClickEvent(e);
    QPointer<SourceView> self(this);
    checkCaretMoved();
    if (self)
        emit DblClick();
}

void SourceView::PrintText() {
    QsciPrinter printer(QPrinter::HighResolution);
    printer.setDocName(d->document->PathName());
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    printTo(printer);
}

void SourceView::printTo(QsciPrinter& printer) {
    printer.setWrapMode(WrapWord);
    // QsciPrinter reports success even when its painter never started (a PDF file that can't be created).
    QPainter painter;
    if (!painter.begin(&printer))
        throw Failure(482, QStringLiteral("The printer could not be started; nothing was printed."));
    if (d->lexer)
        d->lexer->styleAll();
    d->applyPrintLook();
    const long mode = SendScintilla(SCI_GETPRINTCOLOURMODE);
    SendScintilla(SCI_SETPRINTCOLOURMODE, long(d->lexer ? SC_PRINT_COLOURONWHITE : SC_PRINT_BLACKONWHITE));
    const bool ok = printer.printRange(this, painter);
    painter.end();
    SendScintilla(SCI_SETPRINTCOLOURMODE, mode);
    d->applyLook();
    if (!ok)
        throw Failure(482, QStringLiteral("The text could not be printed."));
}
