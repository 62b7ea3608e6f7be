#include "compile/CompileScript.h"
#include "devices/FakeDeviceCombo.h"
#include "platform/Failure.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <tuple>

namespace {

CompileInputs windowsInputs(const QString& D = "C:\\WORK\\LED\\BLINK.BAS", const QString& P = "C:\\PBP\\PBPW.EXE",
                            const QString& O = "-ampasm -oq") {
    return {.D = D, .S = "C:\\IDE", .P = P, .O = O, .C = compilerDirectory(P, '\\'), .M = compilerDevice("PIC16F84")};
}

TEST(RunpbBat, IsTheEightCrlfLinesWithTheirEdgeCases) {
    EXPECT_EQ(runpbBat(windowsInputs()), QByteArray("@ECHO OFF\r\n"
                                                    "DEL C:\\IDE\\temp.dat\r\n"
                                                    "C:\r\n"
                                                    "CD\\WORK\\LED\r\n"
                                                    "PATH=C:\\PBP;%path%\r\n"
                                                    "ECHO Compiling.... Please Wait.\r\n"
                                                    "C:\\PBP\\PBPW.EXE -ampasm -oq -p16F84 "
                                                    "C:\\WORK\\LED\\BLINK.BAS>C:\\IDE\\temp.dat\r\n"
                                                    "TYPE C:\\IDE\\temp.dat\r\n"));

    // The lines of the script for this document, compiler and options.
    auto bat = [](const QString& D, const QString& P, const QString& O) {
        return QString::fromLocal8Bit(runpbBat(windowsInputs(D, P, O))).split("\r\n");
    };
    const QString doc = "C:\\WORK\\LED\\BLINK.BAS", pbp = "C:\\PBP\\PBPW.EXE";
    // Empty options leave two blanks in front of "-p"; only blanks around compiler and options go.
    EXPECT_EQ(bat(doc, pbp, "")[6], "C:\\PBP\\PBPW.EXE  -p16F84 C:\\WORK\\LED\\BLINK.BAS>C:\\IDE\\temp.dat");
    EXPECT_EQ(bat(doc, " " + pbp + " ", "  -v  ")[6],
              "C:\\PBP\\PBPW.EXE -v -p16F84 C:\\WORK\\LED\\BLINK.BAS>C:\\IDE\\temp.dat");
    EXPECT_TRUE(bat(doc, pbp, "\t-v")[6].startsWith("C:\\PBP\\PBPW.EXE \t-v -p16F84"));
    EXPECT_EQ(bat(doc, "PBPW.EXE", "")[4], "PATH=;%path%");
    // A document at the root of a drive gives "CD" alone; a deep one keeps every directory.
    EXPECT_EQ(bat("D:\\BLINK.BAS", pbp, "").mid(2, 2), QStringList({"D:", "CD"}));
    EXPECT_EQ(bat("D:\\A\\B C\\D\\X.PBP", pbp, "")[3], "CD\\A\\B C\\D");
    // No backslash past the drive: line 4 cannot be built.
    for (const char* d : {"", "BLINK.BAS", "\\BLINK.BAS", "C\\BLINK.BAS"}) {
        try {
            bat(d, pbp, "");
            ADD_FAILURE() << "no failure for " << d;
        } catch (const Failure& f) {
            EXPECT_EQ(f.number, 5) << d;
        }
    }
}

TEST(RunpbSh, TakesTheSameStepsWithQuotedPaths) {
    CompileInputs in{.D = "/home/ann/led/blink.pbp", .S = "/opt/quillbay", .P = "/opt/pbp/PBPW.EXE",
                     .O = " -ampasm -oq ", .C = compilerDirectory("/opt/pbp/PBPW.EXE", '/'), .M = "16F84A"};
    EXPECT_EQ(runpbSh(in), QByteArray("#!/bin/sh\n"
                                      "rm -f -- '/opt/quillbay/temp.dat' '/opt/quillbay/temp.dat.part'\n"
                                      "cd -- '/home/ann/led'\n"
                                      "PATH='/opt/pbp':\"$PATH\"; export PATH\n"
                                      "echo 'Compiling.... Please Wait.'\n"
                                      "'/opt/pbp/PBPW.EXE' -ampasm -oq -p'16F84A' '/home/ann/led/blink.pbp' "
                                      ">'/opt/quillbay/temp.dat.part'\n"
                                      "mv -f -- '/opt/quillbay/temp.dat.part' '/opt/quillbay/temp.dat'\n"
                                      "cat -- '/opt/quillbay/temp.dat'\n"));

    // No options, no compiler directory, a document and an application directory at the root.
    in = {.D = "/blink.pbp", .S = "/", .P = "PBPW", .O = "   ", .C = "", .M = "16F84A"};
    const QStringList l = QString::fromUtf8(runpbSh(in)).split('\n');
    EXPECT_EQ(l[1], "rm -f -- '/temp.dat' '/temp.dat.part'");
    EXPECT_EQ(l[2], "cd -- '/'");
    EXPECT_EQ(l[3], "export PATH") << "an empty PATH entry would mean the current directory";
    EXPECT_EQ(l[5], "'PBPW' -p'16F84A' '/blink.pbp' >'/temp.dat.part'");
    in.D = "blink.pbp";
    EXPECT_THROW(runpbSh(in), Failure);
}

TEST(CompileOptions, OqJoinsAmpasmAndTheDeviceFallsBackToTheFirstEntry) {
    const std::pair<const char*, const char*> cases[] = {
        {"-ampasm", "-ampasm -oq"},        {"  -ampasm  ", "-ampasm -oq"}, {"-AmPasm -v", "-AmPasm -v -oq"},
        {"-AMPASM -OQ", "-AMPASM -OQ"},    {"-ampasm -Oq ", "-ampasm -Oq "}, {" -oq -ampasm ", " -oq -ampasm "},
        {"  -v -s ", "  -v -s "},
    };
    for (const auto& [typed, result] : cases)
        EXPECT_EQ(optionsWithOq(typed), result) << typed;

    FakeDeviceCombo combo;
    combo.entries = {"PIC16F84A", "PIC12F675", "PIC16F877A"};
    // No selection, or one past the end, becomes the first entry and stays selected.
    const std::tuple<int, const char*, int> picks[] = {{-1, "16F84A", 0}, {3, "16F84A", 0}, {2, "16F877A", 2}};
    for (const auto& [index, device, after] : picks) {
        combo.index = index;
        EXPECT_EQ(selectCompileDevice(combo), device) << index;
        EXPECT_EQ(combo.index, after) << index;
    }
}

// Written executable: the compiler needs it, the other files don't mind.
void writeFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size()) << path.toStdString();
    f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
}

TEST(RunpbSh, RunsTheCompilerWithPathsThatNeedQuoting) {
    QTemporaryDir tmp;
    ASSERT_TRUE(tmp.isValid());
    const QString root = tmp.path() + "/" + QStringLiteral("a b 'q' \"dq\" $HOME `x` ; & é");
    const QString app = root + "/app $PATH", compilerDir = root + "/pbp 'bin'", docDir = root + "/src \"x\" $1";
    for (const QString& d : {app, compilerDir, docDir})
        ASSERT_TRUE(QDir().mkpath(d)) << d.toStdString();
    // The fake compiler prints where it runs, whether the old output is gone, its PATH's first entry
    // and each argument on a line of its own; a note on standard error must not reach the output.
    const QString compiler = compilerDir + "/PBPW $X.sh";
    writeFile(compiler,
              "#!/bin/sh\n"
              "echo \"cwd=$(pwd)\"\n"
              "[ -e '../app $PATH/temp.dat' ] && echo 'old output still there'\n"
              "echo \"path=${PATH%%:*}\"\n"
              "for a in \"$@\"; do echo \"arg=$a\"; done\n"
              "echo 'to the console' >&2\n");
    const QString document = docDir + "/blink 'it'.pbp";
    writeFile(document, "LED VAR PORTB.0\n");
    writeFile(app + "/temp.dat", "old output\n");
    writeFile(app + "/runpb.sh", runpbSh({.D = document, .S = app, .P = compiler, .O = "  -ampasm   -oq  ",
                                          .C = compilerDirectory(compiler), .M = "16F84A"}));

    QProcess sh;
    sh.setWorkingDirectory(tmp.path());
    sh.start("/bin/sh", {app + "/runpb.sh"});
    ASSERT_TRUE(sh.waitForFinished(-1));

    const QByteArray expected = "cwd=" + docDir.toUtf8() + "\npath=" + compilerDir.toUtf8() +
                                "\narg=-ampasm\narg=-oq\narg=-p16F84A\narg=" + document.toUtf8() + "\n";
    QFile output(app + "/temp.dat");
    ASSERT_TRUE(output.open(QIODevice::ReadOnly));
    EXPECT_EQ(output.readAll(), expected);
    EXPECT_FALSE(QFile::exists(app + "/temp.dat.part"));
    EXPECT_EQ(sh.readAllStandardOutput(), "Compiling.... Please Wait.\n" + expected);
    EXPECT_TRUE(sh.readAllStandardError().contains("to the console"));
}

}  // namespace
