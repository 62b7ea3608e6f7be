#include "compile/CompileScript.h"
#include "platform/Failure.h"
#include "support/Doubles.h"
#include "support/FakeDeviceCombo.h"
#include "support/Files.h"

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
    // Empty options leave two blanks; blanks around compiler and options go; a drive's root gives "CD" alone.
    const std::tuple<const char*, const char*, const char*, const char*> lines[] = {
        {"C:\\X.BAS", "C:\\PBP\\PBPW.EXE", "", "\nC:\\PBP\\PBPW.EXE  -p16F84 C:\\X.BAS>C:\\IDE\\temp.dat\r"},
        {"C:\\X.BAS", " C:\\PBP\\PBPW.EXE ", "  \t-v  ", "\nC:\\PBP\\PBPW.EXE \t-v -p16F84 C:\\X.BAS>"},
        {"D:\\X.BAS", "C:\\PBP\\PBPW.EXE", "", "\nD:\r\nCD\r\n"},
        {"D:\\A\\B C\\X.PBP", "PBPW.EXE", "", "\nCD\\A\\B C\r\nPATH=;%path%\r\n"},
    };
    for (const auto& [D, P, O, part] : lines)
        EXPECT_TRUE(bat(D, P, O).contains(part)) << bat(D, P, O).toStdString();
    // A second compile at the same time names its own output wherever temp.dat stood.
    CompileInputs second{.D = "C:\\X.BAS", .S = "C:\\IDE", .P = "PBPW.EXE", .O = "", .C = "", .M = "16F84"};
    const QByteArray first = runpbBat(second);
    second.output = "temp2.dat";
    EXPECT_EQ(runpbBat(second), QByteArray(first).replace("temp.dat", "temp2.dat"));
    // No backslash past the drive: line 4 cannot be built.
    for (const char* d : {"", "BLINK.BAS", "\\BLINK.BAS", "C\\BLINK.BAS"})
        EXPECT_EQ(failureNumber([&] { bat(d); }), 5) << d;
}

TEST(RunpbSh, TakesTheSameStepsWithQuotedPathsAndEndsWithTheCompilersStatus) {
    CompileInputs in{.D = "/home/ann/led/blink.pbp", .S = "/opt/quillbay", .P = "/opt/pbp/PBPW.EXE",
                     .O = " -ampasm -oq ", .C = compilerDirectory("/opt/pbp/PBPW.EXE", '/'), .M = "16F84A"};
    EXPECT_EQ(runpbSh(in), QByteArray("#!/bin/sh\n"
                                      "rm -f -- '/opt/quillbay/temp.dat' '/opt/quillbay/temp.dat.part' "
                                      "'/opt/quillbay/temp.dat.status'\n"
                                      "cd -- '/home/ann/led'\n"
                                      "PATH='/opt/pbp':\"$PATH\"; export PATH\n"
                                      "echo 'Compiling.... Please Wait.'\n"
                                      "'/opt/pbp/PBPW.EXE' -ampasm -oq -p'16F84A' '/home/ann/led/blink.pbp' "
                                      ">'/opt/quillbay/temp.dat.part' 2>&1\n"
                                      "status=$?\n"
                                      "echo \"$status\" >'/opt/quillbay/temp.dat.status'\n"
                                      "mv -f -- '/opt/quillbay/temp.dat.part' '/opt/quillbay/temp.dat'\n"
                                      "cat -- '/opt/quillbay/temp.dat'\n"
                                      "[ \"$status\" = 0 ] || echo \"exit status $status\"\n"
                                      "exit \"$status\"\n"));
    // No options, no compiler directory (an empty PATH entry would mean the current directory), all at the root.
    in = {.D = "/blink.pbp", .S = "/", .P = "PBPW", .O = "   ", .C = "", .M = "16F84A"};
    EXPECT_EQ(runpbSh(in),
              QByteArray("#!/bin/sh\nrm -f -- '/temp.dat' '/temp.dat.part' '/temp.dat.status'\ncd -- '/'\n"
                         "export PATH\necho 'Compiling.... Please Wait.'\n'PBPW' -p'16F84A' '/blink.pbp' "
                         ">'/temp.dat.part' 2>&1\nstatus=$?\necho \"$status\" >'/temp.dat.status'\n"
                         "mv -f -- '/temp.dat.part' '/temp.dat'\ncat -- '/temp.dat'\n"
                         "[ \"$status\" = 0 ] || echo \"exit status $status\"\nexit \"$status\"\n"));
    const QByteArray first = runpbSh(in);
    in.output = "temp2.dat";
    EXPECT_EQ(runpbSh(in), QByteArray(first).replace("temp.dat", "temp2.dat"));
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

// Runs the script as runpb.sh in `app`: what it left in temp.dat, its standard output and error, the
// status file and its own exit status.
QList<QByteArray> runScript(const QString& app, const QByteArray& script,
                            const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment()) {
    writeProgram(app + "/runpb.sh", script);
    QProcess sh;
    sh.setProcessEnvironment(env);
    sh.start("/bin/sh", {app + "/runpb.sh"});
    sh.waitForFinished(-1);
    return {readFile(app + "/temp.dat"), sh.readAllStandardOutput(), sh.readAllStandardError(),
            readFile(app + "/temp.dat.status"), QByteArray::number(sh.exitCode())};
}

TEST(RunpbSh, RunsTheCompilerWithPathsThatNeedQuoting) {
    QTemporaryDir tmp;
    const QString root = tmp.path() + "/" + QStringLiteral("a b 'q' \"dq\" $HOME `x` ; & é");
    const QString app = root + "/app $PATH", compilerDir = root + "/pbp 'bin'", docDir = root + "/src \"x\" $1";
    // The fake compiler prints where it runs, whether the old output is there, PATH's first entry and its arguments.
    const QString compiler = compilerDir + "/PBPW $X.sh", document = docDir + "/blink 'it'.pbp";
    writeProgram(compiler, "#!/bin/sh\necho \"cwd=$(pwd)\"\n[ -e '../app $PATH/temp.dat' ] && echo 'old output'\n"
                        "echo 'note' >&2\necho \"path=${PATH%%:*}\"\nfor a in \"$@\"; do echo \"arg=$a\"; done\n");
    writeProgram(document, "");
    writeProgram(app + "/temp.dat", "old output\n");
    const QByteArray expected = "cwd=" + docDir.toUtf8() + "\nnote\npath=" + compilerDir.toUtf8() +
                                "\narg=-ampasm\narg=b c\narg=$X;d\narg=-p16F84A\narg=" + document.toUtf8() + "\n";
    EXPECT_EQ(runScript(app, runpbSh({.D = document, .S = app, .P = compiler, .O = R"(  -ampasm   "b c" $X;d )",
                                      .C = compilerDirectory(compiler), .M = "16F84A"})),
              QList<QByteArray>({expected, "Compiling.... Please Wait.\n" + expected, "", "0\n", "0"}));
}

TEST(RunpbSh, CarriesTheCompilersStatusOutAndTheShellsWordsOnOneThatCantStart) {
    QTemporaryDir tmp;
    const QString app = tmp.path() + "/app", doc = writeProgram(tmp.path() + "/src/b.pbp", "");
    struct Case {
        const char* name;
        QByteArray program;
        QByteArray output;  // what temp.dat starts with
        int status;
    };
    const Case cases[] = {
        {"quiet", "#!/bin/sh\nexit 2\n", "", 2},
        {"crashes", "#!/bin/sh\necho half >&2\nkill -SEGV $$\n", "half\n", 139},
        {"plain text", "not a program\n", "", 126},
        {"bad interpreter", "#!/no/such/sh\necho hi\n", "", 127},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QString compiler = writeProgram(tmp.path() + "/pbp/" + c.name, c.program);
        if (c.status == 126)
            QFile::setPermissions(compiler, QFile::ReadOwner | QFile::WriteOwner);
        const QList<QByteArray> ran =
            runScript(app, runpbSh({.D = doc, .S = app, .P = compiler, .O = "", .C = "", .M = "16F84A"}));
        EXPECT_TRUE(ran[0].startsWith(c.output)) << ran[0].toStdString();
        // sh's own words name the program it couldn't start.
        EXPECT_EQ(ran[0].contains(compiler.toUtf8() + ": "), c.status >= 126 && c.status <= 127) << ran[0].toStdString();
        const QByteArray n = QByteArray::number(c.status);
        EXPECT_EQ(ran.mid(1), QList<QByteArray>({"Compiling.... Please Wait.\n" + ran[0] + "exit status " + n + "\n",
                                                  "", n + "\n", n}));
        EXPECT_EQ(compileExitStatus(app + "/temp.dat"), c.status);
    }
    EXPECT_EQ(compileExitStatus(app + "/none.dat"), std::nullopt);
    writeProgram(app + "/bad.dat.status", "x\n");
    EXPECT_EQ(compileExitStatus(app + "/bad.dat"), std::nullopt);
    // The screen's line goes behind the last line, ended as the others are.
    const std::tuple<const char*, const char*> texts[] = {
        {"", "exit status 2\n"}, {"a\n", "a\nexit status 2\n"}, {"a\r\nb", "a\r\nb\r\nexit status 2\r\n"}};
    for (const auto& [text, with] : texts)
        EXPECT_EQ(withOutputLine(text, exitStatusText("2")), with);
}

TEST(RunpbShWine, HandsWineTheWindowsFormsAsWholeWordsAndKeepsItsOwnLinesOutUnlessItFails) {
    QTemporaryDir tmp;
    const QString app = tmp.path() + "/app ; $HOME", docDir = tmp.path() + "/src 'é' `x`";
    // A wine that runs the compiler: its words, then a line of the compiler's on standard error between
    // two of wine's own, and the status the compiler ends with.
    const QString wine = tmp.path() + "/wine $1";
    writeProgram(wine, "#!/bin/sh\necho \"cwd=$(pwd)\"\necho \"WINEPATH=$WINEPATH WINEDEBUG=$WINEDEBUG\"\n"
                    "for a in \"$@\"; do echo \"arg=$a\"; done\n"
                    "echo 'wine: configuration in L\"/x\" has been updated.' >&2\necho 'note: 1 warning' >&2\n"
                    "printf '\\251 1252\\n'\necho 'wineserver: lost' >&2\nexit \"$(cat \"$(dirname \"$0\")/status\")\"\n");
    writeProgram(docDir + "/b.pbp", "");
    const WineForms win{.wine = wine, .P = R"(Z:\P $(id) ;\PBPW.EXE)", .D = R"(Z:\S 'q'\B`X`.PBP)",
                        .C = R"(Z:\P $(id) ;)"};
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("WINEPATH", R"(C:\user)");
    const QByteArray expected = "cwd=" + docDir.toUtf8() + R"(
WINEPATH=Z:\P $(id) ;;C:\user WINEDEBUG=-all
arg=Z:\P $(id) ;\PBPW.EXE
arg=-a
arg=b c
arg=$X;d
arg=-p16F84A
arg=Z:\S 'q'\B`X`.PBP
note: 1 warning
)" + QByteArray("\xA9 1252\n");
    const CompileInputs in{.D = docDir + "/b.pbp", .S = app, .P = "", .O = R"(-a "b c" $X;d)", .C = "", .M = "16F84A"};
    writeProgram(tmp.path() + "/status", "0");
    EXPECT_EQ(runScript(app, runpbShWine(in, win), env),
              QList<QByteArray>({expected, "Compiling.... Please Wait.\n" + expected, "", "0\n", "0"}));
    // A failure shows wine's lines too, behind the compiler's, as they may tell why.
    writeProgram(tmp.path() + "/status", "53");
    const QByteArray failed = expected + "wine: configuration in L\"/x\" has been updated.\nwineserver: lost\n";
    EXPECT_EQ(runScript(app, runpbShWine(in, win), env),
              QList<QByteArray>({failed, "Compiling.... Please Wait.\n" + failed + "exit status 53\n", "", "53\n", "53"}));
    // Empty options add no word; a document without a directory cannot be built.
    EXPECT_TRUE(runpbShWine({.D = "/x.pbp", .S = "/", .P = "", .O = "  ", .C = "", .M = "12F675"}, win)
                    .contains(R"(;\PBPW.EXE' '-p12F675' 'Z:\S)"));
    EXPECT_THROW(runpbShWine({.D = "x.pbp", .S = "/", .P = "", .O = "", .C = "", .M = "12F675"}, win), Failure);
}

}  // namespace
