#include "document/SourceViewAccessible.h"

#include "document/SourceViewEditor.h"

#include <algorithm>

using Sci = QsciScintillaBase;

namespace {

void ensureIndex(const QsciScintillaBase& sci) {
    if (!(sci.SendScintilla(Sci::SCI_GETLINECHARACTERINDEX) & Sci::SC_LINECHARACTERINDEX_UTF16))
        sci.SendScintilla(Sci::SCI_ALLOCATELINECHARACTERINDEX, long(Sci::SC_LINECHARACTERINDEX_UTF16));
}

QAccessibleInterface* factory(const QString& className, QObject* object) {
    // Asked for the most derived class first, so this comes before QScintilla's own.
    if (className == QLatin1String("SourceViewEditor") && object && object->isWidgetType())
        return new SourceViewAccessible(static_cast<SourceViewEditor*>(object));
    return nullptr;
}

}  // namespace

SourceViewAccessible::SourceViewAccessible(SourceViewEditor* view) : QAccessibleWidget(view, QAccessible::EditableText) {}

void SourceViewAccessible::install() {
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(factory);
        return true;
    }();
}

QsciScintillaBase& SourceViewAccessible::sci() const { return *static_cast<QsciScintillaBase*>(widget()); }

int SourceViewAccessible::offsetAt(const QsciScintillaBase& sci, long pos) {
    ensureIndex(sci);
    const long line = sci.SendScintilla(Sci::SCI_LINEFROMPOSITION, pos);
    return int(sci.SendScintilla(Sci::SCI_INDEXPOSITIONFROMLINE, line, long(Sci::SC_LINECHARACTERINDEX_UTF16)) +
               sci.SendScintilla(Sci::SCI_COUNTCODEUNITS, sci.SendScintilla(Sci::SCI_POSITIONFROMLINE, line), pos));
}

long SourceViewAccessible::positionAt(const QsciScintillaBase& sci, int offset) {
    ensureIndex(sci);
    const long length = sci.SendScintilla(Sci::SCI_GETLENGTH);
    if (offset <= 0)
        return 0;
    const long line = sci.SendScintilla(Sci::SCI_LINEFROMINDEXPOSITION, long(offset), long(Sci::SC_LINECHARACTERINDEX_UTF16));
    const long lineStart = sci.SendScintilla(Sci::SCI_POSITIONFROMLINE, line);
    const long within = offset - sci.SendScintilla(Sci::SCI_INDEXPOSITIONFROMLINE, line, long(Sci::SC_LINECHARACTERINDEX_UTF16));
    if (within <= 0)
        return lineStart;
    const long pos = sci.SendScintilla(Sci::SCI_POSITIONRELATIVECODEUNITS, lineStart, within);
    return pos > 0 ? pos : length;
}

void* SourceViewAccessible::interface_cast(QAccessible::InterfaceType t) {
    if (t == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(t);
}

void SourceViewAccessible::selection(int selectionIndex, int* startOffset, int* endOffset) const {
    *startOffset = *endOffset = 0;
    if (selectionIndex != 0 || selectionCount() == 0)
        return;
    *startOffset = offsetAt(sci(), sci().SendScintilla(Sci::SCI_GETSELECTIONSTART));
    *endOffset = offsetAt(sci(), sci().SendScintilla(Sci::SCI_GETSELECTIONEND));
}

int SourceViewAccessible::selectionCount() const { return sci().SendScintilla(Sci::SCI_GETSELECTIONEMPTY) ? 0 : 1; }

void SourceViewAccessible::addSelection(int startOffset, int endOffset) { setSelection(0, startOffset, endOffset); }

void SourceViewAccessible::removeSelection(int selectionIndex) {
    if (selectionIndex == 0)
        sci().SendScintilla(Sci::SCI_SETEMPTYSELECTION, sci().SendScintilla(Sci::SCI_GETCURRENTPOS));
}

void SourceViewAccessible::setSelection(int selectionIndex, int startOffset, int endOffset) {
    if (selectionIndex == 0)
        sci().SendScintilla(Sci::SCI_SETSEL, positionAt(sci(), startOffset), positionAt(sci(), endOffset));
}

int SourceViewAccessible::cursorPosition() const { return offsetAt(sci(), sci().SendScintilla(Sci::SCI_GETCURRENTPOS)); }

void SourceViewAccessible::setCursorPosition(int position) {
    sci().SendScintilla(Sci::SCI_GOTOPOS, positionAt(sci(), position));
}

QString SourceViewAccessible::text(QAccessible::Text t) const {
    if (t == QAccessible::Name && QAccessibleWidget::text(t).isEmpty())
        return QStringLiteral("Source text");
    return QAccessibleWidget::text(t);
}

QString SourceViewAccessible::text(int startOffset, int endOffset) const {
    const long a = positionAt(sci(), startOffset), b = positionAt(sci(), endOffset);
    if (b <= a)
        return {};
    const auto* p = reinterpret_cast<const char*>(sci().SendScintilla(Sci::SCI_GETRANGEPOINTER, a, b - a));
    return QString::fromUtf8(p, b - a);
}

int SourceViewAccessible::characterCount() const { return offsetAt(sci(), sci().SendScintilla(Sci::SCI_GETLENGTH)); }

QRect SourceViewAccessible::characterRect(int offset) const {
    const long pos = positionAt(sci(), offset);
    const int x = int(sci().SendScintilla(Sci::SCI_POINTXFROMPOSITION, 0UL, pos));
    const int y = int(sci().SendScintilla(Sci::SCI_POINTYFROMPOSITION, 0UL, pos));
    const int next = int(sci().SendScintilla(Sci::SCI_POINTXFROMPOSITION, 0UL,
                                             sci().SendScintilla(Sci::SCI_POSITIONAFTER, pos)));
    const int height = int(sci().SendScintilla(Sci::SCI_TEXTHEIGHT, sci().SendScintilla(Sci::SCI_LINEFROMPOSITION, pos)));
    QRect r(x, y, std::max(1, next - x), height);
    r.moveTo(sci().viewport()->mapToGlobal(r.topLeft()));
    return r;
}

int SourceViewAccessible::offsetAtPoint(const QPoint& point) const {
    const QPoint p = sci().viewport()->mapFromGlobal(point);
    const long pos = sci().SendScintilla(Sci::SCI_POSITIONFROMPOINTCLOSE, long(p.x()), long(p.y()));
    return pos < 0 ? -1 : offsetAt(sci(), pos);
}

void SourceViewAccessible::scrollToSubstring(int startIndex, int endIndex) {
    sci().SendScintilla(Sci::SCI_SCROLLRANGE, positionAt(sci(), endIndex), positionAt(sci(), startIndex));
}

QString SourceViewAccessible::attributes(int offset, int* startOffset, int* endOffset) const {
    *startOffset = *endOffset = offset;
    return {};
}
