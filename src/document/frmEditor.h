#pragma once
// One document: a child window of the frame around its editing control.

#include "core/ToolState.h"
#include "language/Completion.h"
#include "language/ProgramScanner.h"

#include <QString>
#include <QTimer>
#include <QWidget>

class Editors;
class Frame;
class SourceView;
class QMdiSubWindow;

class frmEditor : public QWidget {
    Q_OBJECT
public:
    // Runs Form_Load: the window exists but isn't shown, and no file is loaded yet.
    explicit frmEditor(Frame& frame);
    ~frmEditor() override;

    SourceView* View = nullptr;
    // The id under which this window stands in the window menu.
    QString Tag;
    // Index of this document's device in the device combo.
    qint16 DeviceIndex = 0;

    // The bare path: the document's identity, compared and listed. The mark of a changed text shows
    // in the sub-window's title only.
    QString Caption() const { return windowTitle(); }
    void setCaption(const QString& c);
    // Another path for the document; with retitle the title follows it (Save As). Says so in pathChanged.
    void setPath(const QString& path, bool retitle);
    QMdiSubWindow* subWindow() const;
    Frame& frame() const { return frame_; }

    // True: the caller may go on. False: cancelled, or no name given.
    bool SaveModified();
    void InitPBPCodes();
    void LoadReservedWords();

    void Form_Activate();

    // The view's events.
    void View_CaretMove(int x, int y);
    void View_DblClick();
    void View_KeyDown(int keyCode, int shift);
    void View_KeyUp(int keyCode, int shift);
    // Indent, outdent and goto line are done here and cancelled for the view (the number set to 0).
    void View_ExecuteCommand(int& command);
    void View_LinesChanged(int first, int last);
    void View_MouseMove(int buttons, int shift, int x, int y);
    void View_MouseUp(int buttons, int shift, int x, int y);
    // A blank behind a statement word shows its syntax beside the caret; the third letter of a word opens
    // the completion list unless the setting turned that off.
    void View_CharAdded(int ch);
    // Ctrl+Space.
    void View_CompletionWanted();

    // What the program declares, scanned again only when the text changed since the last scan.
    const std::vector<ProgramSymbol>& programSymbols();
    // How many scans were made (a test sees that an unchanged text isn't scanned again).
    int scans() const { return scans_; }

signals:
    // The window is closing for good; what watches it (a running compile) stops now.
    void unloading();
    // The path changed, and with it the title unless it is still oldTitle.
    void pathChanged(const QString& oldTitle);

protected:
    void closeEvent(QCloseEvent* e) override;
    bool event(QEvent* e) override;

private:
    void Form_Load();
    // The closing steps after SaveModified gave true.
    void Form_Unload();
    // Indent or outdent the lines of the selection, or the caret's line, and select them whole.
    void shiftLines(bool outdent);
    // The sub-window shows the caption with the modified mark.
    void updateSubWindowTitle();
    // The list of the kind's words and the program's names that begin with the letters typed.
    void openCompletion();

    Frame& frame_;
    CompletionWords completion_;
    std::vector<ProgramSymbol> symbols_;
    quint64 symbolsGeneration_ = 0;
    bool scanned_ = false;
    QTimer scanTimer_;
    int scans_ = 0;
};

// What the tools depend on that the documents know: whether there are any, the active one's undo history
// and selection, and whether the token last clicked has a colour.
ToolState documentToolState(const Editors& editors);
