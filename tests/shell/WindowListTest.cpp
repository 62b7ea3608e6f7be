#include "platform/Failure.h"
#include "shell/WindowList.h"
#include "shell/ToolModel.h"

#include <gtest/gtest.h>

namespace {

QStringList window(ToolModel& m) {
    QStringList out;
    for (const auto& t : m.Tools().Item("ID_Window").Menu().Tools())
        out << (t->isSeparator() ? QStringLiteral("-") : t->ID());
    return out;
}

const QStringList kArrange = {"ID_TileH", "ID_TileV", "ID_Cascade", "ID_Arrange"};

QString label(ToolModel& m) { return m.Bands("Standard").Tools().Item("ID_OpenDocs").Caption(); }

}  // namespace

TEST(WindowList, FirstEntryBringsTheSeparatorAndTheCount) {
    ToolModel m;
    QString tag;
    AddWindowEntry(m, "/src/a.pbp", 1, [&](const QString& t) { tag = t; });
    EXPECT_EQ(window(m), kArrange + QStringList({"-", "/src/a.pbp"}));
    EXPECT_EQ(tag, "/src/a.pbp");
    EXPECT_EQ(label(m), "Files: 1");
    EXPECT_EQ(m.Tools().Item("ID_Window").Menu().Tools().Item("/src/a.pbp").Caption(), "/src/a.pbp");

    AddWindowEntry(m, "/src/b.pbp", 2);
    EXPECT_EQ(window(m), kArrange + QStringList({"-", "/src/a.pbp", "/src/b.pbp"}));
    EXPECT_EQ(label(m), "Files: 2");
}

TEST(WindowList, ClosingAllAndAddingAgainKeepsOneSeparator) {
    ToolModel m;
    AddWindowEntry(m, "/src/a.pbp", 1);
    AddWindowEntry(m, "/src/b.pbp", 2);
    removeWindowEntry(m, "/SRC/B.pbp");
    removeWindowEntry(m, "/src/a.pbp");
    setOpenDocsCaption(m, 0);
    EXPECT_EQ(window(m), kArrange + QStringList({"-"}));
    EXPECT_EQ(label(m), "Files: 0");
    EXPECT_THROW(removeWindowEntry(m, "/src/a.pbp"), Failure);

    AddWindowEntry(m, "/src/c.pbp", 1);
    EXPECT_EQ(window(m), kArrange + QStringList({"-", "/src/c.pbp"}));
}

TEST(WindowList, ARefusedEntryStillWritesTagAndLabel) {
    ToolModel m;
    AddWindowEntry(m, "/src/a.pbp", 1);
    QString tag;
    AddWindowEntry(m, "/SRC/A.PBP", 2, [&](const QString& t) { tag = t; });
    EXPECT_EQ(window(m), kArrange + QStringList({"-", "/src/a.pbp"}));
    EXPECT_EQ(tag, "/SRC/A.PBP");
    EXPECT_EQ(label(m), "Files: 2");
}
