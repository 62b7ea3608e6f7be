// The Code Explorer in the running frame: what it lists, how it follows the documents and the typing,
// where a row leads, and how View > Code Explorer and the stored dock state show or hide it.
#include "integration/RunningFrame.h"
#include "shell/CodeExplorer.h"
#include "statusbar/cNoStatusBar.h"

#include <QTreeWidget>

namespace {

const QByteArray kProgram = "' blink\r\n"
                            "INCLUDE \"modedefs.bas\"\r\n"
                            "DEFINE OSC 20\r\n"
                            "Max CON 10\r\n"
                            "buf VAR BYTE[16]\r\n"
                            "LED VAR PORTB.0\r\n"
                            "main:\r\n"
                            "    GOSUB blink ' goto: not a label\r\n"
                            "    GOTO main\r\n"
                            "blink:\r\n"
                            "    TOGGLE LED : RETURN\r\n";

struct Explorer : RunningFrame {
    CodeExplorer& x() { return *f->codeExplorer(); }
    QTreeWidget& tree() { return *x().tree(); }
    // Each group as "caption: name detail line, ..." in the list's order.
    QStringList listed() {
        QStringList out;
        for (int g = 0; g < tree().topLevelItemCount(); ++g) {
            const QTreeWidgetItem* group = tree().topLevelItem(g);
            QStringList rows;
            for (int r = 0; r < group->childCount(); ++r) {
                const QTreeWidgetItem* row = group->child(r);
                rows << (row->text(0) + (row->text(1).isEmpty() ? QString() : ' ' + row->text(1)) + ' ' + row->text(2));
            }
            out << group->text(0) + ": " + rows.join(", ");
        }
        return out;
    }
    QTreeWidgetItem* row(const QString& name) {
        const auto found = tree().findItems(name, Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? nullptr : found.first();
    }
    bool pressed() { return f->toolBars().Tools().Item(ToolId::CodeExplorer).Pressed(); }
    frmEditor* openProgram() {
        w.write("modedefs.bas", "Mode CON 4\r\n");
        openFile(w.write("blink.pbp", kProgram));
        return doc();
    }
};

}  // namespace

TEST(CodeExplorer, ListsTheActiveProgramByKindInEitherOrderAndFollowsTypingActivationAndClose) {
    Explorer t;
    ASSERT_TRUE(t.x().isVisible()) << "shown at the first start";
    EXPECT_TRUE(t.pressed());
    EXPECT_EQ(t.listed(), QStringList()) << "the empty first document";
    frmEditor* blink = t.openProgram();
    ASSERT_EQ(t.x().document(), blink);
    EXPECT_EQ(t.listed(), (QStringList{"Includes (1): modedefs.bas 2", "Defines (1): OSC 20 3", "Constants (1): Max 10 4",
                                       "Variables (1): buf BYTE[16] 5", "Aliases (1): LED PORTB.0 6",
                                       "Labels (1): main 7", "Subroutines (1): blink 10"}));
    // The groups folded away stay so; by name, each group in the order of the names.
    t.tree().topLevelItem(0)->setExpanded(false);
    t.type("zeta:\nalpha:\n");
    t.x().refresh();
    t.x().setByName(true);
    EXPECT_EQ(t.listed().value(5), "Labels (3): alpha 2, main 9, zeta 1");
    EXPECT_FALSE(t.tree().topLevelItem(0)->isExpanded());
    t.x().setByName(false);
    EXPECT_EQ(t.listed().value(5), "Labels (3): zeta 1, alpha 2, main 9");

    // Typing is followed after a pause, without a save and without asking.
    QTest::keyClick(blink->View->editorWidget(), Qt::Key_End, Qt::ControlModifier);
    t.type("\nfast:");
    const int rebuilds = t.x().rebuilds();
    EXPECT_TRUE(waitFor([&] { return t.row("fast") != nullptr; }));
    EXPECT_EQ(t.x().rebuilds(), rebuilds + 1) << "one list for the whole word";
    EXPECT_TRUE(blink->View->document().Modified());
    // An edit that declares nothing new leaves the list alone.
    t.type(" ' done");
    t.x().refresh();
    EXPECT_EQ(t.x().rebuilds(), rebuilds + 1);

    // Another document active: its list; closed: the next active one's, none at the end.
    t.click(ToolId::New);
    frmEditor* fresh = t.doc();
    ASSERT_NE(fresh, blink);
    EXPECT_EQ(t.x().document(), fresh);
    EXPECT_EQ(t.listed(), QStringList());
    t.type("start:\n");
    EXPECT_TRUE(waitFor([&] { return t.row("start") != nullptr; }));
    t.w.prompts.answers.push_back(Answer::No);
    fresh->subWindow()->close();
    EXPECT_EQ(t.x().document(), t.doc());
    t.f->mdiArea()->setActiveSubWindow(blink->subWindow());
    EXPECT_EQ(t.x().document(), blink);
    EXPECT_NE(t.row("fast"), nullptr);
    EXPECT_EQ(t.row("start"), nullptr);
    t.w.prompts.answers.push_back(Answer::No);
    blink->subWindow()->close();
    while (t.f->miDocCount() > 0)
        t.doc()->subWindow()->close();
    EXPECT_EQ(t.x().document(), nullptr);
    EXPECT_EQ(t.tree().topLevelItemCount(), 0);
}

TEST(CodeExplorer, ARowPutsTheCaretOnItsLineAndAnIncludeOpensItsFile) {
    Explorer t;
    frmEditor* blink = t.openProgram();
    t.f->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(t.f.get()));
    t.tree().setFocus();
    for (const auto& [name, line] : std::vector<std::pair<QString, int>>{{"blink", 9}, {"LED", 5}, {"main", 6}}) {
        QTreeWidgetItem* item = t.row(name);
        ASSERT_NE(item, nullptr) << name.toStdString();
        t.tree().scrollToItem(item);
        QTest::mouseClick(t.tree().viewport(), Qt::LeftButton, {}, t.tree().visualItemRect(item).center());
        EXPECT_EQ(blink->View->CaretY(), line) << name.toStdString();
    }
    EXPECT_EQ(QApplication::focusWidget(), blink->View->editorWidget()) << "the focus in the document";
    EXPECT_EQ(t.f->statusBar() ? t.f->statusBar()->PanelText(PanelRef(1)) : QString(), "Line: 7 Col: 1");

    // Enter on the INCLUDE's row: the file beside the program opens and the list follows it.
    t.tree().setCurrentItem(t.row("modedefs.bas"));
    t.tree().setFocus();
    QTest::keyClick(&t.tree(), Qt::Key_Return);
    EXPECT_TRUE(waitFor([&] { return t.doc() != blink; }));
    EXPECT_TRUE(t.doc()->Caption().endsWith("/modedefs.bas"));
    EXPECT_EQ(t.listed(), QStringList{"Constants (1): Mode 4 1"});

    // An INCLUDE of a file that isn't there says so.
    t.f->mdiArea()->setActiveSubWindow(blink->subWindow());
    QFile::remove(t.w.file("modedefs.bas"));
    t.doc()->View->SetText("INCLUDE \"gone.bas\"");
    t.x().refresh();
    const size_t boxes = t.w.prompts.boxes.size();
    t.x().go(t.row("gone.bas"));
    EXPECT_TRUE(waitFor([&] { return t.w.prompts.boxes.size() > boxes; }));
    EXPECT_TRUE(t.lastBox().text.contains("gone.bas")) << t.lastBox().text.toStdString();
}

TEST(CodeExplorer, TheViewMenuShowsAndHidesItAndTheStoredStateComesBack) {
    Explorer t;
    t.openProgram();
    t.click(ToolId::CodeExplorer);
    EXPECT_FALSE(t.x().isVisible());
    EXPECT_FALSE(t.pressed());
    // Hidden, it lists nothing: what was typed meanwhile is there when it shows again.
    const int rebuilds = t.x().rebuilds();
    t.type("hidden:\n");
    t.x().refresh();
    EXPECT_EQ(t.x().rebuilds(), rebuilds);
    t.click(ToolId::CodeExplorer);
    EXPECT_TRUE(t.x().isVisible());
    EXPECT_NE(t.row("hidden"), nullptr);
    // Its own close button puts the menu entry out too.
    t.x().close();
    EXPECT_FALSE(t.pressed());

    // The next start finds it as this one left it, in its place.
    t.w.prompts.answers.push_back(Answer::No);
    t.f->close();
    t.start();
    EXPECT_FALSE(t.x().isVisible());
    EXPECT_FALSE(t.pressed());
    t.click(ToolId::CodeExplorer);
    t.x().resize(300, t.x().height());
    const Qt::DockWidgetArea area = t.f->dockWidgetArea(&t.x());
    t.f->close();
    t.start();
    EXPECT_TRUE(t.x().isVisible());
    EXPECT_EQ(t.f->dockWidgetArea(&t.x()), area);

    // Whatever else the stored text holds, the dock stays as at a first start.
    for (const char* garbage : {"x", "AAAA", "////", "\"quoted, text\""}) {
        t.f->close();
        QSettings(settingsFilePath(), QSettings::IniFormat).setValue("Editor/Docks", garbage);
        t.start();
        EXPECT_TRUE(t.x().isVisible()) << garbage;
        EXPECT_TRUE(t.pressed()) << garbage;
    }
}

TEST(CodeExplorer, OptionsCompleteWordsAsYouTypeTurnsTheListsOwnOpeningOffAndOnForGood) {
    Explorer t;
    const auto entry = [&] { return t.f->toolBars().Tools().Item(ToolId::AutoComplete).Pressed(); };
    EXPECT_TRUE(entry());
    t.click(ToolId::AutoComplete);
    EXPECT_FALSE(entry());
    EXPECT_EQ(RunningFrame::stored("Editor/AutoComplete"), "0");
    t.type("hse");
    EXPECT_FALSE(t.doc()->View->completionShown());
    t.w.prompts.answers.push_back(Answer::No);
    t.f->close();
    t.start();
    EXPECT_FALSE(entry()) << "as the setting says at the next start";
    t.click(ToolId::AutoComplete);
    EXPECT_TRUE(entry());
    t.type("hse");
    EXPECT_TRUE(t.doc()->View->completionShown());
}
