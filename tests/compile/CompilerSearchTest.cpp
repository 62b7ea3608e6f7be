// The compiler search on a temporary tree, by itself and through its dialog.
#include "compile/CompilerSearch.h"
#include "compile/frmCompile.h"
#include "compile/frmFindCompiler.h"
#include "platform/PosixPaths.h"
#include "support/FakeFrame.h"
#include "core/Settings.h"
#include "support/Doubles.h"
#include "support/Files.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <unistd.h>

namespace {

// Compilers in any letter case (PicBasic Pro 3's PBPX.EXE too), look-alikes, looping links, a link to a compiler, a directory named as one
// (searched, not listed) and an unreadable one; then two drives without compilers.
class CompilerSearchTest : public ::testing::Test {
protected:
    QTemporaryDir tmp;
    const QString root = tmp.path() + "/drive", locked = root + "/locked";
    TestWorld w;
    FakeFrame frame;

    void SetUp() override {
        for (const char* file : {"/tools/pbp/pbpw.exe", "/tools/pbp/PBPX.EXE", "/tools/pbp/pbpw.exe.bak", "/Pbc.Exe",
                                 "/.hidden/PBP.EXE", "/PBC.EXE/inner/PBP.EXE", "/blank/.keep"})
            writeProgram(root + file, {});
        ASSERT_TRUE(QFile::link(root, root + "/tools/up") && QFile::link("..", root + "/PBC.EXE/inner/parent"));
        ASSERT_TRUE(QFile::link(root + "/tools/pbp/pbpw.exe", root + "/.hidden/PBPW.EXE"));
        if (geteuid() != 0) {
            writeProgram(locked + "/PBC.EXE", {});
            ASSERT_TRUE(QFile::setPermissions(locked, QFileDevice::Permissions()));
        }
        w.paths.roots = {root, root + "/blank", tmp.path() + "/not-ready"};
    }
    void TearDown() override {
        QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
};

TEST_F(CompilerSearchTest, ListsEachCompilerOnceInItsOwnLetterCaseAndCountsAcrossSearches) {
    frmCompile options(frame);
    frmFindCompiler dlg(options);
    dlg.Drive1->setCurrentIndex(2);
    dlg.Command1_Click();
    EXPECT_EQ(dlg.lbSearch->text(), "No Compilers Found on drive " + tmp.path() + "/not-ready");
    dlg.Drive1->setCurrentIndex(0);
    dlg.Command1_Click();
    QStringList items;
    for (const QListWidgetItem* item : dlg.List1->findItems("", Qt::MatchContains))
        items << item->text();
    items.sort();
    EXPECT_EQ(items, QStringList({root + "/.hidden/PBP.EXE", root + "/.hidden/PBPW.EXE", root + "/PBC.EXE/inner/PBP.EXE",
                                  root + "/Pbc.Exe", root + "/tools/pbp/PBPX.EXE", root + "/tools/pbp/pbpw.exe"}));
    EXPECT_EQ(dlg.lbSearch->text(), "6 files found on drive " + root);
    EXPECT_FALSE(dlg.CPBP->isEnabled()) << "only a click on an entry makes the buttons usable";
    // Both captions whole, side by side, inside the dialog; the place searched in full where it is cut.
    EXPECT_TRUE(dlg.CPBP->width() >= dlg.CPBP->sizeHint().width() && dlg.CPBC->width() >= dlg.CPBC->sizeHint().width());
    EXPECT_TRUE(dlg.CPBP->geometry().right() < dlg.CPBC->x() && dlg.CPBC->geometry().right() < dlg.width());
    EXPECT_EQ(dlg.Drive1->toolTip(), root);
    // Tabbing in makes the first row current without selecting it: still no click.
    dlg.List1->setCurrentRow(0, QItemSelectionModel::NoUpdate);
    QFocusEvent focusIn(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(dlg.List1, &focusIn);
    EXPECT_FALSE(dlg.CPBP->isEnabled() || dlg.CPBC->isEnabled());
    dlg.Command1_Click();
    dlg.Drive1->setCurrentIndex(1);
    dlg.Command1_Click();
    EXPECT_EQ(dlg.lbSearch->text(), "12 files found on drive " + root + "/blank");
    EXPECT_TRUE(w.prompts.boxes.empty());
    int found = 0;  // a window gone away ends the walk
    FindCompilerFiles(root + "/", {.found = [&](const QString&) { ++found; }, .progress = {},
                                   .processEvents = [&] { return found < 2; }});
    EXPECT_EQ(found, 2);
}

TEST_F(CompilerSearchTest, ConfigureSetsTheCompilerThenTheFoundPathAndStoresNothing) {
    saveSetting(Key::CompilerCommandLineOptions, "-stored");
    saveSetting(Key::CompilerCommandLineOptions1, "-stored1");
    const QStringList before = QSettings(settingsFilePath(), QSettings::IniFormat).allKeys();
    // The options come from the store even when the kind doesn't change; the path is the file's real one.
    for (int to : {0, 1}) {
        frmCompile options(frame);
        options.CommandOptions->setText("typed, not saved");
        frmFindCompiler dlg(options);
        dlg.Command1_Click();
        dlg.List1->setCurrentItem(dlg.List1->findItems("/tools/pbp/pbpw.exe", Qt::MatchEndsWith).value(0));
        EXPECT_TRUE(dlg.CPBP->isEnabled() && dlg.CPBC->isEnabled());
        to == 0 ? dlg.CPBP_Click() : dlg.CPBC_Click();
        EXPECT_EQ(options.Compiler->currentIndex(), to);
        EXPECT_EQ(options.CommandOptions->text(), to == 0 ? "-stored" : "-stored1");
        EXPECT_EQ(options.CompilerPath->text(), root + "/tools/pbp/pbpw.exe");
    }
    EXPECT_EQ(QSettings(settingsFilePath(), QSettings::IniFormat).allKeys(), before);
}

}  // namespace

TEST(CompilerSearchRoots, WinesDriveCIsOfferedOnceItExists) {
    QTemporaryDir prefix;
    const QByteArray old = qgetenv("WINEPREFIX");
    qputenv("WINEPREFIX", prefix.path().toLocal8Bit());
    const bool before = PosixPaths().searchRoots().contains(prefix.path() + "/drive_c");
    writeProgram(prefix.path() + "/drive_c/PBP3/PBPW.EXE", {});
    const bool after = PosixPaths().searchRoots().contains(prefix.path() + "/drive_c");
    qputenv("WINEPREFIX", old);
    EXPECT_FALSE(before);
    EXPECT_TRUE(after);
}
