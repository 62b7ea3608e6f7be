// The compile windows: the compiler options dialog and the compiler output screen.
#include "compile/CompileRules.h"
#include "compile/CompilerScreen.h"
#include "compile/frmCompile.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"

#include "document/SourceView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <gtest/gtest.h>

namespace {
constexpr int kEsc = 27;
const QString kReady = QStringLiteral("Compiler Output - Esc to Close");

class CompileWindowsTest : public ::testing::Test {
protected:
    TestWorld w;
    FakeFrame frame;  // the first loaded window, which owns the output screen

    void TearDown() override {
        if (CompilerScreen* s = CompilerScreen::find())
            s->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
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

TEST_F(CompileWindowsTest, OkStoresTheChosenCompilersKeysAndSetsThePanelCancelChangesNothing) {
    frame.panels[3] = "PBP";
    const QString seventeen = "Auto Close Compiler Output Screen in: 17 Secs";
    auto open = [&](int compiler, bool ok) {
        frmCompile dlg(frame);
        dlg.Compiler->setCurrentIndex(compiler);
        dlg.CompilerPath->setText(compiler ? "/nowhere/PBC.EXE" : "/nowhere/PBPW.EXE");  // missing is fine
        dlg.CommandOptions->setText("-ampasm");
        dlg.cbDoswindow->setChecked(false);
        dlg.SecScroll->setValue(17);
        EXPECT_EQ(dlg.AutoClose->text(), seventeen);
        ok ? dlg.cmdOK_Click() : dlg.cmdExit_Click();
        EXPECT_EQ(dlg.CommandOptions->text(), ok ? "-ampasm -oq" : "-ampasm");
    };
    // The status bar's compiler panel and the compiler in use.
    auto kind = [&] { return frame.panels[3] + (globals().UsePBP ? " PBP" : " PBC"); };
    open(1, false);
    EXPECT_EQ(kind(), "PBP PBP");
    EXPECT_TRUE(stored().isEmpty());
    open(1, true);
    EXPECT_EQ(kind(), "PBC PBC");
    EXPECT_EQ(stored(), QStringList({"Startup/AutoCloseCW=1", "Startup/AutoCloseCWTime=17",
                                     "Startup/CompilerCommandLineOptions1=-ampasm -oq",
                                     "Startup/CompilerPathName1=/nowhere/PBC.EXE", "Startup/CompilerType=1",
                                     "Startup/DosWindow=0"}));
    EXPECT_EQ(frmCompile(frame).AutoClose->text(), seventeen) << "a new dialog shows what was stored";
    open(0, true);
    EXPECT_EQ(kind(), "PBP PBP");
    EXPECT_EQ(setting(Key::CompilerPathName), "/nowhere/PBPW.EXE");
    EXPECT_EQ(setting(Key::CompilerPathName1), "/nowhere/PBC.EXE") << "the other kind's keys stay";
}

TEST_F(CompileWindowsTest, CountdownClosesAtZeroEscCancelsItThenClosesAndTheNextUseGetsAFreshWindow) {
    QPointer<CompilerScreen> first(&CompilerScreen::instance());
    EXPECT_EQ(first->windowTitle(), kReady);
    first->startCountdown("5");
    for (const char* n : {"5", "4", "3", "2", "1"}) {
        EXPECT_EQ(first->windowTitle(), QString("Compiler Output - Auto Close in: %1 Secs - Esc to Cancel").arg(n));
        first->CompileScreenTimer_Timer();
    }
    EXPECT_EQ(CompilerScreen::find(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(first.isNull());

    CompilerScreen& s = CompilerScreen::instance();
    s.show();
    s.CompilerOutput->SetText("Compiling Please Wait.....");
    s.startCountdown("0");  // a tag below one counts on into the negative
    s.CompileScreenTimer_Timer();
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Auto Close in:-1 Secs - Esc to Cancel");
    s.CompilerOutput_KeyDown('A', 0);
    EXPECT_TRUE(s.CompileScreenTimer.isActive()) << "other keys do nothing";
    // Esc through the control's own event: the first cancels the countdown, the second closes.
    emit s.CompilerOutput->KeyDown(kEsc, 0);
    EXPECT_FALSE(s.CompileScreenTimer.isActive());
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    emit s.CompilerOutput->KeyDown(kEsc, 0);
    EXPECT_FALSE(s.isVisible());
    CompilerScreen& next = CompilerScreen::instance();
    EXPECT_EQ(next.windowTitle(), kReady);
    EXPECT_TRUE(next.CompilerOutput->Text().isEmpty());
    next.show();
    emit next.CompilerOutput->KeyDown(kEsc, 0);  // without a countdown the first Esc closes
    EXPECT_EQ(CompilerScreen::find(), nullptr);
}

// A compiler that could not be run at all offers the set-up check on its output screen.
TEST_F(CompileWindowsTest, TheScreenOffersTheSetUpCheckWhenTheCompilerCouldNotRun) {
    for (const auto& [status, offers] : std::initializer_list<std::pair<std::optional<int>, bool>>{
             {std::nullopt, false}, {0, false}, {1, false}, {126, true}, {127, true}, {128, false}})
        EXPECT_EQ(compilerCouldNotRun(status), offers) << status.value_or(-1);

    CompilerScreen& screen = CompilerScreen::fresh();
    screen.show();
    const QRect output = screen.CompilerOutput->geometry();
    EXPECT_FALSE(screen.cmdCheckSetup->isVisible());
    screen.offerSetupCheck(frame);
    ASSERT_TRUE(screen.cmdCheckSetup->isVisible());
    // Above the output, which gives it room, within the screen.
    EXPECT_LE(screen.cmdCheckSetup->geometry().right(), screen.width());
    EXPECT_LT(screen.cmdCheckSetup->geometry().bottom(), screen.CompilerOutput->geometry().top());
    EXPECT_GT(screen.CompilerOutput->geometry().top(), output.top());
    screen.cmdCheckSetup->click();
    EXPECT_EQ(frame.setupChecks, 1);
}
