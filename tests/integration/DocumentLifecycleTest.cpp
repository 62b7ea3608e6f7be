// Unsaved changes at a document's close: the question, the save dialog and what a refusal keeps.
#include "RunningFrame.h"

TEST(SaveModified, ACancelAnEmptyNameOrAFailedSaveKeepsTheDocumentAndYesSavesUnderTheNameGiven) {
    RunningFrame t;
    t.type("precious");
    const struct { Answer answer; std::optional<QString> file; QString report; } cases[] = {
        {Answer::Yes, std::nullopt, {}},  // the dialog cancelled: silent
        {Answer::Yes, QString(), "No file name entered."},
        {Answer::Yes, t.w.file("no/such/dir/x.pbp"), "Error( "},
        {Answer::Cancel, std::nullopt, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file.value_or("<no file>").toStdString() + (c.answer == Answer::Cancel ? " Cancel" : " Yes"));
        t.w.prompts.boxes.clear();
        t.w.prompts.answers = {c.answer};
        t.w.prompts.files = {c.file};
        EXPECT_FALSE(t.doc()->subWindow()->close());
        ASSERT_EQ(t.w.prompts.boxes.size(), c.report.isEmpty() ? 1u : 2u);
        if (!c.report.isEmpty()) {
            EXPECT_TRUE(t.lastBox().text.startsWith(c.report)) << t.lastBox().text.toStdString();
            EXPECT_EQ(t.lastBox().title, "File Error");
        }
        EXPECT_EQ(t.f->miDocCount(), 1);
        EXPECT_TRUE(t.doc()->View->document().Modified());
        EXPECT_EQ(t.doc()->View->Text(), "precious");
    }
    EXPECT_EQ(setting(Key::LastFile), t.w.file("Untitled.pbp"));
    // Yes: the save dialog starts at the document's name, and the name given is saved and becomes LastFile.
    const QString other = t.w.file("renamed.pbp");
    t.w.prompts.answers = {Answer::Yes};
    t.w.prompts.files = {other};
    EXPECT_TRUE(t.doc()->subWindow()->close());
    EXPECT_EQ(t.w.prompts.fileDialogNames.last(), t.w.file("Untitled.pbp"));
    EXPECT_EQ(readFile(other), "precious");
    EXPECT_FALSE(QFile::exists(t.w.file("Untitled.pbp")));
    EXPECT_EQ(setting(Key::LastFile), other);
    EXPECT_EQ(t.f->miDocCount(), 0);
}
