// A compile from the Compile tool to the output screen, with the real gpasm and with a fake compiler.
#include "RunningFrame.h"

#include "compile/frmCompile.h"

#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

const QString kGpasm = QStringLiteral("/usr/bin/gpasm");

TEST(Compile, GoodSourceWithRealGpasmWritesItsHexAndCountsDown) {
    if (!QFileInfo::exists(kGpasm))
        GTEST_SKIP() << "gpasm is not installed";
    CompileFrame t("\tlist p=16f84a\n\torg 0\n\tgoto start\nstart\tbsf 3,5\n\tend\n", kGpasm);
    t.click(ToolId::Compile);
    ASSERT_NE(CompilerScreen::find(), nullptr);
    EXPECT_TRUE(t.screen().isVisible());
    EXPECT_EQ(t.screen().CompilerOutput->Text(), "Compiling Please Wait.....");
    EXPECT_TRUE(t.run().CheckFile.isActive());
    ASSERT_TRUE(t.waitAndTick());
    EXPECT_FALSE(t.run().CheckFile.isActive());
    // The handle stays, its process group is gone.
    ASSERT_NE(t.run().process(), nullptr);
    EXPECT_FALSE(t.run().process()->running());
    EXPECT_EQ(t.screen().windowTitle(), "Compiler Output - Auto Close in: 5 Secs - Esc to Cancel");
    EXPECT_TRUE(t.screen().CompileScreenTimer.isActive());
    EXPECT_TRUE(QFileInfo::exists(t.w.file("my 'led' work/blink.hex")));
    EXPECT_TRUE(t.screen().CompilerOutput->Text().contains("Warning"));
    EXPECT_EQ(t.screen().CompilerOutput->document().PathName(), t.w.file("temp.dat"));
    EXPECT_EQ(t.f->PBPVersion(), "") << "no compiler banner";
    EXPECT_TRUE(t.w.prompts.boxes.empty());
}

TEST(Compile, AnErrorLineFromRealGpasmKeepsTheScreenAndItsMessagesLeadToTheAsmLines) {
    if (!QFileInfo::exists(kGpasm))
        GTEST_SKIP() << "gpasm is not installed";
    CompileFrame t("\tlist p=16f84a\n\torg 0\n\tgoto nowhere\n\tmovwf 0x100\n\tbanksel 0x80\n\tmovwf 0x85\n"
                   "\tbogus x\n\tend\n",
                   kGpasm);
    t.click(ToolId::Compile);
    ASSERT_TRUE(t.waitAndTick());
    EXPECT_EQ(t.screen().windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_FALSE(t.screen().CompileScreenTimer.isActive());
    EXPECT_TRUE(t.screen().CompilerOutput->Text().contains("Error[113]"));
    // gpasm ends with 1 after an error: both signs, each kept on its own.
    EXPECT_TRUE(t.run().hasErrorLine() && t.run().failed());
    EXPECT_EQ(t.run().exitStatus(), 1);
    EXPECT_TRUE(t.screen().CompilerOutput->Text().endsWith("\nexit status 1\n"));
    // The device the compile hands over supersedes the source's: a warning at line 1.
    using S = CompileMessage::Severity;
    std::vector<std::pair<S, int>> places;
    for (const CompileMessage& m : t.run().messages()) {
        places.push_back({m.severity, m.line});
        EXPECT_EQ(m.file, t.w.file("my 'led' work/blink.asm"));
        EXPECT_TRUE(m.asmFile.isEmpty());
        EXPECT_TRUE(t.run().outputLines().value(m.outputLine).endsWith(m.text.mid(m.text.indexOf(' ') + 1)));
    }
    EXPECT_EQ(places, (std::vector<std::pair<S, int>>{
                          {S::Warning, 1}, {S::Error, 3}, {S::Warning, 4}, {S::Note, 6}, {S::Error, 7}}));
    EXPECT_EQ(t.run().messages().at(1).text, "[113] Symbol not previously defined: \"nowhere\"");
}

TEST(Compile, ACompilerThatFailsWithoutAnErrorLineKeepsTheScreenAndSaysItsStatus) {
    QTemporaryDir scratch;
    struct Case {
        const char* name;
        QByteArray program;
        int status;
        QString says;  // in the output, before the status line
    };
    const Case cases[] = {
        {"quiet", "#!/bin/sh\necho 'PICBASIC PRO(TM) Compiler 3.1, done'\nexit 2\n", 2, "done"},
        {"not executable", "PBPW\n", 126, "Permission denied"},
        {"bad interpreter", "#!/no/such/interpreter\n", 127, "not found"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QString compiler = writeProgram(scratch.filePath(QString(c.name) + "/PBPW"), c.program);
        if (c.status == 126)
            QFile::setPermissions(compiler, QFile::ReadOwner | QFile::WriteOwner);
        CompileFrame t("x\n", compiler);
        t.click(ToolId::Compile);
        ASSERT_TRUE(t.waitAndTick());
        EXPECT_EQ(t.screen().windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
        EXPECT_FALSE(t.screen().CompileScreenTimer.isActive());
        EXPECT_FALSE(t.run().hasErrorLine());
        EXPECT_TRUE(t.run().failed());
        EXPECT_EQ(t.run().exitStatus(), c.status);
        const QStringList shown = t.screen().CompilerOutput->Text().split('\n');
        EXPECT_EQ(shown.mid(shown.size() - 2), QStringList({"exit status " + QString::number(c.status), ""}));
        EXPECT_TRUE(t.run().output().contains(c.says)) << t.run().output().toStdString();
        EXPECT_FALSE(t.run().output().contains("exit status"));
        EXPECT_EQ(!t.screen().cmdCheckSetup->isHidden(), c.status >= 126) << "one that can't run offers the check";
        EXPECT_TRUE(t.w.prompts.boxes.empty());
    }
}

TEST(Compile, TheOutputScreenLearnsTheStatusOfACompileInATerminal) {
    QTemporaryDir scratch;
    for (int status : {0, 3}) {
        SCOPED_TRACE(status);
        const QString compiler = writeProgram(scratch.filePath(QString::number(status) + "/PBPW"),
                                              "#!/bin/sh\necho compiled\nexit " + QByteArray::number(status) + "\n");
        CompileFrame t("x\n", compiler, false);
        saveSetting(Key::DosWindow, "0");
        t.click(ToolId::Compile);
        ASSERT_EQ(t.w.launcher.launches.size(), 1u);
        ASSERT_EQ(t.w.launcher.launches[0].kind, LaunchRecord::Terminal);
        // The terminal runs the script as it was handed over, and nobody waits for its end.
        QProcess terminal;
        terminal.start("/bin/sh", {t.w.launcher.launches[0].program});
        ASSERT_TRUE(terminal.waitForFinished(30000));
        EXPECT_EQ(terminal.readAllStandardOutput(),
                  "Compiling.... Please Wait.\ncompiled\n" + QByteArray(status ? "exit status 3\n" : ""));
        t.run().CheckFile_Timer();
        EXPECT_EQ(t.run().exitStatus(), status);
        EXPECT_EQ(t.run().failed(), status != 0);
        EXPECT_EQ(t.screen().CompileScreenTimer.isActive(), status == 0);
        EXPECT_EQ(t.screen().CompilerOutput->Text(), status ? "compiled\nexit status 3\n" : "compiled\n");
    }
}

TEST(Compile, FakeCompilerBannerAndArguments) {
    QTemporaryDir scratch;  // a place for the fake compiler, outside the frame's world
    const QString fake = writeProgram(scratch.filePath("pbp tools/PBPW"),
                                      "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$(dirname \"$0\")/args.txt\"\n"
                                      "echo 'PICBASIC PRO(TM) Compiler 2.60, (c) 1998, 2009 x'\n");
    CompileFrame t("HIGH PORTB.0\n", fake);
    saveSetting(Key::CompilerCommandLineOptions, "  -ampasm -oq ");
    saveSetting(Key::AutoCloseCW, "0");
    t.click(ToolId::Compile);
    ASSERT_TRUE(t.waitAndTick());
    EXPECT_EQ(t.f->PBPVersion(), "PICBASIC PRO(TM) COMPILER 2.60, ");
    EXPECT_EQ(t.screen().windowTitle(), "Compiler Output - Esc to Close") << "AutoCloseCW 0: no countdown";
    EXPECT_EQ(QString::fromUtf8(readFile(scratch.filePath("pbp tools/args.txt"))).split('\n', Qt::SkipEmptyParts),
              QStringList({"-ampasm", "-oq", "-p16F84A", t.w.file("my 'led' work/blink.asm")}));
}

TEST(Compile, TheThirtiethTickTimesOutEvenWhenItFindsTheOutput) {
    for (bool outputAtLastTick : {false, true}) {
        SCOPED_TRACE(outputAtLastTick);
        CompileFrame t("x\n", "/bin/true", false);  // the fake launcher starts nothing
        t.click(ToolId::Compile);
        ASSERT_EQ(t.w.launcher.launches.size(), 1u);
        EXPECT_EQ(t.w.launcher.launches[0].kind, LaunchRecord::Hidden);
        for (int i = 0; i < 29; ++i)
            t.run().CheckFile_Timer();
        EXPECT_TRUE(t.run().CheckFile.isActive());
        EXPECT_TRUE(t.w.prompts.boxes.empty());
        if (outputAtLastTick)
            t.w.write("temp.dat", "PICBASIC PRO(TM) COMPILER 3.1, late\n");
        t.run().CheckFile_Timer();
        EXPECT_FALSE(t.run().CheckFile.isActive());
        ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
        EXPECT_EQ(t.w.prompts.boxes[0].text, "Compile Timeout...");
        EXPECT_EQ(t.w.prompts.boxes[0].icon, Icon::Information);
        EXPECT_EQ(t.screen().CompilerOutput->Text().startsWith("PICBASIC PRO"), outputAtLastTick);
    }
}

TEST(Compile, FailuresAreReportedWithTheirStep) {
    CompileFrame t("x\n", "/no/such/PBPW.EXE", false);
    t.click(ToolId::Compile);
    EXPECT_EQ(t.boxTexts(), QStringList{"Error! Invalid Path or File Name: /no/such/PBPW.EXE\rIf problem persists "
                                        "contact Velnor Systems at 555-201-0142"});
    EXPECT_EQ(t.w.prompts.boxes[0].icon, Icon::Critical);
    EXPECT_EQ(t.modals, QStringList{"Compiler Options"});
    // A kind that is neither 0 nor 1 opens the options without a message.
    saveSetting(Key::CompilerType, "2");
    t.click(ToolId::Compile);
    EXPECT_EQ(t.modals.size(), 2);
    saveSetting(Key::CompilerType, "0");
    saveSetting(Key::CompilerPathName, "/bin/true");
    ASSERT_TRUE(QDir().mkpath(t.w.file("runpb.sh")));  // the script can't be written
    t.click(ToolId::Compile);
    QDir(t.w.file("runpb.sh")).removeRecursively();
    saveSetting(Key::DosWindow, "yes");
    t.click(ToolId::Compile);
    t.f->deviceCombo().Clear();
    t.click(ToolId::Compile);
    EXPECT_TRUE(t.w.launcher.launches.empty());
    const QStringList texts = t.boxTexts().mid(1);
    ASSERT_EQ(texts.size(), 3);
    EXPECT_TRUE(texts[0].startsWith("GoCompile Error:75") && texts[0].endsWith(" Line: 80")) << texts[0].toStdString();
    EXPECT_TRUE(texts[1].startsWith("GoCompile Error:13") && texts[1].endsWith(" Line: 120")) << texts[1].toStdString();
    EXPECT_EQ(texts[2], "GoCompile Error:380Invalid property value Line: 90");
    // A terminal that cannot be started: said so, and the wait goes on.
    t.f->GetDevices();
    saveSetting(Key::DosWindow, "0");
    t.w.launcher.failTerminal = true;
    t.click(ToolId::Compile);
    ASSERT_EQ(t.w.launcher.launches.size(), 1u);
    EXPECT_EQ(t.w.launcher.launches[0].kind, LaunchRecord::Terminal);
    EXPECT_EQ(t.lastBox().text, "Unable to launch application.\r\ra terminal ($TERMINAL, x-terminal-emulator or xterm) for " + t.w.file("runpb.sh"));
    EXPECT_TRUE(t.run().CheckFile.isActive());
    EXPECT_EQ(t.run().process(), nullptr);
}

TEST(Compile, OptionsSwitchRefiltersTheDeviceListAndKeepsTheIndex) {
    CompileFrame t("x\n", "/bin/true", false);
    DeviceCombo& combo = t.f->deviceCombo();
    auto chooseCompiler = [&](int index) {
        frmCompile dlg(*t.f);
        dlg.setCompilerIndex(index);
        dlg.cmdOK_Click();
    };
    ASSERT_EQ(combo.ListCount(), 3);
    combo.SetListIndex(1);
    chooseCompiler(1);
    EXPECT_EQ(combo.ListCount(), 2);
    EXPECT_EQ(combo.ListIndex(), 1);
    // An index past PicBasic's shorter list leaves no selection, which a compile repairs.
    chooseCompiler(0);
    combo.SetListIndex(2);
    chooseCompiler(1);
    EXPECT_EQ(combo.ListIndex(), -1);
}

namespace {

// A compiler that waits until a flag file beside its source appears, then names the source and prints it.
const QByteArray kWaitingCompiler = "#!/bin/sh\nfor a; do src=$a; done\n"
                                    "while [ ! -e \"$src.go\" ]; do sleep 0.02; done\n"
                                    "echo \"output of $(basename \"$src\")\"\ncat \"$src\"\n";
const QString kWaiting = QStringLiteral("Compiling Please Wait.....");
const QString kCounting = QStringLiteral("Compiler Output - Auto Close in: 5 Secs - Esc to Cancel");

// Lets a waiting compiler of the document go on.
void release(frmEditor* d) { writeProgram(d->Caption() + ".go", ""); }

// Two documents in their own folders, the first with an error line, both compiled by the waiting compiler.
struct TwoDocuments {
    QTemporaryDir scratch;
    CompileFrame t{"ERROR in first\n", writeProgram(scratch.filePath("PBPW"), kWaitingCompiler), true, "a/first.pbp"};
    frmEditor* first = t.doc();
    frmEditor* second = [this] {
        t.openFile(t.w.write("b/second.pbp", "all fine\n"));
        return t.doc();
    }();
};

}  // namespace

TEST(CompileSession, TwoDocumentsCompilingAtOnceKeepTheirOwnFilesOutputDecisionAndScreen) {
    TwoDocuments two;
    CompileFrame& t = two.t;
    frmEditor *first = two.first, *second = two.second;
    ASSERT_NE(first, second);
    CompileSession& a = t.compile(first);
    CompileSession& b = t.compile(second);
    QSignalSpy aEnded(&a, &CompileSession::ended), bEnded(&b, &CompileSession::ended);
    ASSERT_TRUE(a.running() && b.running());
    // The first keeps today's names; the second its own, in a script written for it.
    EXPECT_EQ(QStringList({a.scriptFile(), a.outputFile(), b.scriptFile(), b.outputFile()}),
              QStringList({t.w.file("runpb.sh"), t.w.file("temp.dat"), t.w.file("runpb2.sh"), t.w.file("temp2.dat")}));
    EXPECT_EQ(readFile(b.scriptFile()), runpbSh(b.inputs()));
    EXPECT_EQ(b.inputs().D, second->Caption());
    ASSERT_TRUE(a.screen() && b.screen());
    EXPECT_NE(a.screen(), b.screen());
    EXPECT_EQ(b.screen()->pos() - a.screen()->pos(), QPoint(28, 28)) << "the second doesn't hide the first";
    EXPECT_EQ(a.screen(), CompilerScreen::find()) << "the first compile has the one screen of a single compile";
    EXPECT_EQ(b.screen()->CompilerOutput->Text(), kWaiting);

    // The Compile tool rests while the active document's compile runs, and only then.
    EXPECT_FALSE(t.enabled(ToolId::Compile));

    // The second finishes first, without an error line: its screen counts down, the first still waits.
    release(second);
    ASSERT_TRUE(waitFor([&] { return !b.running(); }));
    EXPECT_TRUE(t.enabled(ToolId::Compile));
    t.f->mdiArea()->setActiveSubWindow(first->subWindow());
    EXPECT_FALSE(t.enabled(ToolId::Compile));
    EXPECT_EQ(b.outcome(), CompileSession::Outcome::OutputFound);
    EXPECT_EQ(b.outputLines(), QStringList({"output of second.pbp", "all fine"}));
    EXPECT_FALSE(b.hasErrorLine());
    EXPECT_EQ(b.exitStatus(), 0);
    EXPECT_EQ(b.screen()->CompilerOutput->Text(), b.output());
    EXPECT_EQ(b.screen()->windowTitle(), kCounting);
    EXPECT_TRUE(a.running());
    EXPECT_EQ(a.screen()->CompilerOutput->Text(), kWaiting);
    EXPECT_EQ(QList<int>({int(aEnded.count()), int(bEnded.count())}), QList<int>({0, 1}));

    // Then the first, with one: its screen stays; the second's keeps counting with its own text.
    release(first);
    ASSERT_TRUE(waitFor([&] { return !a.running(); }));
    EXPECT_TRUE(t.enabled(ToolId::Compile));
    EXPECT_EQ(a.outputLines(), QStringList({"output of first.pbp", "ERROR in first"}));
    EXPECT_TRUE(a.hasErrorLine());
    EXPECT_EQ(a.screen()->CompilerOutput->Text(), a.output());
    EXPECT_EQ(a.screen()->windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_FALSE(a.screen()->CompileScreenTimer.isActive());
    EXPECT_EQ(b.screen()->CompilerOutput->Text(), b.output());
    EXPECT_TRUE(b.screen()->CompileScreenTimer.isActive());
    EXPECT_EQ(QList<int>({int(aEnded.count()), int(bEnded.count())}), QList<int>({1, 1}));
    EXPECT_TRUE(t.w.prompts.boxes.empty());
}

TEST(CompileSession, OneAfterTheOtherTheScreenPassesOnAndARecompileOrACloseEndsTheWait) {
    TwoDocuments two;
    CompileFrame& t = two.t;
    frmEditor *first = two.first, *second = two.second;
    release(first);
    release(second);
    CompileSession& a = t.compile(first);
    ASSERT_TRUE(waitFor([&] { return !a.running(); }));
    CompilerScreen* shared = a.screen();
    ASSERT_NE(shared, nullptr);
    // The next compile takes the screen over and the files back; the first keeps what it found.
    CompileSession& b = t.compile(second);
    EXPECT_EQ(b.outputFile(), t.w.file("temp.dat"));
    EXPECT_EQ(b.screen(), shared);
    EXPECT_EQ(a.screen(), nullptr);
    ASSERT_TRUE(waitFor([&] { return !b.running(); }));
    EXPECT_EQ(QStringList({a.output(), b.output()}), QStringList({"output of first.pbp\nERROR in first\n",
                                                                   "output of second.pbp\nall fine\n"}));
    EXPECT_EQ(QList<bool>({a.hasErrorLine(), b.hasErrorLine()}), QList<bool>({true, false}));
    EXPECT_EQ(shared->CompilerOutput->Text(), b.output());
    EXPECT_EQ(shared->windowTitle(), kCounting);

    // A new compile of a document whose compile still runs ends that one first, process group and all.
    QFile::remove(second->Caption() + ".go");
    CompileSession& old = t.compile(second);
    QPointer<CompileSession> gone(&old);
    QSignalSpy oldEnded(&old, &CompileSession::ended);
    CompileSession& now = t.compile(second);
    EXPECT_NE(&now, &old);
    EXPECT_EQ(old.outcome(), CompileSession::Outcome::Stopped);
    EXPECT_FALSE(old.CheckFile.isActive() || old.process()->running());
    EXPECT_EQ(oldEnded.count(), 1);
    EXPECT_EQ(now.outputFile(), t.w.file("temp.dat"));
    EXPECT_EQ(CompileSession::of(*second), &now);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(gone.isNull());

    // Closing the document ends the wait; its script runs on to its end, and nobody reads the output.
    QSignalSpy nowEnded(&now, &CompileSession::ended);
    const QString flag = second->Caption() + ".go";
    ASSERT_TRUE(second->subWindow()->close());
    EXPECT_EQ(nowEnded.count(), 1);
    EXPECT_EQ(now.outcome(), CompileSession::Outcome::Stopped);
    writeProgram(flag, "");
    EXPECT_TRUE(waitFor([&] { return QFileInfo::exists(t.w.file("temp.dat")); }));
}
