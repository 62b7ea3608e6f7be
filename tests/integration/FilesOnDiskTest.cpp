// The frame with the system's own file watching: another program's saves reach the open documents, also
// after one replaced the file; the frame's own saves don't; Reopen with Encoding from the File menu.
#include "RunningFrame.h"
#include "document/frmEditorDisk.h"
#include "document/frmEditorEncoding.h"
#include "shell/EditorRegistry.h"
#include "statusbar/cNoStatusBar.h"

#include <QListWidget>

TEST(FilesOnDisk, AnotherProgramsSavesReachTheDocumentsAndTheFramesOwnDoNot) {
    RunningFrame t(QString(), false);
    const QString a = t.w.write("a.pbp", "' a\r\n"), b = t.w.write("sub/b.pbp", "' b\r\n");
    t.start(a);
    t.openFile(b);
    frmEditor* docA = t.f->editors().find(a);
    frmEditor* docB = t.doc();
    DiskWatch* watch = t.f->registry().findChild<DiskWatch*>();
    ASSERT_TRUE(docA && docB && watch);
    auto text = [](frmEditor* d) { return d->View->Text().toUtf8(); };

    // Replaced twice (each a new file under the name, as an atomic save leaves it), then written in place.
    for (const QByteArray& bytes : {QByteArray("' a, 2\r\n"), QByteArray("' a, 3\r\n")}) {
        ASSERT_TRUE(replaceFile(a, bytes));
        EXPECT_TRUE(waitFor([&] { return text(docA) == bytes; }));
    }
    ASSERT_TRUE(writeFile(a, "' a, 4\r\n"));
    EXPECT_TRUE(waitFor([&] { return text(docA) == "' a, 4\r\n"; }));
    // Read again with the caret where it was, the statement tip tells of the new text under it.
    t.f->mdiArea()->setActiveSubWindow(docA->subWindow());
    for (const QByteArray& bytes : {QByteArray("HIGH 1\r\n"), QByteArray("LOW 1\r\n")}) {
        ASSERT_TRUE(writeFile(a, bytes));
        EXPECT_TRUE(waitFor([&] { return text(docA) == bytes; }));
    }
    EXPECT_EQ(t.f->statusBar()->PanelText(2), "Make pin output low.");
    t.f->mdiArea()->setActiveSubWindow(docB->subWindow());

    // The frame's own save is no change: once another file's change is through, it is too, unnoticed.
    t.type("x");
    t.click(ToolId::Save);
    ASSERT_TRUE(replaceFile(a, "' a, 5\r\n"));
    EXPECT_TRUE(waitFor([&] { return text(docA) == "' a, 5\r\n"; }));
    EXPECT_EQ(text(docB), "x' b\r\n");
    EXPECT_TRUE(docB->View->document().CanUndo()) << "read again";
    EXPECT_TRUE(t.w.prompts.boxes.empty());

    // Gone while in the background: said when it is activated, once.
    int ticks = 0;
    QObject::connect(&watch->DiskTimer, &QTimer::timeout, [&] { ++ticks; });
    watch->applicationActive = [] { return false; };
    QFile::remove(b);
    EXPECT_TRUE(waitFor([&] { return ticks > 0; }));
    EXPECT_TRUE(t.w.prompts.boxes.empty());
    for (frmEditor* d : {docA, docB, docA, docB}) {
        t.f->mdiArea()->setActiveSubWindow(d->subWindow());
        QCoreApplication::processEvents();
    }
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.lastBox().text, fileGoneText(b));
    t.click(ToolId::Save);
    EXPECT_EQ(readFile(b), "x' b\r\n");
}

TEST(FilesOnDisk, ReopenWithEncodingFromTheFileMenu) {
    RunningFrame t(QString(), false);
    saveSetting(Key::LegacyEncoding, "windows-1252");
    const QByteArray bytes("' \xDE\xFE\xFD\r\n");  // too little for a guess
    t.start(t.w.write("tr.pbp", bytes));
    EXPECT_EQ(t.doc()->View->document().GetLine(0), "' Þþý");
    t.f->modalHook = [](QDialog& d) {
        auto& dlg = dynamic_cast<frmEditorEncoding&>(d);
        dlg.lstEncoding->setCurrentRow(5);
        dlg.cmdOK_Click();
        return dlg.result();
    };
    t.click(ToolId::ReopenWithEncoding);
    EXPECT_EQ(t.doc()->View->document().GetLine(0), "' Şşı");
    EXPECT_TRUE(t.w.prompts.boxes.empty());
}
