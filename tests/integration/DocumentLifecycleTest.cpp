// Unsaved changes, the save dialog and the closing steps of a document window.
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "core/Globals.h"
#include "shell/MDIMain.h"
#include "core/Settings.h"
#include "support/Doubles.h"
#include "support/Typing.h"

#include <QFile>
#include <QMdiSubWindow>
#include "platform/Failure.h"
#include <gtest/gtest.h>

namespace {
struct RunningFrame {
    TestWorld w;
    std::unique_ptr<MDIMain> f;
    explicit RunningFrame(const QString& name = "doc.pbp") {
        w.writeDeviceCatalogue();
        f = std::make_unique<MDIMain>(w.appDir() + "/" + name);
        f->show();
    }
    frmEditor* doc() { return f->activeDocument(); }
    QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }
};
}  // namespace

TEST(SaveModified, YesAlwaysAsksForTheNameAndSavesThere) {
    RunningFrame t;
    typeText(t.doc()->View->editorWidget(), "HIGH 1");
    const QString other = t.w.appDir() + "/renamed.pbp";
    t.w.prompts.answers = {Answer::Yes};
    t.w.prompts.files = {other};
    EXPECT_TRUE(t.doc()->subWindow()->close());
    EXPECT_EQ(t.w.prompts.fileDialogNames.value(0), t.w.appDir() + "/doc.pbp");
    EXPECT_EQ(t.read(other), "HIGH 1");
    EXPECT_FALSE(QFile::exists(t.w.appDir() + "/doc.pbp"));
    EXPECT_EQ(setting(Key::LastFile), other);
    EXPECT_EQ(t.f->miDocCount(), 0);
}

TEST(SaveModified, CancelInTheDialogOrAnEmptyNameRefusesTheClose) {
    RunningFrame t;
    typeText(t.doc()->View->editorWidget(), "x");
    t.w.prompts.answers = {Answer::Yes};
    t.w.prompts.files = {std::nullopt};
    EXPECT_FALSE(t.doc()->subWindow()->close());
    EXPECT_EQ(t.w.prompts.boxes.size(), 1u);  // the question only: a cancel is silent
    t.w.prompts.answers = {Answer::Yes};
    t.w.prompts.files = {QString()};
    EXPECT_FALSE(t.doc()->subWindow()->close());
    ASSERT_EQ(t.w.prompts.boxes.size(), 3u);
    EXPECT_EQ(t.w.prompts.boxes[2].text, "No file name entered.");
    EXPECT_EQ(t.w.prompts.boxes[2].title, "File Error");
    // Cancel at the question: document, count and LastFile as they were.
    t.w.prompts.answers = {Answer::Cancel};
    EXPECT_FALSE(t.doc()->subWindow()->close());
    EXPECT_EQ(t.f->miDocCount(), 1);
    EXPECT_TRUE(t.doc()->View->document().Modified());
    EXPECT_EQ(setting(Key::LastFile), t.w.appDir() + "/Untitled.pbp");
}

TEST(SaveModified, FailedSaveReportsAndKeepsTheDocument) {
    RunningFrame t;
    typeText(t.doc()->View->editorWidget(), "precious");
    t.w.prompts.answers = {Answer::Yes};
    t.w.prompts.files = {t.w.appDir() + "/no/such/dir/x.pbp"};
    EXPECT_FALSE(t.doc()->subWindow()->close());
    ASSERT_EQ(t.w.prompts.boxes.size(), 2u);
    EXPECT_EQ(t.w.prompts.boxes[1].title, "File Error");
    EXPECT_TRUE(t.w.prompts.boxes[1].text.startsWith("Error( ")) << t.w.prompts.boxes[1].text.toStdString();
    EXPECT_EQ(t.w.prompts.boxes[1].icon, Icon::None);
    EXPECT_TRUE(t.doc()->View->document().Modified());
    EXPECT_EQ(t.doc()->View->Text(), "precious");
}

TEST(Documents, AnyNumberAndEachActivates) {
    RunningFrame t;
    for (int i = 0; i < 12; ++i, t.f->setMiDocCount(t.f->miDocCount() + 1))
        t.f->createDocument(t.w.appDir() + QString("/n%1.pbp").arg(i));
    EXPECT_EQ(globals().loadedWindows.size(), 14u);
    EXPECT_EQ(t.f->activeDocument()->Caption(), t.w.appDir() + "/n11.pbp");
    EXPECT_TRUE(t.f->close());
    EXPECT_EQ(t.f->miDocCount(), 0);
}

TEST(Documents, AFileThatCannotBeOpenedIsReportedNotLost) {
    RunningFrame t;
    const QString bin = t.w.write("image.pbp", QByteArray("AB\0CD", 5));
    EXPECT_THROW(t.f->createDocument(bin), Failure);
    EXPECT_EQ(t.f->miDocCount(), 1);
    EXPECT_EQ(globals().loadedWindows.size(), 2u);
    EXPECT_EQ(t.read(bin), QByteArray("AB\0CD", 5));
}
