// The compile of one document: the script, its start, and the output screen's waiting text.
#include "compile/CompileScript.h"
#include "compile/CompilerScreen.h"
#include "compile/frmCompile.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/Launcher.h"
#include "platform/Paths.h"
#include "platform/Prompts.h"
#include "shell/Convert.h"
#include "shell/Globals.h"
#include "shell/MDIMain.h"
#include "shell/Settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>

namespace {

#ifdef Q_OS_WIN
const QString kScriptName = QStringLiteral("runpb.bat");
QByteArray compileScript(const CompileInputs& in) { return runpbBat(in); }
#else
const QString kScriptName = QStringLiteral("runpb.sh");
QByteArray compileScript(const CompileInputs& in) { return runpbSh(in); }
#endif

}  // namespace

QString frmEditor::GetDosPath(const QString& path) {
    const QString s = globals().paths ? globals().paths->shortPath(path) : QString();
    if (s.isEmpty())
        globals().prompts->message(QStringLiteral("Error! Invalid Path or File Name: ") + path +
                                       QStringLiteral("\rIf problem persists contact Velnor Systems at 555-201-0142"),
                                   QString(), Icon::Critical, Buttons::Ok);
    return s;
}

void frmEditor::DeleteFileQuietly(const QString& path) {
    QFile f(path);
    if (!f.exists())
        return;
    if (!f.remove())
        globals().prompts->message(f.errorString(), QString(), Icon::None, Buttons::Ok);
}

void frmEditor::GoCompile() {
    int step = 0;
    try {
        step = 10;
        const QString D = GetDosPath(View->document().PathName());
        const QString S = GetDosPath(globals().paths->applicationDirectory());
        step = 20;
        const QString kind = setting(Key::CompilerType);
        step = 30;
        QString P, O;
        if (kind == QLatin1String("0") || kind == QLatin1String("1")) {
            const bool pro = kind == QLatin1String("0");
            P = GetDosPath(setting(pro ? Key::CompilerPathName : Key::CompilerPathName1));
            O = setting(pro ? Key::CompilerCommandLineOptions : Key::CompilerCommandLineOptions1);
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
            frmCompile dlg(frame_);
            frame_.runModal(dlg);
            return;
        }
        step = 80;
        const QString script = inApplicationDirectory(kScriptName);
        if (p < 0)
            throw Failure(5, QStringLiteral("Invalid procedure call or argument"));
        step = 90;
        const QString M = selectCompileDevice(frame_.deviceCombo());
        step = 100;
        QSaveFile out(script);
        if (!out.open(QIODevice::WriteOnly) || out.write(compileScript({D, S, P, O, C, M})) < 0 || !out.commit())
            throw Failure(75, QStringLiteral("Path/File access error: ") + out.errorString());
        step = 110;
        DeleteFileQuietly(inApplicationDirectory(QStringLiteral("temp.dat")));
        step = 120;
        if (numberOf(setting(Key::DosWindow)) == 1) {
            globals().CompileProcess = globals().launcher->startHidden(script, globals().paths->applicationDirectory());
        } else if (!globals().launcher->startInTerminal(script, globals().paths->applicationDirectory())) {
            globals().prompts->message(QStringLiteral("Unable to launch application."), QString(), Icon::None,
                                       Buttons::Ok);
        }
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
        globals().prompts->message(QStringLiteral("GoCompile Error:") + QString::number(f.number) + f.description +
                                       QStringLiteral(" Line: ") + QString::number(step),
                                   QString(), Icon::None, Buttons::Ok);
    }
}
