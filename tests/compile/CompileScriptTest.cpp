#include "compile/CompileScript.h"
#include "devices/FakeDeviceCombo.h"
#include "platform/Failure.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

CompileInputs windowsInputs() {
    CompileInputs in;
    in.D = "C:\\WORK\\LED\\BLINK.BAS";
    in.S = "C:\\IDE";
    in.P = "C:\\PBP\\PBPW.EXE";
    in.O = "-ampasm -oq";
    in.C = compilerDirectory(in.P, '\\');
    in.M = compilerDevice("PIC16F84");
    return in;
}

TEST(RunpbBat, IsTheEightCrlfLinesOfTheCompile) {
    EXPECT_EQ(runpbBat(windowsInputs()), QByteArray("@ECHO OFF\r\n"
                                                    "DEL C:\\IDE\\temp.dat\r\n"
                                                    "C:\r\n"
                                                    "CD\\WORK\\LED\r\n"
                                                    "PATH=C:\\PBP;%path%\r\n"
                                                    "ECHO Compiling.... Please Wait.\r\n"
                                                    "C:\\PBP\\PBPW.EXE -ampasm -oq -p16F84 "
                                                    "C:\\WORK\\LED\\BLINK.BAS>C:\\IDE\\temp.dat\r\n"
                                                    "TYPE C:\\IDE\\temp.dat\r\n"));
}

TEST(RunpbBat, FollowsTheLineRulesAtTheirEdges) {
    auto line = [](const CompileInputs& in, int n) {
        return QString::fromLocal8Bit(runpbBat(in)).split("\r\n").at(n - 1);
    };
    CompileInputs in = windowsInputs();

    // Empty options leave two blanks in front of "-p"; blanks around compiler and options go.
    in.O = "";
    EXPECT_EQ(line(in, 7), "C:\\PBP\\PBPW.EXE  -p16F84 C:\\WORK\\LED\\BLINK.BAS>C:\\IDE\\temp.dat");
    in.O = "  -v  ";
    in.P = " C:\\PBP\\PBPW.EXE ";
    EXPECT_EQ(line(in, 7), "C:\\PBP\\PBPW.EXE -v -p16F84 C:\\WORK\\LED\\BLINK.BAS>C:\\IDE\\temp.dat");
    // Only blanks are trimmed, a tab stays.
    in.O = "\t-v";
    EXPECT_TRUE(line(in, 7).startsWith("C:\\PBP\\PBPW.EXE \t-v -p16F84"));

    // A compiler without a backslash has no directory.
    in = windowsInputs();
    in.P = "PBPW.EXE";
    in.C = compilerDirectory(in.P, '\\');
    EXPECT_EQ(line(in, 5), "PATH=;%path%");
    EXPECT_TRUE(line(in, 7).startsWith("PBPW.EXE -ampasm"));

    // A document at the root of a drive gives "CD" alone; a deep one keeps every directory.
    in = windowsInputs();
    in.D = "D:\\BLINK.BAS";
    EXPECT_EQ(line(in, 3), "D:");
    EXPECT_EQ(line(in, 4), "CD");
    in.D = "D:\\A\\B C\\D\\X.PBP";
    EXPECT_EQ(line(in, 4), "CD\\A\\B C\\D");

    // No backslash past the drive: line 4 cannot be built.
    for (const char* d : {"", "BLINK.BAS", "\\BLINK.BAS", "C\\BLINK.BAS"}) {
        in.D = d;
        try {
            runpbBat(in);
            ADD_FAILURE() << "no failure for " << d;
        } catch (const Failure& f) {
            EXPECT_EQ(f.number, 5) << d;
        }
    }
}

TEST(RunpbSh, TakesTheSameStepsWithQuotedPaths) {
    CompileInputs in;
    in.D = "/home/ann/led/blink.pbp";
    in.S = "/opt/quillbay";
    in.P = "/opt/pbp/PBPW.EXE";
    in.O = " -ampasm -oq ";
    in.C = compilerDirectory(in.P, '/');
    in.M = compilerDevice("PIC16F84A");
    EXPECT_EQ(runpbSh(in), QByteArray("#!/bin/sh\n"
                                      "rm -f -- '/opt/quillbay/temp.dat' '/opt/quillbay/temp.dat.part'\n"
                                      "cd -- '/home/ann/led'\n"
                                      "PATH='/opt/pbp':\"$PATH\"; export PATH\n"
                                      "echo 'Compiling.... Please Wait.'\n"
                                      "'/opt/pbp/PBPW.EXE' -ampasm -oq -p'16F84A' '/home/ann/led/blink.pbp' "
                                      ">'/opt/quillbay/temp.dat.part'\n"
                                      "mv -f -- '/opt/quillbay/temp.dat.part' '/opt/quillbay/temp.dat'\n"
                                      "cat -- '/opt/quillbay/temp.dat'\n"));

    auto lines = [](const CompileInputs& in) { return QString::fromUtf8(runpbSh(in)).split('\n'); };
    // No options, no compiler directory, a document at the root, an application directory at the root.
    in.O = "   ";
    in.P = "PBPW";
    in.C = "";
    in.D = "/blink.pbp";
    in.S = "/";
    const QStringList l = lines(in);
    EXPECT_EQ(l[1], "rm -f -- '/temp.dat' '/temp.dat.part'");
    EXPECT_EQ(l[2], "cd -- '/'");
    EXPECT_EQ(l[3], "export PATH") << "an empty PATH entry would mean the current directory";
    EXPECT_EQ(l[5], "'PBPW' -p'16F84A' '/blink.pbp' >'/temp.dat.part'");

    in.D = "blink.pbp";
    EXPECT_THROW(runpbSh(in), Failure);
}

TEST(CompileHelpers, WorkOutDirectoryDeviceOptionsAndSelection) {
    EXPECT_EQ(compilerDirectory("C:\\PBP\\BIN\\PBPW.EXE", '\\'), "C:\\PBP\\BIN");
    EXPECT_EQ(compilerDirectory("/pbpw", '/'), "");
    EXPECT_EQ(compilerDirectory("/a b/c\\d/pbpw"), "/a b/c\\d") << "the platform's separator is /";
    EXPECT_EQ(compilerDevice("PIC16F84"), "16F84");
    EXPECT_EQ(compilerDevice("PI"), "");

    EXPECT_EQ(optionsWithOq("  -ampasm  "), "-ampasm -oq");
    EXPECT_EQ(optionsWithOq("-AmPasm -v"), "-AmPasm -v -oq");
    EXPECT_EQ(optionsWithOq("-AMPASM -OQ"), "-AMPASM -OQ");
    EXPECT_EQ(optionsWithOq(" -oq -ampasm "), " -oq -ampasm ");
    EXPECT_EQ(optionsWithOq("  -v  "), "  -v  ") << "options without -ampasm are kept as typed";

    // A compile always has a device: no selection, or one past the end, becomes the first entry.
    FakeDeviceCombo combo;
    combo.entries = {"PIC16F84A", "PIC12F675", "PIC16F877A"};
    for (int index : {-1, 3, 7}) {
        combo.index = index;
        EXPECT_EQ(selectCompileDevice(combo), "16F84A") << index;
        EXPECT_EQ(combo.index, 0) << "the combo shows the first entry afterwards";
    }
    combo.index = 2;
    EXPECT_EQ(selectCompileDevice(combo), "16F877A");
    EXPECT_EQ(combo.index, 2);
    combo.entries.clear();
    combo.index = -1;
    EXPECT_EQ(selectCompileDevice(combo), "");
}

void writeFile(const QString& path, const QByteArray& bytes, bool executable = false) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
    f.write(bytes);
    f.close();
    if (executable)
        f.setPermissions(f.permissions() | QFileDevice::ExeOwner | QFileDevice::ReadOwner);
}

QByteArray readFile(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

TEST(RunpbSh, RunsTheCompilerWithPathsThatNeedQuoting) {
    QTemporaryDir tmp;
    ASSERT_TRUE(tmp.isValid());
    const QString odd = QStringLiteral("a b 'q' \"dq\" $HOME `x` ; & é");
    const QString root = tmp.path() + "/" + odd;
    const QString app = root + "/app $PATH";
    const QString compilerDir = root + "/pbp 'bin'";
    const QString docDir = root + "/src \"x\" $1";
    for (const QString& d : {app, compilerDir, docDir})
        ASSERT_TRUE(QDir().mkpath(d)) << d.toStdString();

    // The fake compiler prints where it runs, whether the old output is gone, its PATH's first entry
    // and each argument on a line of its own; a note on standard error must not reach the output.
    const QString compiler = compilerDir + "/PBPW $X.sh";
    writeFile(compiler,
              "#!/bin/sh\n"
              "echo \"cwd=$(pwd)\"\n"
              "[ -e \"$QB_APP/temp.dat\" ] && echo 'old output still there'\n"
              "echo \"path=${PATH%%:*}\"\n"
              "for a in \"$@\"; do echo \"arg=$a\"; done\n"
              "echo 'to the console' >&2\n",
              true);
    const QString document = docDir + "/blink 'it'.pbp";
    writeFile(document, "LED VAR PORTB.0\n");
    writeFile(app + "/temp.dat", "old output\n");

    CompileInputs in;
    in.D = document;
    in.S = app;
    in.P = compiler;
    in.O = "  -ampasm   -oq  ";
    in.C = compilerDirectory(compiler);
    in.M = compilerDevice("PIC16F84A");
    const QString script = app + "/runpb.sh";
    writeFile(script, runpbSh(in));

    QProcess sh;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QB_APP", app);
    sh.setProcessEnvironment(env);
    sh.setWorkingDirectory(tmp.path());
    sh.start("/bin/sh", {script});
    ASSERT_TRUE(sh.waitForFinished(-1));
    const QByteArray console = sh.readAllStandardOutput();

    const QByteArray expected = "cwd=" + docDir.toUtf8() + "\n" + "path=" + compilerDir.toUtf8() + "\n" +
                                "arg=-ampasm\n" + "arg=-oq\n" + "arg=-p16F84A\n" + "arg=" + document.toUtf8() + "\n";
    EXPECT_EQ(readFile(app + "/temp.dat"), expected);
    EXPECT_FALSE(QFile::exists(app + "/temp.dat.part"));
    EXPECT_EQ(console, "Compiling.... Please Wait.\n" + expected) << "the output is shown after the compile";
    EXPECT_TRUE(sh.readAllStandardError().contains("to the console"));
}

}  // namespace
