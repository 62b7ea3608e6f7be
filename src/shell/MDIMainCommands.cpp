// The frame's command handler: every tool click arrives here and runs its command.
#include "compile/CompileSession.h"
#include "compile/CompilerScreen.h"
#include "compile/frmCompile.h"
#include "compile/CompileRules.h"
#include "dialogs/MyAbout.h"
#include "dialogs/frmSetupCheck.h"
#include "programmer/ProgramAfterCompile.h"
#include "programmer/ProgrammerRun.h"
#include "programmer/ProgrammerTemplate.h"
#include "programmer/frmProgrammer.h"
#include "document/Document.h"
#include "document/EditorColors.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "document/frmEditorEncoding.h"
#include "platform/Failure.h"
#include "platform/Launcher.h"
#include "platform/Prompts.h"
#include "shell/Arrange.h"
#include "shell/EditorRegistry.h"
#include "shell/CommandRules.h"
#include "core/Convert.h"
#include "core/Globals.h"
#include "core/ToolIds.h"
#include "shell/MDIMain.h"
#include "shell/RecentFiles.h"
#include "core/Settings.h"
#include "shell/WindowList.h"
#include "platform/PosixSystemProbe.h"
#include "platform/SerialPortQt.h"
#include "shell/CodeExplorer.h"
#include "terminal/SerialTerminal.h"

#include <QFileInfo>
#include <QHash>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>

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

// Compile and Program, once the compile has ended: the programmer starts as Launch Programmer starts it,
// or the output screen says why it doesn't. A compile that timed out said so itself; one that a new
// compile ended has nothing to say.
void programAfterCompile(CompileSession& compile) {
    if (compile.outcome() != CompileSession::Outcome::OutputFound)
        return;
    frmEditor& doc = compile.document();
    const QString source = doc.View->document().PathName();
    const auto reason = notProgrammedReason(
        {.errorLine = compile.hasErrorLine(), .exitStatus = compile.exitStatus(), .source = source,
         .hexFile = hexFileName(source)});
    if (!reason) {
        GoProgram(doc);
        return;
    }
    if (CompilerScreen* screen = compile.screen())
        screen->tell(*reason);
    else
        message(*reason, Icon::Exclamation);
}

}  // namespace

frmEditor& MDIMain::active() const {
    frmEditor* doc = activeDocument();
    if (!doc)
        throw objectNotSet();
    return *doc;
}

QStringList MDIMain::documentTitles() const {
    QStringList titles;
    for (const frmEditor* doc : editors_->all())
        titles << doc->Caption();
    return titles;
}

// The same file under another spelling, or a title that differs in letter case only.
bool MDIMain::alreadyOpen(const QString& path) {
    if (!editors_->find(path) && !isAlreadyOpen(documentTitles(), path))
        return false;
    message(QStringLiteral("File Already Open!"), Icon::Exclamation);
    return true;
}

void MDIMain::SSActiveToolBars1_ToolClick(Tool& tool) {
    const QString id = tool.ID();
    try {
        if (!runCommand(tool))
            return;
        // A document entry of the Window menu has the document's title as its id.
        if (frmEditor* doc = editors_->titled(id); doc && doc->subWindow())
            mdi_->setActiveSubWindow(doc->subWindow());
    } catch (const Failure& f) {
        if (f.number != kCancelError)
            ShowError(f);
    }
}

void MDIMain::SSActiveToolBars1_ComboCloseUp(Tool& tool) {
    skipOnFailure([&] {
        if (tool.ID() == QLatin1String(ToolId::Device))
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
            colorCommand(f, QLatin1String(id));
            return true;
        };
    };
    auto arrangeBy = [](ArrangeMode mode) {
        return [mode](M& f) {
            f.arrange(mode);
            return true;
        };
    };
    auto compileActive = [](M& f) -> CompileSession& {
        frmEditor& doc = f.active();
        // The compiler sees what is on the screen; a failed save starts no compile.
        doc.View->document().SaveFile(doc.View->document().PathName());
        // The lines the last compile's messages led to are marked until this one.
        for (frmEditor* d : f.editors_->all())
            d->View->clearMessageMark();
        CompileSession& compile = CompileSession::start(doc);
        // The Compile tool rests while this document's compile runs.
        QObject::connect(&compile, &CompileSession::ended, &f, [&f] { f.EnableTools(); });
        f.EnableTools();
        return compile;
    };
    static const QHash<QString, Command> table = {
        {ToolId::New, &M::newDocument},
        {ToolId::Open, &M::openDocument},
        {ToolId::File1, [](M& f) { return f.openRecentFile(1); }},
        {ToolId::File2, [](M& f) { return f.openRecentFile(2); }},
        {ToolId::File3, [](M& f) { return f.openRecentFile(3); }},
        {ToolId::File4, [](M& f) { return f.openRecentFile(4); }},
        {ToolId::Close,
         [](M& f) {
             frmEditor& doc = f.active();
             // The window's own close asks again; a document saved at the first question isn't asked twice.
             if (doc.SaveModified())
                 doc.subWindow()->close();
             return true;
         }},
        {ToolId::Save,
         [](M& f) {
             Document& doc = f.active().View->document();
             doc.SaveFile(doc.PathName());
             return true;
         }},
        {ToolId::SaveAs, &M::saveAs},
        {ToolId::ReopenWithEncoding,
         [](M& f) {
             if (frmEditor* doc = f.activeDocument())
                 reopenWithEncoding(*doc);
             return true;
         }},
        {ToolId::Print, onView(&SourceView::PrintText)},
        {ToolId::Exit,
         [](M& f) {
             f.close();
             return true;
         }},
        {ToolId::Undo,
         [](M& f) {
             f.active().View->document().Undo();
             f.EnableTools();
             return true;
         }},
        {ToolId::Redo,
         [](M& f) {
             f.active().View->document().Redo();
             f.EnableTools();
             return true;
         }},
        {ToolId::Cut,
         [](M& f) {
             f.active().View->Cut();
             f.EnableTools();
             return true;
         }},
        {ToolId::Copy,
         [](M& f) {
             f.active().View->Copy();
             f.EnableTools();
             return true;
         }},
        {ToolId::Paste,
         [](M& f) {
             f.active().View->Paste();
             f.EnableTools();
             return true;
         }},
        {ToolId::SelectAll,
         [](M& f) {
             SourceView& v = *f.active().View;
             const int last = v.document().NumLines() - 1;
             v.SetSel(0, 0, v.document().GetLineLength(last), last);
             f.EnableTools();
             return true;
         }},
        {ToolId::SelectLine,
         [](M& f) {
             SourceView& v = *f.active().View;
             const int y = v.CaretY();
             v.SetSel(0, y, v.document().GetLineLength(y), y);
             f.EnableTools();
             return true;
         }},
        {ToolId::SelectWord, onView(&SourceView::SelectWord)},
        {ToolId::Find, onView(&SourceView::Find)},
        {ToolId::FindNext, onView(&SourceView::FindNext)},
        {ToolId::Replace, onView(&SourceView::Replace)},
        {ToolId::GotoLine, editCommand(EditCommand::GotoLine)},
        {ToolId::Indent, editCommand(EditCommand::Indent)},
        {ToolId::Outdent, editCommand(EditCommand::Outdent)},
        {ToolId::NoMargin, margin(MarginStyle::None)},
        {ToolId::FixedMargin, margin(MarginStyle::Fixed)},
        {ToolId::ScrollingMargin, margin(MarginStyle::Scrolling)},
        {ToolId::SelectionTextForegroundColor, colorTool(ToolId::SelectionTextForegroundColor)},
        {ToolId::SelectionTextBackgroundColor, colorTool(ToolId::SelectionTextBackgroundColor)},
        {ToolId::BackgroundColor, colorTool(ToolId::BackgroundColor)},
        {ToolId::TokenColor, colorTool(ToolId::TokenColor)},
        {ToolId::Edit,
         [](M& f) {
             // The menu opening shows the tools as they are now, the token colour among them.
             f.toolState_.reset();
             f.EnableTools();
             return true;
         }},
        {ToolId::Compile,
         [compileActive](M& f) {
             compileActive(f);
             return true;
         }},
        {ToolId::CompileAndProgram,
         [compileActive](M& f) {
             CompileSession& compile = compileActive(f);
             QPointer<CompileSession> session(&compile);
             QObject::connect(&compile, &CompileSession::ended, &f, [session] {
                 if (session)
                     programAfterCompile(*session);
             });
             return true;
         }},
        {ToolId::NextMessage,
         [](M&) {
             if (CompilerScreen* screen = CompilerScreen::withMessages())
                 screen->stepMessage(true);
             return true;
         }},
        {ToolId::PreviousMessage,
         [](M&) {
             if (CompilerScreen* screen = CompilerScreen::withMessages())
                 screen->stepMessage(false);
             return true;
         }},
        {ToolId::CompilerOptions,
         [](M& f) {
             frmCompile dlg(f);
             f.runModal(dlg);
             f.update();
             return true;
         }},
        {ToolId::Epic,
         [](M& f) {
             // Nothing is saved first: the programmer takes the hex file of the last compile.
             GoProgram(f.active());
             return true;
         }},
        {ToolId::ProgrammerOptions,
         [](M& f) {
             frmProgrammer::open(f, true);
             f.update();
             return true;
         }},
        {ToolId::About,
         [](M& f) {
             // OK unloads the box; it isn't touched afterwards.
             f.runModal(MyAbout::instance(&f));
             return true;
         }},
        {ToolId::CheckSetup,
         [](M& f) {
             f.showSetupCheck();
             return true;
         }},
        {ToolId::CodeExplorer,
         [](M& f) {
             // The dock decides, and the entry follows it: a click toggles whatever state the entry showed.
             f.showCodeExplorer(f.codeExplorer()->isHidden());
             return true;
         }},
        {ToolId::AutoComplete,
         [](M& f) {
             const bool on = setting(Key::AutoComplete) == QLatin1String("0");
             saveSetting(Key::AutoComplete, on ? QStringLiteral("1") : QStringLiteral("0"));
             f.toolBars().Tools().Item(QLatin1String(ToolId::AutoComplete)).setPressed(on);
             return true;
         }},
        {ToolId::SerialTerminal,
         [](M& f) {
             SerialTerminal::showBeside(&f, systemSerialPorts());
             return true;
         }},
        {ToolId::TileH, arrangeBy(ArrangeMode::TileHorizontal)},
        {ToolId::TileV, arrangeBy(ArrangeMode::TileVertical)},
        {ToolId::Cascade, arrangeBy(ArrangeMode::Cascade)},
        {ToolId::Arrange, arrangeBy(ArrangeMode::Icons)},
    };
    return table;
}

void MDIMain::showSetupCheck() {
    // The settings as a compile and a launch read them now, at each check.
    frmSetupCheck::showBeside(this, [] {
        SetupInputs in;
        if (const auto kind = compilerKindOf(setting(Key::CompilerType))) {
            in.compilerPath = setting(kind->pathKey);
            in.compilerOptions = setting(kind->optionsKey);
        }
        in.terminalPort = serialPortPath(setting(Key::Port));
        skipOnFailure([&] {
            if (const auto kind = programmerKindAt(int16Of(setting(Key::ProgrammerType)))) {
                in.programmerKind = kind->name;
                in.programmerPath = setting(kind->pathKey);
                const QString options = setting(kind->optionsKey);
                // Only the port matters here; the other tokens keep a place in their arguments.
                in.programmerArgs = templateArguments(options, [&](const QString& token) {
                    const bool port = token.compare(QLatin1String("{SerialPort}"), Qt::CaseInsensitive) == 0;
                    in.programmerTakesTerminalPort = in.programmerTakesTerminalPort || port;
                    return port ? in.terminalPort : token;
                });
            }
        });
        return in;
    }, systemProbe());
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
    const QString dir = setting(Key::SourceCodePath);
    const QString path = untitledPath(dir, untitledNumber(documentTitles(), dir));
    if (alreadyOpen(path))
        return false;
    createCountedDocument(path, true);
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
    if (alreadyOpen(path))
        return false;
    if (!createCountedDocument(path, false))
        return false;
    enterRecentFile(SSActiveToolBars1, active().View->document().PathName());
    // Written at once, so that a killed IDE keeps it.
    skipOnFailure([&] { saveRecentFiles(SSActiveToolBars1); });
    return true;
}

bool MDIMain::openRecentFile(int entry) {
    const QString path = recentFilePath(SSActiveToolBars1, entry);
    if (alreadyOpen(path))
        return false;
    return createCountedDocument(path, false);
}

bool MDIMain::saveAs() {
    frmEditor& doc = active();
    openSave_.FileName = doc.View->document().PathName();
    openSave_.Filter = kSaveAsFilter;
    if (!openSave_.ShowSave() || openSave_.FileName.isEmpty())
        return false;
    const QString name = openSave_.FileName;
    // The document itself takes part: Save is the way to save under its own name.
    if (alreadyOpen(name))
        return false;
    doc.View->document().SaveFile(name);
    // The Window menu moves the entry to the end under the new title.
    doc.setPath(name, true);
    return true;
}

void MDIMain::OpenWebLink(const QString& link) {
    if (!globals().launcher->openUrl(link))
        message(unableToLaunchText(link));
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
