#include "compile/CompileScript.h"
#include "support/FakeDeviceCombo.h"
#include "platform/Failure.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <tuple>

namespace {

QByteArray bat(const QString& D, const QString& P = "C:\\PBP\\PBPW.EXE", const QString& O = "") {
    const QString M = compilerDevice("PIC16F84");
    return runpbBat({.D = D, .S = "C:\\IDE", .P = P, .O = O, .C = compilerDirectory(P, '\\'), .M = M});
}

TEST(RunpbBat, IsTheEightCrlfLinesWithTheirEdgeCases) {
    EXPECT_EQ(bat("C:\\WORK\\LED\\BLINK.BAS", "C:\\PBP\\PBPW.EXE", "-ampasm -oq"),
              QByteArray("@ECHO OFF\r\nDEL C:\\IDE\\temp.dat\r\nC:\r\nCD\\WORK\\LED\r\nPATH=C:\\PBP;%path%\r\n"
                         "ECHO Compiling.... Please Wait.\r\n"
                         "C:\\PBP\\PBPW.EXE -ampasm -oq -p16F84 C:\\WORK\\LED\\BLINK.BAS>C:\\IDE\\temp.dat\r\n"
                         "TYPE C:\\IDE\\temp.dat\r\n"));
    // Empty options leave two blanks in front of "-p", and only blanks around compiler and options go; a
    // document at the root of a drive gives "CD" alone; a compiler without a directory gives "PATH=;".
    const std::tuple<const char*, const char*, const char*, const char*> lines[] = {
        {"C:\\X.BAS", "C:\\PBP\\PBPW.EXE", "", "\nC:\\PBP\\PBPW.EXE  -p16F84 C:\\X.BAS>C:\\IDE\\temp.dat\r"},
        {"C:\\X.BAS", " C:\\PBP\\PBPW.EXE ", "  \t-v  ", "\nC:\\PBP\\PBPW.EXE \t-v -p16F84 C:\\X.BAS>"},
        {"D:\\X.BAS", "C:\\PBP\\PBPW.EXE", "", "\nD:\r\nCD\r\n"},
        {"D:\\A\\B C\\X.PBP", "PBPW.EXE", "", "\nCD\\A\\B C\r\nPATH=;%path%\r\n"},
    };
    for (const auto& [D, P, O, part] : lines)
        EXPECT_TRUE(bat(D, P, O).contains(part)) << bat(D, P, O).toStdString();
    // No backslash past the drive: line 4 cannot be built.
    for (const char* d : {"", "BLINK.BAS", "\\BLINK.BAS", "C\\BLINK.BAS"}) {
        try {
            bat(d);
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
                                      ">'/opt/quillbay/temp.dat.part' 2>&1\n"
                                      "mv -f -- '/opt/quillbay/temp.dat.part' '/opt/quillbay/temp.dat'\n"
                                      "cat -- '/opt/quillbay/temp.dat'\n"));
    // No options and no compiler directory (an empty PATH entry would mean the current directory), with
    // the document and the application directory at the root.
    in = {.D = "/blink.pbp", .S = "/", .P = "PBPW", .O = "   ", .C = "", .M = "16F84A"};
    EXPECT_EQ(runpbSh(in),
              QByteArray("#!/bin/sh\nrm -f -- '/temp.dat' '/temp.dat.part'\ncd -- '/'\nexport PATH\n"
                         "echo 'Compiling.... Please Wait.'\n'PBPW' -p'16F84A' '/blink.pbp' >'/temp.dat.part' 2>&1\n"
                         "mv -f -- '/temp.dat.part' '/temp.dat'\ncat -- '/temp.dat'\n"));
    in.D = "blink.pbp";
    EXPECT_THROW(runpbSh(in), Failure);
}

TEST(CompileOptions, OqJoinsAmpasmAndTheDeviceFallsBackToTheFirstEntry) {
    const std::pair<const char*, const char*> cases[] = {
        {"  -ampasm  ", "-ampasm -oq"}, {"-AmPasm -v", "-AmPasm -v -oq"}, {"-AMPASM -OQ", "-AMPASM -OQ"},
        {" -oq -ampasm ", " -oq -ampasm "}, {"  -v -s ", "  -v -s "}};
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
    const QString root = tmp.path() + "/" + QStringLiteral("a b 'q' \"dq\" $HOME `x` ; & é");
    const QString app = root + "/app $PATH", compilerDir = root + "/pbp 'bin'", docDir = root + "/src \"x\" $1";
    for (const QString& d : {app, compilerDir, docDir})
        ASSERT_TRUE(QDir().mkpath(d)) << d.toStdString();
    // The fake compiler prints where it runs, whether the old output is gone, its PATH's first entry and
    // each argument on a line of its own; its notes on standard error join the output where written.
    const QString compiler = compilerDir + "/PBPW $X.sh", document = docDir + "/blink 'it'.pbp";
    writeFile(compiler, "#!/bin/sh\necho \"cwd=$(pwd)\"\n[ -e '../app $PATH/temp.dat' ] && echo 'old output'\n"
                        "echo 'note' >&2\necho \"path=${PATH%%:*}\"\nfor a in \"$@\"; do echo \"arg=$a\"; done\n");
    writeFile(app + "/temp.dat", "old output\n");
    writeFile(app + "/runpb.sh", runpbSh({.D = document, .S = app, .P = compiler, .O = "  -ampasm   -oq  ",
                                          .C = compilerDirectory(compiler), .M = "16F84A"}));
    QProcess sh;
    sh.start("/bin/sh", {app + "/runpb.sh"});
    ASSERT_TRUE(sh.waitForFinished(-1));

    const QByteArray expected = "cwd=" + docDir.toUtf8() + "\nnote\npath=" + compilerDir.toUtf8() +
                                "\narg=-ampasm\narg=-oq\narg=-p16F84A\narg=" + document.toUtf8() + "\n";
    QFile output(app + "/temp.dat");
    ASSERT_TRUE(output.open(QIODevice::ReadOnly));
    EXPECT_EQ(output.readAll(), expected);
    EXPECT_EQ(sh.readAllStandardOutput(), "Compiling.... Please Wait.\n" + expected);
    EXPECT_EQ(sh.readAllStandardError(), "");
}

TEST(RunpbShWine, HandsTheCompilerItsWindowsFormsThroughWine) {
    const CompileInputs in{.D = "/home/ann/my led/blink.pbp", .S = "/opt/q b", .P = "/opt/pbp/PBPW.EXE",
                           .O = R"( -ampasm  "-i C:\inc dir" )", .C = "/opt/pbp", .M = "16F84A"};
    const WineForms win{.wine = "/usr/bin/wine", .P = R"(Z:\OPT\PBP\PBPW.EXE)", .D = R"(Z:\home\ann\MY_'~4UZ\blink.pbp)",
                        .C = compilerDirectory(R"(Z:\OPT\PBP\PBPW.EXE)", '\\')};
    EXPECT_EQ(runpbShWine(in, win),
              QByteArray(R"(#!/bin/sh
rm -f -- '/opt/q b/temp.dat' '/opt/q b/temp.dat.part'
cd -- '/home/ann/my led'
WINEPATH='Z:\OPT\PBP'"${WINEPATH:+;$WINEPATH}"; WINEDEBUG=-all; export WINEDEBUG WINEPATH
echo 'Compiling.... Please Wait.'
'/usr/bin/wine' 'Z:\OPT\PBP\PBPW.EXE' '-ampasm' '-i C:\inc dir' '-p16F84A' 'Z:\home\ann\MY_'\''~4UZ\blink.pbp' >'/opt/q b/temp.dat.part'
mv -f -- '/opt/q b/temp.dat.part' '/opt/q b/temp.dat'
cat -- '/opt/q b/temp.dat'
)"));
    // Empty options add no word; a document without a directory cannot be built.
    EXPECT_TRUE(runpbShWine({.D = "/x.pbp", .S = "/", .P = "", .O = "  ", .C = "", .M = "12F675"}, win)
                    .contains(R"('Z:\OPT\PBP\PBPW.EXE' '-p12F675' 'Z:)"));
    EXPECT_THROW(runpbShWine({.D = "x.pbp", .S = "/", .P = "", .O = "", .C = "", .M = "12F675"}, win), Failure);
}

TEST(RunpbShWine, NothingReachesTheShellAndWineNoiseStaysOut) {
    QTemporaryDir tmp;
    const QString app = tmp.path() + "/app ; $HOME", docDir = tmp.path() + "/src 'é' `x`";
    for (const QString& d : {app, docDir})
        ASSERT_TRUE(QDir().mkpath(d));
    // A wine that prints what it was given and its environment, and complains on standard error.
    const QString wine = tmp.path() + "/wine $1";
    writeFile(wine, "#!/bin/sh\necho \"cwd=$(pwd)\"\necho \"WINEPATH=$WINEPATH WINEDEBUG=$WINEDEBUG\"\n"
                    "for a in \"$@\"; do echo \"arg=$a\"; done\necho 'fixme:heap:noise' >&2\n");
    const WineForms win{.wine = wine, .P = R"(Z:\P $(id) ;\PBPW.EXE)", .D = R"(Z:\S 'q'\B`X`.PBP)",
                        .C = R"(Z:\P $(id) ;)"};
    writeFile(app + "/runpb.sh", runpbShWine({.D = docDir + "/b.pbp", .S = app, .P = "", .O = R"(-a "b c" $X;d)",
                                              .C = "", .M = "16F84A"},
                                             win));
    QProcess sh;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("WINEPATH", R"(C:\user)");
    sh.setProcessEnvironment(env);
    sh.start("/bin/sh", {app + "/runpb.sh"});
    ASSERT_TRUE(sh.waitForFinished(-1));
    QFile output(app + "/temp.dat");
    ASSERT_TRUE(output.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(output.readAll()),
              "cwd=" + docDir + R"(
WINEPATH=Z:\P $(id) ;;C:\user WINEDEBUG=-all
arg=Z:\P $(id) ;\PBPW.EXE
arg=-a
arg=b c
arg=$X;d
arg=-p16F84A
arg=Z:\S 'q'\B`X`.PBP
)");
    EXPECT_EQ(sh.readAllStandardError(), "fixme:heap:noise\n");
}

}  // namespace
