// A panel owns its icon: every handle the bar took goes back exactly once, and none is kept after the end.

#include "StatusBarTesting.h"

#include <algorithm>

TEST(StatusIcons, EveryIconIsDestroyedOnceAndOnlyByItsOwner) {
    CountingIcons icons;
    IconHandle moved = 0;
    {
        RecordingTarget target(300, 20);
        cNoStatusBar bar(icons);
        bar.ImageList(qint32(7));
        bar.Create(&target);
        bar.AddPanel(0, QStringLiteral("a"), 0, 20, false, false, 0, QStringLiteral("a"));
        bar.AddPanel(0, QStringLiteral("b"), 1, 20, false, false, 0, QStringLiteral("b"));

        // Replacing an icon destroys the old one at once; -1 removes it.
        const IconHandle first = bar.PanelhIcon("a");
        bar.PanelIcon("a", 2);
        EXPECT_EQ(icons.destroyed, std::vector<IconHandle>{first});
        const IconHandle second = bar.PanelhIcon("a");
        bar.PanelIcon("a", -1);
        EXPECT_EQ(bar.PanelhIcon("a"), 0u);
        EXPECT_EQ(icons.destroyed.back(), second);

        // A panel inserted in front does not share the icon of the one it pushes along.
        moved = bar.PanelhIcon("b");
        bar.AddPanel(0, QStringLiteral("c"), -1, 20, false, false, 0, QStringLiteral("c"), "b");
        EXPECT_EQ(bar.PanelhIcon("c"), 0u);
        EXPECT_EQ(bar.PanelhIcon("b"), moved);

        // A handle from outside becomes the panel's; giving it the same handle again keeps it alive.
        const IconHandle external = icons.getIcon(7, 0);
        bar.PanelhIcon("c", external);
        bar.PanelhIcon("c", external);
        EXPECT_TRUE(icons.live.count(external));
        bar.PanelIcon("c", 3);  // the index goes with a new icon from the list
        EXPECT_EQ(icons.destroyed.back(), external);
        const IconHandle removed = bar.PanelhIcon("c");
        bar.RemovePanel("c");
        EXPECT_EQ(icons.destroyed.back(), removed);
        ASSERT_EQ(icons.live.size(), 1u);  // only "b"'s icon is left, for the bar's end
    }
    EXPECT_TRUE(icons.live.empty());
    EXPECT_EQ(icons.strayDestroys, 0);
    EXPECT_EQ(icons.destroyed.back(), moved);
    std::vector<IconHandle> sorted = icons.destroyed;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end());
}
