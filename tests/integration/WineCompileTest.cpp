// A compile from the Compile tool with a Windows compiler run through wine, the end of the compile's
// process tree, and what happens without wine.
#include "RunningFrame.h"

#include "fakes/WinePrefix.h"
#include "platform/Wine.h"
#include "programmer/ProgrammerOutput.h"

#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <csignal>

namespace {

// Live processes (zombies aside) whose command line holds every one of the words.
QList<qint64> processesWith(const QStringList& words) {
    QList<qint64> found;
    for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
        bool isPid = false;
        const qint64 pid = entry.toLongLong(&isPid);
        if (!isPid || readFile("/proc/" + entry + "/stat").contains(") Z "))
            continue;
        const QString cmdline = QString::fromUtf8(readFile("/proc/" + entry + "/cmdline").replace('\0', ' '));
        if (std::all_of(words.begin(), words.end(), [&](const QString& w) { return cmdline.contains(w); }))
            found << pid;
    }
    return found;
}

// The compiler lies in a directory with a blank and a quote in its name, the source in another.
struct WineTools {
    QTemporaryDir tools;
    QString compiler = tools.filePath("pbp 'tools'/PBPW.EXE");
    explicit WineTools(const QString& fake) {
        QDir().mkpath(tools.filePath("pbp 'tools'"));
        QFile::copy(fake, compiler);
    }
};
struct WineFrame : WineTools, CompileFrame {
    WineFrame(const QByteArray& source, const QString& fake)
        : WineTools(fake), CompileFrame(source, compiler, true, "my 'led' work/blink.pbp") {
        saveSetting(Key::CompilerCommandLineOptions, R"( -ampasm "-i C:\my inc" )");
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
    const QString compilerDir = dos[0].left(dos[0].lastIndexOf('\\'));
    EXPECT_EQ(QString::fromUtf8(readFile(t.tools.filePath("pbp 'tools'/args.txt"))),
              "cwd=" + wineWindowsPath(QFileInfo(source).path()) + "\npath=" + compilerDir + "\narg=" + dos[0] +
                  "\narg=-ampasm\narg=-i C:\\my inc\narg=-p16F84A\narg=" + dos[1] + "\n");

    // The child the compiler left behind went with the compile; the user's own program did not.
    ASSERT_NE(t.run().process(), nullptr);
    EXPECT_FALSE(t.run().process()->running());
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
    WineFrame t("x\r\n", writeProgram(tmp.filePath("pe.exe"), peHead()));
    globals().launcher = &t.w.launcher;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/nonexistent-dir");
    t.click(ToolId::Compile);
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
    WineFrame t("x\r\n", writeProgram(tmp.filePath("PBPW.EXE"), "#!/bin/sh\necho 'PICBASIC PRO(TM) Compiler 9.9, "
                                                             "native'\necho 'ERROR Line 2: bad' >&2\n"));
    ASSERT_TRUE(t.compileAndWait());
    EXPECT_EQ(t.run().CheckFile.Tag, "1");
    EXPECT_EQ(readFile(t.w.file("temp.dat")), "PICBASIC PRO(TM) Compiler 9.9, native\nERROR Line 2: bad\n");
    EXPECT_EQ(CompilerScreen::find()->windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_FALSE(readFile(t.w.file("runpb.sh")).contains("wine"));
}

TEST(WineProgrammer, AWindowsProgrammerGetsWindowsPathsForEveryToken) {
    if (const QString why = wineTestBlocker(); !why.isEmpty())
        GTEST_SKIP() << why.toStdString();
    RunningFrame t(QString(), false);
    PosixLauncher real;
    globals().launcher = &real;
    TestWorld& w = t.w;
    QTemporaryDir tools;
    const QString dir = tools.filePath(QString::fromUtf8("my epic 'é';$x"));
    const QString programmer = dir + "/EPICWIN.EXE";
    ASSERT_TRUE(QDir().mkpath(dir) && QFile::copy(fakeProgram("fakeprog.exe"), programmer));
    const QString source = w.write("led project/blink.pbp", "HIGH 0\r\n");
    w.write("led project/blink.hex", ":00000001FF\r\n");
    saveSetting(Key::ProgrammerPathName, programmer);
    // Unquoted tokens too: a value with a blank stays one argument.
    saveSetting(Key::ProgrammerCommandLineOptions,
                "-dPIC{DeviceName} \"{HexFileWinPath}\" {HexFileDosPath} {FileNameWinPath} {FileNameDosPath} --fail");
    t.start(source);
    t.click(ToolId::Epic);
    EXPECT_TRUE(w.prompts.boxes.empty());
    ProgrammerOutput* out = ProgrammerOutput::find();
    ASSERT_NE(out, nullptr);
    ASSERT_TRUE(waitFor([&] { return !out->running(); }));
    const QString record = dir + "/prog-args.txt";
    const QStringList lines = QString::fromUtf8(readFile(record)).split('\n', Qt::SkipEmptyParts);
    const QString hexWin = wineWindowsPath(w.file("led project/blink.hex"));
    const QString srcWin = wineWindowsPath(source);
    EXPECT_EQ(lines, QStringList({"cwd=" + wineWindowsPath(dir), "arg=-dPIC16F84A",
                                  "arg=" + hexWin, "arg=" + wineShortPath(w.file("led project/blink.hex")),
                                  "arg=" + srcWin, "arg=" + wineShortPath(source), "arg=--fail"}));
    // The Windows programmer's own output on both channels, and its exit status.
    const QStringList shown = out->Output->toPlainText().split('\n').mid(1);
    EXPECT_EQ(shown, QStringList({"fakeprog: 6 arguments", "fakeprog: no device answers",
                                  "The programmer failed with exit status 3.", ""}));
}
