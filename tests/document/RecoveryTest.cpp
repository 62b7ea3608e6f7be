// Recovery files: their place, their form, who owns them, and the watcher of a document window.
#include "document/Document.h"
#include "document/Recovery.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "document/frmEditorRecovery.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"
#include "support/Typing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <set>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Sets an environment variable for the length of a test.
class EnvVar {
public:
    EnvVar(const char* name, const QByteArray& value) : name_(name), old_(qgetenv(name)) {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }
    ~EnvVar() {
        if (old_.isNull())
            qunsetenv(name_);
        else
            qputenv(name_, old_);
    }

private:
    const char* name_;
    QByteArray old_;
};

// The id of a process that has ended and been reaped.
qint64 deadPid() {
    QProcess p;
    p.start(QStringLiteral("true"), {});
    p.waitForStarted();
    const qint64 pid = p.processId();
    p.waitForFinished();
    return pid;
}

QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

QString put(const QString& dir, qint64 pid, const RecoveryRecord& r) {
    const QString path = dir + "/" + newRecoveryFileName(pid);
    writeRecoveryFile(path, r);
    return path;
}

QStringList namesIn(const QString& dir) { return QDir(dir).entryList(QDir::Files, QDir::Name); }

}  // namespace

TEST(RecoveryFile, RoundTripKeepsPathAndTextExactly) {
    const QList<RecoveryRecord> records = {
        {"/home/ann/blink.pbp", 4242, "HIGH PORTB.0\r\nPAUSE 500\r\n"},
        // A name with a line break, blanks and non-ASCII; a text that looks like the record's own fields.
        {"/tmp/odd\nname é ü/prog.bas", 1, "text 3\nabc\n\npid 7\rpath 2\n€ mixed\r\nends without"},
        {"/x.pbp", 0, ""},
    };
    for (const RecoveryRecord& r : records) {
        const std::optional<RecoveryRecord> back = decodeRecovery(encodeRecovery(r));
        ASSERT_TRUE(back) << r.pathName.toStdString();
        EXPECT_EQ(*back, r);
    }
    QTemporaryDir dir;
    const QString path = dir.filePath("a/b/1-00000000000000000000000000000000.recovery");
    writeRecoveryFile(path, records[1]);
    EXPECT_EQ(readRecoveryFile(path), records[1]);
    // The directory made for it is its owner's alone.
    EXPECT_EQ(QFileInfo(dir.filePath("a/b")).permissions() & (QFile::ReadOther | QFile::ReadGroup), 0);
    // Nothing but the file: no temporary left beside it.
    EXPECT_EQ(namesIn(dir.filePath("a/b")), QStringList{"1-00000000000000000000000000000000.recovery"});
    EXPECT_FALSE(readRecoveryFile(dir.filePath("none.recovery")));
}

TEST(RecoveryFile, CutOrForeignBytesAreNoRecord) {
    const QByteArray whole = encodeRecovery({"/p/a.pbp", 77, "line one\nline two\n"});
    for (qsizetype n = 0; n < whole.size(); ++n)
        EXPECT_FALSE(decodeRecovery(whole.left(n))) << "cut at " << n;
    EXPECT_FALSE(decodeRecovery(whole + "x"));
    QByteArray text = whole;
    EXPECT_FALSE(decodeRecovery(text.replace("pid 77", "pid 7x")));
    text = whole;
    EXPECT_FALSE(decodeRecovery(text.replace("pid 77", "pid 077")));
    text = whole;
    EXPECT_FALSE(decodeRecovery(text.replace("pid 77", "pid -77")));
    text = whole;
    EXPECT_FALSE(decodeRecovery(text.replace("tarnlet recovery 1", "tarnlet recovery 2")));
    text = whole;
    EXPECT_FALSE(decodeRecovery(text.replace("text 18", "text 99")));
    EXPECT_FALSE(decodeRecovery(encodeRecovery({"", 77, "x"})));
}

TEST(RecoveryOwner, RunningDeadZombieAndReusedIds) {
    const QString me = ownProcessName();
    EXPECT_TRUE(isRunningInstance(ownProcessId(), me));
    const qint64 dead = deadPid();
    ASSERT_GT(dead, 0);
    EXPECT_FALSE(isRunningInstance(dead, me));
    EXPECT_FALSE(isRunningInstance(0, me));
    EXPECT_FALSE(isRunningInstance(-1, me));

    // A running process of another program: its id is not one of ours.
    QProcess other;
    other.start(QStringLiteral("sleep"), {QStringLiteral("60")});
    ASSERT_TRUE(other.waitForStarted());
    EXPECT_FALSE(isRunningInstance(other.processId(), me));
    EXPECT_TRUE(isRunningInstance(other.processId(), QStringLiteral("sleep")));
    other.kill();
    other.waitForFinished();

    // A copy of this program: running while it runs, gone once it has ended though nobody reaped it.
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        pause();
        _exit(0);
    }
    EXPECT_TRUE(isRunningInstance(child, me));
    kill(child, SIGKILL);
    siginfo_t info{};
    ASSERT_EQ(waitid(P_PID, id_t(child), &info, WEXITED | WNOWAIT), 0);  // a zombie from here on
    EXPECT_FALSE(isRunningInstance(child, me));
    waitpid(child, nullptr, 0);
}

TEST(RecoveryOwner, StaleFilesAreTakenOverOnce) {
    QTemporaryDir dir;
    const qint64 dead = deadPid();
    const QString mine = put(dir.path(), ownProcessId(), {"/a.pbp", ownProcessId(), "mine"});
    const QString orphan = put(dir.path(), dead, {"/b.pbp", dead, "orphan"});
    QFile(dir.filePath("readme.txt")).open(QIODevice::WriteOnly);
    const QString me = ownProcessName();
    const auto running = [&](qint64 pid) { return isRunningInstance(pid, me); };
    EXPECT_EQ(staleRecoveryFiles(dir.path(), running), QStringList{orphan});

    const std::optional<QString> taken = takeOverRecoveryFile(orphan, 4711);
    ASSERT_TRUE(taken);
    EXPECT_EQ(recoveryFileOwner(QFileInfo(*taken).fileName()), 4711);
    EXPECT_EQ(QFileInfo(*taken).absolutePath(), QFileInfo(orphan).absolutePath());
    EXPECT_FALSE(QFile::exists(orphan));
    EXPECT_EQ(readRecoveryFile(*taken)->text, "orphan");
    // A second instance that found the same file comes too late.
    EXPECT_FALSE(takeOverRecoveryFile(orphan, 4712));
    EXPECT_TRUE(QFile::exists(mine));
    EXPECT_EQ(namesIn(dir.path()).size(), 3);
}

TEST(RecoveryOffer, YesGivesTheDocumentsNoDeletesThem) {
    TestWorld w;
    QTemporaryDir dir;
    const qint64 dead = deadPid();
    const auto running = [&](qint64 pid) { return pid != dead; };
    put(dir.path(), dead, {"/p/one.pbp", dead, "ONE\r\n"});
    put(dir.path(), dead, {"/p/two.pbp", dead, "TWO"});
    QFile junk(dir.filePath(newRecoveryFileName(dead)));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write("tarnlet recovery 1\npid 1\npath 3\n/p/");  // cut: no text
    junk.close();
    const QString alive = put(dir.path(), 123, {"/p/other.pbp", 123, "another instance"});

    w.prompts.answers = {Answer::Yes};
    std::vector<RecoveredDocument> docs = offerRecovery(dir.path(), 555, running);
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_EQ(w.prompts.boxes[0].text, "Quillbay Lite did not close normally. Recover 2 unsaved documents?");
    EXPECT_EQ(w.prompts.boxes[0].title, "");
    EXPECT_EQ(w.prompts.boxes[0].icon, Icon::Question);
    EXPECT_EQ(w.prompts.boxes[0].buttons, Buttons::YesNo);
    ASSERT_EQ(docs.size(), 2u);
    std::sort(docs.begin(), docs.end(), [](auto& a, auto& b) { return a.pathName < b.pathName; });
    EXPECT_EQ(docs[0].pathName, "/p/one.pbp");
    EXPECT_EQ(docs[0].text, "ONE\r\n");
    EXPECT_EQ(docs[1].text, "TWO");
    for (const RecoveredDocument& d : docs) {
        EXPECT_EQ(recoveryFileOwner(QFileInfo(d.recoveryFile).fileName()), 555);
        EXPECT_TRUE(QFile::exists(d.recoveryFile));
    }
    // The unreadable one went unasked; the running instance's file stays.
    EXPECT_EQ(namesIn(dir.path()).size(), 3);
    EXPECT_TRUE(QFile::exists(alive));

    w.prompts.boxes.clear();
    // The same files after this process died too, now answered No: they are gone.
    w.prompts.answers = {Answer::No};
    EXPECT_TRUE(offerRecovery(dir.path(), 777, [&](qint64 pid) { return pid == 123 || pid == 777; }).empty());
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_EQ(w.prompts.boxes[0].text, "Quillbay Lite did not close normally. Recover 2 unsaved documents?");
    EXPECT_EQ(namesIn(dir.path()), QStringList{QFileInfo(alive).fileName()});
    w.prompts.boxes.clear();
    EXPECT_TRUE(offerRecovery(dir.path(), 778, [](qint64) { return true; }).empty());
    EXPECT_TRUE(w.prompts.boxes.empty());
}

namespace {
// A document window on a FakeFrame, with a watcher writing into its own directory.
struct Watched {
    TestWorld w;
    FakeFrame frame;
    QTemporaryDir recovery;
    std::unique_ptr<frmEditor> doc = std::make_unique<frmEditor>(frame);
    QString source = w.write("blink.pbp", "OLD\n");
    RecoveryWatch* watch = nullptr;

    // As the frame makes a document: loaded first, then watched.
    Watched() {
        doc->View->document().LoadFile(source);
        doc->View->document().setPathName(source);
        watch = new RecoveryWatch(*doc, recovery.path());
    }
    void type(const QString& s) { typeText(doc->View->editorWidget(), s); }
    std::optional<RecoveryRecord> written() const {
        return watch->file().isEmpty() ? std::nullopt : readRecoveryFile(watch->file());
    }
};
}  // namespace

TEST(RecoveryWatch, WritesAfterTheQuietTimeAndGoesOnSave) {
    Watched t;
    EXPECT_FALSE(t.watch->RecoveryTimer.isActive());
    t.watch->RecoveryTimer_Timer();  // unmodified: nothing to keep
    EXPECT_TRUE(t.watch->file().isEmpty());
    t.type("x");
    // Typing only restarts the timer; the file comes with its tick.
    EXPECT_TRUE(t.watch->RecoveryTimer.isActive());
    EXPECT_TRUE(t.watch->RecoveryTimer.isSingleShot());
    EXPECT_EQ(t.watch->RecoveryTimer.interval(), RecoveryWatch::kQuietMs);
    EXPECT_TRUE(namesIn(t.recovery.path()).isEmpty());
    t.watch->RecoveryTimer_Timer();
    ASSERT_TRUE(t.written());
    EXPECT_EQ(*t.written(), (RecoveryRecord{t.source, ownProcessId(), "xOLD\n"}));
    EXPECT_EQ(recoveryFileOwner(QFileInfo(t.watch->file()).fileName()), ownProcessId());
    const QString file = t.watch->file();

    t.type("y");
    t.watch->RecoveryTimer_Timer();
    EXPECT_EQ(t.watch->file(), file);
    EXPECT_EQ(t.written()->text, "xyOLD\n");
    EXPECT_EQ(namesIn(t.recovery.path()).size(), 1);

    t.doc->View->document().SaveFile(t.source);
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_TRUE(t.watch->file().isEmpty());
    // A tick still due after the save finds nothing to keep.
    t.watch->RecoveryTimer_Timer();
    EXPECT_TRUE(namesIn(t.recovery.path()).isEmpty());

    // Undoing back to the saved text is no change to keep either.
    t.type("z");
    t.watch->RecoveryTimer_Timer();
    ASSERT_FALSE(t.watch->file().isEmpty());
    const QString second = t.watch->file();
    t.doc->View->document().Undo();
    EXPECT_FALSE(t.doc->View->document().Modified());
    EXPECT_FALSE(QFile::exists(second));
}

TEST(RecoveryWatch, GoesWhenTheWindowClosesOrDies) {
    {
        Watched t;
        t.type("a");
        t.watch->RecoveryTimer_Timer();
        const QString file = t.watch->file();
        ASSERT_TRUE(QFile::exists(file));
        // Cancel keeps the document, and with it the file.
        t.w.prompts.answers = {Answer::Cancel};
        EXPECT_FALSE(t.doc->close());
        EXPECT_TRUE(QFile::exists(file));
        // No drops the changes: nothing to recover.
        t.w.prompts.answers = {Answer::No};
        EXPECT_TRUE(t.doc->close());
        EXPECT_FALSE(QFile::exists(file));
        // Late edits of a closed window write nothing.
        t.doc->View->SetText("after");
        t.watch->RecoveryTimer_Timer();
        EXPECT_TRUE(namesIn(t.recovery.path()).isEmpty());
    }
    {
        Watched t;
        t.type("b");
        t.watch->RecoveryTimer_Timer();
        const QString file = t.watch->file();
        ASSERT_TRUE(QFile::exists(file));
        t.doc.reset();
        EXPECT_FALSE(QFile::exists(file));
    }
}

TEST(RecoveryWatch, RestoredTextIsModifiedUndoableAndKeepsItsFile) {
    Watched t;
    const qint64 dead = deadPid();
    const QString old = put(t.recovery.path(), dead, {t.source, dead, "NEW\r\nTEXT"});
    const std::optional<QString> taken = takeOverRecoveryFile(old, ownProcessId());
    ASSERT_TRUE(taken);
    restoreRecovered(*t.doc, {t.source, "NEW\r\nTEXT", *taken});
    Document& d = t.doc->View->document();
    EXPECT_EQ(t.doc->View->Text(), "NEW\r\nTEXT");
    EXPECT_TRUE(d.Modified());
    EXPECT_EQ(d.PathName(), t.source);
    EXPECT_EQ(recoveryOf(*t.doc), t.watch);
    EXPECT_EQ(t.watch->file(), *taken);
    // Rewritten at once under this process.
    EXPECT_EQ(*t.written(), (RecoveryRecord{t.source, ownProcessId(), "NEW\r\nTEXT"}));
    // One step back is the file's own text.
    d.Undo();
    EXPECT_EQ(t.doc->View->Text(), "OLD\n");
    d.Redo();
    d.SaveFile(d.PathName());
    EXPECT_EQ(readAll(t.source), "NEW\r\nTEXT");
    EXPECT_FALSE(QFile::exists(*taken));
    EXPECT_TRUE(namesIn(t.recovery.path()).isEmpty());
}
