#include "platform/Failure.h"
#include "shell/EnableTools.h"
#include "shell/ToolBars.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <gtest/gtest.h>

#include <set>

namespace {

// The ids and captions of a list, a separator as "-".
QStringList members(ToolList& list) {
    QStringList out;
    for (const auto& m : list)
        out << (m->isSeparator() ? QStringLiteral("-") : m->ID() + QLatin1Char(' ') + m->Caption());
    return out;
}

QStringList actionTexts(QWidget* container) {
    QStringList out;
    for (QAction* a : container->actions())
        out << (a->isSeparator() ? QStringLiteral("-") : a->text());
    return out;
}

struct Attached {
    QMainWindow frame;
    SSActiveToolBars bars;
    Attached() { bars.attach(frame); }
    Tool& onStandard(const char* id) { return bars.Bands("Standard").Tools().Item(id); }
    Tool& inMenu(const char* menu, const char* id) { return bars.Tools().Item(menu).Menu().Tools().Item(id); }
};

// Records what the model reports, and whether the toolbar was repainting at each enabled write.
struct Recorder : ToolObserver {
    SSActiveToolBars* bars = nullptr;
    QStringList events;
    std::vector<bool> paintingAtWrite;
    void toolChanged(Tool& t, Property p) override {
        if (p == Property::Enabled) {
            events << t.ID() + (t.Enabled() ? "=on" : "=off");
            if (bars)
                paintingAtWrite.push_back(bars->standardBar()->updatesEnabled());
        }
    }
    void memberAdded(ToolList&, int) override {}
    void memberRemoving(ToolList&, int) override {}
    void redrawChanged(bool on) override { events << (on ? "redraw" : "hold"); }
    void comboChanged(ToolCombo&, ComboChange) override {}
};

}  // namespace

TEST(ToolModel, LookupsIgnoreCaseAndUnknownIdsFail) {
    ToolModel m;
    EXPECT_EQ(&m.Tools().Item("ID_PASTE"), &m.Tools().Item("id_paste"));
    EXPECT_EQ(m.Tools().Item("id_paste").ID(), "ID_Paste");
    EXPECT_EQ(&m.Bands("standard"), &m.Bands("Standard"));
    // A place in a menu finds the same tool's states.
    Tool& place = m.Tools().Item("ID_EDIT").Menu().Tools().Item("ID_REDO");
    EXPECT_EQ(&place.base(), &m.Tools().Item("ID_Redo"));

    try {
        m.Tools().Item("ID_Nothing");
        FAIL() << "no failure";
    } catch (const Failure& f) {
        EXPECT_EQ(f.number, kToolNotFound);
    }
    EXPECT_THROW(m.Bands("Formatting"), Failure);
    EXPECT_THROW(m.Tools().Item("ID_Save").Menu(), Failure);
    // Tools in no list are still tools.
    EXPECT_EQ(m.Tools().Item("ID_GotoLabel").Width(), 200);
}

TEST(ToolModel, FileAndEditMenusInOrderWithAccessKeys) {
    ToolModel m;
    const QStringList file = members(m.Tools().Item("ID_File").Menu().Tools());
    EXPECT_EQ(file.size(), 15);
    EXPECT_EQ(file.mid(0, 7), QStringList({"ID_New &New", "ID_Open &Open", "ID_Close &Close", "-", "ID_Save &Save",
                                           "ID_SaveAs Save &As", "-"}));
    EXPECT_EQ(file.mid(9, 6), QStringList({"ID_File1 &1", "ID_File2 &2", "ID_File3 &3", "ID_File4 &4", "-",
                                           "ID_Exit E&xit"}));

    ToolList& edit = m.Tools().Item("ID_Edit").Menu().Tools();
    EXPECT_EQ(edit.Count(), 19);
    EXPECT_EQ(members(edit).mid(3, 3), QStringList({"ID_Cut Cu&t", "ID_Copy &Copy", "ID_Paste &Paste"}));
    EXPECT_EQ(edit.at(11).ID(), "ID_SelectionColor");
    EXPECT_EQ(members(edit.at(11).Menu().Tools()),
              QStringList({"ID_SelectionTextForegroundColor Selection Text Foreground Color",
                           "ID_SelectionTextBackgroundColor Selection Text Background Color"}));
    EXPECT_EQ(edit.at(17).Caption(), "R&eplace");
    EXPECT_EQ(edit.at(18).Caption(), "&Goto Line");

    ToolList& standard = m.Bands("Standard").Tools();
    EXPECT_EQ(standard.Count(), 24);
    EXPECT_EQ(standard.at(21).ID(), "ID_Device");
    EXPECT_TRUE(standard.at(22).isSeparator());
    EXPECT_EQ(standard.at(23).Caption(), "Files: 0");
    EXPECT_EQ(m.Tools().Item("ID_Print").ToolTip(), "Print ");
}

TEST(ToolBars, MenusAndToolbarAreBuiltFromTheModel) {
    Attached a;
    EXPECT_EQ(actionTexts(a.bars.menuBar()),
              QStringList({"&File", "&Edit", "&Compile", "&Programmer", "&Options", "&Window", "&Help"}));
    const QStringList file = actionTexts(a.bars.menu("ID_File"));
    EXPECT_EQ(file.size(), 15);
    EXPECT_EQ(file.mid(2, 4), QStringList({"&Close", "-", "&Save", "Save &As"}));
    EXPECT_EQ(file.last(), "E&xit");
    EXPECT_EQ(a.bars.menuBar()->actions().at(1)->menu(), a.bars.menu("ID_Edit"));
    EXPECT_EQ(a.bars.menu("ID_Help")->actions().at(1)->menu(), a.bars.menu("ID_VelnorSystemsontheWeb"));

    // Toolbar buttons carry their tooltips and a picture even where the desktop has no icon theme.
    for (const auto& place : a.bars.Bands("Standard").Tools()) {
        if (place->isSeparator() || place->kind() != ToolKind::Button)
            continue;
        QAction* act = a.bars.action(*place);
        ASSERT_NE(act, nullptr) << place->ID().toStdString();
        EXPECT_FALSE(act->icon().pixmap(16, 16).isNull()) << place->ID().toStdString();
        EXPECT_EQ(act->toolTip(), place->ToolTip());
    }
    auto* combo = qobject_cast<QComboBox*>(a.bars.widget(a.onStandard("ID_Device")));
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(combo->width(), 139);
    auto* label = qobject_cast<QLabel*>(a.bars.widget(a.onStandard("ID_OpenDocs")));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), "Files: 0");
    EXPECT_EQ(label->width(), 75);
}

TEST(ToolBars, CaptionsBelongToThePlaceStatesToTheTool) {
    Attached a;
    Tool& entry = a.inMenu("ID_File", "ID_File1");
    QAction* act = a.bars.action(entry);
    EXPECT_FALSE(act->isVisible());
    entry.setCaption("&1 /src/blink.pbp");
    a.bars.Tools().Item("ID_File1").setVisible(true);
    EXPECT_EQ(act->text(), "&1 /src/blink.pbp");
    EXPECT_TRUE(act->isVisible());
    EXPECT_TRUE(entry.Visible());
    EXPECT_EQ(a.bars.Tools().Item("ID_File1").Caption(), "&1");

    a.onStandard("ID_OpenDocs").setCaption("Files: 3");
    EXPECT_EQ(qobject_cast<QLabel*>(a.bars.widget(a.onStandard("ID_OpenDocs")))->text(), "Files: 3");

    // One write greys a tool in the menu and on the toolbar alike.
    a.bars.Tools().Item("ID_Find").setEnabled(true);
    EXPECT_TRUE(a.bars.action(a.onStandard("ID_Find"))->isEnabled());
    EXPECT_TRUE(a.bars.action(a.inMenu("ID_Edit", "ID_Find"))->isEnabled());
    a.bars.Tools().Item("ID_FIND").setEnabled(false);
    EXPECT_FALSE(a.bars.action(a.onStandard("ID_Find"))->isEnabled());
    EXPECT_FALSE(a.bars.action(a.inMenu("ID_Edit", "ID_Find"))->isEnabled());
}

TEST(ToolModel, InitialStatesAndTheNoDocumentToolbar) {
    ToolModel m;
    for (const auto& t : m.Tools())
        EXPECT_EQ(t->Visible(), !t->ID().startsWith("ID_File") || t->ID() == "ID_File") << t->ID().toStdString();
    EXPECT_FALSE(m.Tools().Item("ID_SaveAs").Enabled());
    EXPECT_FALSE(m.Tools().Item("ID_TokenColor").Enabled());
    EXPECT_FALSE(m.Tools().Item("ID_GotoLabel").Enabled());
    EXPECT_TRUE(m.Tools().Item("ID_Indent").Enabled());
    EXPECT_TRUE(m.Tools().Item("ID_GotoLine").Enabled());

    EnableTools(m, true, UndoState{true, true});
    EnableTools(m, false);
    // With no document only these stay active on the toolbar.
    const std::set<QString> active = {"ID_New", "ID_Open", "ID_Epic", "ID_OpenDocs"};
    for (const auto& place : m.Bands("Standard").Tools()) {
        if (place->isSeparator())
            continue;
        EXPECT_EQ(place->Enabled(), active.count(place->ID()) == 1) << place->ID().toStdString();
    }
    // Tools EnableTools doesn't govern keep their state.
    EXPECT_TRUE(m.Tools().Item("ID_GotoLine").Enabled());
    EXPECT_TRUE(m.Tools().Item("ID_SelectionTextForegroundColor").Enabled());
}

TEST(EnableTools, UndoToolsFollowTheActiveDocument) {
    ToolModel m;
    Tool& undo = m.Tools().Item("ID_Undo");
    Tool& redo = m.Tools().Item("ID_Redo");
    EnableTools(m, true, UndoState{true, false});
    EXPECT_TRUE(undo.Enabled());
    EXPECT_FALSE(redo.Enabled());
    EXPECT_TRUE(m.Tools().Item("ID_Device").Enabled());
    // Without an active document the undo tools stay as they were.
    EnableTools(m, true);
    EXPECT_TRUE(undo.Enabled());
    EXPECT_FALSE(redo.Enabled());
    EnableTools(m, true, UndoState{false, true});
    EXPECT_FALSE(undo.Enabled());
    EXPECT_TRUE(redo.Enabled());
    EnableTools(m, false, UndoState{true, true});
    EXPECT_FALSE(undo.Enabled());
    EXPECT_FALSE(redo.Enabled());
    EXPECT_FALSE(m.Tools().Item("ID_Device").Enabled());
}

TEST(EnableTools, AllWritesLieInsideOneRedrawBracket) {
    Attached a;
    Recorder r;
    r.bars = &a.bars;
    a.bars.addObserver(&r);
    EnableTools(a.bars, true, UndoState{true, false});
    ASSERT_EQ(r.events.size(), 26);
    EXPECT_EQ(r.events.front(), "hold");
    EXPECT_EQ(r.events.back(), "redraw");
    // The undo tools come after the outdent tool and ahead of the margins, undo first.
    EXPECT_EQ(r.events.mid(16, 4), QStringList({"ID_Outdent=on", "ID_Undo=on", "ID_Redo=off", "ID_NoMargin=on"}));
    EXPECT_EQ(std::count(r.paintingAtWrite.begin(), r.paintingAtWrite.end(), true), 0);
    EXPECT_TRUE(a.bars.standardBar()->updatesEnabled());
    EXPECT_TRUE(a.bars.Redraw());

    r.events.clear();
    EnableTools(a.bars, true);
    EXPECT_EQ(r.events.size(), 24);
    EXPECT_FALSE(r.events.join(' ').contains("ID_Undo"));
    a.bars.removeObserver(&r);
}

TEST(ToolBars, MarginToolsBehaveAsRadioButtons) {
    Attached a;
    std::vector<QString> clicks;
    QObject::connect(&a.bars, &SSActiveToolBars::ToolClick, [&](Tool& t) { clicks.push_back(t.ID()); });
    QAction* none = a.bars.action(a.inMenu("ID_Options", "ID_NoMargin"));
    QAction* fixed = a.bars.action(a.inMenu("ID_Options", "ID_FixedMargin"));
    EXPECT_TRUE(fixed->isChecked());
    EXPECT_TRUE(a.bars.Tools().Item("ID_FixedMargin").Pressed());

    // Disabled: greyed and silent.
    none->trigger();
    EXPECT_TRUE(clicks.empty());
    EXPECT_TRUE(fixed->isChecked());

    EnableTools(a.bars, true);
    none->trigger();
    EXPECT_EQ(clicks, std::vector<QString>{"ID_NoMargin"});
    EXPECT_TRUE(a.bars.Tools().Item("ID_NoMargin").Pressed());
    EXPECT_FALSE(a.bars.Tools().Item("ID_FixedMargin").Pressed());
    EXPECT_FALSE(fixed->isChecked());
    // Clicking the pressed one again keeps it pressed.
    none->trigger();
    EXPECT_TRUE(none->isChecked());
    EXPECT_TRUE(a.bars.Tools().Item("ID_NoMargin").Pressed());

    a.bars.Tools().Item("ID_ScrollingMargin").setPressed(true);
    EXPECT_FALSE(a.bars.Tools().Item("ID_NoMargin").Pressed());
    EXPECT_FALSE(none->isChecked());
    EXPECT_TRUE(a.bars.action(a.inMenu("ID_Options", "ID_ScrollingMargin"))->isChecked());
}

TEST(ToolBars, OpeningAMenuIsAClickOnItsTool) {
    Attached a;
    std::vector<Tool*> clicks;
    QObject::connect(&a.bars, &SSActiveToolBars::ToolClick, [&](Tool& t) { clicks.push_back(&t); });
    QMenu* edit = a.bars.menu("ID_Edit");
    edit->popup(QPoint(10, 10));
    ASSERT_EQ(clicks.size(), 1u);
    EXPECT_EQ(clicks[0]->ID(), "ID_Edit");
    edit->hide();

    // The context menu is the same menu, so it arrives the same way.
    a.bars.PopupMenu("id_edit");
    EXPECT_TRUE(edit->isVisible());
    ASSERT_EQ(clicks.size(), 2u);
    EXPECT_EQ(clicks[1]->ID(), "ID_Edit");
    edit->hide();
    EXPECT_THROW(a.bars.PopupMenu("ID_Save"), Failure);

    // A button's click carries its place, whose caption is the one shown there.
    Tool& entry = a.inMenu("ID_File", "ID_File2");
    entry.setCaption("&2 /x/y.pbp");
    entry.setVisible(true);
    a.bars.action(entry)->trigger();
    ASSERT_EQ(clicks.size(), 3u);
    EXPECT_EQ(clicks[2]->ID(), "ID_File2");
    EXPECT_EQ(clicks[2]->Caption(), "&2 /x/y.pbp");
}

TEST(ToolBars, ComboCloseUpComesFromTheUserOnly) {
    Attached a;
    Tool& device = a.onStandard("ID_Device");
    auto* box = qobject_cast<ToolComboBox*>(a.bars.widget(device));
    ASSERT_NE(box, nullptr);
    std::vector<int> closeUps;  // ListIndex as the handler reads it
    QObject::connect(&a.bars, &SSActiveToolBars::ComboCloseUp,
                     [&](Tool& t) { closeUps.push_back(t.ComboBox().ListIndex()); });

    ToolCombo& combo = a.bars.Tools().Item("ID_Device").ComboBox();
    for (const char* name : {"12F675", "16F84A", "16F877A"})
        combo.AddItem(name);
    EXPECT_EQ(combo.ListIndex(), -1);
    EXPECT_EQ(box->count(), 3);
    combo.SetListIndex(3);
    EXPECT_EQ(combo.ListIndex(), -1);
    combo.SetListIndex(1);
    EXPECT_EQ(box->currentIndex(), 1);
    EXPECT_EQ(combo.List(2), "16F877A");
    EXPECT_EQ(combo.List(7), "");
    QApplication::processEvents();
    EXPECT_TRUE(closeUps.empty());

    a.bars.Tools().Item("ID_Device").setEnabled(true);
    // Opened and closed again without a pick.
    box->showPopup();
    box->hidePopup();
    QApplication::processEvents();
    EXPECT_EQ(closeUps, std::vector<int>{1});

    // A pick with the keyboard: the handler already sees the new index.
    box->showPopup();
    box->view()->setCurrentIndex(box->model()->index(2, 0));
    QKeyEvent enter(QEvent::ShortcutOverride, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(box->view(), &enter);
    QApplication::processEvents();
    EXPECT_EQ(closeUps, (std::vector<int>{1, 2}));
    EXPECT_EQ(combo.ListIndex(), 2);

    combo.Clear();
    EXPECT_EQ(box->count(), 0);
    EXPECT_EQ(combo.ListIndex(), -1);
    QApplication::processEvents();
    EXPECT_EQ(closeUps.size(), 2u);
}

TEST(ToolModel, ListsAddAndRemoveMembers) {
    Attached a;
    ToolList& window = a.bars.Tools().Item("ID_Window").Menu().Tools();
    Tool& entry = window.Add("/src/a.pbp", 2);
    EXPECT_EQ(entry.Caption(), "/src/a.pbp");
    EXPECT_EQ(window.at(1).ID(), "/src/a.pbp");
    EXPECT_EQ(window.at(2).ID(), "ID_TileV");
    EXPECT_EQ(actionTexts(a.bars.menu("ID_Window")).at(1), "/src/a.pbp");
    // An entry's click carries the path as its id.
    std::vector<QString> clicks;
    QObject::connect(&a.bars, &SSActiveToolBars::ToolClick, [&](Tool& t) { clicks.push_back(t.ID()); });
    a.bars.menu("ID_Window")->actions().at(1)->trigger();
    EXPECT_EQ(clicks, std::vector<QString>{"/src/a.pbp"});
    EXPECT_THROW(window.Add("/SRC/A.PBP", 1), Failure);
    EXPECT_THROW(window.Add("/src/b.pbp", 7), Failure);
    window.Add("separator", 1);
    window.Add("separator", 1);
    EXPECT_EQ(window.Count(), 7);

    window.Remove("/src/A.pbp");
    EXPECT_EQ(window.Count(), 6);
    EXPECT_EQ(actionTexts(a.bars.menu("ID_Window")),
              QStringList({"-", "-", "Tile &Horizontally", "Tile &Vertically", "&Cascade", "&Arrange Icons"}));
    EXPECT_THROW(window.Remove("/src/a.pbp"), Failure);
}
