#include "document/frmEditor.h"

#include "document/Document.h"
#include "document/EditorColors.h"
#include "document/Language.h"
#include "document/SourceView.h"
#include "platform/Failure.h"
#include "platform/OpenSave.h"
#include "platform/Prompts.h"
#include "language/ReservedWords.h"
#include "language/StatementTable.h"
#include "platform/KeyCodes.h"
#include "core/Editors.h"
#include "core/Frame.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "core/ToolIds.h"

#include <QCloseEvent>
#include <QMdiSubWindow>
#include <QVBoxLayout>

namespace {

// The platform's virtual key number of F2.
constexpr int kKeyF2 = 113;
// A mouse button released this close to the view's left edge selects the line.
constexpr int kMarginPixels = 20;
// Letters of a word typed before the completion list opens by itself.
constexpr int kCompletionLetters = 3;
// A program this long is scanned in a couple of milliseconds.
constexpr int kFreshScanLines = 8000;
constexpr int kScanPauseMs = 250;

}  // namespace

frmEditor::frmEditor(Frame& frame) : frame_(frame) {
    setAttribute(Qt::WA_DeleteOnClose, false);  // the sub-window owns and deletes us
    View = new SourceView(this, false, setting(Key::FontName));
    // The view fills the whole client area; no margin, toolbar or splitter stands beside it.
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(View);
    connect(View, &SourceView::CaretMove, this, &frmEditor::View_CaretMove);
    connect(View, &SourceView::DblClick, this, &frmEditor::View_DblClick);
    connect(View, &SourceView::KeyDown, this, &frmEditor::View_KeyDown);
    connect(View, &SourceView::KeyUp, this, &frmEditor::View_KeyUp);
    connect(View, &SourceView::ExecuteCommandEvent, this, &frmEditor::View_ExecuteCommand);
    connect(View, &SourceView::LinesChanged, this, &frmEditor::View_LinesChanged);
    connect(View, &SourceView::MouseMove, this, &frmEditor::View_MouseMove);
    connect(View, &SourceView::MouseUp, this, &frmEditor::View_MouseUp);
    connect(View, &SourceView::CharAdded, this, &frmEditor::View_CharAdded);
    connect(View, &SourceView::CompletionWanted, this, &frmEditor::View_CompletionWanted);
    // A long program's names are scanned again at a pause in typing, once anyone asked for them.
    scanTimer_.setSingleShot(true);
    scanTimer_.setInterval(kScanPauseMs);
    connect(&scanTimer_, &QTimer::timeout, this, [this] { skipOnFailure([&] { programSymbols(); }); });
    connect(View, &SourceView::TextEdited, this, [this] {
        if (scanned_ && View->document().NumLines() >= kFreshScanLines)
            scanTimer_.start();
    });
    connect(View, &SourceView::ModifiedChanged, this, [this](bool modified) {
        if (QMdiSubWindow* sub = subWindow())
            sub->setWindowModified(modified);
    });
    globals().addWindow(this);
    Form_Load();
}

frmEditor::~frmEditor() {
    // The view outlives this object's own part by a moment; its events must not reach the handlers then.
    if (View)
        disconnect(View, nullptr, this, nullptr);
    globals().removeWindow(this);
}

QMdiSubWindow* frmEditor::subWindow() const { return qobject_cast<QMdiSubWindow*>(parentWidget()); }

void frmEditor::setCaption(const QString& c) {
    setWindowTitle(c);
    updateSubWindowTitle();
}

void frmEditor::setPath(const QString& path, bool retitle) {
    const QString oldTitle = Caption();
    View->document().setPathName(path);
    if (retitle)
        setCaption(path);
    emit pathChanged(oldTitle);
}

// The sub-window shows the modified state where its title holds the placeholder; a "[*]" of the path
// itself is doubled to stay text.
void frmEditor::updateSubWindowTitle() {
    QMdiSubWindow* sub = subWindow();
    if (!sub)
        return;
    sub->setWindowTitle(QString(Caption()).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")) +
                        QStringLiteral("[*]"));
    sub->setWindowModified(View->document().Modified());
}

bool frmEditor::event(QEvent* e) {
    const bool handled = QWidget::event(e);
    // The sub-window takes this window's title when it takes the window; the mark goes in right after.
    if (e->type() == QEvent::ParentChange)
        updateSubWindowTitle();
    return handled;
}

void frmEditor::Form_Load() {
    skipOnFailure([&] {
        Language& lang = View->document().language();
        lang.setSLCommentStart(QStringLiteral("'"));
        lang.setSLCommentStart2(QStringLiteral(";"));
        lang.setStringDelimiter(QStringLiteral("\""));
    });
    // The reserved words are read from the table just filled.
    skipOnFailure([&] { InitPBPCodes(); });
    skipOnFailure([&] { LoadReservedWords(); });
    skipOnFailure([&] { applyViewSettings(*View); });
    skipOnFailure([&] { frame_.EnableTools(); });
    globals().ClickedTokenClass = 0;
}

void frmEditor::InitPBPCodes() {
    Globals& g = globals();
    fillStatementTable(g.UsePBP, g.PBPCodes, g.PBPDefines);
}

void frmEditor::LoadReservedWords() {
    Language& lang = View->document().language();
    skipOnFailure([&] { DeviceIndex = qint16(frame_.deviceListIndex()); });
    skipOnFailure([&] { lang.ClearReservedWords(); });
    const Globals& g = globals();
    for (const ReservedWord& w : reservedWords(g.UsePBP, g.PBPCodes, g.PBPDefines, g.Ports))
        skipOnFailure([&] { lang.AddReservedWord(w.set, w.word); });
    for (const QString& w : pbp3Words(g.UsePBP))
        skipOnFailure([&] { lang.AddReservedWord(WordSet::Statements, w); });
}

bool frmEditor::SaveModified() {
    Document& doc = View->document();
    if (!doc.Modified())
        return true;
    Prompts* prompts = globals().prompts;
    const Answer a = prompts->message(QStringLiteral("Save Changes to ") + doc.PathName(), QString(), Icon::Question,
                                      Buttons::YesNoCancel);
    if (a == Answer::No)
        return true;
    if (a != Answer::Yes)
        return false;
    try {
        OpenSave& dlg = frame_.openSave();
        dlg.FileName = doc.PathName();
        // A cancel is its own outcome, whatever CancelError says: no message.
        if (!dlg.ShowSave())
            return false;
        if (dlg.FileName.isEmpty()) {
            prompts->message(QStringLiteral("No file name entered."), QStringLiteral("File Error"), Icon::None,
                             Buttons::Ok);
            return false;
        }
        doc.SaveFile(dlg.FileName);
        setPath(dlg.FileName, false);
        return true;
    } catch (const Failure& f) {
        if (f.number != kCancelError)
            frame_.ShowError(f);
        return false;
    }
}

void frmEditor::Form_Activate() {
    skipOnFailure([&] { frame_.setDeviceListIndex(DeviceIndex); });
    skipOnFailure([&] { frame_.GetDeviceData(false); });
    // The tools follow this document's undo history and selection.
    skipOnFailure([&] { frame_.EnableTools(); });
    // The status bar shows this document's caret, not the place of the one active before.
    skipOnFailure([&] { View->tellCaret(); });
}

void frmEditor::closeEvent(QCloseEvent* e) {
    if (!SaveModified()) {
        e->ignore();
        return;
    }
    Form_Unload();
    globals().removeWindow(this);
    e->accept();
}

void frmEditor::Form_Unload() {
    // The registry lowers the count; the frame's label, Window menu and tools follow it.
    emit unloading();
    skipOnFailure([&] { saveViewColors(*View); });
    skipOnFailure([&] { saveSetting(Key::LastFile, View->document().PathName()); });
}

// Runs on every keystroke: one table check, one line tokenised, at most 97 keys compared.
void frmEditor::View_CaretMove(int x, int y) {
    Globals& g = globals();
    // The table is shared: the first document whose caret moves after a change of compiler kind
    // refills it; the others find it fitting and keep their word sets.
    bool fits = true;
    skipOnFailure([&] { fits = statementTableFits(g.UsePBP, g.PBPCodes); });
    if (!fits) {
        skipOnFailure([&] { InitPBPCodes(); });
        skipOnFailure([&] { LoadReservedWords(); });
        skipOnFailure([&] { View->Refresh(); });
    }
    skipOnFailure([&] { frame_.EnableTools(); });
    int displayCol = 0, displayLine = 0;
    // A caret placed in a document in the background (a session coming back) is no news for the
    // status bar, which shows the active one's.
    const frmEditor* active = frame_.editors().active();
    if (active && active != this)
        return;
    skipOnFailure([&] { View->TextToDisplay(x, y, displayCol, displayLine); });
    // The character left of the caret, so a caret just behind a word still finds it.
    int cls = 0, start = 0, length = 0;
    skipOnFailure([&] { View->GetTokenAt(x < 1 ? x : x - 1, y, cls, start, length); });
    skipOnFailure([&] {
        frame_.setPanelText(1, QStringLiteral("Line: %1 Col: %2").arg(displayLine + 1).arg(displayCol + 1));
    });
    QString line;
    skipOnFailure([&] { line = View->document().GetLine(y); });
    skipOnFailure([&] {
        // A statement word that no row has leaves the tip of the last one standing.
        if (const std::optional<QString> tip = caretTip(cls, line, start, length, g.PBPCodes))
            frame_.setPanelText(2, *tip);
    });
}

void frmEditor::View_DblClick() {
    skipOnFailure([&] { frame_.EnableTools(); });
}

void frmEditor::View_KeyUp(int, int) {
    skipOnFailure([&] { frame_.EnableTools(); });
}

// Shift+F2 toggles the face between "Courier" and "Courier New": saved at once, this view at once,
// other open documents at their next creation.
void frmEditor::View_KeyDown(int keyCode, int shift) {
    if (keyCode != kKeyF2 || shift != kShiftMask)
        return;
    try {
        const QString face = setting(Key::FontName) == QLatin1String("Courier") ? QStringLiteral("Courier New")
                                                                                 : QStringLiteral("Courier");
        saveSetting(Key::FontName, face);
        View->setFontName(face);
        View->Refresh();
        globals().prompts->message(QStringLiteral("Edit window font set to: ") + face, QStringLiteral("Toggle Font"),
                                   Icon::Information, Buttons::Ok);
        View->setFocus();
    } catch (const Failure& f) {
        frame_.ShowError(f);
    }
}

void frmEditor::View_ExecuteCommand(int& command) {
    switch (command) {
    case EditCommand::Indent: shiftLines(false); break;
    case EditCommand::Outdent: shiftLines(true); break;
    case EditCommand::GotoLine: skipOnFailure([&] { frame_.showGotoLine(); }); break;
    default: return;
    }
    command = 0;
}

void frmEditor::shiftLines(bool outdent) {
    Document& doc = View->document();
    int first = 0, last = 0, endCol = 0;
    skipOnFailure([&] {
        if (View->TextSelected()) {
            int startCol = 0;
            View->GetSel(startCol, first, endCol, last);
        } else {
            first = last = View->CaretY();
        }
    });
    const QString tab = QStringLiteral("\t");
    for (int line = first; line <= last; ++line) {
        skipOnFailure([&] {
            if (!outdent) {
                doc.InsertImpl(0, line, tab);
            } else if (doc.GetLine(line).startsWith(QLatin1Char('\t'))) {
                doc.DeleteImpl(0, line, 1, line);
            } else {
                // Up to four blanks make one step; a tab behind a blank stays.
                for (int i = 0; i < 4 && doc.GetLine(line).startsWith(QLatin1Char(' ')); ++i)
                    doc.DeleteImpl(0, line, 1, line);
            }
        });
    }
    skipOnFailure([&] { doc.UpdateViews(); });
    skipOnFailure([&] { View->SetSel(0, first, doc.GetLineLength(last), last); });
}

void frmEditor::View_LinesChanged(int, int) {
    skipOnFailure([&] { frame_.EnableTools(); });
}

// How a copy made in another program reaches the paste tool.
void frmEditor::View_MouseMove(int, int, int, int) {
    skipOnFailure([&] { frame_.EnableTools(); });
}

void frmEditor::View_MouseUp(int buttons, int, int x, int y) {
    Globals& g = globals();
    int col = 0, line = 0;
    skipOnFailure([&] { View->ClientToText(x, y, col, line); });
    skipOnFailure([&] {
        int cls = 0, start = 0, length = 0;
        View->GetTokenAt(col, line, cls, start, length);
        g.ClickedTokenClass = cls;
    });
    // The margin test stands at a fixed width, whatever the margin style.
    if (x < kMarginPixels)
        skipOnFailure([&] { View->SetSel(0, line, View->document().GetLineLength(line), line); });
    // The tools follow the selection, and the token colour command acts on the class of the token last
    // clicked, if it has a colour.
    skipOnFailure([&] { frame_.EnableTools(); });
    if (buttons == kRightButton)
        skipOnFailure([&] { frame_.popupMenu(QLatin1String(ToolId::Edit)); });
}

const std::vector<ProgramSymbol>& frmEditor::programSymbols() {
    if (!scanned_ || symbolsGeneration_ != View->textGeneration()) {
        symbols_ = scanProgram(View->Text());
        symbolsGeneration_ = View->textGeneration();
        scanned_ = true;
        ++scans_;
    }
    return symbols_;
}

void frmEditor::View_CompletionWanted() { openCompletion(); }

void frmEditor::openCompletion() {
    skipOnFailure([&] {
        const Globals& g = globals();
        completion_.setLanguage(g.UsePBP, g.Ports);
        // A long program takes the names of its last scan, made at the last pause in typing: a full scan
        // here would stall the list, and every third letter with it.
        const bool fresh = !scanned_ || View->document().NumLines() < kFreshScanLines;
        const std::optional<QString> typed = View->completionPrefix();
        if (!typed)
            return;
        // Only the words the typed letters begin: what the list can still show as more letters come, and
        // a list of tens of thousands of names costs the control a third of a second to open.
        const auto fits = [&](const QString& word) { return word.startsWith(*typed, Qt::CaseInsensitive); };
        std::vector<ProgramSymbol> named;
        for (const ProgramSymbol& s : fresh ? programSymbols() : symbols_)
            if (fits(s.name))
                named.push_back(s);
        std::vector<QString> words = completion_.words(named);
        std::erase_if(words, [&](const QString& w) { return !fits(w); });
        View->showCompletion(words);
    });
}

void frmEditor::View_CharAdded(int ch) {
    int col = 0, line = 0, startCol = 0, startLine = 0;
    QString text;
    skipOnFailure([&] {
        View->GetSel(startCol, startLine, col, line);
        text = View->document().GetLine(line);
    });
    if (ch == ' ') {
        skipOnFailure([&] {
            if (const std::optional<QString> tip = callTip(text, col, globals().PBPCodes))
                View->showCallTip(*tip);
        });
        return;
    }
    // Only the third letter opens it: a list closed with Escape stays closed while the word grows.
    if (View->completionShown())
        return;
    const std::optional<int> start = completionStart(text, col);
    if (!start || col - *start != kCompletionLetters)
        return;
    bool automatic = true;
    skipOnFailure([&] { automatic = setting(Key::AutoComplete) != QLatin1String("0"); });
    if (automatic)
        openCompletion();
}

ToolState documentToolState(const Editors& editors) {
    ToolState s;
    s.documents = editors.count() > 0;
    if (const frmEditor* doc = editors.active()) {
        const Document& d = doc->View->document();
        s.canUndo = d.CanUndo();
        s.canRedo = d.CanRedo();
        s.selection = doc->View->TextSelected();
    }
    s.tokenColor = colorKeyOf(globals().ClickedTokenClass).has_value();
    return s;
}
