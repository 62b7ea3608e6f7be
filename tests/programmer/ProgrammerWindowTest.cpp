// The Launch Programmer command and the programmer options dialog.
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/PosixLauncher.h"
#include "programmer/ProgrammerOutput.h"
#include "programmer/ProgrammerRun.h"
#include "programmer/ProgrammerSession.h"
#include "programmer/frmProgrammer.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"
#include "support/Files.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
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
    GoProgram(doc);  // the hex file isn't there yet: GetDosPath's message, and no launch
    w.write("blink.hex", ":00000001FF\n");
    GoProgram(doc);
    saveSetting(Key::ProgrammerType, "3");
    saveSetting(Key::ProgrammerPathNameOther, "pk2cmd");
    saveSetting(Key::ProgrammerCommandLineOptionsOther, " -P{devicename} {HexFileDosPath}-f ");
    frame.combo.index = 1;
    w.launcher.runs.back()->end({});
    GoProgram(doc);
    saveSetting(Key::ProgrammerType, "7");
    w.launcher.runs.back()->end({});
    GoProgram(doc);
    ASSERT_EQ(w.launcher.launches.size(), 2u);
    const LaunchRecord& epic = w.launcher.launches[0];
    EXPECT_EQ(QStringList({epic.program, epic.workDir}), QStringList({w.appDir() + "/EPICWIN.EXE", w.appDir()}));
    EXPECT_EQ(epic.args, QStringList({"-dPIC16F84", w.file("blink.hex")})) << "no selection: the first device";
    EXPECT_EQ(QDir::current(), QDir(w.appDir())) << "the process stays in the programmer's directory";
    const LaunchRecord& other = w.launcher.launches[1];
    EXPECT_EQ(QStringList({other.program, other.workDir}), QStringList({"pk2cmd", ""}));
    EXPECT_EQ(other.args, QStringList({"-P12F675", w.file("blink.hex") + "-f"}));
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_TRUE(w.prompts.boxes[0].text.startsWith("Error! Invalid Path or File Name: " + w.file("blink.hex")));
    EXPECT_EQ(frame.window.findChild<frmProgrammer*>(), nullptr);
}

// The missing hex file stops a template that names it in either form; a missing source stops its short
// form. Values with blanks stay whole; the hex name keeps a dotted folder.
TEST_F(ProgrammerTest, TokensStayWholeAndAMissingFileStopsTheLaunch) {
    const QString source = w.file("ann.lee/my led/a.b.bas"), hex = w.file("ann.lee/my led/a.hex");
    doc.View->document().setPathName(source);
    const std::pair<QString, QString> stops[] = {{"-f {HexFileWinPath}", hex},
                                                 {"{hexfiledospath}", hex},
                                                 {"-p{DeviceName} {FileNameDosPath}", source}};
    for (const auto& [options, missing] : stops) {
        w.prompts.boxes.clear();
        saveSetting(Key::ProgrammerCommandLineOptions, options);
        GoProgram(doc);
        EXPECT_TRUE(w.launcher.launches.empty()) << qPrintable(options);
        ASSERT_EQ(w.prompts.boxes.size(), 1u) << qPrintable(options);
        EXPECT_TRUE(w.prompts.boxes[0].text.startsWith("Error! Invalid Path or File Name: " + missing + "\r"));
    }
    w.write("ann.lee/my led/a.b.bas", "x");
    w.write("ann.lee/my led/a.hex", ":00000001FF\n");
    saveSetting(Key::ProgrammerCommandLineOptions, "-f {HexFileWinPath} {FILENAMEDOSPATH} -x{Foo} {Foo}");
    GoProgram(doc);
    ASSERT_EQ(w.launcher.launches.size(), 1u);
    EXPECT_EQ(w.launcher.launches[0].args, QStringList({"-f", hex, source, "-x"}));
}

TEST_F(ProgrammerTest, AFailureShowsItsMessageThenTheOptionsBesideTheFrame) {
    w.write("blink.hex", ":00000001FF\n");
    const QString missing = w.file("no such dir");
    const std::pair<std::function<void()>, QString> cases[] = {
        {[&] { saveSetting(Key::ProgrammerPathName, missing + "/EPICWIN.EXE"); },
         "Error! \r\r" + missing + ": No such file or directory"},
        {[&] { saveSetting(Key::ProgrammerPathName, "/bin/epicwin"); w.launcher.failWatched = kFileNotFound; },
         "Launch Programmer Error! \r\r/bin/epicwin not found!"},
        {[&] { saveSetting(Key::ProgrammerType, "x"); }, "Error! \r\rType mismatch"},
        {[&] { saveSetting(Key::ProgrammerType, "0"); w.launcher.failWatched.reset(); frame.combo.Clear(); },
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
    // One options dialog at a time: a second failure, and the menu's modal one, bring it forward.
    GoProgram(doc);
    GoProgram(doc);
    frmProgrammer::open(frame, true);
    EXPECT_EQ(frame.window.findChildren<frmProgrammer*>().size(), 1);
    EXPECT_TRUE(frame.modals.isEmpty());
    frmProgrammer::find()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    frmProgrammer::open(frame, true);
    EXPECT_EQ(frame.modals, QStringList({"Programmer Options"}));
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
    w.write("blink.hex", ":00000001FF\n");
    auto run = [&](const QString& options) {
        saveSetting(Key::ProgrammerCommandLineOptions, options);
        QFile::remove(record);
        GoProgram(doc);
        waitFor([&] { return !ProgrammerOutput::find()->running(); });
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

namespace {
using Ch = ProcessEvents::Channel;
using How = ProcessEnd::How;
// The colour the output shows the text at the start of a line in.
QColor colourOfLine(QPlainTextEdit* output, const QString& start) {
    for (QTextBlock b = output->document()->begin(); b.isValid(); b = b.next())
        if (b.text().startsWith(start))
            return b.begin().fragment().charFormat().foreground().color();
    return Qt::transparent;
}
}  // namespace

TEST_F(ProgrammerTest, TheOutputShowsWhatTheProgrammerWritesAsItComesAndHowItEnded) {
    const QString hex = w.write("blink.hex", ":00000001FF\n");
    GoProgram(doc);
    ProgrammerOutput* out = ProgrammerOutput::find();
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(out->isVisible() && out->isWindow() && out->cmdStop->isEnabled());
    EXPECT_EQ(out->windowTitle(), "Programmer Output - Running");
    FakeRun& run = *w.launcher.runs.back();
    run.say(Ch::Out, "Erasing...\r");
    run.say(Ch::Out, "\nWriting 50%\rWriting 100%\r\n");
    run.say(Ch::Err, "Verify failed at 0x0\xc3");  // a letter split over two pieces
    run.say(Ch::Err, "\xa9\n");
    const QString shown = "> " + w.appDir() + "/EPICWIN.EXE -dPIC16F84 " + hex +
                          "\nErasing...\nWriting 50%\nWriting 100%\nVerify failed at 0x0\u00e9\n";
    EXPECT_EQ(out->Output->toPlainText(), shown);
    EXPECT_NE(colourOfLine(out->Output, "Verify"), colourOfLine(out->Output, "Erasing")) << "standard error stands out";

    // A second launch while it runs starts nothing and says why.
    GoProgram(doc);
    EXPECT_EQ(w.launcher.launches.size(), 1u);
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_EQ(w.prompts.boxes[0].text, programmerStillRunningText());

    run.end({How::Exited, 3, {}});
    EXPECT_EQ(out->Output->toPlainText(), shown + "The programmer failed with exit status 3.\n");
    EXPECT_EQ(out->windowTitle(), "Programmer Output - Failed");
    EXPECT_FALSE(out->cmdStop->isEnabled());

    // Each end told plainly; closing hides the window, and each launch shows its own run in it.
    const std::tuple<ProcessEnd, QString, QString> ends[] = {
        {{How::Exited, 0, {}}, "Finished", "The programmer finished (exit status 0)."},
        {{How::Crashed, 0, {}}, "Failed", "The programmer crashed."},
        {{How::FailedToStart, 0, "execve: Permission denied"}, "Failed",
         "The programmer could not be started: execve: Permission denied"},
        {{How::Stopped, 0, {}}, "Stopped", "The programmer was stopped."},
    };
    for (const auto& [end, state, text] : ends) {
        GoProgram(doc);
        EXPECT_EQ(ProgrammerOutput::find(), out);
        EXPECT_TRUE(out->isVisible());
        w.launcher.runs.back()->say(Ch::Out, "no line end");
        out->cmdStop_Click();
        EXPECT_TRUE(w.launcher.runs.back()->stopAsked);
        out->cmdClose_Click();
        EXPECT_TRUE(!out->isVisible() && out->running()) << "closing the window leaves the programmer running";
        w.launcher.runs.back()->end(end);
        EXPECT_EQ(out->isVisible(), state == "Failed") << "a failure comes back up";
        EXPECT_EQ(out->Output->toPlainText().section('\n', 1), "no line end\n" + text + "\n");
        EXPECT_EQ(out->windowTitle(), "Programmer Output - " + state);
    }
    EXPECT_EQ(w.launcher.launches.size(), 5u);
    EXPECT_TRUE(w.launcher.runs.front()->dropped) << "an ended run goes when the next one comes";
}

TEST_F(ProgrammerTest, ARealProgrammerShowsItsOutputWhileItRunsAndCanBeStopped) {
    PosixLauncher posix;
    globals().launcher = &posix;
    w.write("blink.hex", ":00000001FF\n");
    const QString go = w.file("go");
    // It speaks on both channels, then waits for the test before it fails.
    saveSetting(Key::ProgrammerPathName,
                writeProgram(w.file("pic tools/prog"), "#!/bin/sh\necho \"Erasing $1\"\necho 'no device' >&2\n"
                                                       "while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.05; done\n"
                                                       "exit 3\n"));
    GoProgram(doc);
    ProgrammerOutput* out = ProgrammerOutput::find();
    ASSERT_NE(out, nullptr);
    ASSERT_TRUE(waitFor([&] { return out->Output->toPlainText().contains("no device"); }));
    EXPECT_TRUE(out->running()) << "the frame went on while the programmer runs";
    EXPECT_TRUE(out->Output->toPlainText().contains("Erasing -dPIC16F84\n"));
    w.write("go", "");
    ASSERT_TRUE(waitFor([&] { return !out->running(); }));
    EXPECT_TRUE(out->Output->toPlainText().endsWith("The programmer failed with exit status 3.\n"));

    // Stop ends the programmer and what it started.
    QFile::remove(go);
    GoProgram(doc);
    ASSERT_TRUE(waitFor([&] { return out->Output->toPlainText().contains("no device"); }));
    out->cmdStop_Click();
    ASSERT_TRUE(waitFor([&] { return !out->running(); }));
    EXPECT_EQ(out->windowTitle(), "Programmer Output - Stopped");

    // One that can't be started: the system's reason. A file that isn't executable is told before the start.
    saveSetting(Key::ProgrammerPathName, writeProgram(w.file("pic tools/bad"), "#!/no/such/shell\n"));
    GoProgram(doc);
    ASSERT_TRUE(waitFor([&] { return !out->running(); }));
    EXPECT_TRUE(out->Output->toPlainText().contains("\nThe programmer could not be started: "))
        << qPrintable(out->Output->toPlainText());
    QFile::setPermissions(w.file("pic tools/bad"), QFileDevice::ReadOwner);
    GoProgram(doc);
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_EQ(w.prompts.boxes[0].text, "Error! \r\r" + w.file("pic tools/bad") + ": Permission denied");
}

// A launch or a run that fails for want of something on this machine offers the set-up check, after the
// system's own message, which stays as it was.
TEST(SetupOffer, WhichEndsOfARunOfferTheCheck) {
    const QStringList port = {"-c", "/dev/ttyACM0"}, none = {"-f", "/w/a.hex"};
    const std::tuple<ProcessEnd, QString, QStringList, bool> cases[] = {
        {{How::FailedToStart, 0, "No such file or directory"}, "", none, true},
        {{How::Exited, 127, ""}, "", none, true},
        {{How::Exited, 126, ""}, "", none, true},
        {{How::Exited, 1, ""}, "open /dev/ttyACM0: Permission denied\n", port, true},
        {{How::Exited, 1, ""}, "errno EACCES\n", {"--port=/dev/ttyUSB0"}, true},
        {{How::Exited, 1, ""}, "hex file: Permission denied\n", none, false},  // no port: not the machine's
        {{How::Exited, 1, ""}, "Verify failed\n", port, false},
        {{How::Exited, 0, ""}, "Permission denied", port, false},
        {{How::Crashed, 0, ""}, "", port, false},
        {{How::Stopped, 0, ""}, "", port, false},
    };
    for (const auto& [end, output, args, offers] : cases)
        EXPECT_EQ(ProgrammerSession::wantsSetupCheck(end, output, args), offers)
            << int(end.how) << " " << end.exitStatus << " " << qPrintable(output);
}

TEST_F(ProgrammerTest, AFailedLaunchKeepsItsMessageAndOffersTheSetUpCheckBesideTheOptions) {
    w.write("blink.hex", ":00000001FF\n");
    saveSetting(Key::ProgrammerPathName, "/bin/epicwin");
    w.launcher.failWatched = kFileNotFound;
    for (const bool take : {false, true}) {
        w.prompts.boxes.clear();
        w.prompts.offered.clear();
        w.prompts.takeOffer = {take};
        GoProgram(doc);
        ASSERT_EQ(w.prompts.boxes.size(), 1u);
        EXPECT_EQ(w.prompts.boxes[0].text, "Launch Programmer Error! \r\r/bin/epicwin not found!");
        ASSERT_EQ(w.prompts.offered.size(), 1u);
        EXPECT_EQ(w.prompts.offered[0], std::pair(std::size_t(0), QString("Check Set-up...")));
        EXPECT_EQ(frame.setupChecks, take ? 1 : 0);
        ASSERT_NE(frmProgrammer::find(), nullptr) << "the options open either way";
        frmProgrammer::find()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(ProgrammerTest, TheOutputWindowOffersTheSetUpCheckForARunThatFailedForWantOfSomething) {
    const auto run = [&](const ProcessEnd& end, const QByteArray& said) {
        auto session = std::make_unique<ProgrammerSession>();
        session->start(w.launcher, {"/usr/bin/pp3", {"-c", "/dev/ttyACM0"}}, {});
        ProgrammerOutput& out = ProgrammerOutput::showRun(frame, std::move(session));
        if (!said.isEmpty())
            w.launcher.runs.back()->say(ProcessEvents::Channel::Err, said);
        w.launcher.runs.back()->end(end);
        return &out;
    };
    ProgrammerOutput* out = run({How::Exited, 1, ""}, "Verify failed\n");
    EXPECT_FALSE(out->cmdCheckSetup->isVisible());
    out = run({How::Exited, 2, ""}, "/dev/ttyACM0: Permission denied\n");
    ASSERT_TRUE(out->cmdCheckSetup->isVisible());
    out->cmdCheckSetup->click();
    EXPECT_EQ(frame.setupChecks, 1);
    // The next run starts without it.
    auto session = std::make_unique<ProgrammerSession>();
    session->start(w.launcher, {"/usr/bin/pp3", {}}, {});
    ProgrammerOutput::showRun(frame, std::move(session));
    EXPECT_FALSE(out->cmdCheckSetup->isVisible());
    delete out;
}
