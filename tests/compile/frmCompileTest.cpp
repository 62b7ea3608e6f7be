// The compiler options: what the dialog shows from the settings, and what OK, Cancel and Browse change.
#include "compile/frmCompile.h"
#include "shell/Globals.h"
#include "shell/MDIMain.h"
#include "shell/Settings.h"
#include "statusbar/cNoStatusBar.h"
#include "support/Doubles.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QSettings>
#include <gtest/gtest.h>

#include <algorithm>

namespace {
class frmCompileTest : public ::testing::Test {
protected:
    TestWorld w;
    MDIMain frame{QString()};

    // The keys the INI file holds, as "Section/Key", sorted.
    QStringList storedKeys() const {
        QStringList keys = QSettings(settingsFilePath(), QSettings::IniFormat).allKeys();
        keys.sort();
        return keys;
    }
};
}  // namespace

TEST_F(frmCompileTest, OpeningShowsTheStoreOrItsDefaults) {
    {
        frmCompile dlg(frame);
        EXPECT_EQ(dlg.CompilerPath->text(), w.appDir() + "/PBPW.EXE");
        EXPECT_TRUE(dlg.cbDoswindow->isChecked());
        EXPECT_TRUE(dlg.AutoClose->isChecked());
        EXPECT_EQ(dlg.AutoClose->text(), "Auto Close Compiler Output Screen in: 5 Secs");
        EXPECT_TRUE(storedKeys().isEmpty());
    }
    saveSetting(Key::CompilerType, "1");
    saveSetting(Key::CompilerPathName1, "/opt/pbc/PBC.EXE");
    saveSetting(Key::CompilerCommandLineOptions1, " -v ");
    saveSetting(Key::DosWindow, "0");
    saveSetting(Key::AutoCloseCWTime, "12");
    frmCompile dlg(frame);
    EXPECT_EQ(dlg.Compiler->currentIndex(), 1);
    EXPECT_EQ(dlg.CompilerPath->text(), "/opt/pbc/PBC.EXE");
    EXPECT_EQ(dlg.CommandOptions->text(), " -v ");
    EXPECT_FALSE(dlg.cbDoswindow->isChecked());
    EXPECT_EQ(dlg.AutoClose->text(), "Auto Close Compiler Output Screen in: 12 Secs");
    // Switching refills both fields from the store: what was typed is gone.
    dlg.Compiler->setCurrentIndex(0);
    dlg.CompilerPath->setText("/typed");
    dlg.Compiler->setCurrentIndex(1);
    EXPECT_EQ(dlg.CompilerPath->text(), "/opt/pbc/PBC.EXE");
}

TEST_F(frmCompileTest, ACompilerTypeThatIsNoEntrySelectsTheFirst) {
    saveSetting(Key::CompilerPathName, "/opt/pbp/PBPW.EXE");
    for (const char* type : {"7", "x", "-1"}) {
        saveSetting(Key::CompilerType, type);
        frmCompile dlg(frame);
        EXPECT_EQ(dlg.Compiler->currentIndex(), 0) << type;
        EXPECT_EQ(dlg.CompilerPath->text(), "/opt/pbp/PBPW.EXE") << type;
    }
}

TEST_F(frmCompileTest, OkAddsOqToAmpasmInTheFieldAndTheStore) {
    const std::pair<const char*, const char*> cases[] = {
        {"-ampasm", "-ampasm -oq"},         {"  -ampasm  ", "-ampasm -oq"},
        {" -ampasm -v", "-ampasm -v -oq"},  {"-AMPASM -OQ", "-AMPASM -OQ"},
        {"-ampasm -Oq ", "-ampasm -Oq "},   {"  -v -s ", "  -v -s "},
    };
    for (int compiler : {0, 1}) {
        for (const auto& [typed, result] : cases) {
            frmCompile dlg(frame);
            dlg.Compiler->setCurrentIndex(compiler);
            dlg.CommandOptions->setText(typed);
            dlg.cmdOK_Click();
            EXPECT_EQ(dlg.CommandOptions->text(), result) << typed;
            EXPECT_EQ(setting(compiler == 0 ? Key::CompilerCommandLineOptions : Key::CompilerCommandLineOptions1),
                      result)
                << typed;
        }
    }
}

TEST_F(frmCompileTest, OkStoresTheSelectedCompilersKeysAndTheCommonThreeOnly) {
    frmCompile dlg(frame);
    dlg.Compiler->setCurrentIndex(1);
    dlg.CompilerPath->setText("/nowhere/PBC.EXE");  // a missing compiler is accepted
    dlg.CommandOptions->setText("-v");
    dlg.cbDoswindow->setChecked(false);
    dlg.SecScroll->setValue(17);
    EXPECT_EQ(dlg.AutoClose->text(), "Auto Close Compiler Output Screen in: 17 Secs");
    EXPECT_TRUE(storedKeys().isEmpty());  // the scroll bar alone stores nothing
    dlg.cmdOK_Click();

    const QStringList expected{"Startup/AutoCloseCW",  "Startup/AutoCloseCWTime", "Startup/CompilerCommandLineOptions1",
                               "Startup/CompilerPathName1", "Startup/CompilerType", "Startup/DosWindow"};
    EXPECT_EQ(storedKeys(), expected);
    EXPECT_EQ(setting(Key::CompilerType), "1");
    EXPECT_EQ(setting(Key::CompilerPathName1), "/nowhere/PBC.EXE");
    EXPECT_EQ(setting(Key::CompilerCommandLineOptions1), "-v");
    EXPECT_EQ(setting(Key::DosWindow), "0");
    EXPECT_EQ(setting(Key::AutoCloseCW), "1");
    EXPECT_EQ(setting(Key::AutoCloseCWTime), "17");
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_EQ(std::count(globals().loadedWindows.begin(), globals().loadedWindows.end(), &dlg), 0);
}

TEST_F(frmCompileTest, OkSwitchesTheCompilerKindAndPanelCancelChangesNothing) {
    frame.show();  // the status bar comes with the frame's load
    ASSERT_TRUE(frame.m_cSBar);
    ASSERT_EQ(frame.m_cSBar->PanelText(3), "PBP");
    auto open = [&](int compiler, bool ok) {
        frmCompile dlg(frame);
        dlg.Compiler->setCurrentIndex(compiler);
        dlg.CommandOptions->setText("-ampasm");
        ok ? dlg.cmdOK_Click() : dlg.cmdExit_Click();
        EXPECT_EQ(dlg.CommandOptions->text(), ok ? "-ampasm -oq" : "-ampasm");
    };
    const QStringList before = storedKeys();
    open(1, false);
    EXPECT_TRUE(globals().UsePBP);
    EXPECT_EQ(frame.m_cSBar->PanelText(3), "PBP");
    EXPECT_EQ(storedKeys(), before);
    open(1, true);
    EXPECT_FALSE(globals().UsePBP);
    EXPECT_EQ(frame.m_cSBar->PanelText(3), "PBC");
    open(0, true);
    EXPECT_TRUE(globals().UsePBP);
    EXPECT_EQ(frame.m_cSBar->PanelText(3), "PBP");
    EXPECT_EQ(setting(Key::CompilerCommandLineOptions1), "-ampasm -oq");  // the other kind's keys stay
}

TEST_F(frmCompileTest, BrowseCopiesAChosenFileCancelIsSilentAnEmptyNameComplains) {
    frmCompile dlg(frame);
    frame.openSave().CancelError = true;
    w.prompts.files = {QString("/opt/pbp/PBPW.EXE"), std::nullopt, QString()};
    dlg.Browse_Click();
    EXPECT_EQ(dlg.CompilerPath->text(), "/opt/pbp/PBPW.EXE");
    EXPECT_EQ(w.prompts.fileDialogFilters.value(0),
              "PicBasic Pro Compiler|PBP*.exe|PicBasic Compiler|PBC.exe|All Files (*.*)|*.*|");
    dlg.Browse_Click();
    EXPECT_TRUE(w.prompts.boxes.empty());
    dlg.Browse_Click();
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_EQ(w.prompts.boxes[0].text, "No filename entered.");
    EXPECT_EQ(w.prompts.boxes[0].title, "File Error");
    EXPECT_EQ(w.prompts.boxes[0].icon, Icon::None);
    EXPECT_EQ(w.prompts.boxes[0].buttons, Buttons::Ok);
    EXPECT_EQ(dlg.CompilerPath->text(), "/opt/pbp/PBPW.EXE");
    EXPECT_TRUE(storedKeys().isEmpty());
}

TEST_F(frmCompileTest, BrowseWithoutCancelErrorOrWithAnotherFailureShowsABox) {
    frmCompile dlg(frame);
    // Left off by the last command, Cancel comes back as an empty name.
    frame.openSave().CancelError = false;
    w.prompts.files = {std::nullopt};
    dlg.Browse_Click();
    frame.openSave().setPrompts(nullptr);  // the file dialog cannot be shown at all
    dlg.Browse_Click();
    ASSERT_EQ(w.prompts.boxes.size(), 2u);
    EXPECT_EQ(w.prompts.boxes[0].text, "No filename entered.");
    EXPECT_EQ(w.prompts.boxes[1].text, "Object variable not set");
    EXPECT_EQ(w.prompts.boxes[1].title, "");
    EXPECT_EQ(w.prompts.boxes[1].icon, Icon::None);
    EXPECT_EQ(dlg.CompilerPath->text(), w.appDir() + "/PBPW.EXE");
}
