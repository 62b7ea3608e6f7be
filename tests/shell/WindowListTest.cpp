#include "platform/Failure.h"
#include "core/ToolIds.h"
#include "shell/ToolBars.h"
#include "shell/WindowList.h"

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <gtest/gtest.h>

TEST(WindowList, EntriesTagsAndTheFilesLabel) {
    QMainWindow frame;
    SSActiveToolBars bars;
    bars.attach(frame);
    auto* label = qobject_cast<QLabel*>(bars.widget(bars.Bands("Standard").Tools().Item(ToolId::OpenDocs)));
    ASSERT_NE(label, nullptr);
    QString tag;
    const auto setTag = [&](const QString& t) { tag = t; };
    // The Window menu after its four arrange items, a separator as "-", then the tag last written and the label.
    const auto state = [&] {
        QStringList out;
        for (QAction* a : bars.menu(ToolId::Window)->actions().mid(4))
            out << (a->isSeparator() ? QStringLiteral("-") : a->text());
        return out << tag << label->text();
    };

    AddWindowEntry(bars, "/src/a.pbp", 1, setTag);
    EXPECT_EQ(state(), QStringList({"-", "/src/a.pbp", "/src/a.pbp", "Files: 1"}));
    // A refused entry, the same path in other letters, still writes the tag and the label.
    AddWindowEntry(bars, "/SRC/A.PBP", 2, setTag);
    EXPECT_EQ(state(), QStringList({"-", "/src/a.pbp", "/SRC/A.PBP", "Files: 2"}));

    AddWindowEntry(bars, "/src/b.pbp", 2);
    // Removal by id ignores case.
    removeWindowEntry(bars, "/SRC/B.pbp");
    removeWindowEntry(bars, "/src/a.pbp");
    setOpenDocsCaption(bars, 0);
    EXPECT_EQ(state(), QStringList({"-", "/SRC/A.PBP", "Files: 0"}));
    EXPECT_THROW(removeWindowEntry(bars, "/src/a.pbp"), Failure);
}
