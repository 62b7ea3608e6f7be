// The Launch Programmer command and the programmer options dialog.
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/PosixLauncher.h"
#include "programmer/ProgrammerRun.h"
#include "programmer/frmProgrammer.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"
#include "support/Files.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QLineEdit>
#include <QSettings>
#include <gtest/gtest.h>

namespace {
class ProgrammerTest : public ::testing::Test {
protected:
    TestWorld w;
    FakeFrame frame;
    frmEditor doc{frame};
    const QString oldDir = QDir::currentPath();
    const QString epicWinTemplate = R"(-dPIC{DeviceName} "{HexFileWinPath}")";

    void SetUp() override {
        frame.combo.entries = {"PIC16F84", "PIC12F675"};
        doc.View->document().setPathName(w.file("blink.bas"));
    }
    void TearDown() override { QDir::setCurrent(oldDir); }
    QStringList stored() const { return QSettings(settingsFilePath(), QSettings::IniFormat).allKeys(); }
    static QStringList shown(const frmProgrammer& d) {
        return {d.Programmer->currentText(), d.ProgrammerPath->text(), d.CommandOptions->text()};
    }
};
}  // namespace

TEST_F(ProgrammerTest, LaunchesTheChosenKindInItsDirectoryAndAnUnknownKindDoesNothing) {
    GoProgram(doc);
    saveSetting(Key::ProgrammerType, "3");
    saveSetting(Key::ProgrammerPathNameOther, "pk2cmd");
    saveSetting(Key::ProgrammerCommandLineOptionsOther, " -P{devicename} {HexFileDosPath}-f ");
    frame.combo.index = 1;
    GoProgram(doc);  // the hex file isn't there yet: GetDosPath's message, and the launch goes on
    saveSetting(Key::ProgrammerType, "7");
    GoProgram(doc);
    ASSERT_EQ(w.launcher.launches.size(), 2u);
    const LaunchRecord& epic = w.launcher.launches[0];
    EXPECT_EQ(QStringList({epic.program, epic.workDir}), QStringList({w.appDir() + "/EPICWIN.EXE", w.appDir()}));
    EXPECT_EQ(epic.args, QStringList({"-dPIC16F84", w.file("blink.hex")})) << "no selection: the first device";
    EXPECT_EQ(QDir::current(), QDir(w.appDir())) << "the process stays in the programmer's directory";
    const LaunchRecord& other = w.launcher.launches[1];
    EXPECT_EQ(QStringList({other.program, other.workDir}), QStringList({"pk2cmd", ""}));
    EXPECT_EQ(other.args, QStringList({"-P12F675", "-f"}));
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_TRUE(w.prompts.boxes[0].text.startsWith("Error! Invalid Path or File Name: " + w.file("blink.hex")));
    EXPECT_EQ(frame.window.findChild<frmProgrammer*>(), nullptr);
}

TEST_F(ProgrammerTest, AFailureShowsItsMessageThenTheOptionsBesideTheFrame) {
    const QString missing = w.file("no such dir");
    const std::pair<std::function<void()>, QString> cases[] = {
        {[&] { saveSetting(Key::ProgrammerPathName, missing + "/EPICWIN.EXE"); },
         "Error! \r\r" + missing + ": No such file or directory"},
        {[&] { saveSetting(Key::ProgrammerPathName, "/bin/epicwin"); w.launcher.failDetached = kFileNotFound; },
         "Launch Programmer Error! \r\r/bin/epicwin not found!"},
        {[&] { saveSetting(Key::ProgrammerType, "x"); }, "Error! \r\rType mismatch"},
        {[&] { saveSetting(Key::ProgrammerType, "0"); w.launcher.failDetached.reset(); frame.combo.Clear(); },
         "Error! \r\rInvalid property value"},
    };
    for (const auto& [arrange, message] : cases) {
        SCOPED_TRACE(message.toStdString());
        w.prompts.boxes.clear();
        arrange();
        GoProgram(doc);
        EXPECT_TRUE(w.launcher.launches.empty());
        ASSERT_EQ(w.prompts.boxes.size(), 1u);
        const Box& box = w.prompts.boxes[0];
        EXPECT_EQ(box.text, message);
        EXPECT_TRUE(box.title.isEmpty() && box.icon == Icon::Critical && box.buttons == Buttons::Ok);
        frmProgrammer* options = frame.window.findChild<frmProgrammer*>();
        ASSERT_NE(options, nullptr);
        EXPECT_TRUE(options->isVisible() && !options->isModal() && frame.modals.isEmpty());
        options->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);  // WA_DeleteOnClose
        EXPECT_NE(QDir::current(), QDir(missing));
    }
}

// A real launch: the programmer, a script, records its working directory and each argument on a line.
TEST_F(ProgrammerTest, ARealProgrammerGetsEachArgumentWhole) {
    PosixLauncher posix;
    globals().launcher = &posix;
    const QString dir = w.file("pic tools"), record = w.file("record.txt");
    saveSetting(Key::ProgrammerPathName,
                writeProgram(dir + "/fake programmer", "#!/bin/sh\nout='" + record.toUtf8() +
                             "'\n{ pwd; for a in \"$@\"; do echo \"$a\"; done; } >\"$out.part\"\n"
                             "mv \"$out.part\" \"$out\"\n"));
    auto run = [&](const QString& options) {
        saveSetting(Key::ProgrammerCommandLineOptions, options);
        QFile::remove(record);
        GoProgram(doc);
        waitFor([&] { return QFile::exists(record); });  // appears whole when the script is done
        return QString::fromUtf8(readFile(record)).split('\n', Qt::SkipEmptyParts);
    };
    EXPECT_EQ(run(epicWinTemplate), QStringList({dir, "-dPIC16F84", w.file("blink.hex")}));
    // No shell between: the name arrives as one argument and runs nothing.
    doc.View->document().setPathName(w.file("a;rm -rf ~.bas"));
    EXPECT_EQ(run("\"{FileNameWinPath}\" $(touch x)"), QStringList({dir, w.file("a;rm -rf ~.bas"), "$(touch", "x)"}));
    EXPECT_FALSE(QFile::exists(dir + "/x"));
    EXPECT_TRUE(w.prompts.boxes.empty());
}

TEST_F(ProgrammerTest, TheDialogShowsTheStoredKindAndOkStoresOnlyTheSelectedOne) {
    const QStringList epicWin = {"EPICWin", w.appDir() + "/EPICWIN.EXE", epicWinTemplate};
    EXPECT_EQ(shown(frmProgrammer(frame)), epicWin) << "nothing stored";
    for (const char* bad : {"4", "x"}) {
        saveSetting(Key::ProgrammerType, bad);
        EXPECT_EQ(shown(frmProgrammer(frame)), epicWin) << bad;
    }
    frmProgrammer dlg(frame);
    dlg.ProgrammerPath->setText("/edited");
    dlg.Programmer->setCurrentIndex(2);
    EXPECT_EQ(shown(dlg), QStringList({"PicStart Plus (MPLAB)", R"(C:\Program Files\MPLAB\MPLAB.EXE)", ""}));
    dlg.Programmer->setCurrentIndex(0);
    EXPECT_EQ(shown(dlg), epicWin) << "switching kinds throws the edits away";
    dlg.ProgrammerPath->setText("/edited");
    dlg.Programmer->setCurrentIndex(1);
    dlg.ProgrammerPath->setText("");
    dlg.CommandOptions->setText(" -v ");
    frmProgrammer(frame).cmdExit_Click();
    EXPECT_EQ(setting(Key::ProgrammerType), "x") << "Cancel stores nothing";
    dlg.cmdOK_Click();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_EQ(stored(), QStringList({"Startup/ProgrammerCommandLineOptionsMeLoader",
                                     "Startup/ProgrammerPathNameMeLoader", "Startup/ProgrammerType"}));
    EXPECT_EQ(shown(frmProgrammer(frame)), QStringList({"melabs Loader", "", " -v "}));
    GoProgram(doc);
    ASSERT_EQ(w.launcher.launches.size(), 1u);
    EXPECT_EQ(w.launcher.launches[0].program, "") << "a stored empty path wins over the default";
    EXPECT_EQ(w.launcher.launches[0].args, QStringList({"-v"}));
}
