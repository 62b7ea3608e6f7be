// A compile from the Compile tool with a Windows compiler run through wine, the end of the compile's
// process tree, and what happens without wine.
#include "compile/CompileRun.h"
#include "compile/CompilerScreen.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "fakes/WinePrefix.h"
#include "platform/Launcher.h"
#include "platform/PosixLauncher.h"
#include "platform/Wine.h"
#include "shell/MDIMain.h"
#include "support/Doubles.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

namespace {

QString readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

// Processes events until done() holds; the deadline only keeps a broken run from hanging.
template <class Done>
bool waitFor(Done done) {
    QDeadlineTimer deadline(180000);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

// Live processes (zombies aside) whose command line holds every one of the words.
QList<qint64> processesWith(const QStringList& words) {
    QList<qint64> found;
    for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
        bool isPid = false;
        const qint64 pid = entry.toLongLong(&isPid);
        if (!isPid || readAll("/proc/" + entry + "/stat").contains(") Z "))
            continue;
        const QString cmdline = readAll("/proc/" + entry + "/cmdline").replace(QChar(0), ' ');
        if (std::all_of(words.begin(), words.end(), [&](const QString& w) { return cmdline.contains(w); }))
            found << pid;
    }
    return found;
}

struct WineFrame {
    TestWorld w;
    PosixLauncher real;
    QTemporaryDir tools;
    QString compiler;
    std::unique_ptr<MDIMain> f;
    QStringList modals;

    // The compiler lies in a directory with a blank and a quote in its name, the source in another.
    WineFrame(const QByteArray& source, const QString& fake) {
        w.writeDeviceCatalogue();
        globals().launcher = &real;
        QDir().mkpath(tools.filePath("pbp 'tools'"));
        compiler = tools.filePath("pbp 'tools'/PBPW.EXE");
        QFile::copy(fake, compiler);
        saveSetting(Key::CompilerPathName, compiler);
        saveSetting(Key::CompilerCommandLineOptions, R"( -ampasm "-i C:\my inc" )");
        const QString src = w.write("my 'led' work/blink.pbp", source);
        f = std::make_unique<MDIMain>(src);
        f->modalHook = [this](QDialog& d) {
            modals << d.windowTitle();
            return 0;
        };
        f->show();
    }
    ~WineFrame() {
        if (CompilerScreen* s = CompilerScreen::find())
            s->close();
        QDir::setCurrent(QDir::tempPath());
    }
    frmEditor& doc() { return *f->activeDocument(); }
    CompileRun& run() { return CompileRun::of(doc()); }
    // Compiles, keeps the once-a-second tick out of the way and waits for the tick at the script's end.
    bool compileAndWait() {
        f->SSActiveToolBars1_ToolClick(f->toolBars().Tools().Item("ID_Compile"));
        if (!run().CheckFile.isActive())
            return false;
        run().CheckFile.start(3600 * 1000);
        return waitFor([&] { return !run().CheckFile.isActive(); });
    }
};

// Why a wine test can't run here, or empty.
QString wineTestBlocker() {
    if (fakeProgram("fakepbp.exe").isEmpty())
        return "MinGW did not build the Windows test programs";
    return useTestWinePrefix();
}

}  // namespace

TEST(WineCompile, WindowsCompilerGetsItsShortFormsAndItsProcessTreeEnds) {
    if (const QString why = wineTestBlocker(); !why.isEmpty())
        GTEST_SKIP() << why.toStdString();
    // A Windows program of the user's, running in the same prefix before the compile starts.
    QTemporaryDir other;
    const QString otherProgram = other.filePath("userprog.exe");
    ASSERT_TRUE(QFile::copy(fakeProgram("fakeprog.exe"), otherProgram));
    PosixLauncher().startDetached(otherProgram, {"--stay"}, other.path());
    ASSERT_TRUE(waitFor([&] { return !processesWith({"userprog.exe", "--stay"}).isEmpty(); }));

    WineFrame t("HIGH PORTB.0\r\nlinger\r\n", fakeProgram("fakepbp.exe"));
    ASSERT_TRUE(t.compileAndWait());
    // The tick came at the script's end: the first and only one.
    EXPECT_EQ(t.run().CheckFile.Tag, "1");
    EXPECT_TRUE(t.w.prompts.boxes.empty());
    EXPECT_EQ(t.f->PBPVersion(), "PICBASIC PRO(TM) COMPILER 3.1.5, ");
    CompilerScreen* screen = CompilerScreen::find();
    ASSERT_NE(screen, nullptr);
    EXPECT_EQ(screen->windowTitle(), "Compiler Output - Auto Close in: 5 Secs - Esc to Cancel");
    EXPECT_TRUE(screen->CompilerOutput->Text().startsWith("PICBASIC PRO(TM) Compiler 3.1.5,"));
    // Nothing of wine's in the output, the hex beside the source.
    EXPECT_FALSE(screen->CompilerOutput->Text().contains("wine", Qt::CaseInsensitive));
    EXPECT_TRUE(QFileInfo::exists(t.w.file("my 'led' work/blink.hex")));

    // What a Windows compiler gets: its own short path, the options as the words typed, -p with the
    // device, the source's short DOS path; it runs in the source's directory with its own first on the
    // Windows search path.
    const QString source = t.w.file("my 'led' work/blink.pbp");
    const QStringList dos = wineShortPaths({t.compiler, source});
    for (const QString& d : dos)
        EXPECT_TRUE(d.startsWith("Z:\\") && !d.contains(' ')) << d.toStdString();
    const QString compilerDir = dos[0].left(dos[0].lastIndexOf('\\'));
    EXPECT_EQ(readAll(t.tools.filePath("pbp 'tools'/args.txt")),
              "cwd=" + wineWindowsPath(QFileInfo(source).path()) + "\npath=" + compilerDir + "\narg=" + dos[0] +
                  "\narg=-ampasm\narg=-i C:\\my inc\narg=-p16F84A\narg=" + dos[1] + "\n");

    // The child the compiler left behind went with the compile; the user's own program did not.
    ASSERT_NE(globals().CompileProcess, nullptr);
    EXPECT_FALSE(globals().CompileProcess->running());
    EXPECT_TRUE(waitFor([&] { return processesWith({"PBPW.EXE", "--sleep"}).isEmpty(); }));
    const QList<qint64> users = processesWith({"userprog.exe", "--stay"});
    EXPECT_EQ(users.size(), 1);
    for (qint64 pid : users)
        ::kill(pid_t(pid), SIGKILL);
}

TEST(WineCompile, ErrorFromAWindowsCompilerKeepsTheScreen) {
    if (const QString why = wineTestBlocker(); !why.isEmpty())
        GTEST_SKIP() << why.toStdString();
    WineFrame t("an error here\r\n", fakeProgram("fakepbp.exe"));
    ASSERT_TRUE(t.compileAndWait());
    CompilerScreen* screen = CompilerScreen::find();
    ASSERT_NE(screen, nullptr);
    EXPECT_EQ(screen->windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_TRUE(screen->CompilerOutput->Text().contains("ERROR Line 1: Syntax error."));
    EXPECT_FALSE(QFileInfo::exists(t.w.file("my 'led' work/blink.hex")));
}

TEST(WineCompile, WithoutWineOneMessageAndNoCompile) {
    // Any PE image will do: wine never runs.
    QTemporaryDir tmp;
    QFile pe(tmp.filePath("pe.exe"));
    QByteArray head(0x48, '\0');
    head.replace(0, 2, "MZ");
    head[0x3C] = 0x40;
    head.replace(0x40, 4, QByteArray("PE\0\0", 4));
    ASSERT_TRUE(pe.open(QIODevice::WriteOnly) && pe.write(head) == head.size());
    pe.close();
    WineFrame t("x\r\n", pe.fileName());
    globals().launcher = &t.w.launcher;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/nonexistent-dir");
    t.f->SSActiveToolBars1_ToolClick(t.f->toolBars().Tools().Item("ID_Compile"));
    qputenv("PATH", path);
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.w.prompts.boxes[0].text, wineMissingMessage(t.compiler));
    EXPECT_EQ(t.w.prompts.boxes[0].icon, Icon::Critical);
    EXPECT_TRUE(t.w.launcher.launches.empty());
    EXPECT_FALSE(QFileInfo::exists(t.w.file("runpb.sh")));
    EXPECT_FALSE(t.run().CheckFile.isActive());
    EXPECT_TRUE(t.modals.isEmpty());
}

TEST(WineCompile, NativeScriptsEndTicksAtOnceWithStandardErrorInTheOutput) {
    QTemporaryDir tmp;
    // A native compiler named like a Windows one, writing its complaint to standard error.
    const QString fake = tmp.filePath("PBPW.EXE");
    QFile f(fake);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("#!/bin/sh\necho 'PICBASIC PRO(TM) Compiler 9.9, native'\necho 'ERROR Line 2: bad' >&2\n");
    f.close();
    f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
    WineFrame t("x\r\n", fake);
    ASSERT_TRUE(t.compileAndWait());
    EXPECT_EQ(t.run().CheckFile.Tag, "1");
    EXPECT_EQ(readAll(t.w.file("temp.dat")), "PICBASIC PRO(TM) Compiler 9.9, native\nERROR Line 2: bad\n");
    EXPECT_EQ(CompilerScreen::find()->windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_FALSE(readAll(t.w.file("runpb.sh")).contains("wine"));
}

TEST(WineProgrammer, AWindowsProgrammerGetsWindowsPathsForEveryToken) {
    if (const QString why = wineTestBlocker(); !why.isEmpty())
        GTEST_SKIP() << why.toStdString();
    TestWorld w;
    w.writeDeviceCatalogue();
    PosixLauncher real;
    globals().launcher = &real;
    QTemporaryDir tools;
    const QString dir = tools.filePath(QString::fromUtf8("my epic 'é';$x"));
    const QString programmer = dir + "/EPICWIN.EXE";
    ASSERT_TRUE(QDir().mkpath(dir) && QFile::copy(fakeProgram("fakeprog.exe"), programmer));
    const QString source = w.write("led project/blink.pbp", "HIGH 0\r\n");
    w.write("led project/blink.hex", ":00000001FF\r\n");
    saveSetting(Key::ProgrammerPathName, programmer);
    saveSetting(Key::ProgrammerCommandLineOptions,
                "-dPIC{DeviceName} \"{HexFileWinPath}\" {HexFileDosPath} \"{FileNameWinPath}\" {FileNameDosPath}");
    MDIMain f(source);
    f.show();
    f.SSActiveToolBars1_ToolClick(f.toolBars().Tools().Item("ID_Epic"));
    EXPECT_TRUE(w.prompts.boxes.empty());
    const QString record = dir + "/prog-args.txt";
    ASSERT_TRUE(waitFor([&] { return QFileInfo(record).size() > 0; }));
    QFile f2(record);
    ASSERT_TRUE(f2.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(f2.readAll()).split('\n', Qt::SkipEmptyParts);
    const QString hexWin = wineWindowsPath(w.file("led project/blink.hex"));
    const QString srcWin = wineWindowsPath(source);
    ASSERT_TRUE(hexWin.startsWith("Z:\\")) << hexWin.toStdString();
    EXPECT_EQ(lines, QStringList({"cwd=" + wineWindowsPath(dir), "arg=-dPIC16F84A",
                                  "arg=" + hexWin, "arg=" + wineShortPath(w.file("led project/blink.hex")),
                                  "arg=" + srcWin, "arg=" + wineShortPath(source)}));
    // The DOS forms hold no blank: the folder names are shortened.
    EXPECT_FALSE(lines[3].contains(' '));
    EXPECT_FALSE(lines[5].contains(' '));
}
