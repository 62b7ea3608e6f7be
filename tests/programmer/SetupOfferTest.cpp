// A launch or a compile that fails for want of something on this machine offers the set-up check, after
// the system's own message, which stays as it was.
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "programmer/ProgrammerOutput.h"
#include "programmer/ProgrammerRun.h"
#include "programmer/ProgrammerSession.h"
#include "programmer/frmProgrammer.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"

#include <QCoreApplication>
#include <QDir>
#include <QPushButton>
#include <gtest/gtest.h>

using How = ProcessEnd::How;

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

TEST(SetupOffer, AFailedLaunchKeepsItsMessageAndOffersTheCheckBesideTheOptions) {
    TestWorld w;
    FakeFrame frame;
    frmEditor doc{frame};
    frame.combo.entries = {"PIC16F84"};
    doc.View->document().setPathName(w.file("blink.bas"));
    w.write("blink.hex", ":00000001FF\n");
    const QString oldDir = QDir::currentPath();
    saveSetting(Key::ProgrammerPathName, "/bin/epicwin");
    w.launcher.failWatched = kFileNotFound;
    for (const bool take : {false, true}) {
        w.prompts.boxes.clear();
        w.prompts.offered.clear();
        w.prompts.takeOffer = {take};
        GoProgram(doc);
        ASSERT_EQ(w.prompts.boxes.size(), 1u);
        EXPECT_EQ(w.prompts.boxes[0].text, "Launch Programmer Error! \r\r/bin/epicwin not found!");
        EXPECT_TRUE(w.prompts.boxes[0].icon == Icon::Critical && w.prompts.boxes[0].buttons == Buttons::Ok);
        ASSERT_EQ(w.prompts.offered.size(), 1u);
        EXPECT_EQ(w.prompts.offered[0], std::pair(std::size_t(0), QString("Check Set-up...")));
        EXPECT_EQ(frame.setupChecks, take ? 1 : 0);
        ASSERT_NE(frmProgrammer::find(), nullptr) << "the options open either way";
        frmProgrammer::find()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QDir::setCurrent(oldDir);
}

TEST(SetupOffer, TheOutputWindowOffersItForARunThatFailedForWantOfSomething) {
    TestWorld w;
    FakeFrame frame;
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
