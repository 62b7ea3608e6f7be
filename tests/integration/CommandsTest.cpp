// The frame's commands, clicked through the tool model with the platform doubles.
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "core/Globals.h"
#include "shell/MDIMain.h"
#include "shell/RecentFiles.h"
#include "core/Settings.h"
#include "support/Doubles.h"
#include "support/Typing.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <gtest/gtest.h>

namespace {

struct RunningFrame {
    TestWorld w;
    std::unique_ptr<MDIMain> f;
    explicit RunningFrame(const QString& first = {}) {
        w.writeDeviceCatalogue();
        f = std::make_unique<MDIMain>(first);
        f->show();
    }
    void click(const QString& id) { f->SSActiveToolBars1_ToolClick(f->toolBars().Tools().Item(id)); }
    void clickWindowEntry(const QString& id) {
        f->SSActiveToolBars1_ToolClick(f->toolBars().Tools().Item("ID_Window").Menu().Tools().Item(id));
    }
    bool enabled(const QString& id) { return f->toolBars().Tools().Item(id).Enabled(); }
    QStringList titles() {
        QStringList t;
        for (QMdiSubWindow* s : f->mdiArea()->subWindowList(QMdiArea::CreationOrder))
            t << s->widget()->windowTitle();
        return t;
    }
    QStringList windowMenu() {
        QStringList ids;
        for (const auto& m : f->toolBars().Tools().Item("ID_Window").Menu().Tools())
            ids << m->ID();
        return ids;
    }
    QString openDocsLabel() {
        return f->toolBars().Bands("Standard").Tools().Item("ID_OpenDocs").Caption();
    }
    QString recent(int n) { return recentFileEntry(f->toolBars(), n).Caption(); }
    bool recentShown(int n) { return recentFileEntry(f->toolBars(), n).Visible(); }
    void openFile(const QString& path) {
        w.prompts.files.push_back(path);
        click("ID_Open");
    }
};

}  // namespace

TEST(Commands, NewGivesNumberedNamesAndEntersThem) {
    RunningFrame t;
    t.click("ID_New");
    t.click("ID_New");
    const QString dir = t.w.appDir();
    EXPECT_EQ(t.titles(), QStringList({dir + "/Untitled.pbp", dir + "/Untitled1.pbp", dir + "/Untitled2.pbp"}));
    EXPECT_EQ(t.f->miDocCount(), 3);
    EXPECT_EQ(t.openDocsLabel(), "Files: 3");
    EXPECT_EQ(t.windowMenu(), QStringList({"ID_TileH", "ID_TileV", "ID_Cascade", "ID_Arrange", "separator",
                                            dir + "/Untitled.pbp", dir + "/Untitled1.pbp", dir + "/Untitled2.pbp"}));
    // Nothing reaches the disk, and no recent entry appears.
    EXPECT_FALSE(QFile::exists(dir + "/Untitled1.pbp"));
    EXPECT_FALSE(t.recentShown(1));
}

TEST(Commands, NewRefusesANameOpenInAnotherOrder) {
    RunningFrame t;
    const QString dir = t.w.appDir();
    // Untitled2 loaded ahead of Untitled1: the single pass stops at 2, which is open.
    t.f->setMiDocCount(t.f->miDocCount() + 1);
    t.f->createDocument(dir + "/UNTITLED2.pbp");
    t.f->setMiDocCount(t.f->miDocCount() + 1);
    t.f->createDocument(dir + "/Untitled1.pbp");
    const qint16 before = t.f->miDocCount();
    t.click("ID_New");
    EXPECT_EQ(t.f->miDocCount(), before);
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.w.prompts.boxes[0].text, "File Already Open!");
    EXPECT_EQ(t.w.prompts.boxes[0].icon, Icon::Exclamation);
    EXPECT_EQ(t.titles().size(), 3);
}

TEST(Commands, OpenRefusesOtherLetterCaseAndEntersRecentFiles) {
    RunningFrame t;
    const QString a = t.w.write("Blink.pbp", "HIGH 0\n");
    t.openFile(a);
    EXPECT_EQ(t.f->activeDocument()->Caption(), a);
    EXPECT_EQ(t.recent(1), "&1 " + a);
    EXPECT_EQ(t.f->miDocCount(), 2);
    // The same file under another letter case: refused, count back, list untouched.
    QFile::copy(a, t.w.appDir() + "/BLINK.PBP");
    t.openFile(t.w.appDir() + "/BLINK.PBP");
    EXPECT_EQ(t.w.prompts.boxes.back().text, "File Already Open!");
    EXPECT_EQ(t.f->miDocCount(), 2);
    EXPECT_FALSE(t.recentShown(2));
    // Not found, cancelled: nothing changes.
    t.openFile(t.w.appDir() + "/gone.pbp");
    EXPECT_EQ(t.w.prompts.boxes.back().text, "File Not Found: " + t.w.appDir() + "/gone.pbp");
    EXPECT_EQ(t.w.prompts.boxes.back().icon, Icon::None);
    const size_t boxes = t.w.prompts.boxes.size();
    t.click("ID_Open");  // the dialog is cancelled: silent
    EXPECT_EQ(t.w.prompts.boxes.size(), boxes);
    EXPECT_EQ(t.f->miDocCount(), 2);
    EXPECT_EQ(t.w.prompts.fileDialogFilters.back(),
              "All Source Code Files|*.bas;*.pbp;*.pbc|PicBasic Pro Source Code (*.pbp)|*.pbp|PicBasic Source "
              "Code (*.pbc)|*.pbc|Basic Source Code (*.bas)|*.bas|All Files (*.*)|*.*|");
}

TEST(Commands, AFileThatCannotBeOpenedWithNoDocumentLeavesTheToolsOff) {
    RunningFrame t;
    t.click("ID_Close");
    ASSERT_EQ(t.f->miDocCount(), 0);
    const QString binary = t.w.write("image.pbp", QByteArray("GIF\0\1", 5));
    t.openFile(binary);
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.w.prompts.boxes[0].title, "File Error");
    EXPECT_EQ(t.f->miDocCount(), 0);
    EXPECT_FALSE(t.enabled("ID_Save"));
    EXPECT_FALSE(t.enabled("ID_Compile"));
    EXPECT_EQ(t.openDocsLabel(), "Files: 0");
    EXPECT_FALSE(t.recentShown(1)) << "a file that didn't open isn't a recent file";
}

TEST(Commands, FiveOpensKeepTheLastFourNewestFirst) {
    RunningFrame t;
    QStringList paths;
    for (int i = 1; i <= 5; ++i)
        paths << t.w.write(QString("f%1.pbp").arg(i), "x");
    for (const QString& p : paths)
        t.openFile(p);
    EXPECT_EQ(t.recent(1), "&1 " + paths[4]);
    EXPECT_EQ(t.recent(2), "&2 " + paths[3]);
    EXPECT_EQ(t.recent(3), "&3 " + paths[2]);
    EXPECT_EQ(t.recent(4), "&4 " + paths[1]);
    // Opening from an entry opens that file and leaves the list alone.
    t.f->activeDocument()->subWindow()->close();
    t.click("ID_File1");
    EXPECT_EQ(t.f->activeDocument()->Caption(), paths[4]);
    EXPECT_EQ(t.recent(1), "&1 " + paths[4]);
    EXPECT_EQ(t.recent(2), "&2 " + paths[3]);
    // Stored at close, prefixes and all.
    ASSERT_TRUE(t.f->close());
    EXPECT_EQ(setting(Key::File1), "&1 " + paths[4]);
    EXPECT_EQ(setting(Key::File4), "&4 " + paths[1]);
}

TEST(Commands, File2AloneStored) {
    TestWorld w;
    w.writeDeviceCatalogue();
    const QString old = w.write("old.pbp", "x");
    const QString fresh = w.write("new.pbp", "y");
    saveSetting(Key::File2, "&2 " + old);
    MDIMain f({});
    f.show();
    auto& tools = f.toolBars();
    EXPECT_FALSE(recentFileEntry(tools, 1).Visible());
    EXPECT_TRUE(recentFileEntry(tools, 2).Visible());
    w.prompts.files.push_back(fresh);
    f.SSActiveToolBars1_ToolClick(tools.Tools().Item("ID_Open"));
    EXPECT_EQ(recentFileEntry(tools, 1).Caption(), "&1 " + fresh);
    EXPECT_EQ(recentFileEntry(tools, 2).Caption(), "&2 " + old);
    EXPECT_EQ(recentFileEntry(tools, 3).Caption(), "&3 " + old);
    EXPECT_FALSE(recentFileEntry(tools, 4).Visible());
}

TEST(Commands, RecentEntryOfAMissingFileReportsAndRestoresTheCount) {
    TestWorld w;
    w.writeDeviceCatalogue();
    saveSetting(Key::File1, "&1 " + w.appDir() + "/vanished.pbp");
    MDIMain f({});
    f.show();
    f.SSActiveToolBars1_ToolClick(f.toolBars().Tools().Item("ID_File1"));
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_EQ(w.prompts.boxes[0].title, "File Error");
    EXPECT_EQ(f.miDocCount(), 1);
    EXPECT_EQ(globals().loadedWindows.size(), 2u);
    EXPECT_EQ(recentFileEntry(f.toolBars(), 1).Caption(), "&1 " + w.appDir() + "/vanished.pbp");
}

TEST(Commands, SaveAsOntoItselfIsRefusedAndAnotherNameMovesTheEntry) {
    RunningFrame t;
    const QString a = t.w.write("a.pbp", "A\n");
    t.openFile(a);
    const qint16 count = t.f->miDocCount();
    t.w.prompts.files.push_back(a.toUpper() == a ? a : a);
    t.click("ID_SaveAs");
    EXPECT_EQ(t.w.prompts.boxes.back().text, "File Already Open!");
    EXPECT_EQ(t.f->miDocCount(), count);
    const QString b = t.w.appDir() + "/b.pbp";
    t.w.prompts.files.push_back(b);
    t.click("ID_SaveAs");
    EXPECT_EQ(t.f->activeDocument()->Caption(), b);
    EXPECT_EQ(t.windowMenu().last(), b);
    EXPECT_FALSE(t.windowMenu().contains(a));
    QFile saved(b);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), "A\n");
    // Save As doesn't touch the recent list: the open entered a, nothing entered b.
    EXPECT_EQ(t.recent(1), "&1 " + a);
    EXPECT_FALSE(t.recentShown(2));
}

TEST(Commands, ClosingAllAndOpeningOneGivesOneSeparator) {
    RunningFrame t;
    t.click("ID_Close");
    EXPECT_EQ(t.f->miDocCount(), 0);
    EXPECT_EQ(t.openDocsLabel(), "Files: 0");
    EXPECT_EQ(t.windowMenu(), QStringList({"ID_TileH", "ID_TileV", "ID_Cascade", "ID_Arrange", "separator"}));
    // No document: the document tools are grey, the rest stay on.
    for (const char* id : {"ID_Save", "ID_Print", "ID_Cut", "ID_Copy", "ID_Paste", "ID_Find", "ID_FindNext",
                           "ID_Indent", "ID_Outdent", "ID_Undo", "ID_Redo", "ID_Compile", "ID_Device", "ID_Close"})
        EXPECT_FALSE(t.enabled(id)) << id;
    for (const char* id : {"ID_New", "ID_Open", "ID_Epic", "ID_Exit", "ID_GotoLine", "ID_OpenDocs"})
        EXPECT_TRUE(t.enabled(id)) << id;
    // A command that needs a document reports that there is none.
    t.click("ID_GotoLine");
    EXPECT_EQ(t.w.prompts.boxes.back().title, "File Error");
    t.click("ID_New");
    EXPECT_EQ(t.windowMenu().count("separator"), 1);
    EXPECT_EQ(t.windowMenu().last(), t.w.appDir() + "/Untitled1.pbp");
    EXPECT_TRUE(t.enabled("ID_Device"));
    EXPECT_EQ(t.openDocsLabel(), "Files: 1");
    // A click on a document entry brings that document forward.
    t.click("ID_New");
    t.clickWindowEntry(t.w.appDir() + "/Untitled1.pbp");
    EXPECT_EQ(t.f->activeDocument()->Caption(), t.w.appDir() + "/Untitled1.pbp");
}

TEST(Commands, EditCommandsAndTheirTools) {
    RunningFrame t;
    SourceView& v = *t.f->activeDocument()->View;
    v.SetText("HIGH PORTB\nLOW PORTB");
    t.click("ID_SelectAll");
    int sc, sl, ec, el;
    v.GetSel(sc, sl, ec, el);
    EXPECT_EQ(QList<int>({sc, sl, ec, el}), QList<int>({0, 0, 9, 1}));
    EXPECT_TRUE(t.enabled("ID_Cut"));
    t.click("ID_Cut");
    EXPECT_EQ(v.Text(), "");
    EXPECT_TRUE(t.enabled("ID_Paste"));
    t.click("ID_Paste");
    EXPECT_EQ(v.Text(), "HIGH PORTB\nLOW PORTB");
    EXPECT_TRUE(t.enabled("ID_Undo"));
    t.click("ID_Undo");
    EXPECT_EQ(v.Text(), "");
    EXPECT_TRUE(t.enabled("ID_Redo"));
    t.click("ID_Redo");
    EXPECT_EQ(v.Text(), "HIGH PORTB\nLOW PORTB");
    v.SetSel(2, 1, 2, 1);
    t.click("ID_SelectLine");
    v.GetSel(sc, sl, ec, el);
    EXPECT_EQ(QList<int>({sc, sl, ec, el}), QList<int>({0, 1, 9, 1}));
    t.click("ID_ScrollingMargin");
    EXPECT_EQ(v.marginStyle(), MarginStyle::Scrolling);
    // The Edit menu opening with no token clicked turns the token colour tool off.
    globals().ClickedTokenClass = 0;
    t.f->toolBars().Tools().Item("ID_TokenColor").setEnabled(true);
    t.click("ID_Edit");
    EXPECT_FALSE(t.enabled("ID_TokenColor"));
}

TEST(Commands, WebLinksCarryTheVersionDigits) {
    RunningFrame t;
    t.click("ID_Update");
    t.click("ID_BugReport");
    t.click("ID_melabs");
    ASSERT_EQ(t.w.launcher.launches.size(), 3u);
    EXPECT_TRUE(t.w.launcher.launches[0].program.endsWith("/check4update.aspx?app=Tarnlet&ver=171"));
    EXPECT_TRUE(t.w.launcher.launches[1].program.startsWith("mailto:"));
    EXPECT_TRUE(t.w.launcher.launches[1].program.endsWith("?subject=[Tarnlet] Version: 171"));
    t.w.launcher.failUrl = true;
    t.click("ID_QuillbayHomePage");
    EXPECT_EQ(t.w.prompts.boxes.back().text, "Unable to launch application.");
    EXPECT_EQ(t.w.prompts.boxes.back().title, "");
}

TEST(Commands, MenuEntriesCarryTheUsualKeysAndTheEditorsOwnKeysActOnce) {
    RunningFrame t;
    auto& tools = t.f->toolBars().Tools();
    auto menuAction = [&](const char* menu, const char* id) {
        return t.f->toolBars().action(tools.Item(menu).Menu().Tools().Item(id));
    };
    EXPECT_EQ(menuAction("ID_File", "ID_Save")->shortcut(), QKeySequence(QKeySequence::Save));
    EXPECT_EQ(menuAction("ID_Edit", "ID_Undo")->shortcut(), QKeySequence(QKeySequence::Undo));
    EXPECT_EQ(menuAction("ID_CMenu", "ID_Compile")->shortcut(), QKeySequence("F9"));
    EXPECT_EQ(menuAction("ID_Programmer", "ID_Epic")->shortcut(), QKeySequence("F10"));
    // The toolbar's button has no key of its own: one key, one action.
    EXPECT_TRUE(t.f->toolBars().action(t.f->toolBars().Bands("Standard").Tools().Item("ID_Save"))->shortcut().isEmpty());
    // Paste typed in the editor is the editor's: the text goes in once, not twice.
    SourceView& v = *t.f->activeDocument()->View;
    QGuiApplication::clipboard()->setText("x");
    t.enabled("ID_Paste");
    t.f->toolBars().Tools().Item("ID_Paste").setEnabled(true);
    QTest::keyClick(v.editorWidget(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(v.Text(), "x");
}
