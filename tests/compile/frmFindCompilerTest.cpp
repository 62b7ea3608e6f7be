// The compiler search dialog on a temporary tree: the list, the result line, and handing a find over.
#include "compile/frmCompile.h"
#include "compile/frmFindCompiler.h"
#include "shell/Globals.h"
#include "shell/MDIMain.h"
#include "shell/Settings.h"
#include "support/Doubles.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>

namespace {
void touch(const QString& path) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
}

class frmFindCompilerTest : public ::testing::Test {
protected:
    TestWorld w;
    QTemporaryDir tmp;
    QString drive;  // three compilers below it
    QString empty;  // none
    MDIMain frame{QString()};

    void SetUp() override {
        drive = tmp.path() + "/drive";
        empty = tmp.path() + "/empty";
        touch(drive + "/pbp/lower/pbpw.exe");
        touch(drive + "/PBC.EXE/PBP.EXE");  // a directory named like a compiler is searched, not listed
        touch(drive + "/old/Pbc.exe");
        touch(drive + "/old/PBPX.EXE");
        touch(empty + "/docs/readme.txt");
        w.paths.roots = {drive, empty, tmp.path() + "/not-ready"};
    }

    static QStringList listed(const frmFindCompiler& dlg) {
        QStringList items;
        for (int i = 0; i < dlg.List1->count(); ++i)
            items << dlg.List1->item(i)->text();
        items.sort();
        return items;
    }
};
}  // namespace

TEST_F(frmFindCompilerTest, SearchListsUpperCasePathsCountsThemAndAddsOnASecondSearch) {
    frmCompile options(frame);
    frmFindCompiler dlg(options);
    ASSERT_EQ(dlg.Drive1->count(), 3);
    EXPECT_EQ(dlg.Drive1->currentText(), drive);
    dlg.Command1_Click();
    const QStringList once{(drive + "/OLD/PBC.EXE").toUpper(), (drive + "/PBC.EXE/PBP.EXE").toUpper(),
                           (drive + "/PBP/LOWER/PBPW.EXE").toUpper()};
    EXPECT_EQ(listed(dlg), once);
    EXPECT_EQ(dlg.lbSearch->text(), "3 files found on drive " + drive);
    // Found files alone do not make the buttons usable: a click on an entry does.
    EXPECT_FALSE(dlg.CPBP->isEnabled());
    EXPECT_FALSE(dlg.CPBC->isEnabled());

    dlg.Command1_Click();
    EXPECT_EQ(dlg.List1->count(), 6);
    EXPECT_EQ(dlg.lbSearch->text(), "6 files found on drive " + drive);
    // A drive without compilers adds nothing, and the count still covers the earlier finds.
    dlg.Drive1->setCurrentIndex(1);
    dlg.Command1_Click();
    EXPECT_EQ(dlg.lbSearch->text(), "6 files found on drive " + empty);
}

TEST_F(frmFindCompilerTest, ADriveWithoutCompilersOrNotReadySaysSoWithoutABox) {
    frmCompile options(frame);
    for (int i : {1, 2}) {
        frmFindCompiler dlg(options);
        dlg.Drive1->setCurrentIndex(i);
        dlg.Command1_Click();
        EXPECT_EQ(dlg.List1->count(), 0);
        EXPECT_EQ(dlg.lbSearch->text(), "No Compilers Found on drive " + dlg.Drive1->currentText());
    }
    EXPECT_TRUE(w.prompts.boxes.empty());
}

TEST_F(frmFindCompilerTest, ConfigureSetsTheCompilerThenTheFoundPathAndClosesStoringNothing) {
    saveSetting(Key::CompilerCommandLineOptions, "-stored");
    saveSetting(Key::CompilerCommandLineOptions1, "-stored1");
    const QStringList before = QSettings(settingsFilePath(), QSettings::IniFormat).allKeys();
    // Each button, from each compiler: the chosen one's options come from the store, even when the
    // selection doesn't change, and the path is the file's real one.
    for (int from : {0, 1}) {
        for (int to : {0, 1}) {
            frmCompile options(frame);
            options.Compiler->setCurrentIndex(from);
            options.CommandOptions->setText("typed, not saved");
            frmFindCompiler dlg(options);
            dlg.Command1_Click();
            QListWidgetItem* pbpw = dlg.List1->findItems("/PBPW.EXE", Qt::MatchEndsWith).value(0);
            ASSERT_NE(pbpw, nullptr);
            dlg.List1->setCurrentItem(pbpw);
            EXPECT_TRUE(dlg.CPBP->isEnabled());
            EXPECT_TRUE(dlg.CPBC->isEnabled());
            to == 0 ? dlg.CPBP_Click() : dlg.CPBC_Click();
            EXPECT_EQ(options.Compiler->currentIndex(), to);
            EXPECT_EQ(options.CommandOptions->text(), to == 0 ? "-stored" : "-stored1");
            EXPECT_EQ(options.CompilerPath->text(), drive + "/pbp/lower/pbpw.exe");
            EXPECT_EQ(dlg.result(), QDialog::Accepted);
            EXPECT_EQ(std::count(globals().loadedWindows.begin(), globals().loadedWindows.end(), &dlg), 0);
        }
    }
    EXPECT_EQ(QSettings(settingsFilePath(), QSettings::IniFormat).allKeys(), before);
}
