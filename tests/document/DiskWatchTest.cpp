// Another program's changes to an open file: reloaded, asked about or told once, never overwritten
// unasked; the document's own saves pass unnoticed.
#include "core/Globals.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "document/frmEditorDisk.h"
#include "platform/Failure.h"
#include "support/Doubles.h"
#include "support/FakeFileWatch.h"
#include "support/FakeFrame.h"
#include "support/Files.h"

#include <QDir>
#include <QGuiApplication>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <thread>

namespace {

const QByteArray kText("' blink\r\nloop:\r\n    High PORTB.0\r\n    Pause 500\r\n    Low PORTB.0\r\n    GoTo loop\r\n");

struct OnDisk : ::testing::Test {
    TestWorld world;
    FakeFrame frame;
    FakeFileWatch* files = new FakeFileWatch;  // the watch owns it
    DiskWatch watch{frame, frame.docs, std::unique_ptr<FileWatch>(files)};
    frmEditor a{frame}, b{frame};
    const QString pa = world.write("work/a.pbp", kText), pb = world.write("b.pbp", "' other\r\n");

    OnDisk() {
        watch.applicationActive = [] { return true; };
        open(a, pa);
        open(b, pb);  // the active one, as the last opened
    }
    void open(frmEditor& d, const QString& p) {
        frame.docs.add(d);
        d.View->document().LoadFile(p);
        d.View->document().setPathName(p);
        d.setCaption(p);
        emit frame.docs.opened(&d);
    }
    void activate(frmEditor& d) {
        frame.docs.chosen = &d;
        emit frame.docs.activated(&d);
        QCoreApplication::sendPostedEvents(&watch);
    }
    void tick(const QString& p) {
        files->notice(p);
        watch.DiskTimer_Timer();
    }
    static Document& doc(frmEditor& d) { return d.View->document(); }
    static QByteArray text(frmEditor& d) { return d.View->Text().toUtf8(); }
    static void typeAtEnd(frmEditor& d, const QString& t) {
        const int end = doc(d).NumLines() - 1;
        doc(d).InsertImpl(doc(d).GetLineLength(end), end, t);
        doc(d).UpdateViews();
    }
    static bool setTime(const QString& p, const QDateTime& t) {
        QFile f(p);
        return f.open(QIODevice::ReadOnly) && f.setFileTime(t, QFileDevice::FileModificationTime);
    }
    long save(frmEditor& d) { return failureNumber([&] { doc(d).SaveFile(doc(d).PathName()); }); }
    // Titles of the boxes shown since the last call.
    QStringList shown() {
        QStringList titles;
        for (const Box& box : world.prompts.boxes)
            titles << box.title;
        world.prompts.boxes.clear();
        return titles;
    }
};

}  // namespace

TEST_F(OnDisk, OwnSavesAndTouchesPassAndAnUnmodifiedDocumentReloadsOnItsLine) {
    EXPECT_EQ(files->watched, QStringList({pa, pb}));
    typeAtEnd(a, "' mine");
    ASSERT_EQ(save(a), 0);
    ASSERT_TRUE(setTime(pa, QDateTime::currentDateTime().addSecs(60)));
    tick(pa);
    EXPECT_EQ(text(a), kText + "' mine");
    EXPECT_TRUE(shown().isEmpty());

    // Written in place or replaced, of another size or of the same size within the same second.
    const QByteArray same = QByteArray(kText + "' mine").replace("500", "250");
    const std::pair<QByteArray, bool> changes[] = {
        {same, true}, {"' one\r\nloop:\r\n    High PORTB.1\r\n    GoTo loop\r\n", true}, {same + "x", false}};
    for (const auto& [bytes, inPlace] : changes) {
        SCOPED_TRACE(bytes.toStdString());
        a.View->SetSel(2, 3, 2, 3);
        const QDateTime before = QFileInfo(pa).lastModified();
        if (inPlace) {
            ASSERT_TRUE(writeFile(pa, bytes) && setTime(pa, before));
        } else {
            ASSERT_TRUE(replaceFile(pa, bytes));
        }
        tick(pa);
        EXPECT_EQ(text(a), bytes);
        EXPECT_EQ(std::make_tuple(a.View->CaretY(), doc(a).Modified(), doc(a).CanUndo()), std::make_tuple(3, false, false));
        EXPECT_TRUE(shown().isEmpty());
    }
    ASSERT_TRUE(replaceFile(pa, "' short\r\n"));
    tick(pa);
    EXPECT_EQ(a.View->CaretY(), 1);

    // The watch follows a Save As and ends with the document.
    const QString moved = world.file("moved.pbp");
    ASSERT_EQ(failureNumber([&] { doc(a).SaveFile(moved); }), 0);
    a.setPath(moved, true);
    emit frame.docs.pathChanged(&a, pa);
    EXPECT_EQ(files->watched, QStringList({pb, moved}));
    emit frame.docs.closed(&b);
    EXPECT_EQ(files->watched, QStringList({moved}));
}

TEST_F(OnDisk, AModifiedDocumentAsksWhenActivatedAndSaveAsksBeforeOverwriting) {
    typeAtEnd(a, "' typed here");
    ASSERT_TRUE(replaceFile(pa, "' theirs\r\n"));
    tick(pa);
    EXPECT_TRUE(shown().isEmpty()) << "b is in front";
    world.prompts.answers = {Answer::No};
    activate(a);
    ASSERT_EQ(world.prompts.boxes.size(), 1u);
    const Box question = world.prompts.boxes[0];
    EXPECT_EQ(question.text, reloadQuestionText(pa));
    EXPECT_EQ(std::make_tuple(question.title, question.icon, question.buttons),
              std::make_tuple(QString("File Changed"), Icon::Question, Buttons::YesNoDefaultNo));
    shown();
    activate(b);
    activate(a);
    EXPECT_TRUE(shown().isEmpty()) << "the same change is asked about once";
    EXPECT_EQ(text(a), kText + "' typed here");

    world.prompts.answers = {Answer::No};
    EXPECT_EQ(save(a), kCancelError);
    EXPECT_EQ(readFile(pa), "' theirs\r\n");
    EXPECT_TRUE(doc(a).Modified());
    ASSERT_EQ(world.prompts.boxes.size(), 1u);
    EXPECT_TRUE(world.prompts.boxes[0].text.contains(QDir::toNativeSeparators(pa)));
    EXPECT_EQ(std::make_tuple(world.prompts.boxes[0].title, world.prompts.boxes[0].buttons),
              std::make_tuple(QString("File Changed on Disk"), Buttons::YesNoDefaultNo));
    shown();
    world.prompts.answers = {Answer::Yes};
    EXPECT_EQ(save(a), 0);
    EXPECT_EQ(readFile(pa), kText + "' typed here");
    tick(pa);
    EXPECT_EQ(shown(), QStringList({"File Changed on Disk"}));

    // In front, the question comes with the change; a program in the background waits to be in front.
    typeAtEnd(a, "!");
    ASSERT_TRUE(replaceFile(pa, "' theirs again\r\n"));
    watch.applicationActive = [] { return false; };
    tick(pa);
    EXPECT_TRUE(shown().isEmpty());
    watch.applicationActive = [] { return true; };
    world.prompts.answers = {Answer::Yes};
    emit qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    QCoreApplication::sendPostedEvents(&watch);
    EXPECT_EQ(shown(), QStringList({"File Changed"}));
    EXPECT_EQ(text(a), "' theirs again\r\n");
    EXPECT_FALSE(doc(a).Modified());

    // A file made where the new document had none is another program's too.
    const QString fresh = world.file("Untitled1.pbp");
    EXPECT_EQ(failureNumber([&] { doc(b).LoadFile(fresh); }), ENOENT);
    doc(b).setPathName(fresh);
    typeAtEnd(b, "' new");
    world.write("Untitled1.pbp", "' someone else's\r\n");
    world.prompts.answers = {Answer::No};
    EXPECT_EQ(save(b), kCancelError);
    EXPECT_EQ(readFile(fresh), "' someone else's\r\n");
}

TEST_F(OnDisk, AFileGoneIsToldOnceSaveWritesItAgainAndAnUnreadableOneLosesNothing) {
    activate(a);
    const struct {
        const char* what;
        std::function<void()> act;
        QString title, text;
        long save;
    } cases[] = {
        {"deleted", [&] { QFile::remove(pa); }, "File Deleted", fileGoneText(pa), 0},
        {"its folder removed", [&] { QDir(world.file("work")).removeRecursively(); }, "File Deleted", fileGoneText(pa), 0},
        {"a folder in its place", [&] { QFile::remove(pa), QDir().mkpath(pa); }, "File Replaced", fileIsFolderText(pa),
         EISDIR},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        c.act();
        tick(pa);
        ASSERT_EQ(world.prompts.boxes.size(), 1u);
        EXPECT_EQ(std::make_pair(world.prompts.boxes[0].title, world.prompts.boxes[0].text), std::make_pair(c.title, c.text));
        shown();
        tick(pa);
        activate(b);
        activate(a);
        EXPECT_TRUE(shown().isEmpty());
        EXPECT_EQ(text(a), kText);
        EXPECT_EQ(save(a), c.save);
        if (c.save == 0) {
            EXPECT_EQ(readFile(pa), kText);
            tick(pa);
            EXPECT_TRUE(shown().isEmpty());
        } else {
            shown();
            QDir(pa).removeRecursively();
            ASSERT_EQ(save(a), 0);
        }
    }

    // Binary now, unmodified: the text stays, the failure is said once, and Save asks first.
    ASSERT_TRUE(replaceFile(pa, QByteArray("MZ\0\0binary", 10)));
    tick(pa);
    ASSERT_EQ(world.prompts.boxes.size(), 1u);
    EXPECT_TRUE(world.prompts.boxes[0].text.startsWith(reloadFailedText(pa, "").left(40)));
    EXPECT_TRUE(world.prompts.boxes[0].text.contains("binary data"));
    shown();
    tick(pa);
    EXPECT_TRUE(shown().isEmpty());
    EXPECT_EQ(text(a), kText);
    world.prompts.answers = {Answer::No};
    EXPECT_EQ(save(a), kCancelError);
    EXPECT_EQ(readFile(pa).size(), 10);
}

// What was read is what the document knows of its file: written again while being read, the file still
// ends up in the document as it was written last.
TEST_F(OnDisk, AFileWrittenWhileItIsReadEndsUpAsWrittenLast) {
    std::atomic<bool> stop = false;
    std::thread writer([&] {
        for (int i = 0; !stop; ++i) {
            QFile f(pa);
            if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
                f.write(QByteArray("' version ") + QByteArray::number(i) + "\r\n" + kText.repeated(1 + i % 50));
        }
    });
    for (int i = 0; i < 50; ++i)
        doc(a).LoadFile(pa);
    stop = true;
    writer.join();
    tick(pa);
    EXPECT_EQ(text(a), readFile(pa));
    EXPECT_TRUE(shown().isEmpty());
}
