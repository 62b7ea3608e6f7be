// A compile from the Compile tool to the output screen, with the real gpasm and with a fake compiler.
#include "RunningFrame.h"

#include "compile/frmCompile.h"

#include <QTemporaryDir>

const QString kGpasm = QStringLiteral("/usr/bin/gpasm");

TEST(Compile, GoodSourceWithRealGpasmWritesItsHexAndCountsDown) {
    if (!QFileInfo::exists(kGpasm))
        GTEST_SKIP() << "gpasm is not installed";
    CompileFrame t("\tlist p=16f84a\n\torg 0\n\tgoto start\nstart\tbsf 3,5\n\tend\n", kGpasm);
    t.click("ID_Compile");
    ASSERT_NE(CompilerScreen::find(), nullptr);
    EXPECT_TRUE(t.screen().isVisible());
    EXPECT_EQ(t.screen().CompilerOutput->Text(), "Compiling Please Wait.....");
    EXPECT_TRUE(t.run().CheckFile.isActive());
    ASSERT_TRUE(t.waitAndTick());
    EXPECT_FALSE(t.run().CheckFile.isActive());
    // The handle stays, its process group is gone.
    ASSERT_NE(globals().CompileProcess, nullptr);
    EXPECT_FALSE(globals().CompileProcess->running());
    EXPECT_EQ(t.screen().windowTitle(), "Compiler Output - Auto Close in: 5 Secs - Esc to Cancel");
    EXPECT_TRUE(t.screen().CompileScreenTimer.isActive());
    EXPECT_TRUE(QFileInfo::exists(t.w.file("my 'led' work/blink.hex")));
    EXPECT_TRUE(t.screen().CompilerOutput->Text().contains("Warning"));
    EXPECT_EQ(t.screen().CompilerOutput->document().PathName(), t.w.file("temp.dat"));
    EXPECT_EQ(t.f->PBPVersion(), "") << "no compiler banner";
    EXPECT_TRUE(t.w.prompts.boxes.empty());
}

TEST(Compile, AnErrorLineFromRealGpasmKeepsTheScreen) {
    if (!QFileInfo::exists(kGpasm))
        GTEST_SKIP() << "gpasm is not installed";
    CompileFrame t("\torg 0\n\tgoto nowhere\n\tend\n", kGpasm);
    t.click("ID_Compile");
    ASSERT_TRUE(t.waitAndTick());
    EXPECT_EQ(t.screen().windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_FALSE(t.screen().CompileScreenTimer.isActive());
    EXPECT_TRUE(t.screen().CompilerOutput->Text().contains("Error[113]"));
}

TEST(Compile, FakeCompilerBannerAndArguments) {
    QTemporaryDir scratch;  // a place for the fake compiler, outside the frame's world
    const QString fake = writeProgram(scratch.filePath("pbp tools/PBPW"),
                                      "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$(dirname \"$0\")/args.txt\"\n"
                                      "echo 'PICBASIC PRO(TM) Compiler 2.60, (c) 1998, 2009 x'\n");
    CompileFrame t("HIGH PORTB.0\n", fake);
    saveSetting(Key::CompilerCommandLineOptions, "  -ampasm -oq ");
    saveSetting(Key::AutoCloseCW, "0");
    t.click("ID_Compile");
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
        t.click("ID_Compile");
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
    t.click("ID_Compile");
    EXPECT_EQ(t.boxTexts(), QStringList{"Error! Invalid Path or File Name: /no/such/PBPW.EXE\rIf problem persists "
                                        "contact Velnor Systems at 555-201-0142"});
    EXPECT_EQ(t.w.prompts.boxes[0].icon, Icon::Critical);
    EXPECT_EQ(t.modals, QStringList{"Compiler Options"});
    // A kind that is neither 0 nor 1 opens the options without a message.
    saveSetting(Key::CompilerType, "2");
    t.click("ID_Compile");
    EXPECT_EQ(t.modals.size(), 2);
    saveSetting(Key::CompilerType, "0");
    saveSetting(Key::CompilerPathName, "/bin/true");
    ASSERT_TRUE(QDir().mkpath(t.w.file("runpb.sh")));  // the script can't be written
    t.click("ID_Compile");
    QDir(t.w.file("runpb.sh")).removeRecursively();
    saveSetting(Key::DosWindow, "yes");
    t.click("ID_Compile");
    t.f->deviceCombo().Clear();
    t.click("ID_Compile");
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
    t.click("ID_Compile");
    ASSERT_EQ(t.w.launcher.launches.size(), 1u);
    EXPECT_EQ(t.w.launcher.launches[0].kind, LaunchRecord::Terminal);
    EXPECT_EQ(t.lastBox().text, "Unable to launch application.");
    EXPECT_TRUE(t.run().CheckFile.isActive());
    EXPECT_EQ(globals().CompileProcess, nullptr);
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
