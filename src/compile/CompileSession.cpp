#include "compile/CompileSession.h"

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
#include <QRegularExpression>
#include <QSaveFile>
#include <QTimer>

#include <algorithm>
#include <cerrno>

namespace {

void plainMessage(const QString& text, Icon icon = Icon::None) {
    globals().prompts->message(text, QString(), icon, Buttons::Ok);
}

QList<CompileSession*> sessionsOf(const frmEditor& doc) {
    return doc.findChildren<CompileSession*>(QString(), Qt::FindDirectChildrenOnly);
}

// The compiles waiting for their output now, in any document.
std::vector<CompileSession*> runningSessions() {
    std::vector<CompileSession*> running;
    for (QObject* o : globals().runningCompiles)
        running.push_back(static_cast<CompileSession*>(o));
    return running;
}

}  // namespace

CompileSession& CompileSession::start(frmEditor& doc) {
    // A compile that never started holds nothing worth keeping.
    for (CompileSession* earlier : sessionsOf(doc))
        if (earlier->outcome() == Outcome::NotStarted)
            earlier->deleteLater();
    auto* session = new CompileSession(doc);
    session->GoCompile();
    return *session;
}

CompileSession* CompileSession::of(const frmEditor& doc) {
    const QList<CompileSession*> sessions = sessionsOf(doc);
    return sessions.isEmpty() ? nullptr : sessions.last();
}

CompileSession::CompileSession(frmEditor& doc) : QObject(&doc), doc_(doc) {
    CheckFile.setInterval(1000);
    connect(&CheckFile, &QTimer::timeout, this, &CompileSession::CheckFile_Timer);
    connect(&doc, &frmEditor::unloading, this, &CompileSession::Document_Unloading);
}

CompileSession::~CompileSession() {
    auto& running = globals().runningCompiles;
    running.erase(std::remove(running.begin(), running.end(), this), running.end());
}

void CompileSession::DeleteFileQuietly(const QString& path) {
    QFile f(path);
    if (!f.exists())
        return;
    if (!f.remove())
        plainMessage(f.errorString());
}

void CompileSession::GoCompile() {
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
        QString hostP, hostD;
        if (!P.isEmpty()) {
            try {
                host_ = ProgramHost::of(P, *globals().paths, globals().wine);
            } catch (const Failure& f) {
                // Wine or 32-bit Wine is missing: the set-up check says what else is.
                if (globals().prompts->messageOffering(f.description, QString(), Icon::Critical, checkSetupCaption()))
                    doc_.frame().showSetupCheck();
                return;
            }
            host_->prepareCompile({P, D});
            hostP = GetDosPath(P, *host_);
            if (!D.isEmpty())
                hostD = GetDosPath(D, *host_);
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
        // Two compilers must never write the same .hex: the document's earlier compile ends here, and
        // leaves its files to this one.
        for (CompileSession* earlier : sessionsOf(doc_))
            if (earlier != this) {
                earlier->end();
                earlier->deleteLater();
            }
        claimFiles();
        // The script's lines need the document's directory, and the compiler the document's own form.
        if (p < 0 || hostD.isEmpty())
            throw invalidProcedureCall();
        QSaveFile out(scriptFile_);
        if (QFileInfo(scriptFile_).isDir())
            throw pathFileAccessError(scriptFile_ + QStringLiteral(" is a folder"));
        if (!out.open(QIODevice::WriteOnly))
            throw pathFileAccessError(out.errorString());
        step = 90;
        const QString M = selectCompileDevice(doc_.frame().deviceCombo());
        step = 100;
        inputs_ = {.D = D, .S = S, .P = P, .O = O, .C = C, .M = M, .output = inputs_.output};
        if (out.write(host_->compileScript(inputs_, hostP, hostD)) < 0 || !out.commit())
            throw pathFileAccessError(out.errorString());
        host_->compileStarting(inputs_, hostP, hostD);
        step = 110;
        DeleteFileQuietly(outputFile_);
        DeleteFileQuietly(compileStatusName(outputFile_));
        step = 120;
        const QString appDir = globals().paths->applicationDirectory();
        if (numberOf(setting(Key::DosWindow)) == 1) {
            process_ = globals().launcher->startHidden(scriptFile_, appDir);
            // The end of the script means the output is complete: look at once, not at the next second.
            process_->whenFinished([this] {
                QTimer::singleShot(0, this, [this] {
                    if (CheckFile.isActive())
                        CheckFile_Timer();
                });
            });
        } else if (!globals().launcher->startInTerminal(scriptFile_, appDir))
            plainMessage(unableToLaunchText(terminalCandidatesText() + QStringLiteral(" for ") + scriptFile_));
        step = 130;
        CheckFile.Tag = QStringLiteral("0");
        CheckFile.start();
        step = 140;
        CompilerScreen& screen = takeScreen();
        screen.show();
        step = 150;
        screen.CompilerOutput->SetText(QStringLiteral("Compiling Please Wait....."));
        step = 160;
        screen.repaint();
    } catch (const Failure& f) {
        if (step < 130)
            finish(Outcome::NotStarted);
        plainMessage(QStringLiteral("GoCompile Error:") + QString::number(f.number) + f.description +
                     QStringLiteral(" Line: ") + QString::number(step));
    }
}

void CompileSession::claimFiles() {
    // The first slot that no running compile holds: a single compile has runpb.sh and temp.dat.
    const std::vector<CompileSession*> running = runningSessions();
    slot_ = 1;
    while (std::any_of(running.begin(), running.end(), [&](CompileSession* s) { return s->slot_ == slot_; }))
        ++slot_;
    inputs_.output = compileOutputName(slot_);
    scriptFile_ = inApplicationDirectory(compileScriptName(slot_));
    outputFile_ = inApplicationDirectory(inputs_.output);
    outcome_ = Outcome::Waiting;
    globals().runningCompiles.push_back(this);
}

CompilerScreen& CompileSession::takeScreen() {
    // One screen for the compiles one after another, as a countdown that runs in it goes on; a compile
    // that starts while another one runs shows in its own.
    for (CompilerScreen* s : CompilerScreen::all())
        if (!s->session() || !s->session()->running()) {
            screen_ = s;
            break;
        }
    if (!screen_)
        screen_ = &CompilerScreen::fresh();
    screen_->setSession(this);
    return *screen_;
}

CompilerScreen* CompileSession::screen() const {
    return screen_ && screen_->live() && screen_->session() == this ? screen_.data() : nullptr;
}

void CompileSession::takeOutput() {
    if (!QFileInfo::exists(outputFile_))
        return;  // the ordinary case while the compiler runs
    // A screen that the user closed during the wait gives way to a new one, which nobody shows.
    if (!screen()) {
        screen_ = &CompilerScreen::fresh();
        screen_->setSession(this);
    }
    CompilerScreen& screen = *screen_;
    screen.CompilerOutput->document().LoadFile(outputFile_);
    screen.CompilerOutput->document().setPathName(outputFile_);
    const QString loaded = screen.CompilerOutput->Text();
    if (numberOf(setting(Key::DosWindow)) == 1 && process_)
        process_->terminate();
    CheckFile.stop();
    if (outcome_ == Outcome::Waiting)
        outcome_ = Outcome::OutputFound;  // told at the end of the tick
    // The compiler is done and nothing of its process group runs any more: its files can be named.
    output_ = host_ ? host_->compileEnded(loaded) : loaded;
    exitStatus_ = compileExitStatus(outputFile_);
    const QString sourceDirectory = QFileInfo(inputs_.D).absolutePath();
    messages_ = placeMessages(
        parseOutputMessages(output_),
        [&](const QString& named) {
            return host_ ? host_->localPath(named, sourceDirectory) : ProgramHost::nativePath(named, sourceDirectory);
        },
        asmTagsOfFile);
    QString shown = output_;
    if (exitStatus_.value_or(0) != 0)
        shown = withOutputLine(shown, exitStatusText(QString::number(*exitStatus_)));
    if (shown != loaded)
        screen.CompilerOutput->SetText(shown);
    if (compilerCouldNotRun(exitStatus_))
        screen.offerSetupCheck(doc_.frame());
    if (const QString v = compilerVersionText(output_); !v.isEmpty())
        doc_.frame().setPBPVersion(v);
    QFile file(outputFile_);
    if (!file.open(QIODevice::ReadOnly))
        throw osFailure(EIO, outputFile_);
    errorLine_ = ::hasErrorLine(file);
    file.close();
    // A compiler that failed without an error line keeps its screen as one with an error line does.
    const int autoClose = int32Of(setting(Key::AutoCloseCW));
    if (failed() && autoClose != 0)
        screen.setWindowTitle(CompilerScreen::cancelledTitle());
    if (!failed() && autoClose == 1)
        screen.startCountdown(setting(Key::AutoCloseCWTime));
}

void CompileSession::CheckFile_Timer() {
    // A failure in the first steps ends them silently; the last two steps come at every tick.
    skipOnFailure([&] { takeOutput(); });
    skipOnFailure([&] { doc_.View->Refresh(); });
    const int count = CheckFile.Tag.toInt() + 1;
    CheckFile.Tag = QString::number(count);
    if (compileTimedOut(count)) {
        CheckFile.stop();
        globals().prompts->message(QStringLiteral("Compile Timeout..."), QString(), Icon::Information, Buttons::Ok);
    }
    if (outcome_ == Outcome::OutputFound)
        finish(Outcome::OutputFound);
    else if (!CheckFile.isActive())
        finish(Outcome::TimedOut);
}

void CompileSession::end() {
    CheckFile.stop();
    if (process_ && process_->running())
        process_->terminate();
    finish(Outcome::Stopped);
}

void CompileSession::Document_Unloading() {
    // The window takes its timer with it; the script runs on to its end, and nobody reads its output.
    CheckFile.stop();
    if (process_)
        process_->letRun();
    finish(Outcome::Stopped);
}

void CompileSession::finish(Outcome outcome) {
    auto& running = globals().runningCompiles;
    const auto at = std::find(running.begin(), running.end(), this);
    if (at == running.end())
        return;
    running.erase(at);
    outcome_ = outcome;
    if (outcome != Outcome::NotStarted)
        emit ended();
}

QStringList CompileSession::outputLines() const {
    static const QRegularExpression lineEnd(QStringLiteral("\r\n|\r|\n"));
    QStringList lines = output_.split(lineEnd);
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

