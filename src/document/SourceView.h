#pragma once
// The editing control: QScintilla with the operations, properties and events the system names.
// Positions are column first, then line, both from 0.

#include <QString>
#include <Qsci/qsciscintilla.h>
#include <memory>

class Document;
class Language;
class TokenInfo;
class ViewOptions;
class SourceLexer;
class FindDialog;
class QsciPrinter;

class SourceView : public QsciScintilla {
    Q_OBJECT
public:
    explicit SourceView(QWidget* parent = nullptr, bool plainText = false);
    ~SourceView() override;

    Document& document();
    TokenInfo& tokenInfo();
    TokenInfo& printTokenInfo();
    ViewOptions& viewOptions();

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
    int MarginStyle() const;
    void setMarginStyle(int style);
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
    void SetupView(int a, int b);

    // Beyond the system's list: printing without a dialog, the search behind the find dialog, the parts.
    // Prints the whole text in the print colours; throws Failure when the printer fails.
    void printTo(QsciPrinter& printer);
    // Searches from the selection on (or back), wrapping around; selects and shows what it finds.
    // Remembered for FindNext.
    bool findText(const QString& what, bool matchCase, bool wholeWord, bool forward);
    // Replaces the selection when it is the searched text, then finds the next one.
    bool replaceAndFindNext(const QString& what, const QString& replacement, bool matchCase, bool wholeWord);
    // Replaces every occurrence as one undo step; gives the count.
    int replaceAll(const QString& what, const QString& replacement, bool matchCase, bool wholeWord);
    FindDialog* findDialog() const;
    SourceLexer* sourceLexer() const;
    qint32 ForeColor() const;
    qint32 TextBackColor() const;
    // Delivers CaretMove when the caret's column or line differs from the last one delivered.
    void checkCaretMoved();

signals:
    void CaretMove(int x, int y);
    void DblClick();
    void ExecuteCommandEvent(int& command);
    void KeyDown(int keyCode, int shift);
    void KeyUp(int keyCode, int shift);
    void LinesChanged(int first, int last);
    void MouseMove(int buttons, int shift, int x, int y);
    void MouseUp(int buttons, int shift, int x, int y);

protected:
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void paintEvent(QPaintEvent* e) override;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};
