// The compiler search on a temporary tree, by itself and through its dialog.
#include "compile/CompilerSearch.h"
#include "compile/frmCompile.h"
#include "compile/frmFindCompiler.h"
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

#include <unistd.h>

namespace {

void touch(const QString& path) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).absolutePath()));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
}

// A tree with compilers in upper, lower and mixed case, look-alikes, links that loop, and a directory
// named as a compiler, which is searched, not listed; then two drives without compilers.
class CompilerSearchTest : public ::testing::Test {
protected:
    QTemporaryDir tmp;
    QString root, blank;
    TestWorld w;
    MDIMain frame{QString()};

    void SetUp() override {
        root = tmp.path() + "/drive";
        blank = tmp.path() + "/blank";
        for (const char* file : {"/tools/pbp/pbpw.exe", "/tools/pbp/PBPX.EXE", "/tools/pbp/pbpw.exe.bak", "/Pbc.Exe",
                                 "/.hidden/PBP.EXE", "/PBC.EXE/inner/PBP.EXE", "/empty/.keep"})
            touch(root + file);
        ASSERT_TRUE(QFile::link(root, root + "/tools/up"));
        ASSERT_TRUE(QFile::link("..", root + "/PBC.EXE/inner/parent"));
        ASSERT_TRUE(QFile::link(root + "/tools", root + "/empty/tools"));
        // A link to a compiler file is a file like any other.
        ASSERT_TRUE(QFile::link(root + "/tools/pbp/pbpw.exe", root + "/empty/PBPW.EXE"));
        ASSERT_TRUE(QDir().mkpath(blank));
        w.paths.roots = {root, blank, tmp.path() + "/not-ready"};
    }
};

TEST_F(CompilerSearchTest, ListsEachCompilerOnceInUpperCaseAndCountsAcrossSearches) {
    frmCompile options(frame);
    frmFindCompiler dlg(options);
    ASSERT_EQ(dlg.Drive1->currentText(), root);
    dlg.Drive1->setCurrentIndex(2);
    dlg.Command1_Click();
    EXPECT_EQ(dlg.lbSearch->text(), "No Compilers Found on drive " + tmp.path() + "/not-ready");
    dlg.Drive1->setCurrentIndex(0);
    dlg.Command1_Click();
    QStringList items;
    for (int i = 0; i < dlg.List1->count(); ++i)
        items << dlg.List1->item(i)->text();
    items.sort();
    const QString up = root.toUpper();
    EXPECT_EQ(items, QStringList({up + "/.HIDDEN/PBP.EXE", up + "/EMPTY/PBPW.EXE", up + "/PBC.EXE",
                                  up + "/PBC.EXE/INNER/PBP.EXE", up + "/TOOLS/PBP/PBPW.EXE"}));
    EXPECT_EQ(dlg.lbSearch->text(), "5 files found on drive " + root);
    EXPECT_FALSE(dlg.CPBP->isEnabled()) << "only a click on an entry makes the buttons usable";
    dlg.Command1_Click();
    EXPECT_EQ(dlg.lbSearch->text(), "10 files found on drive " + root);
    dlg.Drive1->setCurrentIndex(1);
    dlg.Command1_Click();
    EXPECT_EQ(dlg.lbSearch->text(), "10 files found on drive " + blank);
    EXPECT_TRUE(w.prompts.boxes.empty());
}

TEST_F(CompilerSearchTest, AnnouncesDirectoriesAndStopsWhenTheWindowGoesAway) {
    QStringList shown, progress;
    CompilerSearchHooks hooks;
    hooks.found = [&](const QString& s, const QString&) { shown << s; };
    hooks.progress = [&](const QString& text) { progress << text; };
    FindCompilerFiles(root, hooks);
    EXPECT_TRUE(progress.contains("Searching: " + root + "/PBC.EXE/inner/"));
    EXPECT_FALSE(progress.contains("Searching: " + root + "/empty/tools/"));
    hooks.processEvents = [&] { return shown.size() < 6; };
    FindCompilerFiles(root + "/", hooks);
    EXPECT_EQ(shown.size(), 6);
}

TEST_F(CompilerSearchTest, PassesOverADirectoryThatCannotBeRead) {
    if (geteuid() == 0)
        GTEST_SKIP() << "every directory is readable for root";
    const QString locked = root + "/locked";
    touch(locked + "/PBC.EXE");
    ASSERT_TRUE(QFile::setPermissions(locked, QFileDevice::Permissions()));
    frmCompile options(frame);
    frmFindCompiler dlg(options);
    dlg.Command1_Click();
    QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_EQ(dlg.lbSearch->text(), "5 files found on drive " + root);
}

TEST_F(CompilerSearchTest, ConfigureSetsTheCompilerThenTheFoundPathAndStoresNothing) {
    saveSetting(Key::CompilerCommandLineOptions, "-stored");
    saveSetting(Key::CompilerCommandLineOptions1, "-stored1");
    const QStringList before = QSettings(settingsFilePath(), QSettings::IniFormat).allKeys();
    // The chosen compiler's options come from the store even when the selection doesn't change; the
    // path set afterwards is the file's real one.
    for (int to : {0, 1}) {
        frmCompile options(frame);
        options.CommandOptions->setText("typed, not saved");
        frmFindCompiler dlg(options);
        dlg.Command1_Click();
        const auto items = dlg.List1->findItems("/TOOLS/PBP/PBPW.EXE", Qt::MatchEndsWith);
        ASSERT_EQ(items.size(), 1);
        dlg.List1->setCurrentItem(items[0]);
        EXPECT_TRUE(dlg.CPBP->isEnabled() && dlg.CPBC->isEnabled());
        to == 0 ? dlg.CPBP_Click() : dlg.CPBC_Click();
        EXPECT_EQ(options.Compiler->currentIndex(), to);
        EXPECT_EQ(options.CommandOptions->text(), to == 0 ? "-stored" : "-stored1");
        EXPECT_EQ(options.CompilerPath->text(), root + "/tools/pbp/pbpw.exe");
    }
    EXPECT_EQ(QSettings(settingsFilePath(), QSettings::IniFormat).allKeys(), before);
}

}  // namespace
