// Nothing typed is lost: a process killed with unsaved documents leaves their texts, and the next start
// opens them again under their own paths.
#include "RunningFrame.h"

#include "document/Recovery.h"
#include "document/frmEditorRecovery.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <iostream>

#include <unistd.h>

namespace {
constexpr char kChildVariable[] = "QB_RECOVERY_CHILD_DIR";
QStringList filesIn(const QString& dir) { return QDir(dir).entryList(QDir::Files); }
}  // namespace

// Run only as the child of the test below: two modified documents with their recovery files written, then
// it waits to be killed.
TEST(RecoveryChild, DISABLED_TypesIntoTwoDocumentsAndWaitsToBeKilled) {
    const QString dir = qEnvironmentVariable(kChildVariable);
    if (dir.isEmpty())
        GTEST_SKIP() << "only as the child of a recovery test";
    const QByteArray parentsState = qgetenv("XDG_STATE_HOME");
    RunningFrame t(QString(), false);
    qputenv("XDG_STATE_HOME", parentsState);  // where the parent looks, not this world's own directory
    t.start(dir + "/blink.pbp");
    t.type("HIGH PORTB.0\n");
    frmEditor* a = t.doc();
    t.f->createDocument(dir + "/fresh.pbp");
    t.type("' never saved\nLOW 1");
    for (frmEditor* d : {a, t.doc()}) {
        ASSERT_TRUE(d->View->document().Modified());
        recoveryOf(*d)->RecoveryTimer_Timer();
    }
    std::cout << "READY" << std::endl;
    for (;;)
        pause();
}

TEST(Recovery, KilledWithTwoModifiedDocumentsBothComeBack) {
    QTemporaryDir sources, state;
    const QString blink = sources.filePath("blink.pbp"), fresh = sources.filePath("fresh.pbp");
    ASSERT_TRUE(writeFile(blink, "OLD LINE\r\n"));
    const QString recoveryDir = state.path() + "/tarnlet/recovery";

    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(kChildVariable, sources.path());
    env.insert("XDG_STATE_HOME", state.path());
    env.insert("QT_QPA_PLATFORM", "offscreen");
    child.setProcessEnvironment(env);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(),
                {"--gtest_also_run_disabled_tests",
                 "--gtest_filter=RecoveryChild.DISABLED_TypesIntoTwoDocumentsAndWaitsToBeKilled"});
    ASSERT_TRUE(child.waitForStarted());
    QByteArray out;
    // A guard against a child that hangs, not a measure of speed.
    const QDeadlineTimer guard(120000);
    while (!out.contains("READY") && child.state() == QProcess::Running && !guard.hasExpired())
        if (child.waitForReadyRead(1000))
            out += child.readAllStandardOutput();
    ASSERT_TRUE(out.contains("READY")) << out.toStdString();
    child.kill();  // SIGKILL: no destructor, no close event
    ASSERT_TRUE(child.waitForFinished());
    ASSERT_EQ(filesIn(recoveryDir).size(), 2) << filesIn(recoveryDir).join(' ').toStdString();
    EXPECT_EQ(readFile(blink), "OLD LINE\r\n");
    EXPECT_FALSE(QFile::exists(fresh));

    // The next start: the frame comes up, then the killed process's files are offered.
    RunningFrame t(QString(), false);
    qputenv("XDG_STATE_HOME", state.path().toLocal8Bit());  // the world puts its own back at its end
    t.w.prompts.answers = {Answer::Yes};
    t.start(blink);
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.lastBox().text, "Quillbay Lite did not close normally. Recover 2 unsaved documents?");
    EXPECT_TRUE(t.lastBox().icon == Icon::Question && t.lastBox().buttons == Buttons::YesNo);

    // The start-up document was the same file, unchanged: it took its recovered text, no second window.
    std::map<QString, frmEditor*> docs;
    for (QMdiSubWindow* s : t.f->mdiArea()->subWindowList())
        if (auto* d = qobject_cast<frmEditor*>(s->widget()))
            docs[d->View->document().PathName()] = d;
    ASSERT_EQ(docs.size(), 2u);
    EXPECT_EQ(t.f->miDocCount(), 2);
    ASSERT_TRUE(docs.count(blink) && docs.count(fresh));
    EXPECT_EQ(docs[blink]->View->Text(), "HIGH PORTB.0\r\nOLD LINE\r\n");
    EXPECT_EQ(docs[fresh]->View->Text(), "' never saved\nLOW 1");
    EXPECT_EQ(docs[fresh]->Caption(), fresh);
    for (auto& [path, doc] : docs) {
        EXPECT_TRUE(doc->View->document().Modified()) << path.toStdString();
        EXPECT_EQ(recoveryFileOwner(QFileInfo(recoveryOf(*doc)->file()).fileName()), ownProcessId());
    }

    // Save writes the original file with its own line endings, and its recovery file goes.
    const QString blinkRecovery = recoveryOf(*docs[blink])->file();
    docs[blink]->View->document().SaveFile(blink);
    EXPECT_EQ(readFile(blink), "HIGH PORTB.0\r\nOLD LINE\r\n");
    EXPECT_FALSE(QFile::exists(blinkRecovery));
    EXPECT_EQ(filesIn(recoveryDir).size(), 1);
    // Closing the other without saving ends its recovery too.
    t.w.prompts.answers = {Answer::No};
    EXPECT_TRUE(docs[fresh]->subWindow()->close());
    EXPECT_TRUE(filesIn(recoveryDir).isEmpty());
    EXPECT_FALSE(QFile::exists(fresh));
}
