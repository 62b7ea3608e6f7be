// Recovery files: their form, who owns them, and the watcher of a document window.
#include "document/Document.h"
#include "document/Recovery.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "document/frmEditorRecovery.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"
#include "support/Files.h"
#include "support/Typing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
// The sanitizer's runtime has it; GCC ships no header that declares it.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void*, size_t),
                                                         void (*)(const volatile void*));
#endif

#include <atomic>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QString put(const QString& dir, qint64 pid, const RecoveryRecord& r) {
    const QString path = dir + "/" + newRecoveryFileName(pid);
    writeRecoveryFile(path, r);
    return path;
}

QStringList namesIn(const QString& dir) { return QDir(dir).entryList(QDir::Files, QDir::Name); }

}  // namespace

TEST(RecoveryFile, RoundTripsExactlyAndRefusesCutOrForeignBytes) {
    const RecoveryRecord odd{"/tmp/odd\nname é/prog.bas", 1, "text 3\nabc\n\npid 7\rpath 2\n€\r\nno end"};
    for (const RecoveryRecord& r : {odd, RecoveryRecord{"/x.pbp", 0, ""}})
        EXPECT_EQ(decodeRecovery(encodeRecovery(r)), r) << r.pathName.toStdString();
    QTemporaryDir dir;
    const QString path = dir.filePath("a/b/1-00000000000000000000000000000000.recovery");
    writeRecoveryFile(path, odd);
    EXPECT_EQ(readRecoveryFile(path), odd);
    EXPECT_EQ(QFileInfo(dir.filePath("a/b")).permissions() & (QFile::ReadOther | QFile::ReadGroup), 0);
    EXPECT_EQ(namesIn(dir.filePath("a/b")).size(), 1) << "no temporary left beside it";

    const QByteArray whole = encodeRecovery({"/p/a.pbp", 77, "line one\nline two\n"});
    for (qsizetype n = 0; n < whole.size(); ++n)
        EXPECT_FALSE(decodeRecovery(whole.left(n))) << "cut at " << n;
    const std::pair<const char*, const char*> edits[] = {{"pid 77", "pid 7x"}, {"pid 77", "pid 077"},
        {"pid 77", "pid -77"}, {"recovery 1", "recovery 2"}, {"text 18", "text 99"}};
    for (const auto& [from, to] : edits)
        EXPECT_FALSE(decodeRecovery(QByteArray(whole).replace(from, to))) << to;
    EXPECT_FALSE(decodeRecovery(whole + "x"));
    EXPECT_FALSE(decodeRecovery(encodeRecovery({"", 77, "x"})));
}

TEST(RecoveryOwner, RunningDeadZombieAndOtherProgramsAndATakeOverHappensOnce) {
    const QString me = ownProcessName();
    const qint64 dead = deadProcessId();
    EXPECT_TRUE(isRunningInstance(ownProcessId(), me));
    for (qint64 pid : {dead, qint64(0), qint64(-1)})
        EXPECT_FALSE(isRunningInstance(pid, me)) << pid;
    QProcess other;
    other.start(QStringLiteral("sleep"), {QStringLiteral("60")});
    ASSERT_TRUE(other.waitForStarted());
    EXPECT_FALSE(isRunningInstance(other.processId(), me));
    EXPECT_TRUE(isRunningInstance(other.processId(), QStringLiteral("sleep")));
    other.kill();
    other.waitForFinished();
    // A copy of this program that died and was never reaped is gone all the same.
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        pause();
        _exit(0);
    }
    EXPECT_TRUE(isRunningInstance(child, me));
    kill(child, SIGKILL);
    siginfo_t info{};
    ASSERT_EQ(waitid(P_PID, id_t(child), &info, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(isRunningInstance(child, me));
    waitpid(child, nullptr, 0);

    QTemporaryDir dir;
    const QString mine = put(dir.path(), ownProcessId(), {"/a.pbp", ownProcessId(), "mine"});
    const QString orphan = put(dir.path(), dead, {"/b.pbp", dead, "orphan"});
    QFile(dir.filePath("readme.txt")).open(QIODevice::WriteOnly);
    EXPECT_EQ(staleRecoveryFiles(dir.path(), [&](qint64 pid) { return isRunningInstance(pid, me); }),
              QStringList{orphan});
    const std::optional<QString> taken = takeOverRecoveryFile(orphan, 4711);
    ASSERT_TRUE(taken);
    EXPECT_EQ(recoveryFileOwner(QFileInfo(*taken).fileName()), 4711);
    EXPECT_EQ(readRecoveryFile(*taken)->text, "orphan");
    EXPECT_FALSE(takeOverRecoveryFile(orphan, 4712)) << "a second instance comes too late";
    EXPECT_TRUE(QFile::exists(mine));
    EXPECT_EQ(namesIn(dir.path()).size(), 3);
}

TEST(RecoveryOffer, YesGivesTheDocumentsNoDeletesThemAndACorruptFileGoesUnasked) {
    TestWorld w;
    QTemporaryDir dir;
    const qint64 dead = deadProcessId();
    put(dir.path(), dead, {"/p/one.pbp", dead, "ONE\r\n"});
    put(dir.path(), dead, {"/p/two.pbp", dead, "TWO"});
    ASSERT_TRUE(writeFile(dir.filePath(newRecoveryFileName(dead)), "tarnlet recovery 1\npid 1\npath 3\n/p/"));
    const QString alive = put(dir.path(), 123, {"/p/other.pbp", 123, "another instance"});

    w.prompts.answers = {Answer::Yes};
    std::vector<RecoveredDocument> docs = offerRecovery(dir.path(), 555, [&](qint64 pid) { return pid != dead; });
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_EQ(w.prompts.boxes[0].text, "Quillbay Lite did not close normally. Recover 2 unsaved documents?");
    ASSERT_EQ(docs.size(), 2u);
    std::sort(docs.begin(), docs.end(), [](auto& a, auto& b) { return a.pathName < b.pathName; });
    EXPECT_EQ(docs[0].pathName + docs[0].text + docs[1].text, "/p/one.pbpONE\r\nTWO");
    for (const RecoveredDocument& d : docs)
        EXPECT_EQ(recoveryFileOwner(QFileInfo(d.recoveryFile).fileName()), 555);
    EXPECT_EQ(namesIn(dir.path()).size(), 3);

    // The same files after this process died too, answered No: gone, but the running instance's stays.
    w.prompts.answers = {Answer::No};
    EXPECT_TRUE(offerRecovery(dir.path(), 777, [&](qint64 pid) { return pid == 123 || pid == 777; }).empty());
    EXPECT_EQ(w.prompts.boxes.size(), 2u);
    EXPECT_EQ(namesIn(dir.path()), QStringList{QFileInfo(alive).fileName()});
    EXPECT_TRUE(offerRecovery(dir.path(), 778, [](qint64) { return true; }).empty());
    EXPECT_EQ(w.prompts.boxes.size(), 2u) << "nothing stale, nothing asked";
    // One stale document is asked for in the singular.
    put(dir.path(), dead, {"/p/three.pbp", dead, "THREE"});
    w.prompts.answers = {Answer::No};
    EXPECT_TRUE(offerRecovery(dir.path(), 779, [&](qint64 pid) { return pid != dead; }).empty());
    ASSERT_EQ(w.prompts.boxes.size(), 3u);
    EXPECT_EQ(w.prompts.boxes[2].text, "Quillbay Lite did not close normally. Recover 1 unsaved document?");
    EXPECT_EQ(namesIn(dir.path()), QStringList{QFileInfo(alive).fileName()});
}

namespace {
// A loaded document window on a FakeFrame, watched into its own directory.
struct Watched {
    TestWorld w;
    FakeFrame frame;
    QTemporaryDir recovery;
    std::unique_ptr<frmEditor> doc = std::make_unique<frmEditor>(frame);
    QString source = w.write("blink.pbp", "OLD\n");
    RecoveryWatch* watch = nullptr;

    Watched() {
        doc->View->document().LoadFile(source);
        doc->View->document().setPathName(source);
        watch = new RecoveryWatch(*doc, recovery.path());
    }
    // Types, then lets the quiet time end.
    QString typed(const QString& s) {
        typeText(doc->View->editorWidget(), s);
        watch->RecoveryTimer_Timer();
        return watch->file();
    }
    std::optional<RecoveryRecord> written() const { return readRecoveryFile(watch->file()); }
};
}  // namespace

TEST(RecoveryWatch, WritesAfterTheQuietTimeAndGoesOnSaveOrUndoToTheSavedText) {
    Watched t;
    t.watch->RecoveryTimer_Timer();
    EXPECT_TRUE(t.watch->file().isEmpty()) << "unmodified: nothing to keep";
    typeText(t.doc->View->editorWidget(), "x");
    EXPECT_TRUE(t.watch->RecoveryTimer.isActive() && t.watch->RecoveryTimer.isSingleShot());
    EXPECT_TRUE(namesIn(t.recovery.path()).isEmpty()) << "typing only restarts the timer";
    t.watch->RecoveryTimer_Timer();
    EXPECT_EQ(t.written(), (RecoveryRecord{t.source, ownProcessId(), "xOLD\n"}));
    const QString file = t.watch->file();
    EXPECT_EQ(t.typed("y"), file);
    EXPECT_EQ(t.written()->text, "xyOLD\n");

    t.doc->View->document().SaveFile(t.source);
    EXPECT_FALSE(QFile::exists(file));
    t.watch->RecoveryTimer_Timer();
    EXPECT_TRUE(namesIn(t.recovery.path()).isEmpty()) << "a tick due after the save keeps nothing";
    const QString second = t.typed("z");
    ASSERT_FALSE(second.isEmpty());
    t.doc->View->document().Undo();
    EXPECT_FALSE(QFile::exists(second));
}

TEST(RecoveryWatch, GoesWhenTheWindowClosesOrDiesButNotOnCancel) {
    {
        Watched t;
        const QString file = t.typed("a");
        t.w.prompts.answers = {Answer::Cancel, Answer::No};
        EXPECT_FALSE(t.doc->close());
        EXPECT_TRUE(QFile::exists(file));
        EXPECT_TRUE(t.doc->close());
        EXPECT_FALSE(QFile::exists(file));
        t.doc->View->SetText("after");
        t.watch->RecoveryTimer_Timer();
        EXPECT_TRUE(namesIn(t.recovery.path()).isEmpty()) << "late edits of a closed window write nothing";
    }
    Watched t;
    const QString file = t.typed("b");
    t.doc.reset();
    EXPECT_FALSE(QFile::exists(file));
}

TEST(RecoveryWatch, RestoredTextIsUndoableAndWatched) {
    Watched t;
    const qint64 dead = deadProcessId();
    const std::optional<QString> taken =
        takeOverRecoveryFile(put(t.recovery.path(), dead, {t.source, dead, "NEW\r\nTEXT"}), ownProcessId());
    ASSERT_TRUE(taken);
    restoreRecovered(*t.doc, {t.source, "NEW\r\nTEXT", *taken});
    EXPECT_EQ(t.watch->file(), *taken);
    EXPECT_EQ(t.written(), (RecoveryRecord{t.source, ownProcessId(), "NEW\r\nTEXT"}));
    t.doc->View->document().Undo();
    EXPECT_EQ(t.doc->View->Text(), "OLD\n");
}

#if defined(__SANITIZE_ADDRESS__)
namespace {
std::atomic<bool> watching{false};
std::atomic<size_t> largest{0};
void noteMalloc(const volatile void*, size_t size) {
    if (watching && size > largest)
        largest = size;
}
void noteFree(const volatile void*) {}
}  // namespace
#endif

TEST(RecoveryWatch, ACopyOfALargeTextMakesNoSecondCopyOfIt) {
#if defined(__SANITIZE_ADDRESS__)
    static const bool hooked = __sanitizer_install_malloc_and_free_hooks(noteMalloc, noteFree) != 0;
    ASSERT_TRUE(hooked);
    Watched t;
    QString big;
    for (int i = 0; big.size() < 3'000'000; ++i)
        big += QStringLiteral("    HSerOut [\"Line \", DEC %1, 13, 10] ' é\n").arg(i);
    t.doc->View->SetText(big);
    typeText(t.doc->View->editorWidget(), "x");
    largest = 0;
    watching = true;
    t.watch->RecoveryTimer_Timer();
    watching = false;
    EXPECT_LT(largest.load(), size_t(64 * 1024)) << "the text was copied while it was written";
    EXPECT_EQ(t.written()->text, "x" + big);
#else
    GTEST_SKIP() << "allocations are watched in the sanitizer build";
#endif
}
