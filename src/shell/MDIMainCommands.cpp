// The frame's command handler: every tool click arrives here and runs its command.
#include "compile/CompileRun.h"
#include "compile/frmCompile.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/Launcher.h"
#include "platform/Prompts.h"
#include "shell/CommandRules.h"
#include "core/Globals.h"
#include "shell/MDIMain.h"
#include "shell/RecentFiles.h"
#include "core/Settings.h"
#include "shell/WindowList.h"

#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>

#include <algorithm>
#include <cmath>

namespace {

const QString kOpenFilter = QStringLiteral(
    "All Source Code Files|*.bas;*.pbp;*.pbc|PicBasic Pro Source Code (*.pbp)|*.pbp|PicBasic Source Code "
    "(*.pbc)|*.pbc|Basic Source Code (*.bas)|*.bas|All Files (*.*)|*.*|");
const QString kSaveAsFilter = QStringLiteral(
    "PicBasic Pro Source Code (*.pbp)|*.pbp|PicBasic Source Code (*.pbc)|*.pbc|Basic Source Code "
    "(*.bas)|*.bas|All Files (*.*)|*.*|");

bool is(const QString& id, const char* name) { return id == QLatin1String(name); }

void message(const QString& text, Icon icon = Icon::None, const QString& title = {}) {
    globals().prompts->message(text, title, icon, Buttons::Ok);
}

}  // namespace

frmEditor& MDIMain::active() const {
    frmEditor* doc = activeDocument();
    if (!doc)
        throw objectNotSet();
    return *doc;
}

QStringList MDIMain::loadedTitles(int from) const {
    QStringList titles;
    const auto& windows = globals().loadedWindows;
    for (size_t i = size_t(std::max(0, from)); i < windows.size(); ++i)
        titles << windows[i]->windowTitle();
    return titles;
}

bool MDIMain::alreadyOpen(const QString& path, bool raisedCount) {
    if (!isAlreadyOpen(loadedTitles(1), path))
        return false;
    message(QStringLiteral("File Already Open!"), Icon::Exclamation);
    if (raisedCount)
        --miDocCount_;
    return true;
}

void MDIMain::refreshUndoTools() {
    Document& doc = active().View->document();
    setToolEnabled(QStringLiteral("ID_REDO"), doc.CanRedo());
    setToolEnabled(QStringLiteral("ID_UNDO"), doc.CanUndo());
}

void MDIMain::refreshSelectionTools() {
    const bool selected = active().View->TextSelected();
    setToolEnabled(QStringLiteral("ID_CUT"), selected);
    setToolEnabled(QStringLiteral("ID_COPY"), selected);
}

void MDIMain::SSActiveToolBars1_ToolClick(Tool& tool) {
    const QString id = tool.ID();
    try {
        if (!runCommand(tool))
            return;
        // A document entry of the Window menu has the document's path as its id.
        if (id.contains(QLatin1Char('.'))) {
            for (QWidget* w : std::vector<QWidget*>(globals().loadedWindows)) {
                if (w->windowTitle() != id)
                    continue;
                if (auto* doc = qobject_cast<frmEditor*>(w); doc && doc->subWindow())
                    mdi_->setActiveSubWindow(doc->subWindow());
                else
                    w->activateWindow();
            }
        }
    } catch (const Failure& f) {
        if (f.number != kCancelError)
            ShowError(f);
    }
}

void MDIMain::SSActiveToolBars1_ComboCloseUp(Tool& tool) {
    skipOnFailure([&] {
        if (tool.ID() == QLatin1String("ID_Device"))
            GetDeviceData(true);
    });
}

bool MDIMain::runCommand(Tool& tool) {
    const QString id = tool.ID();
    if (is(id, "ID_New"))
        return newDocument();
    if (is(id, "ID_Open"))
        return openDocument();
    for (int n = 1; n <= 4; ++n)
        if (id == QStringLiteral("ID_File%1").arg(n))
            return openRecentFile(n);
    if (is(id, "ID_Close")) {
        frmEditor& doc = active();
        // The window's own close asks again; a document saved at the first question isn't asked twice.
        if (doc.SaveModified())
            doc.subWindow()->close();
    } else if (is(id, "ID_Save")) {
        Document& doc = active().View->document();
        doc.SaveFile(doc.PathName());
    } else if (is(id, "ID_SaveAs")) {
        return saveAs();
    } else if (is(id, "ID_Print")) {
        active().View->PrintText();
    } else if (is(id, "ID_Exit")) {
        close();
    } else if (is(id, "ID_Undo")) {
        active().View->document().Undo();
        refreshUndoTools();
    } else if (is(id, "ID_Redo")) {
        active().View->document().Redo();
        refreshUndoTools();
    } else if (is(id, "ID_Cut")) {
        active().View->Cut();
        refreshPasteTool();
    } else if (is(id, "ID_Copy")) {
        active().View->Copy();
        refreshPasteTool();
    } else if (is(id, "ID_Paste")) {
        active().View->Paste();
        refreshUndoTools();
    } else if (is(id, "ID_SelectAll")) {
        SourceView& v = *active().View;
        const int last = v.document().NumLines() - 1;
        v.SetSel(0, 0, v.document().GetLineLength(last), last);
        refreshSelectionTools();
    } else if (is(id, "ID_SelectLine")) {
        SourceView& v = *active().View;
        const int y = v.CaretY();
        v.SetSel(0, y, v.document().GetLineLength(y), y);
        refreshSelectionTools();
    } else if (is(id, "ID_SelectWord")) {
        active().View->SelectWord();
    } else if (is(id, "ID_Find")) {
        active().View->Find();
    } else if (is(id, "ID_FindNext")) {
        active().View->FindNext();
    } else if (is(id, "ID_Replace")) {
        active().View->Replace();
    } else if (is(id, "ID_GotoLine")) {
        active().View->ExecuteCommand(39);
    } else if (is(id, "ID_Indent")) {
        active().View->ExecuteCommand(43);
    } else if (is(id, "ID_Outdent")) {
        active().View->ExecuteCommand(44);
    } else if (is(id, "ID_NoMargin")) {
        active().View->setMarginStyle(0);
    } else if (is(id, "ID_FixedMargin")) {
        active().View->setMarginStyle(1);
    } else if (is(id, "ID_ScrollingMargin")) {
        active().View->setMarginStyle(2);
    } else if (is(id, "ID_Edit")) {
        if (globals().ClickedTokenClass == 0)
            setToolEnabled(QStringLiteral("ID_TokenColor"), false);
    } else if (is(id, "ID_Compile")) {
        frmEditor& doc = active();
        // The compiler sees what is on the screen; a failed save starts no compile.
        doc.View->document().SaveFile(doc.View->document().PathName());
        GoCompile(doc);
    } else if (is(id, "ID_CompilerOptions")) {
        frmCompile dlg(*this);
        runModal(dlg);
        update();
    } else if (is(id, "ID_TileH")) {
        arrange(1);
    } else if (is(id, "ID_TileV")) {
        arrange(2);
    } else if (is(id, "ID_Cascade")) {
        arrange(0);
    } else if (is(id, "ID_Arrange")) {
        arrange(3);
    } else if (const QString link = webLinkFor(id); !link.isEmpty()) {
        OpenWebLink(link);
    }
    // The colour commands, the programmer, its options, the about box and the rest have no command yet.
    return true;
}

bool MDIMain::newDocument() {
    ++miDocCount_;
    // From here on a failing step is passed over.
    skipOnFailure([&] { EnableTools(true); });
    const QString dir = setting(Key::SourceCodePath);
    const QString path = untitledPath(dir, untitledNumber(loadedTitles(0), dir));
    if (alreadyOpen(path, true))
        return false;
    skipOnFailure([&] { createDocument(path); });
    skipOnFailure([&] { AddWindowEntry(active().Caption()); });
    return true;
}

void MDIMain::createCountedDocument(const QString& path) {
    try {
        createDocument(path, false);
    } catch (const Failure&) {
        // A file that can't be loaded: the window is gone again, and so is the count it took.
        --miDocCount_;
        throw;
    }
}

bool MDIMain::openDocument() {
    openSave_.CancelError = true;
    openSave_.Filter = kOpenFilter;
    openSave_.ShowOpen();
    const QString path = openSave_.FileName;
    if (!QFileInfo(path).isFile()) {
        message(QStringLiteral("File Not Found: ") + path);
        return false;
    }
    ++miDocCount_;
    EnableTools(true);
    if (alreadyOpen(path, true))
        return false;
    createCountedDocument(path);
    AddWindowEntry(active().Caption());
    enterRecentFile(SSActiveToolBars1, active().View->document().PathName());
    return true;
}

bool MDIMain::openRecentFile(int entry) {
    ++miDocCount_;
    EnableTools(true);
    const QString path = recentFilePath(SSActiveToolBars1, entry);
    if (alreadyOpen(path, true))
        return false;
    createCountedDocument(path);
    AddWindowEntry(active().Caption());
    return true;
}

bool MDIMain::saveAs() {
    frmEditor& doc = active();
    openSave_.FileName = doc.View->document().PathName();
    openSave_.Filter = kSaveAsFilter;
    if (!openSave_.ShowSave() || openSave_.FileName.isEmpty())
        return false;
    const QString name = openSave_.FileName;
    // The document itself takes part: Save is the way to save under its own name.
    if (alreadyOpen(name, false))
        return false;
    doc.View->document().SaveFile(name);
    doc.View->document().setPathName(name);
    removeWindowEntry(doc.Caption());
    doc.setCaption(doc.View->document().PathName());
    AddWindowEntry(doc.Caption());
    return true;
}

void MDIMain::OpenWebLink(const QString& link) {
    if (!globals().launcher->openUrl(link))
        message(QStringLiteral("Unable to launch application."));
}

void MDIMain::arrange(int how) {
    const QList<QMdiSubWindow*> all = mdi_->subWindowList(QMdiArea::CreationOrder);
    if (how == 0) {
        mdi_->cascadeSubWindows();
        return;
    }
    QList<QMdiSubWindow*> normal, minimised;
    for (QMdiSubWindow* s : all)
        (s->isMinimized() ? minimised : normal) << s;
    const QRect area = mdi_->viewport()->rect();
    if (how == 3) {
        // Minimised documents in a row along the bottom edge, left to right.
        int x = 0;
        for (QMdiSubWindow* s : minimised) {
            const QSize sz = s->size();
            if (x + sz.width() > area.width() && x > 0)
                x = 0;
            s->move(x, area.height() - sz.height());
            x += sz.width();
        }
        return;
    }
    if (normal.isEmpty())
        return;
    // Tile horizontally: one above the other; vertically: side by side.
    const int n = int(normal.size());
    for (int i = 0; i < n; ++i) {
        QMdiSubWindow* s = normal[i];
        s->showNormal();
        if (how == 1) {
            const int h = area.height() / n;
            s->setGeometry(0, i * h, area.width(), i == n - 1 ? area.height() - i * h : h);
        } else {
            const int w = area.width() / n;
            s->setGeometry(i * w, 0, i == n - 1 ? area.width() - i * w : w, area.height());
        }
    }
}
