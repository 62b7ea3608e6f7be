// Compile and Program: a compile that ends well starts the programmer as Launch Programmer does; any other
// says why on its output screen and starts nothing.
#include "RunningFrame.h"

#include "programmer/ProgrammerOutput.h"

#include <QTemporaryDir>

TEST(CompileAndProgram, ProgramsOnlyAfterACleanCompileWithAFreshHexAndSaysWhyNot) {
    QTemporaryDir scratch;
    // The compiler double prints, may write the hex file beside the source, and ends with a status.
    const auto compiler = [&](const char* name, const QByteArray& says, bool writesHex, int status) {
        return writeProgram(scratch.filePath(QString(name) + "/PBPW"),
                            "#!/bin/sh\nfor a; do src=$a; done\necho 'PICBASIC PRO(TM) Compiler 3.1, done'\n" + says +
                                (writesHex ? "echo ':00000001FF' > \"${src%.pbp}.hex\"\n" : "") + "exit " +
                                QByteArray::number(status) + "\n");
    };
    struct Case {
        const char* name;
        QByteArray says;
        bool writesHex;
        int status;
        bool oldHex;     // a hex file from before, older than the source
        QString refusal; // empty: the programmer starts
    };
    const QString no = "Not programmed: ";
    const Case cases[] = {
        {"error line", "echo 'ERROR Line 2: Bad expression.'\n", true, 0, false,
         no + "the output has an error line."},
        {"exit status", "", true, 2, false, no + "the compiler's exit status is 2."},
        {"no hex", "", false, 0, false, no + "there is no hex file %1."},
        {"old hex", "", false, 0, true, no + "the hex file %1 is older than the source."},
        {"good", "echo 'WARNING Line 1: Unused.'\n", true, 0, true, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CompileFrame t("HIGH PORTB.0\n", compiler(c.name, c.says, c.writesHex, c.status), true, "led/blink.pbp");
        const QString hex = t.w.file("led/blink.hex"), args = scratch.filePath(QString(c.name) + "/args.txt");
        saveSetting(Key::ProgrammerPathName,
                    writeProgram(scratch.filePath(QString(c.name) + "/prog"),
                                 "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + args.toUtf8() + "'\n"));
        if (c.oldHex) {
            t.w.write("led/blink.hex", ":00000001FF\n");
            QFile f(hex);
            ASSERT_TRUE(f.open(QIODevice::ReadWrite));
            f.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime);
        }
        t.type("x");  // unsaved: the command saves first, so the source is newer than any earlier hex
        t.click(ToolId::CompileAndProgram);
        ASSERT_TRUE(t.run().running());
        EXPECT_FALSE(t.enabled(ToolId::CompileAndProgram) || t.enabled(ToolId::Compile));
        t.run().CheckFile.start(3600 * 1000);  // the script's end brings the tick
        ASSERT_TRUE(waitFor([&] { return !t.run().running(); }));
        EXPECT_TRUE(t.enabled(ToolId::CompileAndProgram));
        EXPECT_FALSE(t.doc()->View->document().Modified());
        if (c.refusal.isEmpty()) {
            ASSERT_TRUE(waitFor([&] { return QFileInfo::exists(args) && readFile(args).endsWith("\n"); }));
            EXPECT_EQ(QString::fromUtf8(readFile(args)).split('\n', Qt::SkipEmptyParts),
                      QStringList({"-dPIC16F84A", hex}));
            EXPECT_NE(ProgrammerOutput::find(), nullptr);
            EXPECT_TRUE(t.screen().CompileScreenTimer.isActive()) << "a good compile still counts down";
            EXPECT_FALSE(t.screen().CompilerOutput->Text().contains(no));
        } else {
            const QStringList lines = t.screen().CompilerOutput->Text().split('\n', Qt::SkipEmptyParts);
            EXPECT_EQ(lines.last(), c.refusal.contains("%1") ? c.refusal.arg(hex) : c.refusal);
            EXPECT_EQ(t.screen().CompilerOutput->lineTag(int(lines.size()) - 1), "note");
            EXPECT_FALSE(t.screen().CompileScreenTimer.isActive()) << "the reason stays to be read";
            EXPECT_EQ(t.screen().windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
            EXPECT_EQ(ProgrammerOutput::find(), nullptr);
            EXPECT_FALSE(QFileInfo::exists(args));
        }
        EXPECT_TRUE(t.w.prompts.boxes.empty());
    }
}
