// Nothing typed is lost: a process killed with unsaved documents leaves their texts, and the next start
// opens them again under their own paths.
#include "document/Document.h"
#include "document/Recovery.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "document/frmEditorRecovery.h"
#include "shell/MDIMain.h"
#include "support/Doubles.h"
#include "support/Typing.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <iostream>

#include <unistd.h>

namespace {

class EnvVar {
public:
    EnvVar(const char* name, const QByteArray& value) : name_(name), old_(qgetenv(name)) { qputenv(name, value); }
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

QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

// What the frame does with each recovered path: the start-up document when it is that path and
// unchanged, else a new document window, counted and entered in the window list.
frmEditor* openFor(MDIMain& f, const QString& path) {
    for (QMdiSubWindow* s : f.mdiArea()->subWindowList())
        if (auto* d = qobject_cast<frmEditor*>(s->widget());
            d && d->Caption() == path && !d->View->document().Modified())
            return d;
    f.setMiDocCount(qint16(f.miDocCount() + 1));
    frmEditor* d = f.createDocument(path, true);
    attachRecovery(*d);
    f.AddWindowEntry(d->Caption());
    return d;
}

std::map<QString, frmEditor*> documentsByPath(MDIMain& f) {
    std::map<QString, frmEditor*> docs;
    for (QMdiSubWindow* s : f.mdiArea()->subWindowList())
        if (auto* d = qobject_cast<frmEditor*>(s->widget()))
            docs[d->View->document().PathName()] = d;
    return docs;
}

QStringList filesIn(const QString& dir) { return QDir(dir).entryList(QDir::Files); }

constexpr char kChildVariable[] = "QB_RECOVERY_CHILD_DIR";

}  // namespace

// Run only as the child of the test below: two modified documents in a real frame, their recovery files
// written, then it waits to be killed.
TEST(RecoveryChild, DISABLED_TypesIntoTwoDocumentsAndWaitsToBeKilled) {
    const QString dir = qEnvironmentVariable(kChildVariable);
    if (dir.isEmpty())
        GTEST_SKIP() << "only as the child of a recovery test";
    const QByteArray parentsState = qgetenv("XDG_STATE_HOME");
    TestWorld w;
    // The recovery files go where the parent looks, not into this world's own state directory.
    qputenv("XDG_STATE_HOME", parentsState);
    w.writeDeviceCatalogue();
    MDIMain f(dir + "/blink.pbp");
    f.show();
    frmEditor* a = f.activeDocument();
    ASSERT_NE(a, nullptr);
    attachRecovery(*a);
    typeText(a->View->editorWidget(), "HIGH PORTB.0\n");
    frmEditor* b = openFor(f, dir + "/fresh.pbp");
    typeText(b->View->editorWidget(), "' never saved\nLOW 1");
    ASSERT_TRUE(a->View->document().Modified());
    ASSERT_TRUE(b->View->document().Modified());
    recoveryOf(*a)->RecoveryTimer_Timer();
    recoveryOf(*b)->RecoveryTimer_Timer();
    std::cout << "READY" << std::endl;
    for (;;)
        pause();
}

TEST(Recovery, KilledWithTwoModifiedDocumentsBothComeBack) {
    QTemporaryDir sources, state;
    const QString blink = sources.filePath("blink.pbp"), fresh = sources.filePath("fresh.pbp");
    writeFile(blink, "OLD LINE\r\n");
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
    EXPECT_EQ(readAll(blink), "OLD LINE\r\n");
    EXPECT_FALSE(QFile::exists(fresh));

    // The next start: the frame comes up, then the killed process's files are offered.
    TestWorld w;
    w.writeDeviceCatalogue();
    EnvVar crashedState("XDG_STATE_HOME", state.path().toLocal8Bit());
    w.prompts.answers = {Answer::Yes};
    auto f = std::make_unique<MDIMain>(blink);
    f->show();
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_EQ(w.prompts.boxes[0].text, "Quillbay Lite did not close normally. Recover 2 unsaved documents?");
    EXPECT_EQ(w.prompts.boxes[0].icon, Icon::Question);
    EXPECT_EQ(w.prompts.boxes[0].buttons, Buttons::YesNo);

    // The start-up document was the same file, unchanged: it took its recovered text, no second window.
    auto docs = documentsByPath(*f);
    ASSERT_EQ(docs.size(), 2u);
    EXPECT_EQ(f->miDocCount(), 2);
    ASSERT_TRUE(docs.count(blink) && docs.count(fresh));
    EXPECT_EQ(docs[blink]->View->Text(), "HIGH PORTB.0\r\nOLD LINE\r\n");
    EXPECT_EQ(docs[fresh]->View->Text(), "' never saved\nLOW 1");
    EXPECT_EQ(docs[fresh]->Caption(), fresh);
    for (auto& [path, doc] : docs) {
        EXPECT_TRUE(doc->View->document().Modified()) << path.toStdString();
        // Now this process's files, one for each document.
        EXPECT_EQ(recoveryFileOwner(QFileInfo(recoveryOf(*doc)->file()).fileName()), ownProcessId());
    }
    EXPECT_EQ(filesIn(recoveryDir).size(), 2);

    // Save writes the original file, with the file's own line endings, and its recovery file goes.
    const QString blinkRecovery = recoveryOf(*docs[blink])->file();
    docs[blink]->View->document().SaveFile(docs[blink]->View->document().PathName());
    EXPECT_EQ(readAll(blink), "HIGH PORTB.0\r\nOLD LINE\r\n");
    EXPECT_FALSE(QFile::exists(blinkRecovery));
    EXPECT_EQ(filesIn(recoveryDir).size(), 1);

    // Closing the other without saving ends its recovery too.
    w.prompts.answers = {Answer::No};
    EXPECT_TRUE(docs[fresh]->subWindow()->close());
    EXPECT_TRUE(filesIn(recoveryDir).isEmpty());
    EXPECT_FALSE(QFile::exists(fresh));
}

