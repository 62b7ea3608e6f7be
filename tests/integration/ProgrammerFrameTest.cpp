// The programmer from the frame's tools: its options dialog one at a time, and a frame that closes while
// a programmer runs.
#include "RunningFrame.h"

#include "platform/Failure.h"
#include "programmer/ProgrammerOutput.h"
#include "programmer/frmProgrammer.h"

#include <QPlainTextEdit>

TEST(ProgrammerFrame, TheMenuBringsTheOpenOptionsForwardInsteadOfASecond) {
    RunningFrame t(QString(), false);
    t.w.write("led/blink.hex", ":00000001FF\n");
    t.start(t.w.write("led/blink.pbp", "HIGH 0\r\n"));
    QStringList modals;
    t.f->modalHook = [&](QDialog& d) { modals << d.windowTitle(); return 0; };
    t.w.launcher.failWatched = kFileNotFound;
    t.click(ToolId::Epic);
    t.click(ToolId::Epic);
    t.click(ToolId::ProgrammerOptions);
    EXPECT_TRUE(modals.isEmpty());
    EXPECT_EQ(t.f->findChildren<frmProgrammer*>().size(), 1);
    EXPECT_EQ(t.w.prompts.boxes.size(), 2u);
}

TEST(ProgrammerFrame, ClosingTheFrameEndsARunningProgrammerWithoutWaitingForIt) {
    RunningFrame t(QString(), false);
    PosixLauncher real;
    globals().launcher = &real;
    const QString pidFile = t.w.file("prog.pid");
    saveSetting(Key::ProgrammerPathName,
                writeProgram(t.w.file("pic tools/prog"),
                             "#!/bin/sh\necho $$ >'" + pidFile.toUtf8() + "'\necho Waiting for the device\nexec sleep 600\n"));
    const QString source = t.w.write("my led/blink.pbp", "HIGH 0\r\n");
    t.w.write("my led/blink.hex", ":00000001FF\n");
    t.start(source);
    t.click(ToolId::Epic);
    ProgrammerOutput* out = ProgrammerOutput::find();
    ASSERT_NE(out, nullptr);
    ASSERT_TRUE(waitFor([&] { return out->Output->toPlainText().contains("Waiting for the device"); }));
    const QString pid = QString::fromUtf8(readFile(pidFile)).trimmed();
    ASSERT_TRUE(QFileInfo::exists("/proc/" + pid));
    t.f->close();
    t.f.reset();
    EXPECT_FALSE(QFileInfo::exists("/proc/" + pid)) << "the programmer went with the frame";
}
