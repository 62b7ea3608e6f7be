// The compile windows: the compiler options dialog and the compiler output screen.
#include "compile/CompilerScreen.h"
#include "compile/frmCompile.h"
#include "document/SourceView.h"
#include "shell/Globals.h"
#include "shell/MDIMain.h"
#include "shell/Settings.h"
#include "statusbar/cNoStatusBar.h"
#include "support/Doubles.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QSettings>
#include <gtest/gtest.h>

namespace {
constexpr int kEsc = 27;
const QString kReady = QStringLiteral("Compiler Output - Esc to Close");

class CompileWindowsTest : public ::testing::Test {
protected:
    TestWorld w;
    MDIMain frame{QString()};  // the first loaded window, which owns the output screen

    void TearDown() override {
        if (CompilerScreen* s = CompilerScreen::find())
            s->close();
        flushDeletes();
    }
    static void flushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    static QString counting(const char* n) {
        return QStringLiteral("Compiler Output - Auto Close in: %1 Secs - Esc to Cancel").arg(n);
    }
    // What the INI file holds, as "Section/Key=value", sorted.
    QStringList stored() const {
        const QSettings ini(settingsFilePath(), QSettings::IniFormat);
        QStringList entries;
        for (const QString& key : ini.allKeys())
            entries << key + "=" + ini.value(key).toString();
        entries.sort();
        return entries;
    }
};
}  // namespace

TEST_F(CompileWindowsTest, OkStoresTheSelectedCompilersKeysAndTheCommonThreeOnly) {
    frmCompile dlg(frame);
    dlg.Compiler->setCurrentIndex(1);
    dlg.CompilerPath->setText("/nowhere/PBC.EXE");  // a missing compiler is accepted
    dlg.CommandOptions->setText("-v");
    dlg.cbDoswindow->setChecked(false);
    dlg.SecScroll->setValue(17);
    EXPECT_EQ(dlg.AutoClose->text(), "Auto Close Compiler Output Screen in: 17 Secs");
    EXPECT_TRUE(stored().isEmpty()) << "the scroll bar alone stores nothing";
    dlg.cmdOK_Click();

    EXPECT_EQ(stored(), QStringList({"Startup/AutoCloseCW=1", "Startup/AutoCloseCWTime=17",
                                     "Startup/CompilerCommandLineOptions1=-v",
                                     "Startup/CompilerPathName1=/nowhere/PBC.EXE", "Startup/CompilerType=1",
                                     "Startup/DosWindow=0"}));
    frmCompile again(frame);  // shows what was stored
    EXPECT_EQ(again.CompilerPath->text(), "/nowhere/PBC.EXE");
    EXPECT_EQ(again.AutoClose->text(), "Auto Close Compiler Output Screen in: 17 Secs");
}

TEST_F(CompileWindowsTest, OkSwitchesTheCompilerKindAndPanelCancelChangesNothing) {
    frame.show();  // the status bar comes with the frame's load
    ASSERT_TRUE(frame.m_cSBar);
    auto open = [&](int compiler, bool ok) {
        frmCompile dlg(frame);
        dlg.Compiler->setCurrentIndex(compiler);
        dlg.CommandOptions->setText("-ampasm");
        ok ? dlg.cmdOK_Click() : dlg.cmdExit_Click();
        EXPECT_EQ(dlg.CommandOptions->text(), ok ? "-ampasm -oq" : "-ampasm");
    };
    open(1, false);
    EXPECT_TRUE(globals().UsePBP);
    EXPECT_EQ(frame.m_cSBar->PanelText(3), "PBP");
    EXPECT_TRUE(stored().isEmpty());
    open(1, true);
    EXPECT_FALSE(globals().UsePBP);
    EXPECT_EQ(frame.m_cSBar->PanelText(3), "PBC");
    open(0, true);
    EXPECT_TRUE(globals().UsePBP);
    EXPECT_EQ(frame.m_cSBar->PanelText(3), "PBP");
    EXPECT_EQ(setting(Key::CompilerCommandLineOptions), "-ampasm -oq");
    EXPECT_EQ(setting(Key::CompilerCommandLineOptions1), "-ampasm -oq") << "the other kind's keys stay";
}

TEST_F(CompileWindowsTest, BrowseCopiesAChosenFileCancelIsSilentAnEmptyNameComplains) {
    frmCompile dlg(frame);
    frame.openSave().CancelError = true;
    w.prompts.files = {QString("/opt/pbp/PBPW.EXE"), std::nullopt, QString()};
    dlg.Browse_Click();
    EXPECT_EQ(dlg.CompilerPath->text(), "/opt/pbp/PBPW.EXE");
    dlg.Browse_Click();
    EXPECT_TRUE(w.prompts.boxes.empty());
    dlg.Browse_Click();
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_EQ(w.prompts.boxes[0].text, "No filename entered.");
    EXPECT_EQ(w.prompts.boxes[0].title, "File Error");
    EXPECT_EQ(dlg.CompilerPath->text(), "/opt/pbp/PBPW.EXE");
}

TEST_F(CompileWindowsTest, CountdownShowsFiveToOneThenClosesAtZero) {
    CompilerScreen& s = CompilerScreen::instance();
    EXPECT_EQ(&CompilerScreen::instance(), &s);
    EXPECT_EQ(s.windowTitle(), kReady);
    QPointer<CompilerScreen> alive(&s);
    s.startCountdown("5");
    EXPECT_EQ(s.windowTitle(), counting("5"));
    for (const char* n : {"4", "3", "2", "1"}) {
        s.CompileScreenTimer_Timer();
        EXPECT_EQ(s.windowTitle(), counting(n));
    }
    s.CompileScreenTimer_Timer();
    EXPECT_EQ(CompilerScreen::find(), nullptr);
    EXPECT_FALSE(s.CompileScreenTimer.isActive());
    flushDeletes();
    EXPECT_TRUE(alive.isNull());
}

TEST_F(CompileWindowsTest, ATagBelowOneCountsNegativeFirstEscCancelsSecondCloses) {
    CompilerScreen& s = CompilerScreen::instance();
    s.show();
    s.startCountdown("0");
    s.CompileScreenTimer_Timer();
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Auto Close in:-1 Secs - Esc to Cancel");
    s.CompilerOutput_KeyDown('A', 0);
    EXPECT_TRUE(s.CompileScreenTimer.isActive()) << "other keys do nothing";
    // The key reaches the screen through the control's own event.
    emit s.CompilerOutput->KeyDown(kEsc, 0);
    EXPECT_FALSE(s.CompileScreenTimer.isActive());
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_EQ(CompilerScreen::find(), &s);
    emit s.CompilerOutput->KeyDown(kEsc, 0);
    EXPECT_FALSE(s.isVisible());
    EXPECT_EQ(CompilerScreen::find(), nullptr);
}

TEST_F(CompileWindowsTest, EscWhileWaitingClosesAndTheNextUseGetsAFreshWindow) {
    CompilerScreen& first = CompilerScreen::instance();
    first.show();
    first.CompilerOutput->SetText("Compiling Please Wait.....");
    first.CompilerOutput_KeyDown(kEsc, 0);
    EXPECT_FALSE(first.isVisible());
    CompilerScreen& second = CompilerScreen::instance();
    EXPECT_NE(&second, &first);
    EXPECT_EQ(second.windowTitle(), kReady);
    EXPECT_FALSE(second.CompileScreenTimer.isActive());
    EXPECT_TRUE(second.CompilerOutput->Text().isEmpty());
    EXPECT_EQ(CompilerScreen::find(), &second);
}
