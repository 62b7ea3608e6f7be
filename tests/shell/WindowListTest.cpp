#include "platform/Failure.h"
#include "shell/ToolBars.h"
#include "shell/WindowList.h"

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <gtest/gtest.h>

namespace {

// The Window menu as the user sees it, a separator as "-".
QStringList shown(SSActiveToolBars& bars) {
    QStringList out;
    for (QAction* a : bars.menu("ID_Window")->actions())
        out << (a->isSeparator() ? QStringLiteral("-") : a->text());
    return out;
}

const QStringList kArrange = {"Tile &Horizontally", "Tile &Vertically", "&Cascade", "&Arrange Icons"};

}  // namespace

TEST(WindowList, EntriesTagsAndTheFilesLabel) {
    QMainWindow frame;
    SSActiveToolBars bars;
    bars.attach(frame);
    auto* label = qobject_cast<QLabel*>(bars.widget(bars.Bands("Standard").Tools().Item("ID_OpenDocs")));
    ASSERT_NE(label, nullptr);
    QString tag;
    const auto setTag = [&](const QString& t) { tag = t; };

    AddWindowEntry(bars, "/src/a.pbp", 1, setTag);
    EXPECT_EQ(shown(bars), kArrange + QStringList({"-", "/src/a.pbp"}));
    EXPECT_EQ(tag, "/src/a.pbp");
    EXPECT_EQ(label->text(), "Files: 1");
    // A refused entry, the same path in other letters, still writes the tag and the label.
    AddWindowEntry(bars, "/SRC/A.PBP", 2, setTag);
    EXPECT_EQ(shown(bars), kArrange + QStringList({"-", "/src/a.pbp"}));
    EXPECT_EQ(tag, "/SRC/A.PBP");
    EXPECT_EQ(label->text(), "Files: 2");

    AddWindowEntry(bars, "/src/b.pbp", 2);
    // Removal by id ignores case; closing all and adding again keeps one separator.
    removeWindowEntry(bars, "/SRC/B.pbp");
    removeWindowEntry(bars, "/src/a.pbp");
    setOpenDocsCaption(bars, 0);
    EXPECT_EQ(shown(bars), kArrange + QStringList({"-"}));
    EXPECT_EQ(label->text(), "Files: 0");
    EXPECT_THROW(removeWindowEntry(bars, "/src/a.pbp"), Failure);
    AddWindowEntry(bars, "/src/c.pbp", 1);
    EXPECT_EQ(shown(bars), kArrange + QStringList({"-", "/src/c.pbp"}));
}
