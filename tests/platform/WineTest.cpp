// Windows programs told by their content, wine's path forms, and the launcher's hidden and detached starts.
#include "fakes/WinePrefix.h"
#include "platform/Failure.h"
#include "platform/PeImage.h"
#include "platform/PosixLauncher.h"
#include "platform/Wine.h"
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
    // A script that ends by itself: the callback comes once, through the event loop.
    const QString quick = writeProgram(dir.filePath("quick.sh"), "echo done > \"$1\"done.txt\n");
    auto p = launcher.startHidden(quick, dir.path());
    ASSERT_GT(p->processId(), 0);
    int calls = 0;
    p->whenFinished([&] { ++calls; });
    EXPECT_TRUE(waitFor([&] { return calls == 1; }));
    EXPECT_FALSE(p->running());
    EXPECT_TRUE(QFile::exists(dir.filePath("done.txt")));

    // A script that leaves a child behind in its group: ending it ends the child too, and no callback
    // comes for an end that was asked for.
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
