#pragma once
// The editing control: the operations, properties and events the system names, over a QScintilla
// editor that it keeps to itself, so that none of QScintilla's own methods (text(), cut() ...) can be
// called by mistake for the control's (Text(), Cut() ...). Positions are column first, then line,
// both from 0. The original control's mode and option numbers (language mode, language flags, view
// options, SetupView) select nothing that this one does differently, so it has none of them.

#include "language/Folding.h"

#include <QList>
#include <QString>
#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

class Document;
class Language;
class TokenInfo;
class SourceLexer;
class SourceViewEditor;
class FindDialog;
class QsciPrinter;

// 0 no margin, 1 a fixed strip, 2 line numbers in front of it.
enum class MarginStyle { None = 0, Fixed = 1, Scrolling = 2 };

// How a line that a compiler message names is shown: its mark in a document's strip, its tag in the output.
enum class LineTone { Error, Warning, Note };

// The command numbers the system sends to ExecuteCommand; any other number is one of the control's own.
namespace EditCommand {
inline constexpr int GotoLine = 39, Indent = 43, Outdent = 44;
}

class SourceView : public QWidget {
    Q_OBJECT
public:
    // fontName is the face asked for, given here so that the view doesn't first look up another one.
    explicit SourceView(QWidget* parent = nullptr, bool plainText = false,
                        const QString& fontName = QStringLiteral("Courier New"));
    ~SourceView() override;

    Document& document();
    TokenInfo& tokenInfo();
    TokenInfo& printTokenInfo();

    // Properties. Colours are 0x00BBGGRR or a system colour (0x80000000 + index).
    QString FontName() const;
    void setFontName(const QString& name);
    void setForeColor(qint32 c);
    qint32 BackColor() const;
    void setBackColor(qint32 c);
    void setTextBackColor(qint32 c);
    qint32 SelForeColor() const;
    void setSelForeColor(qint32 c);
    qint32 SelBackColor() const;
    void setSelBackColor(qint32 c);
    int CaretY() const;
    bool TextSelected() const;
    MarginStyle marginStyle() const;
    void setMarginStyle(MarginStyle style);
    QString Text() const;
    void SetText(const QString& text);

    // Operations.
    void SetSel(int startCol, int startLine, int endCol, int endLine);
    void GetSel(int& startCol, int& startLine, int& endCol, int& endLine) const;
    void SelectWord();
    void Cut();
    void Copy();
    void Paste();
    void Find();
    void FindNext();
    void Replace();
    void PrintText();
    // Delivers ExecuteCommandEvent first; a handler that sets the number to 0 cancels the command.
    void ExecuteCommand(int command);
    void Refresh();
    void ClientToText(int x, int y, int& col, int& line) const;
    void TextToDisplay(int col, int line, int& displayCol, int& displayLine) const;
    void GetTokenAt(int col, int line, int& tokenClass, int& start, int& length) const;

    // Beyond the system's list: printing without a dialog, the search behind the find dialog, the parts.
    // The selected text, line endings included.
    QString selectedText() const;
    // Prints the whole text in the print colours; throws Failure when the printer fails.
    void printTo(QsciPrinter& printer);
    // What the print dialog starts from: the document's name, and as the PDF file the document's path
    // with ".pdf" for its extension.
    void preparePrinter(QsciPrinter& printer) const;
    // Searches from the selection on (or back), wrapping around; selects and shows what it finds.
    // Remembered for FindNext.
    bool findText(const QString& what, bool matchCase, bool wholeWord, bool forward);
    // Replaces the selection when it is the searched text, then finds the next one.
    bool replaceAndFindNext(const QString& what, const QString& replacement, bool matchCase, bool wholeWord);
    // Replaces every occurrence, from the start, as one undo step; gives the count. A replacement that
    // holds the searched text is not searched again.
    int replaceAll(const QString& what, const QString& replacement, bool matchCase, bool wholeWord);
    FindDialog* findDialog() const;
    SourceLexer* sourceLexer() const;
    qint32 ForeColor() const;
    qint32 TextBackColor() const;
    // The widget that takes the keyboard focus and the typing (the focus proxy): where a test sends keys.
    QWidget* editorWidget() const;
    // Delivers CaretMove when the caret's column or line differs from the last one delivered.
    void checkCaretMoved();
    // Delivers CaretMove for where the caret is, moved or not.
    void tellCaret();
    // The user can't change the text; loads and SetText still replace it.
    void setReadOnly(bool readOnly);

    // The line a compiler message led to, marked in the strip until that line is edited or the mark is
    // cleared. One mark per view: a new one replaces the old.
    void markMessageLine(int line, LineTone tone);
    void clearMessageMark();
    // The marked line as it is now, after edits above it; -1 without a mark.
    int messageMarkLine() const;

    // The tags of a plain view's lines (the compiler's output): a word in a strip in front of the line, the
    // line's text in the tone's colour, and a note under the line. A new text clears them.
    void setLineTag(int line, const QString& tag, LineTone tone);
    void setLineNote(int line, const QString& note);
    void clearLineTags();
    QString lineTag(int line) const;
    // The tone of a tagged line; none for a line without a tag.
    std::optional<LineTone> lineTone(int line) const;
    QString lineNote(int line) const;

    // The coding aids of a source view; a plain view has none of them.
    // Bookmarks: marks in the strip that move with their lines. Lines ascending.
    void toggleBookmark(int line);
    QList<int> bookmarks() const;
    // The caret goes to the start of the next (or previous) bookmarked line, wrapping around; false
    // without bookmarks.
    bool gotoBookmark(bool forward);
    // ' comments on or off for the caret's line or every line of the selection, as one undo step.
    void toggleLineComments();
    // The line unfolded and brought into view a third of the way down, the caret at its start.
    void showLine(int line);
    // The fold margin is worked out again a moment after each change; this does it now.
    void updateFolds();
    // The level the fold margin holds for a line.
    FoldLevel foldLevel(int line) const;
    // Opens the completion list at the caret with these words (in the list's order), the word typed so
    // far selecting in it; false where nothing is completed (a comment, a string). The word chosen goes
    // in with the case of the typed prefix.
    bool showCompletion(const std::vector<QString>& words);
    // The part of the word before the caret that the list would match; nullopt where nothing is completed.
    std::optional<QString> completionPrefix() const;
    bool completionShown() const;
    // The words of the list shown last.
    const std::vector<QString>& completionWords() const;
    void showCallTip(const QString& text);
    bool callTipShown() const;
    QString callTipText() const;
    // Counts the changes of the text: what was worked out from it is stale when this moved on.
    quint64 textGeneration() const;

signals:
    void CaretMove(int x, int y);
    // A character was typed into the text (after it went in).
    void CharAdded(int ch);
    // Ctrl+Space: the document window answers with showCompletion.
    void CompletionWanted();
    void DblClick();
    void ExecuteCommandEvent(int& command);
    void KeyDown(int keyCode, int shift);
    void KeyUp(int keyCode, int shift);
    void LinesChanged(int first, int last);
    // The text changed, by typing or any other edit: once per operation, after it is done.
    void TextEdited();
    void MouseDown(int buttons, int shift, int x, int y);
    void MouseMove(int buttons, int shift, int x, int y);
    void MouseUp(int buttons, int shift, int x, int y);
    // The document's Modified went from false to true or back (an edit, a save, undo to the saved text).
    void ModifiedChanged(bool modified);
    // The document read or wrote its file (LoadFile, ReloadFile, SaveFile): text and file agree again.
    void DiskSynced();

private:
    friend class SourceViewEditor;
    SourceViewEditor* editor_;  // a child widget: Qt deletes it
    struct Impl;
    std::unique_ptr<Impl> d;
};
