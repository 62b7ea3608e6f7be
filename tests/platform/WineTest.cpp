// Windows programs told by their content, wine's path forms, and the launcher's hidden and detached starts.
#include "fakes/WinePrefix.h"
#include "platform/Failure.h"
#include "platform/PeImage.h"
#include "platform/PosixLauncher.h"
#include "platform/ProgramHost.h"
#include "platform/Wine.h"
#include "support/Doubles.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

namespace {

// Restores PATH at the end of a test that hides wine.
struct PathWithoutWine {
    QByteArray old = qgetenv("PATH");
    PathWithoutWine() { qputenv("PATH", "/nonexistent-dir"); }
    ~PathWithoutWine() { qputenv("PATH", old); }
};

// A wine and a wineserver of the test's own in front of PATH: winepath's -w gives Z: and backslashes, -s
// the upper case; each run leaves a line in runs.txt beside them.
struct FakeWine {
    QTemporaryDir dir;
    QByteArray oldPath = qgetenv("PATH");
    FakeWine() {
        writeProgram(dir.filePath("wine"), "#!/bin/sh\nprintf '%s\\n' \"$*\" >> \"$(dirname \"$0\")/runs.txt\"\n"
                                           "flag=$2; shift 2\nfor a; do\n  if [ \"$flag\" = -w ]; then "
                                           "printf 'Z:%s\\n' \"$a\" | tr / '\\\\'; else printf '%s\\n' \"$a\" | "
                                           "tr a-z A-Z; fi\ndone\n");
        writeProgram(dir.filePath("wineserver"),
                     "#!/bin/sh\necho \"wineserver $*\" >> \"$(dirname \"$0\")/runs.txt\"\n");
        qputenv("PATH", dir.path().toLocal8Bit() + ":" + oldPath);
    }
    ~FakeWine() { qputenv("PATH", oldPath); }
    // The runs since the last call.
    QStringList runs() {
        const QString text = QString::fromUtf8(readFile(dir.filePath("runs.txt")));
        QFile::remove(dir.filePath("runs.txt"));
        return text == "<missing>" ? QStringList() : text.split('\n', Qt::SkipEmptyParts);
    }
};

bool processExists(qint64 pid) { return ::kill(pid_t(pid), 0) == 0; }

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
    if (const QString why = useTestWinePrefix(); !why.isEmpty())
        GTEST_SKIP() << why.toStdString();
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
    const QString script = writeProgram(tmp.filePath("PBPW"), "#!/bin/sh\n");
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
    EXPECT_EQ(host->compileScript(in, P, D),
              runpbShWine(in, {.wine = fake.dir.filePath("wine"), .P = P, .D = D, .C = P.left(P.lastIndexOf('\\'))}));
}
