// Windows programs told by their content, wine's path forms, and the launcher's hidden and detached starts.
#include "fakes/WinePrefix.h"
#include "platform/Failure.h"
#include "platform/PeImage.h"
#include "platform/PosixLauncher.h"
#include "platform/ProgramHost.h"
#include "platform/Wine.h"
#include "platform/WineNames.h"
#include "support/Doubles.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

namespace {

// Hides wine until the end of the scope.
struct PathWithoutWine : ScopedEnv {
    PathWithoutWine() : ScopedEnv("PATH", "/nonexistent-dir") {}
};

// A wine and a wineserver of the test's own in front of PATH: winepath's -w gives Z: and backslashes, -s
// the upper case; each run leaves a line in runs.txt beside them. failWine(n) makes the next n runs fail.
struct FakeWine {
    QTemporaryDir dir;
    ScopedEnv path{"PATH", dir.path().toLocal8Bit() + ":" + qgetenv("PATH")};
    FakeWine() {
        // While failures.txt holds a number above 0, a run counts it down and fails printing nothing.
        writeProgram(dir.filePath("wine"), "#!/bin/sh\nd=$(dirname \"$0\")\nprintf '%s\\n' \"$*\" >> \"$d/runs.txt\"\n"
                                           "n=$(cat \"$d/failures.txt\" 2>/dev/null || echo 0)\n"
                                           "if [ \"$n\" -gt 0 ]; then echo $((n - 1)) > \"$d/failures.txt\"; exit 1; fi\n"
                                           "flag=$2; shift 2\nfor a; do\n  if [ \"$flag\" = -w ]; then "
                                           "printf 'Z:%s\\n' \"$a\" | tr / '\\\\'; else printf '%s\\n' \"$a\" | "
                                           "tr a-z A-Z; fi\ndone\n");
        writeProgram(dir.filePath("wineserver"),
                     "#!/bin/sh\necho \"wineserver $*\" >> \"$(dirname \"$0\")/runs.txt\"\n");
    }
    void failWine(int runs) { ASSERT_TRUE(writeFile(dir.filePath("failures.txt"), QByteArray::number(runs))); }
    // The runs since the last call.
    QStringList runs() {
        const QString text = QString::fromUtf8(readFile(dir.filePath("runs.txt")));
        QFile::remove(dir.filePath("runs.txt"));
        return text == "<missing>" ? QStringList() : text.split('\n', Qt::SkipEmptyParts);
    }
};

bool processExists(qint64 pid) { return ::kill(pid_t(pid), 0) == 0; }

// A plain file, not executable, with its folder.
void putFile(const QString& path, const QByteArray& bytes) { ASSERT_TRUE(writeFile(path, bytes)) << path.toStdString(); }

}  // namespace

TEST(PeImage, IsToldByContentNotByName) {
    EXPECT_TRUE(isPeImage(peHead()));
    EXPECT_TRUE(isPeImage(peHead(0x80)));
    QByteArray wrongSignature = peHead();
    wrongSignature[0x41] = 'X';
    QByteArray offsetPastEnd = peHead();
    offsetPastEnd[0x3C] = char(0xF0);
    const QByteArray notPe[] = {
        QByteArray(),                           // empty
        QByteArray("MZ"),                       // truncated before the offset
        peHead().left(0x3E),                    // truncated inside the offset
        peHead().left(0x42),                    // truncated inside the signature
        wrongSignature,                         // MZ without PE: a DOS program
        offsetPastEnd,                          // offset beyond the bytes
        QByteArray("#!/bin/sh\necho PE\n"),     // a script
        QByteArray("ZM") + peHead().mid(2),     // the signature only at the header
    };
    for (const QByteArray& b : notPe)
        EXPECT_FALSE(isPeImage(b)) << b.toHex().toStdString();

    QTemporaryDir dir;
    EXPECT_TRUE(isPeImageFile(writeProgram(dir.filePath("compiler"), peHead())));
    EXPECT_FALSE(isPeImageFile(writeProgram(dir.filePath("PBPW.EXE"), "#!/bin/sh\necho hello\n")));
    EXPECT_FALSE(isPeImageFile(writeProgram(dir.filePath("short.exe"), "MZ")));
    EXPECT_FALSE(isPeImageFile(dir.filePath("missing.exe")));
    EXPECT_FALSE(isPeImageFile(dir.path()));
    if (const QString fake = fakeProgram("fakepbp.exe"); !fake.isEmpty()) {
        EXPECT_TRUE(isPeImageFile(fake));
    }

    // The machine field behind the signature; none where there is no image or the bytes end before it.
    QByteArray i386 = peHead(0x80);
    i386[0x84] = char(0x4c), i386[0x85] = char(0x01);
    EXPECT_EQ(peMachine(i386), kPeMachineI386);
    EXPECT_EQ(peMachine(i386.left(0x85)), std::nullopt);
    EXPECT_EQ(peMachine(wrongSignature), std::nullopt);
    EXPECT_EQ(peMachineOfFile(writeProgram(dir.filePath("i386.exe"), i386)), kPeMachineI386);
    EXPECT_EQ(peMachineOfFile(dir.filePath("missing.exe")), std::nullopt);
    const std::pair<const char*, quint16> fakes[] = {{"fakepbp.exe", kPeMachineAmd64}, {"fakepbp32.exe", kPeMachineI386}};
    for (const auto& [name, machine] : fakes) {
        if (const QString fake = fakeProgram(name); !fake.isEmpty()) {
            EXPECT_EQ(peMachineOfFile(fake), machine) << name;
        }
    }
}

TEST(Wine, ThirtyTwoBitSupportIsToldByDebiansLoaderOfWine32) {
    struct Layout {
        const char* name;
        QStringList programs;  // under the root; "!" in front: there, but not executable
        QString wine;          // the wine found on PATH, under the root
        bool runs32Bit;
    };
    const QStringList debian64{"usr/bin/wine", "usr/lib/wine/wine64", "usr/lib/wine/wineserver64"};
    const Layout layouts[] = {
        {"wine64 alone", debian64, "usr/bin/wine", false},
        {"wine64 alone, found through a link", debian64 + QStringList{"@usr/local/bin/wine"}, "usr/local/bin/wine", false},
        {"with wine32", debian64 + QStringList{"usr/lib/wine/wine"}, "usr/bin/wine", true},
        {"a wine32 loader that can't run", debian64 + QStringList{"!usr/lib/wine/wine"}, "usr/bin/wine", false},
        {"another wine first on PATH", debian64 + QStringList{"opt/wine/bin/wine"}, "opt/wine/bin/wine", true},
        {"not Debian's layout", {"usr/bin/wine"}, "usr/bin/wine", true},
    };
    for (const Layout& l : layouts) {
        QTemporaryDir root;
        for (const QString& p : l.programs) {
            if (p.startsWith('@')) {
                QDir().mkpath(QFileInfo(root.filePath(p.mid(1))).path());
                ASSERT_TRUE(QFile::link(root.filePath("usr/bin/wine"), root.filePath(p.mid(1))));
            } else if (p.startsWith('!')) {
                putFile(root.filePath(p.mid(1)), "");
            } else {
                writeProgram(root.filePath(p), "");
            }
        }
        EXPECT_EQ(wineRuns32Bit(root.filePath(l.wine), root.path()), l.runs32Bit) << l.name;
    }
    const QString text = wine32MissingMessage("/opt/pbp/PBPX.EXE");
    EXPECT_TRUE(text.startsWith("/opt/pbp/PBPX.EXE is a 32-bit Windows program"));
    EXPECT_TRUE(text.endsWith("sudo dpkg --add-architecture i386 && sudo apt update && sudo apt install wine32"));
}

TEST(WineNames, OutputsThisCompileWroteTakeTheLongNameAndNoFileOfTheUsersIsLost) {
    QTemporaryDir tmp;
    const QString dir = tmp.path() + "/led work";
    auto at = [&](const QString& name) { return dir + "/" + name; };
    LongNamedOutputs ours;
    // One dot: the outputs a compiler given the long name would write over are replaced. Files bearing the
    // alias that the compile didn't write, or that are no outputs, stay.
    putFile(at("blinking_lights_v2.pbp"), "x");
    putFile(at("blinking_lights_v2.hex"), "old");
    putFile(at("BLIN~4HD.LST"), "an earlier compile's");
    const AliasOutputs noted = noteAliasOutputs(at("blinking_lights_v2.pbp"), R"(Z:\TMP\LED_~KNS\BLIN~4HD.PBP)");
    EXPECT_EQ(QStringList({noted.directory, noted.alias, noted.name}), QStringList({dir, "BLIN~4HD", "blinking_lights_v2"}));
    EXPECT_TRUE(noted.compilerWouldUseName);
    for (const char* written : {"BLIN~4HD.HEX", "BLIN~4HD.asm", "BLIN~4HD.TXT"})
        putFile(at(written), written);
    LongNames names = giveLongNames(noted, ours);
    std::sort(names.renamed.begin(), names.renamed.end());
    EXPECT_EQ(names.renamed, (QList<std::pair<QString, QString>>{{"BLIN~4HD.HEX", "blinking_lights_v2.hex"},
                                                                {"BLIN~4HD.asm", "blinking_lights_v2.asm"}}));
    EXPECT_TRUE(names.kept.isEmpty());
    EXPECT_EQ(readFile(at("blinking_lights_v2.hex")), "BLIN~4HD.HEX");
    EXPECT_EQ(readFile(at("BLIN~4HD.LST")) + readFile(at("BLIN~4HD.TXT")), "an earlier compile'sBLIN~4HD.TXT");

    // Two dots: the hex goes where Launch Programmer looks, blink.hex, but another program's stays; once
    // this process put one there, the next compile replaces it until somebody else changes it.
    putFile(at("blink.v2.pbp"), "x");
    putFile(at("blink.hex"), "blink.pbp's");
    struct Step {
        const char* compilerWrites;
        const char* thereBefore;  // what lies in blink.hex before, when the step puts something there
        const char* hexAfter;
        bool renamed;
    };
    const Step steps[] = {
        {"v2", nullptr, "blink.pbp's", false},
        {"v2 once", "<none>", "v2 once", true},
        {"v2 twice!", nullptr, "v2 twice!", true},
        {"v2 3", "the user's own", "the user's own", false},
    };
    for (const Step& st : steps) {
        SCOPED_TRACE(st.compilerWrites);
        if (st.thereBefore && QByteArray(st.thereBefore) == "<none>")
            QFile::remove(at("blink.hex"));
        else if (st.thereBefore)
            putFile(at("blink.hex"), st.thereBefore);
        const AliasOutputs v2 = noteAliasOutputs(at("blink.v2.pbp"), R"(Z:\TMP\LED_~KNS\BLINKV~1.PBP)");
        EXPECT_FALSE(v2.compilerWouldUseName);
        putFile(at("BLINKV~1.HEX"), st.compilerWrites);
        names = giveLongNames(v2, ours);
        EXPECT_EQ(readFile(at("blink.hex")), st.hexAfter);
        EXPECT_EQ(QFileInfo::exists(at("BLINKV~1.HEX")), !st.renamed);
        EXPECT_EQ(names.kept, st.renamed ? QStringList() : QStringList{"BLINKV~1.HEX keeps its name: blink.hex is "
                                                                       "there and is not this compiler's output."});
    }
    // A folder in the way is never replaced; a name that is its own DOS form has nothing to rename.
    QFile::remove(at("blink.hex"));
    QDir().mkpath(at("blink.hex"));
    const AliasOutputs v2 = noteAliasOutputs(at("blink.v2.pbp"), R"(Z:\TMP\LED_~KNS\BLINKV~1.PBP)");
    putFile(at("BLINKV~1.HEX"), "v2 into a folder");
    EXPECT_EQ(giveLongNames(v2, ours).kept.size(), 1);
    EXPECT_TRUE(QFileInfo(at("blink.hex")).isDir());
    EXPECT_EQ(noteAliasOutputs(at("blink.pbp"), R"(Z:\TMP\LED_~KNS\blink.pbp)").alias, "");
}

TEST(WineNames, TheCompilersTextNamesTheUsersFiles) {
    const QString text = "Writing Z:\\TMP\\LED_~KNS\\BLIN~4HD.HEX\r\n"
                         "Error[113] z:\\tmp\\led_~kns\\blin~4hd.asm 45 : Symbol\r\n"
                         "ERROR Line 3: (BLIN~4HD.PBP) and 'BLIN~4HD.PBP'.\r\n"
                         "cwd=Z:\\TMP\\LED_~KNS\r\n"
                         "Z:\\TMP\\LED_~KNS\\INC\\X.BAS, Z:\\TMP\\LED_~KNS2\\X, XBLIN~4HD.HEX, BLIN~4HD.HEXA\r\n"
                         "Z:\\PBP3~1\\PBPX.EXE";
    EXPECT_EQ(withUserNames(text,
                            {{"Z:\\TMP\\LED_~KNS", "/tmp/led work"}, {"Z:\\PBP3~1", "/opt/pbp 3"},
                             {"Z:\\PBP3~1\\PBPX.EXE", "/opt/pbp 3/PBPX.EXE"}},
                            {{"BLIN~4HD.PBP", "blinking_lights_v2.pbp"}, {"BLIN~4HD.HEX", "blinking_lights_v2.hex"},
                             {"BLIN~4HD.asm", "blinking_lights_v2.asm"}}),
              "Writing /tmp/led work/blinking_lights_v2.hex\r\n"
              "Error[113] /tmp/led work/blinking_lights_v2.asm 45 : Symbol\r\n"
              "ERROR Line 3: (blinking_lights_v2.pbp) and 'blinking_lights_v2.pbp'.\r\n"
              "cwd=/tmp/led work\r\n"
              "/tmp/led work/INC/X.BAS, Z:\\TMP\\LED_~KNS2\\X, XBLIN~4HD.HEX, BLIN~4HD.HEXA\r\n"
              "/opt/pbp 3/PBPX.EXE");
}

TEST(WineNames, WindowsPathsInMessagesLeadToTheFilesHere) {
    QTemporaryDir t;
    const QString root = t.filePath("root"), prefix = t.filePath("prefix");
    const QString work = root + "/home/ann/led work";
    for (const QString& f : {work + "/blinking_lights_v2.pbp", work + "/blinking_other.pbp", work + "/blink.asm",
                             work + "/INC/Long Include.bas", prefix + "/drive_c/PBP/INC/Lib File.bas"})
        putFile(f, "x");
    QDir().mkpath(prefix + "/dosdevices");
    ASSERT_TRUE(QFile::link("../drive_c", prefix + "/dosdevices/c:") && QFile::link(root, prefix + "/dosdevices/z:"));
    // Wine's short forms of the names asked about, made up here; each question is noted.
    QList<QStringList> asked;
    const auto shortForms = [&](const QStringList& posix) {
        asked << posix;
        QStringList forms;
        for (const QString& p : posix)
            forms << (p.endsWith("_v2.pbp") ? R"(Z:\X\BLIN~AAA.PBP)" : R"(Z:\X\BLIN~BBB.PBP)");
        return forms;
    };
    const QString include = work + "/INC/Long Include.bas", lib = prefix + "/drive_c/PBP/INC/Lib File.bas";
    const std::tuple<QString, QString, int> cases[] = {
        // path as named, the file here, the questions to wine it took
        {R"(Z:\HOME\ANN\LED_~KNS\INC\LONGI~1.BAS)", include, 0},
        {"z:/home/ann/LED WORK/inc/long include.BAS", include, 0},
        {R"(INC\LONGI~1.BAS)", include, 0},
        {work + "/INC/LONG~4XY.BAS", include, 0},
        {R"(..\led work\INC\..\blink.asm)", work + "/blink.asm", 0},
        {"blink.asm", work + "/blink.asm", 0},
        {R"(C:\PBP\INC\LIB_F~1.BAS)", lib, 0},
        {"c:/pbp/inc/lib file.bas", lib, 0},
        // Two names could bear the alias: wine tells which.
        {R"(Z:\HOME\ANN\LED_~KNS\BLIN~BBB.PBP)", work + "/blinking_other.pbp", 1},
        {R"(Z:\HOME\ANN\LED_~KNS\blin~aaa.pbp)", work + "/blinking_lights_v2.pbp", 1},
        {R"(Z:\HOME\ANN\LED_~KNS\BLIN~ZZZ.PBP)", work + "/BLIN~ZZZ.PBP", 1},
        // From the first part not found on, the names stay; an unknown drive keeps the whole path.
        {R"(Z:\HOME\ANN\NOPE~1\X.PBP)", root + "/home/ann/NOPE~1/X.PBP", 0},
        {R"(Z:\HOME\ANN\LED_~KNS\BLINK.PBP)", work + "/BLINK.PBP", 0},
        {R"(D:\X\Y.BAS)", R"(D:\X\Y.BAS)", 0},
    };
    for (const auto& [named, want, questions] : cases) {
        asked.clear();
        EXPECT_EQ(posixPathOfWindows(named, work, prefix, shortForms), want) << named.toStdString();
        EXPECT_EQ(asked.size(), questions) << named.toStdString();
        if (questions) {
            EXPECT_EQ(asked.value(0), QStringList({work + "/blinking_lights_v2.pbp", work + "/blinking_other.pbp"}));
        }
    }
}

TEST(Wine, MissingWineNamesTheFileAndTheWayToGetIt) {
    QTemporaryDir dir;
    const QString programmer = writeProgram(dir.filePath("EPIC Win.exe"), peHead());
    PathWithoutWine noWine;
    EXPECT_TRUE(wineProgram().isEmpty());
    const QString text = wineMissingMessage(programmer);
    EXPECT_TRUE(text.startsWith(programmer));
    EXPECT_TRUE(text.contains("sudo apt install wine"));
    EXPECT_TRUE(text.contains("wine32"));
    PosixLauncher launcher;
    try {
        launcher.startDetached(programmer, {"-x"}, dir.path());
        ADD_FAILURE() << "started without wine";
    } catch (const Failure& f) {
        EXPECT_NE(f.number, kFileNotFound);
        EXPECT_EQ(f.description, text);
    }
    // Path forms need wine too: none without it.
    EXPECT_EQ(wineShortPaths({programmer, dir.path()}), QStringList({"", ""}));
    // A script named like a Windows program still runs natively, wine or not.
    const QString script = writeProgram(dir.filePath("PICPROG.EXE"), "#!/bin/sh\necho \"$@\" > ran\n");
    launcher.startDetached(script, {"a b"}, dir.path());
    EXPECT_TRUE(waitFor([&] { return readFile(dir.filePath("ran")) == "a b\n"; }));
}

TEST(Wine, PathFormsOfNamesWithBlanksQuotesAndNonAsciiLetters) {
    const QString fake = fakeProgram("fakeprog.exe");
    if (fake.isEmpty())
        GTEST_SKIP() << "MinGW did not build the Windows test programs";
    const TestWinePrefix prefix;
    if (!prefix.why().isEmpty())
        GTEST_SKIP() << prefix.why().toStdString();
    QTemporaryDir tmp;
    const QString dir = tmp.path() + "/Prog 'it' é;$x";
    ASSERT_TRUE(QDir().mkpath(dir));
    const QString programmer = dir + "/Long Programmer Name.exe";  // a PE image: its short form keeps .EXE
    ASSERT_TRUE(QFile::copy(fake, programmer));
    const QString hex = dir + "/blink.hex";
    writeProgram(tmp.filePath("Prog 'it' é;$x/blink.hex"), ":00000001FF\n");

    // Windows forms: the long one of anything, the short one only of what exists, in the order asked.
    const QStringList win = wineWindowsPaths({hex, dir + "/none.hex"});
    EXPECT_EQ(win[0], "Z:" + QDir::toNativeSeparators(hex).replace('/', '\\'));
    EXPECT_EQ(win[1], "Z:" + QString(dir + "/none.hex").replace('/', '\\'));
    const QStringList dos = wineShortPaths({programmer, dir + "/none.hex", hex});
    ASSERT_EQ(dos.size(), 3);
    EXPECT_TRUE(dos[0].startsWith("Z:\\")) << dos[0].toStdString();
    EXPECT_FALSE(dos[0].contains(' '));
    EXPECT_FALSE(dos[0].contains(QString::fromUtf8("é")));
    EXPECT_TRUE(dos[0].endsWith(".EXE")) << dos[0].toStdString();
    EXPECT_EQ(dos[1], "");
    EXPECT_TRUE(dos[2].endsWith("\\blink.hex")) << dos[2].toStdString();
    EXPECT_EQ(wineShortPath(hex), dos[2]);
    EXPECT_EQ(wineWindowsPath(hex), win[0]);

}

TEST(HiddenProcess, TellsItsEndAndEndsItsWholeGroup) {
    QTemporaryDir dir;
    PosixLauncher launcher;
    // A script that ends by itself: the callback comes once, through the event loop, and its status stays
    // when the group is ended afterwards.
    const QString quick = writeProgram(dir.filePath("quick.sh"), "echo done > \"$1\"done.txt\nexit 3\n");
    auto p = launcher.startHidden(quick, dir.path());
    ASSERT_GT(p->processId(), 0);
    int calls = 0;
    p->whenFinished([&] { ++calls; });
    EXPECT_TRUE(waitFor([&] { return calls == 1; }));
    EXPECT_FALSE(p->running());
    EXPECT_TRUE(QFile::exists(dir.filePath("done.txt")));
    p->terminate();
    EXPECT_EQ(p->exitStatus(), 3);

    // A script that leaves a child behind in its group: ending it ends the child too, and no callback
    // nor status comes for an end that was asked for.
    const QString leaves = writeProgram(dir.filePath("leaves.sh"), "sleep 300 &\necho $! > child.pid\nwait\n");
    auto q = launcher.startHidden(leaves, dir.path());
    int qCalls = 0;
    q->whenFinished([&] { ++qCalls; });
    ASSERT_TRUE(waitFor([&] { return readFile(dir.filePath("child.pid")).endsWith('\n'); }));
    const qint64 child = readFile(dir.filePath("child.pid")).trimmed().toLongLong();
    ASSERT_TRUE(processExists(child));
    EXPECT_EQ(::getpgid(pid_t(child)), pid_t(q->processId()));
    q->terminate();
    EXPECT_FALSE(q->running());
    // The child was ours to kill: it is gone, or a zombie of init's for a moment.
    EXPECT_TRUE(waitFor([&] {
        return !processExists(child) || readFile(QStringLiteral("/proc/%1/stat").arg(child)).contains(") Z ");
    }));
    QCoreApplication::processEvents();
    EXPECT_EQ(qCalls, 0);
    EXPECT_EQ(q->exitStatus(), std::nullopt);

    // One let run outlives its handle.
    auto r = launcher.startHidden(writeProgram(dir.filePath("waits.sh"), "while [ ! -e go ]; do sleep 0.02; done\n"
                                                                          "echo ran > ran.txt\n"),
                                  dir.path());
    r->letRun();
    r.reset();
    writeProgram(dir.filePath("go"), "");
    EXPECT_TRUE(waitFor([&] { return readFile(dir.filePath("ran.txt")) == "ran\n"; }));
}

TEST(PosixLauncher, TerminalCommandQuotesTheScript) {
    EXPECT_EQ(PosixLauncher::terminalCommand("/opt/it's here/runpb.sh"),
              "sh '/opt/it'\\''s here/runpb.sh'; printf '\\nPress Enter to close.'; read _");
}

TEST(Wine, LastingServerIsAskedForOnlyWhenOursMayHaveEnded) {
    const QString prefix = "/home/ann/.wine";
    const qint64 minute = 60 * 1000;
    const WineServerRecord ours{prefix, 10 * minute};
    EXPECT_TRUE(wineServerCheckDue({}, prefix, 10 * minute));
    EXPECT_FALSE(wineServerCheckDue(ours, prefix, 10 * minute));
    EXPECT_FALSE(wineServerCheckDue(ours, prefix, 19 * minute - 1));
    EXPECT_TRUE(wineServerCheckDue(ours, prefix, 19 * minute));
    EXPECT_TRUE(wineServerCheckDue(ours, "/home/ann/other-prefix", 11 * minute));
    EXPECT_TRUE(wineServerCheckDue(ours, prefix, 9 * minute));  // the clock went back

    // While ours surely runs, a compile costs no run of wineserver (none is even looked for), and its use
    // keeps ours running longer.
    const QByteArray oldPrefix = qgetenv("WINEPREFIX");
    qputenv("WINEPREFIX", prefix.toLocal8Bit());
    WineServerRecord record = ours;
    {
        PathWithoutWine noWine;
        keepWineServerWarm(record, 15 * minute);
        EXPECT_EQ(record.lastUseMs, 15 * minute);
        // Past its time, and no wineserver to start one: none of ours is known any more.
        keepWineServerWarm(record, 30 * minute);
        EXPECT_EQ(record.lastUseMs, -1);
    }
    qputenv("WINEPREFIX", oldPrefix);
}

TEST(ProgramHost, NativeOrThroughWineIsTheProgramsOwnAndSoAreItsPathForms) {
    QTemporaryDir tmp;
    FakePaths paths(tmp.path());
    WineState wine;
    const QString compiler = writeProgram(tmp.filePath("pbp dir/PBPW.EXE"), peHead());
    const QString script = writeProgram(tmp.filePath("native/PBPW.EXE"), "#!/bin/sh\n");  // told by content
    const QString source = writeProgram(tmp.filePath("led/blink.pbp"), ""), missing = tmp.filePath("led/no.hex");
    const CompileInputs in{.D = source, .S = tmp.path(), .P = compiler, .O = "-v", .C = tmp.filePath("pbp dir"),
                           .M = "16F84A"};
    {
        PathWithoutWine noWine;
        // A native program reads the paths as they are; the missing wine is no matter to it.
        const auto native = ProgramHost::of(script, paths, wine);
        EXPECT_EQ(QStringList({native->fullPath(missing), native->shortPath(source), native->shortPath(missing)}),
                  QStringList({missing, source, ""}));
        EXPECT_EQ(native->compileScript(in, "ignored", "ignored"), runpbSh(in));
        // A Windows program can't run: the one message, as a failure.
        try {
            ProgramHost::of(compiler, paths, wine);
            ADD_FAILURE() << "a host without wine";
        } catch (const Failure& f) {
            EXPECT_EQ(f.number, 5);
            EXPECT_EQ(f.description, wineMissingMessage(compiler));
        }
    }
    FakeWine fake;
    const auto host = ProgramHost::of(compiler, paths, wine);
    auto windows = [](QString path) { return "Z:" + path.replace('/', '\\'); };
    const QString P = windows(compiler).toUpper(), D = windows(source).toUpper();
    // A compile warms the lasting server and asks wine once for both short forms; later questions cost nothing.
    host->prepareCompile({compiler, source, missing});
    EXPECT_EQ(fake.runs(), QStringList({"wineserver -p600", "winepath.exe -w " + compiler + " " + source,
                                        "winepath.exe -s " + windows(compiler) + " " + windows(source)}));
    EXPECT_GE(wine.server.lastUseMs, 0);
    EXPECT_EQ(QStringList({host->shortPath(compiler), host->shortPath(source), host->shortPath(missing)}),
              QStringList({P, D, ""}));
    EXPECT_EQ(ProgramHost::of(compiler, paths, wine)->shortPath(source), D) << "one cache for the process";
    EXPECT_EQ(fake.runs(), QStringList());
    EXPECT_EQ(host->fullPath(missing), windows(missing));
    fake.runs();
    // A wine run that fails is asked again, twice at most; a path is said to have no form only then.
    const QString other = writeProgram(tmp.filePath("led/other.pbp"), "");
    fake.failWine(2);
    EXPECT_EQ(host->shortPath(other), windows(other).toUpper());
    EXPECT_EQ(fake.runs().filter("winepath.exe -w").size(), 3);
    fake.failWine(3);
    EXPECT_EQ(host->fullPath(other), "");
    EXPECT_EQ(fake.runs().size(), 3);
    EXPECT_EQ(host->compileScript(in, P, D),
              runpbShWine(in, {.wine = fake.dir.filePath("wine"), .P = P, .D = D, .C = P.left(P.lastIndexOf('\\'))}));
}
