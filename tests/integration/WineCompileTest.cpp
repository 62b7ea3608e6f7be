// A compile from the Compile tool with a Windows compiler run through wine, the end of the compile's
// process tree, and what happens without wine.
#include "RunningFrame.h"

#include "fakes/WinePrefix.h"
#include "platform/Wine.h"
#include "programmer/ProgrammerOutput.h"

#include <QPlainTextEdit>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <csignal>

using S = CompileMessage::Severity;

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
    WineFrame(const QByteArray& source, const QString& fake, const QString& name = "my 'led' work/blink.pbp")
        : WineTools(fake), CompileFrame(source, compiler, true, name) {
        saveSetting(Key::CompilerCommandLineOptions, R"( -ampasm "-i C:\my inc" )");
    }
};

// Why a wine test can't run here, or empty.
QString wineTestBlocker(const TestWinePrefix& prefix) {
    if (fakeProgram("fakepbp.exe").isEmpty())
        return "MinGW did not build the Windows test programs";
    return prefix.why();
}

}  // namespace

TEST(WineCompile, WindowsCompilerGetsItsShortFormsAndItsProcessTreeEnds) {
    const TestWinePrefix prefix;
    if (const QString why = wineTestBlocker(prefix); !why.isEmpty())
        GTEST_SKIP() << why.toStdString();
    // A Windows program of the user's, running in the same prefix before the compile starts.
    QTemporaryDir other;
    const QString otherProgram = other.filePath("userprog.exe");
    ASSERT_TRUE(QFile::copy(fakeProgram("fakeprog.exe"), otherProgram));
    PosixLauncher().startDetached(otherProgram, {"--stay"}, other.path());
    // It goes at the end however the test ends: it holds the test's output open, and ctest would wait on it.
    const auto endUsers = qScopeGuard([] {
        for (qint64 pid : processesWith({"userprog.exe", "--stay"}))
            ::kill(pid_t(pid), SIGKILL);
    });
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
    EXPECT_EQ(processesWith({"userprog.exe", "--stay"}).size(), 1);
}

TEST(WineCompile, FailuresKeepTheScreenAndOutputsTakeTheSourcesLongNameAndTheTextTheUsersNames) {
    const TestWinePrefix prefix;
    if (const QString why = wineTestBlocker(prefix); !why.isEmpty())
        GTEST_SKIP() << why.toStdString();
    WineFrame t("an error here\r\n", fakeProgram("fakepbp.exe"), "led work/blinking_lights_v2.pbp");
    const QString dir = t.w.file("led work"), source = dir + "/blinking_lights_v2.pbp";
    const QString alias = wineShortPath(source).section('\\', -1).section('.', 0, 0);
    ASSERT_TRUE(alias.contains('~')) << alias.toStdString();
    auto filesThere = [&] {
        QStringList names = QDir(dir).entryList(QDir::Files);
        names.sort();
        return names;
    };

    // An error line: the screen stays. The compiler's standard error follows its output, with the source
    // named as the user knows it, then its status, ended as the Windows compiler ends its lines.
    ASSERT_TRUE(t.compileAndWait());
    CompilerScreen* screen = CompilerScreen::find();
    ASSERT_NE(screen, nullptr);
    EXPECT_EQ(screen->windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    const QStringList lines = t.run().outputLines();
    EXPECT_EQ(lines.mid(lines.indexOf("ERROR Line 1: Syntax error."), 2),
              QStringList({"ERROR Line 1: Syntax error.", "1 error in " + source}))
        << t.run().output().toStdString();
    EXPECT_EQ(t.run().exitStatus(), 1);
    EXPECT_TRUE(screen->CompilerOutput->Text().endsWith("\r\nexit status 1\r\n"));
    EXPECT_EQ(filesThere(), QStringList({"blinking_lights_v2.err", "blinking_lights_v2.pbp"}));

    // The last compile's hex, which the next one replaces; a file of the user's that only bears the alias stays.
    t.w.write("led work/blinking_lights_v2.hex", "old\n");
    t.w.write("led work/" + alias + ".txt", "mine\n");
    t.doc()->View->SetText("HIGH PORTB.0\r\n");
    ASSERT_TRUE(t.compileAndWait());
    EXPECT_EQ(filesThere(), QStringList({alias + ".txt", "blinking_lights_v2.asm", "blinking_lights_v2.cod",
                                         "blinking_lights_v2.err", "blinking_lights_v2.hex", "blinking_lights_v2.lst",
                                         "blinking_lights_v2.mac", "blinking_lights_v2.pbp"}));
    EXPECT_EQ(readFile(dir + "/blinking_lights_v2.hex"), ":020000040000FA\n:00000001FF\n");
    EXPECT_TRUE(t.run().outputLines().contains("Writing " + dir + "/blinking_lights_v2.hex")) << t.run().output().toStdString();
    EXPECT_FALSE(t.run().output().contains('~'));
    EXPECT_EQ(CompilerScreen::find()->windowTitle(), "Compiler Output - Auto Close in: 5 Secs - Esc to Cancel");

    // Status 2 and no error line: the screen stays too.
    t.doc()->View->SetText("exit 2\r\n");
    ASSERT_TRUE(t.compileAndWait());
    EXPECT_FALSE(t.run().hasErrorLine());
    EXPECT_EQ(t.run().exitStatus(), 2);
    EXPECT_EQ(CompilerScreen::find()->windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_TRUE(CompilerScreen::find()->CompilerOutput->Text().endsWith("All Rights Reserved.\r\nexit status 2\r\n"));
    EXPECT_TRUE(t.w.prompts.boxes.empty());
}

TEST(WineCompile, MessagesNamingShortDosPathsLeadToTheUsersFilesAndTheAsmErrorToItsBasicLine) {
    const TestWinePrefix prefix;
    if (const QString why = wineTestBlocker(prefix); !why.isEmpty())
        GTEST_SKIP() << why.toStdString();
    // An INCLUDEd file in a folder of long names beside the source, one on the prefix's C: drive.
    const QString onC = qEnvironmentVariable("WINEPREFIX") + "/drive_c/qb test inc/long library name.bas";
    ASSERT_TRUE(writeFile(onC, ""));
    WineFrame t("messages\r\nINCLUDE \"include dir/long include name.pbp\"\r\n"
                "INCLUDE \"C:\\qb test inc\\long library name.bas\"\r\nHIGH PORTB.0\r\nGOTO nowhere\r\n",
                fakeProgram("fakepbp.exe"), "led work/blinking_lights_v2.pbp");
    const QString dir = t.w.file("led work"), source = dir + "/blinking_lights_v2.pbp";
    const QString include = t.w.write("led work/include dir/long include name.pbp", "' x\r\n");
    // Other names that could bear the aliases: wine is asked which one does.
    t.w.write("led work/blinking_other.pbp", "' x\r\n");
    t.w.write("led work/include dir/long other name.pbp", "' x\r\n");
    ASSERT_TRUE(t.compileAndWait());
    const QStringList lines = t.run().outputLines();
    // The compiler named them by their short forms.
    EXPECT_EQ(lines.filter("~").size(), 2) << t.run().output().toStdString();
    std::vector<std::tuple<S, QString, int, QString, int>> got;
    for (const CompileMessage& m : t.run().messages()) {
        got.push_back({m.severity, m.file, m.line, m.asmFile, m.asmLine});
        EXPECT_TRUE(lines.value(m.outputLine).startsWith(m.severity == S::Error ? "Error[113] " : "WARNING Line 1: "));
    }
    // The .ASM line 11 is the code of the source's fifth line.
    const std::vector<std::tuple<S, QString, int, QString, int>> want{
        {S::Warning, include, 1, {}, 0},
        {S::Warning, QFileInfo(onC).canonicalFilePath(), 1, {}, 0},
        {S::Error, source, 5, dir + "/blinking_lights_v2.asm", 11}};
    EXPECT_EQ(got, want) << t.run().output().toStdString();
}

TEST(WineCompile, A32BitCompilerWhereWineRunsOnly64BitOnesIsRefusedBeforeItRuns) {
    const QString fake32 = fakeProgram("fakepbp32.exe"), wine = wineProgram();
    if (fake32.isEmpty() || wine.isEmpty())
        GTEST_SKIP() << "no 32-bit MinGW or no wine";
    if (wineRuns32Bit(wine))
        GTEST_SKIP() << "32-bit Wine is installed here: the compiler would run";
    WineFrame t("x\r\n", fake32);
    t.click(ToolId::Compile);
    ASSERT_EQ(t.boxTexts(), QStringList{wine32MissingMessage(t.compiler)});
    EXPECT_EQ(t.w.prompts.boxes[0].icon, Icon::Critical);
    EXPECT_TRUE(t.boxTexts()[0].contains(
        "sudo dpkg --add-architecture i386 && sudo apt update && sudo apt install wine32"));
    EXPECT_FALSE(QFileInfo::exists(t.w.file("runpb.sh")));
    EXPECT_FALSE(t.run().CheckFile.isActive());
    EXPECT_TRUE(t.modals.isEmpty());
    // A 32-bit programmer is refused the same way, also with no token in its template.
    saveSetting(Key::ProgrammerType, "3");
    saveSetting(Key::ProgrammerPathNameOther, t.compiler);
    saveSetting(Key::ProgrammerCommandLineOptionsOther, "-x");
    t.click(ToolId::Epic);
    EXPECT_EQ(t.boxTexts().last(), "Error! \r\r" + wine32MissingMessage(t.compiler));
}

TEST(WineCompile, WithoutWineOneMessageAndNoCompile) {
    // Any PE image will do: wine never runs.
    QTemporaryDir tmp;
    WineFrame t("x\r\n", writeProgram(tmp.filePath("pe.exe"), peHead()));
    globals().launcher = &t.w.launcher;
    {
        const ScopedEnv noWine("PATH", "/nonexistent-dir");
        t.click(ToolId::Compile);
    }
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.w.prompts.boxes[0].text, wineMissingMessage(t.compiler));
    EXPECT_EQ(t.w.prompts.boxes[0].icon, Icon::Critical);
    EXPECT_TRUE(t.w.launcher.launches.empty());
    EXPECT_FALSE(QFileInfo::exists(t.w.file("runpb.sh")));
    EXPECT_FALSE(t.run().CheckFile.isActive());
    EXPECT_TRUE(t.modals.isEmpty());
}

TEST(WineProgrammer, AWindowsProgrammerGetsWindowsPathsForEveryToken) {
    const TestWinePrefix prefix;
    if (const QString why = wineTestBlocker(prefix); !why.isEmpty())
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
