// A compile from the Compile tool to the output screen, with the real gpasm and with a fake compiler.
#include "compile/CompileRun.h"
#include "compile/CompilerScreen.h"
#include "compile/frmCompile.h"
#include "statusbar/cNoStatusBar.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/PosixLauncher.h"
#include "core/Globals.h"
#include "shell/MDIMain.h"
#include "core/Settings.h"
#include "support/Doubles.h"

#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <gtest/gtest.h>

namespace {

const QString kGpasm = QStringLiteral("/usr/bin/gpasm");

struct CompileFrame {
    TestWorld w;
    PosixLauncher real;
    std::unique_ptr<MDIMain> f;
    QStringList modals;

    // The source goes into a directory with blanks and a quote in its name.
    CompileFrame(const QByteArray& source, const QString& compiler, bool realLauncher = true) {
        w.writeDeviceCatalogue();
        if (realLauncher)
            globals().launcher = &real;
        saveSetting(Key::CompilerPathName, compiler);
        const QString src = w.write("my 'led' work/blink.asm", source);
        f = std::make_unique<MDIMain>(src);
        f->modalHook = [this](QDialog& d) {
            modals << d.windowTitle();
            return 0;
        };
        f->show();
    }
    ~CompileFrame() {
        if (CompilerScreen* s = CompilerScreen::find())
            s->close();
        QDir::setCurrent(QDir::tempPath());
    }
    frmEditor& doc() { return *f->activeDocument(); }
    void compile() { f->SSActiveToolBars1_ToolClick(f->toolBars().Tools().Item("ID_Compile")); }
    // The compiler runs on its own; wait (bounded) for its output as the tick would, then tick once.
    bool waitAndTick() {
        QElapsedTimer t;
        t.start();
        while (!QFileInfo::exists(w.file("temp.dat")) && t.elapsed() < 30000)
            QThread::msleep(20);
        CompileRun::of(doc()).CheckFile_Timer();
        return QFileInfo::exists(w.file("temp.dat"));
    }
};

const QByteArray kGoodAsm = "\tlist p=16f84a\n\torg 0\n\tgoto start\nstart\tbsf 3,5\n\tend\n";
const QByteArray kBadAsm = "\torg 0\n\tgoto nowhere\n\tend\n";

}  // namespace

TEST(Compile, GoodSourceWithRealGpasmCountsDown) {
    if (!QFileInfo::exists(kGpasm))
        GTEST_SKIP() << "gpasm is not installed";
    CompileFrame t(kGoodAsm, kGpasm);
    t.compile();
    CompilerScreen* screen = CompilerScreen::find();
    ASSERT_NE(screen, nullptr);
    EXPECT_TRUE(screen->isVisible());
    EXPECT_EQ(screen->CompilerOutput->Text(), "Compiling Please Wait.....");
    EXPECT_TRUE(CompileRun::of(t.doc()).CheckFile.isActive());
    QFile script(t.w.file("runpb.sh"));
    ASSERT_TRUE(script.open(QIODevice::ReadOnly));
    EXPECT_TRUE(script.readAll().contains("-p'16F84A'"));
    ASSERT_TRUE(t.waitAndTick());
    EXPECT_FALSE(CompileRun::of(t.doc()).CheckFile.isActive());
    // The handle stays, its process group is gone.
    ASSERT_NE(globals().CompileProcess, nullptr);
    EXPECT_FALSE(globals().CompileProcess->running());
    EXPECT_EQ(screen->windowTitle(), "Compiler Output - Auto Close in: 5 Secs - Esc to Cancel");
    EXPECT_TRUE(screen->CompileScreenTimer.isActive());
    // gpasm wrote its hex file beside the source, and the output is on the screen.
    EXPECT_TRUE(QFileInfo::exists(t.w.file("my 'led' work/blink.hex")));
    EXPECT_TRUE(screen->CompilerOutput->Text().contains("Warning"));
    EXPECT_EQ(screen->CompilerOutput->document().PathName(), t.w.file("temp.dat"));
    // No compiler banner: the about box text is untouched.
    EXPECT_EQ(t.f->PBPVersion(), "");
    EXPECT_TRUE(t.w.prompts.boxes.empty());
}

TEST(Compile, ErrorLineKeepsTheScreen) {
    if (!QFileInfo::exists(kGpasm))
        GTEST_SKIP() << "gpasm is not installed";
    CompileFrame t(kBadAsm, kGpasm);
    t.compile();
    ASSERT_TRUE(t.waitAndTick());
    CompilerScreen* screen = CompilerScreen::find();
    ASSERT_NE(screen, nullptr);
    EXPECT_EQ(screen->windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_FALSE(screen->CompileScreenTimer.isActive());
    EXPECT_TRUE(screen->CompilerOutput->Text().contains("Error[113]"));
}

TEST(Compile, FakeCompilerBannerAndArguments) {
    TestWorld scratch;  // a place for the fake compiler, outside the frame's world
    const QString fake = scratch.write("pbp tools/PBPW", "#!/bin/sh\n"
                                                         "printf '%s\\n' \"$@\" > \"$(dirname \"$0\")/args.txt\"\n"
                                                         "echo 'PICBASIC PRO(TM) Compiler 2.60, (c) 1998, 2009 microEngineering Labs, Inc.'\n"
                                                         "echo 'All Rights Reserved.'\n");
    QFile::setPermissions(fake, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    CompileFrame t("HIGH PORTB.0\n", fake);
    saveSetting(Key::CompilerCommandLineOptions, "  -ampasm -oq ");
    saveSetting(Key::AutoCloseCW, "0");
    t.compile();
    ASSERT_TRUE(t.waitAndTick());
    EXPECT_EQ(t.f->PBPVersion(), "PICBASIC PRO(TM) COMPILER 2.60, ");
    // AutoCloseCW 0: the title stays as created.
    EXPECT_EQ(CompilerScreen::find()->windowTitle(), "Compiler Output - Esc to Close");
    QFile args(scratch.file("pbp tools/args.txt"));
    ASSERT_TRUE(args.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(args.readAll()).split('\n', Qt::SkipEmptyParts),
              QStringList({"-ampasm", "-oq", "-p16F84A", t.w.file("my 'led' work/blink.asm")}));
}

TEST(Compile, NoOutputTimesOutAfterThirtyTicks) {
    CompileFrame t("x\n", "/bin/true", false);  // the fake launcher starts nothing
    t.compile();
    ASSERT_EQ(t.w.launcher.launches.size(), 1u);
    EXPECT_EQ(t.w.launcher.launches[0].kind, LaunchRecord::Hidden);
    for (int i = 0; i < 29; ++i)
        CompileRun::of(t.doc()).CheckFile_Timer();
    EXPECT_TRUE(CompileRun::of(t.doc()).CheckFile.isActive());
    EXPECT_TRUE(t.w.prompts.boxes.empty());
    CompileRun::of(t.doc()).CheckFile_Timer();
    EXPECT_FALSE(CompileRun::of(t.doc()).CheckFile.isActive());
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.w.prompts.boxes[0].text, "Compile Timeout...");
    EXPECT_EQ(t.w.prompts.boxes[0].icon, Icon::Information);
    // The screen stays with its waiting text until the user closes it.
    EXPECT_EQ(CompilerScreen::find()->CompilerOutput->Text(), "Compiling Please Wait.....");
}

TEST(Compile, NoUsableCompilerLeadsToTheOptions) {
    CompileFrame t("x\n", "/no/such/PBPW.EXE", false);
    t.compile();
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.w.prompts.boxes[0].text,
              "Error! Invalid Path or File Name: /no/such/PBPW.EXE\rIf problem persists contact Velnor Systems at "
              "555-201-0142");
    EXPECT_EQ(t.w.prompts.boxes[0].icon, Icon::Critical);
    EXPECT_EQ(t.modals, QStringList{"Compiler Options"});
    EXPECT_TRUE(t.w.launcher.launches.empty());
    // A kind that is neither 0 nor 1 opens the options without a message.
    saveSetting(Key::CompilerType, "2");
    t.compile();
    EXPECT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.modals.size(), 2);
}

TEST(Compile, VisibleModeAndItsFailure) {
    CompileFrame t("x\n", "/bin/true", false);
    saveSetting(Key::DosWindow, "0");
    t.w.launcher.failTerminal = true;
    t.compile();
    ASSERT_EQ(t.w.launcher.launches.size(), 1u);
    EXPECT_EQ(t.w.launcher.launches[0].kind, LaunchRecord::Terminal);
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.w.prompts.boxes[0].text, "Unable to launch application.");
    EXPECT_TRUE(CompileRun::of(t.doc()).CheckFile.isActive());
    EXPECT_EQ(globals().CompileProcess, nullptr);
    // DosWindow that isn't a number: one failure report with its step.
    saveSetting(Key::DosWindow, "yes");
    t.compile();
    EXPECT_TRUE(t.w.prompts.boxes.back().text.startsWith("GoCompile Error:13"));
    EXPECT_TRUE(t.w.prompts.boxes.back().text.endsWith(" Line: 120"));
}

TEST(Compile, OptionsSwitchRefiltersTheDeviceListAndKeepsTheIndex) {
    CompileFrame t("x\n", "/bin/true", false);
    DeviceCombo& combo = t.f->deviceCombo();
    ASSERT_EQ(combo.ListCount(), 3);
    combo.SetListIndex(1);
    {
        frmCompile dlg(*t.f);
        dlg.setCompilerIndex(1);
        dlg.cmdOK_Click();
    }
    EXPECT_FALSE(globals().UsePBP);
    EXPECT_EQ(t.f->statusBar()->PanelText(3), "PBC");
    // PicBasic's list holds only the lines with PBC; the index stays.
    EXPECT_EQ(combo.ListCount(), 2);
    EXPECT_EQ(combo.List(1), "PIC12F675");
    EXPECT_EQ(combo.ListIndex(), 1);
    // An index past PicBasic's shorter list leaves no selection, which a compile repairs.
    saveSetting(Key::CompilerType, "0");
    {
        frmCompile dlg(*t.f);
        dlg.setCompilerIndex(0);
        dlg.cmdOK_Click();
    }
    combo.SetListIndex(2);
    {
        frmCompile dlg(*t.f);
        dlg.setCompilerIndex(1);
        dlg.cmdOK_Click();
    }
    EXPECT_EQ(combo.ListCount(), 2);
    EXPECT_EQ(combo.ListIndex(), -1);
}

TEST(Compile, TheOutputFoundAtTheThirtiethTickIsShownAndStillTimesOut) {
    CompileFrame t("x\n", "/bin/true", false);  // the fake launcher starts nothing
    t.compile();
    CompileRun& run = CompileRun::of(t.doc());
    for (int i = 0; i < 29; ++i)
        run.CheckFile_Timer();
    t.w.write("temp.dat", "PICBASIC PRO(TM) COMPILER 3.1, late\n");
    run.CheckFile_Timer();
    EXPECT_FALSE(run.CheckFile.isActive());
    EXPECT_TRUE(CompilerScreen::find()->CompilerOutput->Text().startsWith("PICBASIC PRO"));
    // The last steps of a tick come at every tick, also at the one that found the output.
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.w.prompts.boxes[0].text, "Compile Timeout...");
}

TEST(Compile, FailuresAreReportedWithTheStepTheyCameAt) {
    CompileFrame t("x\n", "/bin/true", false);
    // A folder where the script goes: it can't be created.
    ASSERT_TRUE(QDir().mkpath(t.w.file("runpb.sh")));
    t.compile();
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_TRUE(t.w.prompts.boxes[0].text.startsWith("GoCompile Error:75")) << t.w.prompts.boxes[0].text.toStdString();
    EXPECT_TRUE(t.w.prompts.boxes[0].text.endsWith(" Line: 80"));
    QDir(t.w.file("runpb.sh")).removeRecursively();
    // No device to compile for: selecting the first entry of an empty list fails; nothing starts.
    t.f->deviceCombo().Clear();
    t.compile();
    ASSERT_EQ(t.w.prompts.boxes.size(), 2u);
    EXPECT_EQ(t.w.prompts.boxes[1].text, "GoCompile Error:380Invalid property value Line: 90");
    EXPECT_TRUE(t.w.launcher.launches.empty());
}
