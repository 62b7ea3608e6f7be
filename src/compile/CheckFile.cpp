// The once-a-second watch for the compiler's output.
#include "compile/CompilerScreen.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/Launcher.h"
#include "platform/Prompts.h"
#include "shell/Convert.h"
#include "shell/Globals.h"
#include "shell/MDIMain.h"
#include "shell/Settings.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <cerrno>

// The banner from "PICBASIC" on, as long as the text up to and including the character behind the
// first comma of the whole output; empty when there is no banner.
QString compilerVersionText(const QString& output) {
    const QString t = output.toUpper();
    const qsizetype a = t.indexOf(QStringLiteral("PICBASIC"));
    if (a < 0)
        return {};
    const qsizetype c = t.indexOf(QLatin1Char(',')) + 1;  // position from 1, 0 for none
    return t.mid(a, c + 1);
}

// True at the first line that holds "ERROR" in any letter case.
static bool hasErrorLine(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        throw osFailure(EIO, path);
    QTextStream in(&f);
    QString line;
    while (in.readLineInto(&line))
        if (line.contains(QStringLiteral("ERROR"), Qt::CaseInsensitive))
            return true;
    return false;
}

void frmEditor::CheckFile_Timer() {
    try {
        const QString path = inApplicationDirectory(QStringLiteral("temp.dat"));
        if (!QFileInfo::exists(path))
            throw Failure(53, QStringLiteral("File not found"));
        CompilerScreen& screen = CompilerScreen::instance();
        screen.CompilerOutput->document().LoadFile(path);
        screen.CompilerOutput->document().setPathName(path);
        if (numberOf(setting(Key::DosWindow)) == 1 && globals().CompileProcess) {
            globals().CompileProcess->terminate();
            globals().CompileProcess.reset();
        }
        CheckFile.stop();
        if (const QString v = compilerVersionText(screen.CompilerOutput->Text()); !v.isEmpty())
            frame_.setPBPVersion(v);
        const bool error = hasErrorLine(path);
        const int autoClose = int32Of(setting(Key::AutoCloseCW));
        if (error && autoClose != 0)
            screen.setWindowTitle(CompilerScreen::cancelledTitle());
        if (!error && autoClose == 1)
            screen.startCountdown(setting(Key::AutoCloseCWTime));
    } catch (const Failure&) {
        // Still waiting, or the output can't be used: the tick ends below.
    }
    skipOnFailure([&] { View->Refresh(); });
    const int count = CheckFile.Tag.toInt() + 1;
    CheckFile.Tag = QString::number(count);
    // Only a compile still waiting times out; one whose output came at the last tick is over.
    if (count >= 30 && CheckFile.isActive()) {
        CheckFile.stop();
        globals().prompts->message(QStringLiteral("Compile Timeout..."), QString(), Icon::Information, Buttons::Ok);
    }
}
