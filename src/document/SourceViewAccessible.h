#pragma once
// What assistive technology sees of a SourceView: an editable text.
//
// QScintilla's own accessible counts the characters from the start of the text to the caret at every
// repaint and every edit, which makes typing at the end of a 100,000-line file take tens of
// milliseconds. This one converts positions through Scintilla's line index of UTF-16 units, built only
// when assistive technology first asks, so its cost follows the line, not the file.

#include <QAccessibleWidget>

class QsciScintillaBase;
class SourceViewEditor;

class SourceViewAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit SourceViewAccessible(SourceViewEditor* view);
    // Registers the factory that gives the editor of each SourceView this accessible; once per process.
    static void install();

    // Character offsets (UTF-16 units from the start of the text) and Scintilla's byte positions.
    static int offsetAt(const QsciScintillaBase& sci, long pos);
    static long positionAt(const QsciScintillaBase& sci, int offset);

    void* interface_cast(QAccessible::InterfaceType t) override;

    void selection(int selectionIndex, int* startOffset, int* endOffset) const override;
    int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(QAccessible::Text t) const override;
    QString text(int startOffset, int endOffset) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    QString attributes(int offset, int* startOffset, int* endOffset) const override;

private:
    QsciScintillaBase& sci() const;
};
