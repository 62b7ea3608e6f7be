#include "platform/Failure.h"
#include "core/ToolIds.h"
#include "shell/EnableTools.h"
#include "shell/ToolBars.h"
#include "shell/ToolTable.h"
#include "support/Doubles.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMap>
#include <QMenu>
#include <gtest/gtest.h>

namespace {

// Captions in a menu or bar, a separator as "-".
QStringList actionTexts(QWidget* container) {
    QStringList out;
    for (QAction* a : container->actions())
        out << (a->isSeparator() ? QStringLiteral("-") : a->text());
    return out;
}

struct Attached {
    QMainWindow frame;
    SSActiveToolBars bars;
    QStringList clicks;
    Attached() {
        bars.attach(frame);
        QObject::connect(&bars, &SSActiveToolBars::ToolClick, [this](Tool& t) { clicks << t.ID(); });
    }
    Tool& tool(const char* id) { return bars.Tools().Item(id); }
    Tool& onStandard(const char* id) { return bars.Bands("Standard").Tools().Item(id); }
    QAction* inMenu(const char* menu, const char* id) { return bars.action(tool(menu).Menu().Tools().Item(id)); }
};

// The enabled writes the model reports, each marked "!" when the toolbar was repainting at the time.
struct Recorder : ToolObserver {
    SSActiveToolBars* bars = nullptr;
    QStringList events;
    void toolChanged(Tool& t, Property p) override {
        if (p == Property::Enabled)
            events << t.ID() + (t.Enabled() ? "=on" : "=off") + (bars->standardBar()->updatesEnabled() ? "!" : "");
    }
    void memberAdded(ToolList&, int) override {}
    void memberRemoving(ToolList&, int) override {}
    void redrawChanged(bool on) override { events << (on ? "redraw" : "hold"); }
    void comboChanged(ToolCombo&, ComboChange) override {}
};

}  // namespace

TEST(ToolModel, LookupsIgnoreCaseUnknownIdsFailAndTheFileAndEditMenus) {
    Attached a;
    ToolModel& m = a.bars;
    EXPECT_EQ(&m.Tools().Item("ID_PASTE"), &m.Tools().Item("id_paste"));
    EXPECT_EQ(&m.Bands("standard"), &m.Bands("Standard"));
    // A place in a menu finds the same tool's states.
    EXPECT_EQ(&m.Tools().Item("ID_EDIT").Menu().Tools().Item("ID_REDO").base(), &m.Tools().Item(ToolId::Redo));
    EXPECT_EQ(failureNumber([&] { m.Tools().Item("ID_Nothing"); }), kToolNotFound);
    EXPECT_THROW(m.Bands("Formatting"), Failure);
    EXPECT_THROW(m.Tools().Item(ToolId::Save).Menu(), Failure);

    EXPECT_EQ(actionTexts(a.bars.menuBar()),
              QStringList({"&File", "&Edit", "&View", "&Compile", "&Programmer", "&Options", "&Window", "&Help"}));
    const QStringList file = actionTexts(a.bars.menu(ToolId::File)), edit = actionTexts(a.bars.menu(ToolId::Edit));
    EXPECT_EQ(file.mid(2, 5) + file.mid(14),
              QStringList({"&Close", "-", "&Save", "Save &As", "-", "&4", "-", "E&xit"}));
    EXPECT_EQ(edit.size(), 19);
    EXPECT_EQ(edit.mid(3, 3), QStringList({"Cu&t", "&Copy", "&Paste"}));
    EXPECT_EQ(a.tool(ToolId::Edit).Menu().Tools().at(11).Menu().Tools().at(1).ID(), ToolId::SelectionTextBackgroundColor);
}

// The state with documents or none, and the active one's undo history when known.
ToolState documents(bool any, std::optional<bool> canUndo = {}, std::optional<bool> canRedo = {}) {
    ToolState s;
    s.documents = any;
    s.canUndo = canUndo;
    s.canRedo = canRedo;
    return s;
}

TEST(EnableTools, OneRedrawBracketNoDocumentStatesAndUndoInputs) {
    Attached a;
    EXPECT_FALSE(a.tool(ToolId::SaveAs).Enabled() || a.tool(ToolId::GotoLabel).Enabled());
    Recorder r;
    r.bars = &a.bars;
    a.bars.addObserver(&r);
    EnableTools(a.bars, documents(true, true, false));
    a.bars.removeObserver(&r);
    // Held throughout; the undo tools come after the outdent tool and ahead of the margins, undo first.
    ASSERT_EQ(r.events.size(), 29);
    EXPECT_EQ(r.events.front() + r.events.back(), "holdredraw");
    EXPECT_EQ(r.events.mid(16, 4), QStringList({"ID_Outdent=on", "ID_Undo=on", "ID_Redo=off", "ID_NoMargin=on"}));
    EXPECT_TRUE(r.events.filter("!").isEmpty());
    EXPECT_TRUE(a.bars.standardBar()->updatesEnabled());

    // Without an active document's state the undo tools stay as they were; one write reaches menu and button.
    const struct { bool enabled; std::optional<bool> canUndo, canRedo; bool undo, redo; } steps[] = {
        {true, std::nullopt, std::nullopt, true, false}, {true, false, true, false, true},
        {false, true, true, false, false}};
    for (const auto& s : steps) {
        EnableTools(a.bars, documents(s.enabled, s.canUndo, s.canRedo));
        EXPECT_EQ(std::pair(a.tool(ToolId::Undo).Enabled(), a.tool(ToolId::Redo).Enabled()), std::pair(s.undo, s.redo));
        for (QAction* find : {a.inMenu(ToolId::Edit, ToolId::Find), a.bars.action(a.onStandard(ToolId::Find))})
            EXPECT_EQ(find->isEnabled(), s.enabled);
    }

    // With no document only these stay active on the toolbar; tools EnableTools doesn't govern keep their state.
    const QStringList active = {ToolId::New, ToolId::Open, ToolId::Epic, ToolId::OpenDocs};
    for (const auto& place : a.bars.Bands("Standard").Tools())
        EXPECT_TRUE(place->isSeparator() || place->Enabled() == active.contains(place->ID()))
            << place->ID().toStdString();
    EXPECT_TRUE(a.tool(ToolId::GotoLine).Enabled() && a.tool(ToolId::SelectionTextForegroundColor).Enabled());

    // Against the state before, only what differs is written: a compile's start turns the two compile tools
    // off, a selection Cut and Copy on, each in one held burst; a lone change paints at once.
    ToolState before = documents(true, true, false), now = before;
    EnableTools(a.bars, before);
    now.compiling = true;
    Recorder changes;
    changes.bars = &a.bars;
    a.bars.addObserver(&changes);
    EnableTools(a.bars, now, &before);
    before = now;
    now.selection = true;
    before.selection = false;
    EnableTools(a.bars, now, &before);
    // A single change is written with the bar painted at once.
    before = now;
    before.tokenColor = false;
    now.tokenColor = true;
    EnableTools(a.bars, now, &before);
    a.bars.removeObserver(&changes);
    EXPECT_EQ(changes.events, QStringList({"hold", "ID_Compile=off", "ID_CompileAndProgram=off", "redraw", "hold",
                                           "ID_Cut=on", "ID_Copy=on", "redraw", "ID_TokenColor=on!"}));
}

TEST(ToolBars, MenuClicksTheMarginRadioGroupAndComboCloseUp) {
    Attached a;
    QMenu* edit = a.bars.menu(ToolId::Edit);
    edit->popup(QPoint(10, 10));
    edit->hide();
    a.bars.PopupMenu("id_edit");  // the context menu is the same menu
    EXPECT_TRUE(edit->isVisible());
    edit->hide();
    EXPECT_THROW(a.bars.PopupMenu(ToolId::Save), Failure);
    EXPECT_EQ(a.clicks, QStringList({ToolId::Edit, ToolId::Edit}));

    QAction* none = a.inMenu(ToolId::Options, ToolId::NoMargin);
    QAction* fixed = a.inMenu(ToolId::Options, ToolId::FixedMargin);
    none->trigger();  // disabled: silent
    EXPECT_TRUE(fixed->isChecked());
    EnableTools(a.bars, documents(true));
    none->trigger();
    none->trigger();  // the pressed one again stays pressed
    EXPECT_EQ(a.clicks.mid(2), QStringList({ToolId::NoMargin, ToolId::NoMargin}));
    EXPECT_TRUE(a.tool(ToolId::NoMargin).Pressed() && none->isChecked());
    EXPECT_FALSE(a.tool(ToolId::FixedMargin).Pressed() || fixed->isChecked());
    a.tool(ToolId::ScrollingMargin).setPressed(true);
    EXPECT_FALSE(a.tool(ToolId::NoMargin).Pressed() || none->isChecked());
    EXPECT_TRUE(a.inMenu(ToolId::Options, ToolId::ScrollingMargin)->isChecked());

    // A tool's picture: the 16 px file, the 32 px one for a larger size, greyed when the tool is off.
    const QIcon save = a.bars.action(a.onStandard(ToolId::Save))->icon();
    const QImage small = save.pixmap(QSize(16, 16), 1.0).toImage();
    EXPECT_EQ(small.size(), QSize(16, 16));
    // The pixels, not the images' other data (a colour space read from one file and not the other).
    const auto samePixels = [](const QImage& a, const QImage& b) {
        if (a.size() != b.size())
            return false;
        for (int y = 0; y < a.height(); ++y)
            for (int x = 0; x < a.width(); ++x)
                if (a.pixel(x, y) != b.pixel(x, y))
                    return false;
        return true;
    };
    EXPECT_TRUE(samePixels(small, QPixmap(":/icons/document-save.png").toImage()));
    EXPECT_TRUE(samePixels(save.pixmap(QSize(32, 32), 1.0).toImage(), QPixmap(":/icons/document-save@2x.png").toImage()));
    // On a screen of ratio 2 a 16 px place shows the 32 px file.
    const QPixmap sharp = save.pixmap(QSize(16, 16), 2.0);
    EXPECT_EQ(sharp.size(), QSize(32, 32));
    EXPECT_EQ(sharp.devicePixelRatio(), 2.0);
    EXPECT_FALSE(samePixels(save.pixmap(QSize(16, 16), 1.0, QIcon::Disabled).toImage(), small));
    EXPECT_EQ(save.actualSize(QSize(24, 24)), QSize(24, 24));
    EXPECT_EQ(save.actualSize(QSize(64, 64)), QSize(32, 32));

    // ComboCloseUp comes when the list closes, not on code's writes.
    auto* box = qobject_cast<ToolComboBox*>(a.bars.widget(a.onStandard(ToolId::Device)));
    ASSERT_NE(box, nullptr);
    std::vector<int> closeUps;  // ListIndex as the handler reads it
    QObject::connect(&a.bars, &SSActiveToolBars::ComboCloseUp,
                     [&](Tool& t) { closeUps.push_back(t.ComboBox().ListIndex()); });
    ToolCombo& combo = a.tool(ToolId::Device).ComboBox();
    combo.AddItems({"12F675", "16F84A"});
    combo.AddItem("16F877A");
    combo.SetListIndex(1);
    // The widget shows the list as it stands, whether entries came one by one or in one go.
    QStringList shown;
    for (int i = 0; i < box->count(); ++i)
        shown << box->itemText(i);
    EXPECT_EQ(shown, QStringList({"12F675", "16F84A", "16F877A"}));
    EXPECT_EQ(box->currentIndex(), 1);
    a.tool(ToolId::Device).setEnabled(true);
    QApplication::processEvents();
    box->showPopup();
    box->hidePopup();  // no pick; the writes above raised nothing
    QApplication::processEvents();
    EXPECT_EQ(closeUps, std::vector<int>{1});

    // A pick with the keyboard: the handler already sees the new index; clearing raises nothing.
    box->showPopup();
    box->view()->setCurrentIndex(box->model()->index(2, 0));
    QKeyEvent enter(QEvent::ShortcutOverride, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(box->view(), &enter);
    QApplication::processEvents();
    combo.Clear();
    QApplication::processEvents();
    EXPECT_EQ(closeUps, (std::vector<int>{1, 2}));
}

// Under every desktop key scheme no key belongs to two tools: Ctrl+G is Goto Line's, F3 Find Next's, also
// where the scheme gives Find Next Ctrl+G (GNOME, Windows) or Replace Ctrl+R (KDE).
TEST(ToolTable, NoKeySchemeGivesOneKeyToTwoTools) {
    using SK = QKeySequence::StandardKey;
    const std::pair<const char*, KeyBindings> schemes[] = {
        {"this desktop", &QKeySequence::keyBindings},
        {"GNOME-like", [](SK k) -> QList<QKeySequence> {
             if (k == QKeySequence::FindNext)
                 return {QKeySequence("Ctrl+G"), QKeySequence("F3")};
             if (k == QKeySequence::FindPrevious)
                 return {QKeySequence("Ctrl+Shift+G"), QKeySequence("Shift+F3")};
             return QKeySequence::keyBindings(k);
         }},
        {"every standard key on Ctrl+G", [](SK) { return QList<QKeySequence>{QKeySequence("Ctrl+G")}; }},
    };
    for (const auto& [name, bindings] : schemes) {
        SCOPED_TRACE(name);
        QMap<QString, QStringList> owners;  // key -> tools
        for (const ToolDef& d : toolTable())
            for (const QKeySequence& k : toolShortcuts(d, bindings))
                owners[k.toString()] << d.id;
        EXPECT_EQ(owners.value("Ctrl+G"), QStringList{ToolId::GotoLine});
        EXPECT_EQ(owners.value("F3"), QStringList{ToolId::FindNext});
        for (auto it = owners.cbegin(); it != owners.cend(); ++it)
            EXPECT_EQ(it.value().size(), 1) << it.key().toStdString() << ": " << it.value().join(' ').toStdString();
    }
}
