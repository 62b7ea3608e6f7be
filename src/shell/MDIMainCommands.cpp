// The frame's command handler: every tool click arrives here and runs its command.
#include "compile/CompileSession.h"
#include "compile/frmCompile.h"
#include "dialogs/MyAbout.h"
#include "programmer/ProgrammerRun.h"
#include "programmer/frmProgrammer.h"
#include "document/Document.h"
#include "document/EditorColors.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/Launcher.h"
#include "platform/Prompts.h"
#include "shell/Arrange.h"
#include "shell/CommandRules.h"
#include "core/Globals.h"
#include "shell/MDIMain.h"
#include "shell/RecentFiles.h"
#include "core/Settings.h"
#include "shell/WindowList.h"

#include <QFileInfo>
#include <QHash>
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

// The commands by tool id, compared exactly. A handler gives false when its command ended early.
const QHash<QString, MDIMain::Command>& MDIMain::commands() {
    using M = MDIMain;
    auto onView = [](void (SourceView::*op)()) {
        return [op](M& f) {
            (f.active().View->*op)();
            return true;
        };
    };
    auto editCommand = [](int command) {
        return [command](M& f) {
            f.active().View->ExecuteCommand(command);
            return true;
        };
    };
    auto margin = [](MarginStyle style) {
        return [style](M& f) {
            f.active().View->setMarginStyle(style);
            return true;
        };
    };
    auto colorTool = [](const char* id) {
        return [id](M& f) {
            colorCommand(f, QString::fromLatin1(id));
            return true;
        };
    };
    auto arrangeBy = [](ArrangeMode mode) {
        return [mode](M& f) {
            f.arrange(mode);
            return true;
        };
    };
    static const QHash<QString, Command> table = {
        {"ID_New", &M::newDocument},
        {"ID_Open", &M::openDocument},
        {"ID_File1", [](M& f) { return f.openRecentFile(1); }},
        {"ID_File2", [](M& f) { return f.openRecentFile(2); }},
        {"ID_File3", [](M& f) { return f.openRecentFile(3); }},
        {"ID_File4", [](M& f) { return f.openRecentFile(4); }},
        {"ID_Close",
         [](M& f) {
             frmEditor& doc = f.active();
             // The window's own close asks again; a document saved at the first question isn't asked twice.
             if (doc.SaveModified())
                 doc.subWindow()->close();
             return true;
         }},
        {"ID_Save",
         [](M& f) {
             Document& doc = f.active().View->document();
             doc.SaveFile(doc.PathName());
             return true;
         }},
        {"ID_SaveAs", &M::saveAs},
        {"ID_Print", onView(&SourceView::PrintText)},
        {"ID_Exit",
         [](M& f) {
             f.close();
             return true;
         }},
        {"ID_Undo",
         [](M& f) {
             f.active().View->document().Undo();
             f.refreshUndoTools();
             return true;
         }},
        {"ID_Redo",
         [](M& f) {
             f.active().View->document().Redo();
             f.refreshUndoTools();
             return true;
         }},
        {"ID_Cut",
         [](M& f) {
             f.active().View->Cut();
             f.refreshPasteTool();
             return true;
         }},
        {"ID_Copy",
         [](M& f) {
             f.active().View->Copy();
             f.refreshPasteTool();
             return true;
         }},
        {"ID_Paste",
         [](M& f) {
             f.active().View->Paste();
             f.refreshUndoTools();
             return true;
         }},
        {"ID_SelectAll",
         [](M& f) {
             SourceView& v = *f.active().View;
             const int last = v.document().NumLines() - 1;
             v.SetSel(0, 0, v.document().GetLineLength(last), last);
             f.refreshSelectionTools();
             return true;
         }},
        {"ID_SelectLine",
         [](M& f) {
             SourceView& v = *f.active().View;
             const int y = v.CaretY();
             v.SetSel(0, y, v.document().GetLineLength(y), y);
             f.refreshSelectionTools();
             return true;
         }},
        {"ID_SelectWord", onView(&SourceView::SelectWord)},
        {"ID_Find", onView(&SourceView::Find)},
        {"ID_FindNext", onView(&SourceView::FindNext)},
        {"ID_Replace", onView(&SourceView::Replace)},
        {"ID_GotoLine", editCommand(EditCommand::GotoLine)},
        {"ID_Indent", editCommand(EditCommand::Indent)},
        {"ID_Outdent", editCommand(EditCommand::Outdent)},
        {"ID_NoMargin", margin(MarginStyle::None)},
        {"ID_FixedMargin", margin(MarginStyle::Fixed)},
        {"ID_ScrollingMargin", margin(MarginStyle::Scrolling)},
        {"ID_SelectionTextForegroundColor", colorTool("ID_SelectionTextForegroundColor")},
        {"ID_SelectionTextBackgroundColor", colorTool("ID_SelectionTextBackgroundColor")},
        {"ID_BackgroundColor", colorTool("ID_BackgroundColor")},
        {"ID_TokenColor", colorTool("ID_TokenColor")},
        {"ID_Edit",
         [](M& f) {
             if (globals().ClickedTokenClass == 0)
                 f.setToolEnabled(QStringLiteral("ID_TokenColor"), false);
             return true;
         }},
        {"ID_Compile",
         [](M& f) {
             frmEditor& doc = f.active();
             // The compiler sees what is on the screen; a failed save starts no compile.
             doc.View->document().SaveFile(doc.View->document().PathName());
             CompileSession::start(doc);
             return true;
         }},
        {"ID_CompilerOptions",
         [](M& f) {
             frmCompile dlg(f);
             f.runModal(dlg);
             f.update();
             return true;
         }},
        {"ID_Epic",
         [](M& f) {
             // Nothing is saved first: the programmer takes the hex file of the last compile.
             GoProgram(f.active());
             return true;
         }},
        {"ID_ProgrammerOptions",
         [](M& f) {
             frmProgrammer dlg(f);
             f.runModal(dlg);
             f.update();
             return true;
         }},
        {"ID_About",
         [](M& f) {
             // OK unloads the box; it isn't touched afterwards.
             f.runModal(MyAbout::instance(&f));
             return true;
         }},
        {"ID_TileH", arrangeBy(ArrangeMode::TileHorizontal)},
        {"ID_TileV", arrangeBy(ArrangeMode::TileVertical)},
        {"ID_Cascade", arrangeBy(ArrangeMode::Cascade)},
        {"ID_Arrange", arrangeBy(ArrangeMode::Icons)},
    };
    return table;
}

bool MDIMain::runCommand(Tool& tool) {
    const QString id = tool.ID();
    if (const auto it = commands().constFind(id); it != commands().constEnd())
        return (*it)(*this);
    if (const QString link = webLinkFor(id); !link.isEmpty())
        OpenWebLink(link);
    // The menus themselves and the tools without a command pass through.
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
    if (createCountedDocument(path, true))
        skipOnFailure([&] { AddWindowEntry(active().Caption()); });
    return true;
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
    if (!createCountedDocument(path, false))
        return false;
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
    if (!createCountedDocument(path, false))
        return false;
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

void MDIMain::arrange(ArrangeMode mode) {
    if (mode == ArrangeMode::Cascade) {
        mdi_->cascadeSubWindows();
        return;
    }
    QList<QMdiSubWindow*> normal, minimised;
    for (QMdiSubWindow* s : mdi_->subWindowList(QMdiArea::CreationOrder))
        (s->isMinimized() ? minimised : normal) << s;
    const QRect area = mdi_->viewport()->rect();
    if (mode == ArrangeMode::Icons) {
        QList<QSize> sizes;
        for (QMdiSubWindow* s : minimised)
            sizes << s->size();
        const QList<QPoint> places = iconPlaces(area, sizes);
        for (qsizetype i = 0; i < minimised.size(); ++i)
            minimised[i]->move(places[i]);
        return;
    }
    const QList<QRect> rects = tiles(area, int(normal.size()), mode);
    for (qsizetype i = 0; i < normal.size(); ++i) {
        normal[i]->showNormal();
        normal[i]->setGeometry(rects[i]);
    }
}
