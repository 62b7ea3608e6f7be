#include "compile/CompileRun.h"

#include "compile/CompileRules.h"
#include "compile/CompileScript.h"
#include "compile/CompilerScreen.h"
#include "compile/frmCompile.h"
#include "core/Convert.h"
#include "core/DosPath.h"
#include "core/Frame.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/Launcher.h"
#include "platform/Paths.h"
#include "platform/ProgramHost.h"
#include "platform/Prompts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSaveFile>
#include <QTimer>

#include <cerrno>
#include <memory>

namespace {

void plainMessage(const QString& text, Icon icon = Icon::None) {
    globals().prompts->message(text, QString(), icon, Buttons::Ok);
}

}  // namespace

CompileRun& CompileRun::of(frmEditor& doc) {
    if (CompileRun* run = find(doc))
        return *run;
    return *new CompileRun(doc);
}

CompileRun* CompileRun::find(const frmEditor& doc) {
    return doc.findChild<CompileRun*>(QString(), Qt::FindDirectChildrenOnly);
}

CompileRun::CompileRun(frmEditor& doc) : QObject(&doc), doc_(doc) {
    CheckFile.setInterval(1000);
    connect(&CheckFile, &QTimer::timeout, this, &CompileRun::CheckFile_Timer);
    // A window that closes during the wait takes its timer with it.
    connect(&doc, &frmEditor::unloading, &CheckFile, &QTimer::stop);
}

void GoCompile(frmEditor& doc) { CompileRun::of(doc).GoCompile(); }

void CompileRun::DeleteFileQuietly(const QString& path) {
    QFile f(path);
    if (!f.exists())
        return;
    if (!f.remove())
        plainMessage(f.errorString());
}

void CompileRun::GoCompile() {
    // The step numbers are the ones the failure report names: ten for each step.
    int step = 0;
    try {
        step = 10;
        const QString D = GetDosPath(doc_.View->document().PathName());
        const QString S = GetDosPath(globals().paths->applicationDirectory());
        step = 20;
        const QString type = setting(Key::CompilerType);
        step = 30;
        QString P, O;
        if (const auto kind = compilerKindOf(type)) {
            P = GetDosPath(setting(kind->pathKey));
            O = setting(kind->optionsKey);
        }
        // The compiler is handed its own forms of its path and of the document (through wine, Windows
        // ones); the script itself keeps the platform's.
        std::unique_ptr<ProgramHost> host;
        QString hostP, hostD;
        if (!P.isEmpty()) {
            try {
                host = ProgramHost::of(P, *globals().paths, globals().wine);
            } catch (const Failure& f) {
                globals().prompts->message(f.description, QString(), Icon::Critical, Buttons::Ok);
                return;
            }
            host->prepareCompile({P, D});
            hostP = GetDosPath(P, *host);
            if (!D.isEmpty())
                hostD = GetDosPath(D, *host);
            if (hostP.isEmpty())
                P.clear();
        }
        step = 40;
        const QString C = compilerDirectory(P);
        // No drives here: step 50 has nothing to do.
        step = 60;
        const int p = D.lastIndexOf(pathSeparator());
        if (p >= 0) {
            // The process stays in the document's directory, as the compiler does.
            const QString dir = p == 0 ? pathSeparator() : D.left(p);
            if (!QDir::setCurrent(dir))
                throw osFailure(ENOENT, dir);
        }
        step = 70;
        if (P.isEmpty()) {
            // No usable compiler: the options are the way to one.
            frmCompile dlg(doc_.frame());
            doc_.frame().runModal(dlg);
            return;
        }
        step = 80;
        const QString script = inApplicationDirectory(compileScriptName(1));
        // The script's lines need the document's directory, and the compiler the document's own form.
        if (p < 0 || hostD.isEmpty())
            throw invalidProcedureCall();
        QSaveFile out(script);
        if (QFileInfo(script).isDir())
            throw pathFileAccessError(script + QStringLiteral(" is a folder"));
        if (!out.open(QIODevice::WriteOnly))
            throw pathFileAccessError(out.errorString());
        step = 90;
        const QString M = selectCompileDevice(doc_.frame().deviceCombo());
        step = 100;
        if (out.write(host->compileScript({D, S, P, O, C, M}, hostP, hostD)) < 0 || !out.commit())
            throw pathFileAccessError(out.errorString());
        step = 110;
        DeleteFileQuietly(inApplicationDirectory(QStringLiteral("temp.dat")));
        step = 120;
        const QString appDir = globals().paths->applicationDirectory();
        if (numberOf(setting(Key::DosWindow)) == 1) {
            globals().CompileProcess = globals().launcher->startHidden(script, appDir);
            // The end of the script means temp.dat is complete: look at once, not at the next second.
            globals().CompileProcess->whenFinished([run = QPointer<CompileRun>(this)] {
                QTimer::singleShot(0, run, [run] {
                    if (run && run->CheckFile.isActive())
                        run->CheckFile_Timer();
                });
            });
        } else if (!globals().launcher->startInTerminal(script, appDir))
            plainMessage(QStringLiteral("Unable to launch application."));
        step = 130;
        CheckFile.Tag = QStringLiteral("0");
        CheckFile.start();
        step = 140;
        CompilerScreen& screen = CompilerScreen::instance();
        screen.show();
        step = 150;
        screen.CompilerOutput->SetText(QStringLiteral("Compiling Please Wait....."));
        step = 160;
        screen.repaint();
    } catch (const Failure& f) {
        plainMessage(QStringLiteral("GoCompile Error:") + QString::number(f.number) + f.description +
                     QStringLiteral(" Line: ") + QString::number(step));
    }
}

void CompileRun::takeOutput() {
    const QString path = inApplicationDirectory(QStringLiteral("temp.dat"));
    if (!QFileInfo::exists(path))
        return;  // the ordinary case while the compiler runs
    CompilerScreen& screen = CompilerScreen::instance();
    screen.CompilerOutput->document().LoadFile(path);
    screen.CompilerOutput->document().setPathName(path);
    if (numberOf(setting(Key::DosWindow)) == 1 && globals().CompileProcess)
        globals().CompileProcess->terminate();
    CheckFile.stop();
    if (const QString v = compilerVersionText(screen.CompilerOutput->Text()); !v.isEmpty())
        doc_.frame().setPBPVersion(v);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw osFailure(EIO, path);
    const bool error = hasErrorLine(file);
    file.close();
    const int autoClose = int32Of(setting(Key::AutoCloseCW));
    if (error && autoClose != 0)
        screen.setWindowTitle(CompilerScreen::cancelledTitle());
    if (!error && autoClose == 1)
        screen.startCountdown(setting(Key::AutoCloseCWTime));
}

void CompileRun::CheckFile_Timer() {
    // A failure in the first steps ends them silently; the last two steps come at every tick.
    skipOnFailure([&] { takeOutput(); });
    skipOnFailure([&] { doc_.View->Refresh(); });
    const int count = CheckFile.Tag.toInt() + 1;
    CheckFile.Tag = QString::number(count);
    if (compileTimedOut(count)) {
        CheckFile.stop();
        globals().prompts->message(QStringLiteral("Compile Timeout..."), QString(), Icon::Information, Buttons::Ok);
    }
}
