// The frame's commands, clicked through the tool model with the platform doubles.
#include "RunningFrame.h"
#include "core/ToolIds.h"

#include "platform/QtPrompts.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QTest>

TEST(Commands, NewNumbersInOnePassAndEntersTheWindowMenu) {
    RunningFrame t;
    const QString dir = t.w.appDir();
    t.click(ToolId::New);
    t.click(ToolId::New);
    const QStringList names = {dir + "/Untitled.pbp", dir + "/Untitled1.pbp", dir + "/Untitled2.pbp"};
    EXPECT_EQ(t.titles(), names);
    EXPECT_EQ(t.windowMenu(), QStringList{"separator"} + names);
    EXPECT_EQ(t.f->miDocCount(), 3);
    EXPECT_EQ(t.filesLabel(), "Files: 3");
    EXPECT_FALSE(QFile::exists(names[1]));
    EXPECT_EQ(t.recent(1), "-");
    // A click on an entry brings that document forward.
    t.f->SSActiveToolBars1_ToolClick(t.f->toolBars().Tools().Item(ToolId::Window).Menu().Tools().Item(names[1]));
    EXPECT_EQ(t.doc()->Caption(), names[1]);
    // Untitled2 loaded ahead of Untitled1: the single pass stops at 2, which is open, and New refuses.
    for (QMdiSubWindow* s : t.f->mdiArea()->subWindowList())
        if (s->widget()->windowTitle() != names[0])
            s->close();
    for (const QString& name : {dir + "/UNTITLED2.pbp", names[1]}) {
        t.f->createDocument(name);
    }
    t.click(ToolId::New);
    EXPECT_EQ(t.f->miDocCount(), 3);
    EXPECT_EQ(t.titles().size(), 3);
    EXPECT_EQ(t.lastBox().text, "File Already Open!");
    EXPECT_EQ(t.lastBox().icon, Icon::Exclamation);
}

TEST(Commands, OpenAndSaveAsRefuseAnOpenFileAndSaveAsMovesTheWindowEntry) {
    RunningFrame t;
    const QString a = t.w.write("Blink.pbp", "HIGH 0\n");
    t.openFile(a);
    EXPECT_EQ(t.doc()->Caption(), a);
    EXPECT_EQ(t.recent(1), "&1 " + a);
    QFile::copy(a, t.w.file("BLINK.PBP"));
    t.openFile(t.w.file("BLINK.PBP"));
    EXPECT_EQ(t.lastBox().text, "File Already Open!");
    t.openFile(t.w.file("gone.pbp"));
    EXPECT_EQ(t.lastBox().text, "File Not Found: " + t.w.file("gone.pbp"));
    EXPECT_EQ(t.lastBox().icon, Icon::None);
    const size_t boxes = t.w.prompts.boxes.size();
    t.click(ToolId::Open);  // cancelled: silent
    EXPECT_EQ(t.w.prompts.boxes.size(), boxes);
    EXPECT_EQ(t.f->miDocCount(), 2);
    EXPECT_EQ(t.w.prompts.fileDialogFilters.back(),
              "All Source Code Files|*.bas;*.pbp;*.pbc|PicBasic Pro Source Code (*.pbp)|*.pbp|PicBasic Source "
              "Code (*.pbc)|*.pbc|Basic Source Code (*.bas)|*.bas|All Files (*.*)|*.*|");
    // Save As onto the document's own file is refused; another name moves the window entry.
    const QString b = t.w.file("b.pbp");
    t.w.prompts.files = {a, b};
    t.click(ToolId::SaveAs);
    EXPECT_EQ(t.lastBox().text, "File Already Open!");
    EXPECT_EQ(t.f->miDocCount(), 2);
    t.click(ToolId::SaveAs);
    EXPECT_EQ(t.doc()->Caption(), b);
    EXPECT_EQ(t.windowMenu().last(), b);
    EXPECT_FALSE(t.windowMenu().contains(a));
    EXPECT_EQ(readFile(b), "HIGH 0\n");
    // The recent list has the open, not the Save As.
    EXPECT_EQ(QStringList({t.recent(1), t.recent(2)}), QStringList({"&1 " + a, "-"}));
}

TEST(Commands, RecentFilesKeepTheLastFourOpenFromTheMenuAndAreStoredAtClose) {
    RunningFrame t;
    QStringList paths;
    for (int i = 1; i <= 5; ++i)
        t.openFile(paths.emplace_back(t.w.write(QString("f%1.pbp").arg(i), "x")));
    const QStringList newestFirst = {"&1 " + paths[4], "&2 " + paths[3], "&3 " + paths[2], "&4 " + paths[1]};
    auto shown = [&] { return QStringList({t.recent(1), t.recent(2), t.recent(3), t.recent(4)}); };
    EXPECT_EQ(shown(), newestFirst);
    // Opening from an entry opens that file and leaves the list alone.
    t.doc()->subWindow()->close();
    t.click(ToolId::File1);
    EXPECT_EQ(t.doc()->Caption(), paths[4]);
    EXPECT_EQ(shown(), newestFirst);
    ASSERT_TRUE(t.f->close());
    EXPECT_EQ(setting(Key::File1), newestFirst[0]);
    EXPECT_EQ(setting(Key::File4), newestFirst[3]);
    // An entry whose file has gone: reported, the count back, the entry kept.
    saveSetting(Key::File1, "&1 " + t.w.file("vanished.pbp"));
    t.start(paths[0]);  // one document, not the five of the session
    t.click(ToolId::File1);
    ASSERT_EQ(t.w.prompts.boxes.size(), 1u);
    EXPECT_EQ(t.lastBox().title, "File Error");
    EXPECT_EQ(t.f->miDocCount(), 1);
    EXPECT_EQ(globals().loadedWindows.size(), 2u);
    EXPECT_EQ(t.recent(1), "&1 " + t.w.file("vanished.pbp"));
}

// What a frame without documents shows is Editors.EveryWayOfClosing's; here what it still does.
TEST(Commands, AfterTheLastCloseGotoLineSaysThereIsNoFileAndNewBringsTheDocumentToolsBack) {
    RunningFrame t;
    t.click(ToolId::Close);
    EXPECT_TRUE(t.enabled(ToolId::New) && t.enabled(ToolId::GotoLine));
    t.click(ToolId::GotoLine);
    EXPECT_EQ(t.lastBox().title, "File Error");
    t.click(ToolId::New);
    EXPECT_EQ(t.windowMenu(), QStringList({"separator", t.w.file("Untitled1.pbp")}));
    EXPECT_TRUE(t.enabled(ToolId::Device));
    EXPECT_EQ(t.filesLabel(), "Files: 1");
}

TEST(Commands, EditToolsActOnTheActiveDocument) {
    RunningFrame t;
    SourceView& v = *t.doc()->View;
    v.SetText("HIGH PORTB\nLOW PORTB");
    int sc, sl, ec, el;
    auto sel = [&] { v.GetSel(sc, sl, ec, el); return QList<int>({sc, sl, ec, el}); };
    t.click(ToolId::SelectAll);
    EXPECT_EQ(sel(), QList<int>({0, 0, 9, 1}));
    const std::pair<const char*, const char*> steps[] = {
        {ToolId::Cut, ""}, {ToolId::Paste, "HIGH PORTB\nLOW PORTB"}, {ToolId::Undo, ""}, {ToolId::Redo, "HIGH PORTB\nLOW PORTB"}};
    for (const auto& [id, text] : steps) {
        EXPECT_TRUE(t.enabled(id)) << id;
        t.click(id);
        EXPECT_EQ(v.Text(), text) << id;
    }
    v.SetSel(2, 1, 2, 1);
    t.click(ToolId::SelectLine);
    EXPECT_EQ(sel(), QList<int>({0, 1, 9, 1}));
    t.click(ToolId::ScrollingMargin);
    EXPECT_EQ(v.marginStyle(), MarginStyle::Scrolling);
    // The Edit menu opening with no token clicked turns the token colour tool off.
    globals().ClickedTokenClass = 0;
    t.f->toolBars().Tools().Item(ToolId::TokenColor).setEnabled(true);
    t.click(ToolId::Edit);
    EXPECT_FALSE(t.enabled(ToolId::TokenColor));
}

TEST(Commands, MenuKeysActOnceAndWebLinksCarryTheVersion) {
    RunningFrame t;
    auto& tools = t.f->toolBars().Tools();
    auto key = [&](const char* menu, const char* id) {
        return t.f->toolBars().action(tools.Item(menu).Menu().Tools().Item(id))->shortcut();
    };
    EXPECT_EQ(key(ToolId::File, ToolId::Save), QKeySequence(QKeySequence::Save));
    EXPECT_EQ(key(ToolId::CMenu, ToolId::Compile), QKeySequence("F9"));
    EXPECT_EQ(key(ToolId::Programmer, ToolId::Epic), QKeySequence("F10"));
    auto& bar = t.f->toolBars();  // the button has no key of its own: one key, one action
    EXPECT_TRUE(bar.action(bar.Bands("Standard").Tools().Item(ToolId::Save))->shortcut().isEmpty());
    // Paste typed in the editor is the editor's: the text goes in once.
    QGuiApplication::clipboard()->setText("x");
    tools.Item(ToolId::Paste).setEnabled(true);
    QTest::keyClick(t.doc()->View->editorWidget(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(t.doc()->View->Text(), "x");

    t.click(ToolId::Update);
    t.click(ToolId::BugReport);
    ASSERT_EQ(t.w.launcher.launches.size(), 2u);
    EXPECT_TRUE(t.w.launcher.launches[0].program.endsWith("/check4update.aspx?app=Tarnlet&ver=171"));
    EXPECT_TRUE(t.w.launcher.launches[1].program.endsWith("?subject=[Tarnlet] Version: 171"));
    t.w.launcher.failUrl = true;
    t.click(ToolId::QuillbayHomePage);
    EXPECT_EQ(t.lastBox().text, "Unable to launch application.\r\rhttp://www.quillbay.example/Category.aspx?CategoryID=2");
}

// Save As: starts at the document's own name and folder, under the filter of its extension, and a typed name
// without extension takes the filter chosen; All Files keeps the name as typed.
TEST(Commands, SaveAsAddsTheChosenFiltersExtensionAndStartsInTheDocumentsFolder) {
    RunningFrame t;
    const QString dir = t.w.appDir() + "/work dir";
    QDir().mkpath(dir);
    const struct { std::optional<int> filter; const char* typed; const char* saved; } cases[] = {
        {0, "myprog", "myprog.pbp"},  // PicBasic Pro
        {1, "two", "two.pbc"},
        {2, "three", "three.bas"},
        {3, "four", "four"},          // All Files
        {0, "five.txt", "five.txt"},  // an extension of its own stays
        {std::nullopt, "six", "six.pbp"},  // .txt has no filter: the one chosen last is shown
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        if (c.filter)
            t.w.prompts.filterChoices.push_back(*c.filter);
        t.w.prompts.files.push_back(dir + "/" + c.typed);
        const QString before = t.doc()->View->document().PathName();
        t.click(ToolId::SaveAs);
        EXPECT_EQ(t.w.prompts.fileDialogNames.last(), before);
        EXPECT_EQ(t.doc()->Caption(), dir + "/" + c.saved);
        EXPECT_TRUE(QFile::exists(dir + "/" + c.saved));
    }
    // A .bas document's dialog starts at the Basic filter: a bare name left there becomes .bas.
    t.openFile(t.w.write("old.bas", "x"));
    t.w.prompts.files.push_back(dir + "/seven");
    t.click(ToolId::SaveAs);
    EXPECT_EQ(t.doc()->Caption(), dir + "/seven.bas");

    // The real dialog is opened in the document's folder, also for a file not written yet, at its filter.
    QFileDialog dlg;
    setupFileDialog(dlg, QFileDialog::AcceptSave,
                    "PicBasic Pro Source Code (*.pbp)|*.pbp|Basic Source Code (*.bas)|*.bas|", dir + "/Untitled9.pbp", 1);
    EXPECT_EQ(QDir(dlg.directory()).canonicalPath(), QDir(dir).canonicalPath());
    EXPECT_EQ(dlg.selectedNameFilter(), "Basic Source Code (*.bas)");
}

// Ctrl+G opens Goto Line whatever the desktop's key scheme binds to Find Next, which keeps F3.
TEST(Commands, CtrlGOpensGotoLineAndF3FindsNext) {
    RunningFrame t;
    QStringList modals;
    t.f->modalHook = [&](QDialog& d) {
        modals << d.windowTitle();
        return 0;
    };
    auto& tools = t.f->toolBars().Tools();
    auto key = [&](const char* id) {
        return t.f->toolBars().action(tools.Item(ToolId::Edit).Menu().Tools().Item(id))->shortcuts();
    };
    EXPECT_EQ(key(ToolId::GotoLine), QList<QKeySequence>{QKeySequence("Ctrl+G")});
    EXPECT_EQ(key(ToolId::FindNext), QList<QKeySequence>{QKeySequence("F3")});
    SourceView& v = *t.doc()->View;
    v.SetText("LOW 1\nHIGH 1\nHIGH 2");
    QApplication::setActiveWindow(t.f.get());
    // In the editor, and anywhere else in the frame through the menu's key.
    for (QWidget* where : {v.editorWidget(), static_cast<QWidget*>(t.f->mdiArea())}) {
        modals.clear();
        QTest::keyClick(where, Qt::Key_G, Qt::ControlModifier);
        EXPECT_EQ(modals, QStringList{"Goto Line"});
        EXPECT_EQ(v.CaretY(), 0);
    }
    ASSERT_TRUE(v.findText("HIGH", false, false, true));
    QTest::keyClick(v.editorWidget(), Qt::Key_F3);
    EXPECT_EQ(v.CaretY(), 2);
    EXPECT_EQ(modals.size(), 1);
}
