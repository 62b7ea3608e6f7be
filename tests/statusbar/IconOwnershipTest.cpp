// A panel owns its icon: every handle the bar took goes back exactly once, and none is kept after the end.

#include "StatusBarTesting.h"

TEST(StatusIcons, EveryIconIsDestroyedOnceAndOnlyByItsOwner) {
    CountingIcons icons;
    IconHandle first = 0, second = 0, moved = 0, external = 0, removed = 0;
    {
        RecordingTarget target;
        cNoStatusBar bar(icons);
        bar.ImageList(qint32(7));
        bar.Create(&target);
        for (const char* key : {"a", "b"})
            bar.AddPanel(0, key, key[0] - 'a', 20, false, false, 0, key);

        // Replacing an icon destroys the old one at once; -1 removes it.
        first = bar.PanelhIcon("a");
        bar.PanelIcon("a", 2);
        EXPECT_EQ(icons.destroyed, std::vector<IconHandle>{first});
        second = bar.PanelhIcon("a");
        bar.PanelIcon("a", -1);
        EXPECT_EQ(bar.PanelhIcon("a"), 0u);

        // A panel inserted in front does not share the icon of the one it pushes along.
        moved = bar.PanelhIcon("b");
        bar.AddPanel(0, "c", -1, 20, false, false, 0, "c", "b");
        EXPECT_EQ((std::vector{bar.PanelhIcon("c"), bar.PanelhIcon("b")}), (std::vector<IconHandle>{0, moved}));

        // A handle from outside becomes the panel's; giving it the same handle again keeps it alive.
        external = icons.getIcon(7, 0);
        bar.PanelhIcon("c", external);
        bar.PanelhIcon("c", external);
        EXPECT_TRUE(icons.live.count(external));
        bar.PanelIcon("c", 3);  // the index goes with a new icon from the list
        removed = bar.PanelhIcon("c");
        bar.RemovePanel("c");
        ASSERT_EQ(icons.live.size(), 1u);  // only "b"'s icon is left, for the bar's end
    }
    EXPECT_EQ(icons.destroyed, (std::vector<IconHandle>{first, second, external, removed, moved}));
    EXPECT_TRUE(icons.live.empty());
    EXPECT_EQ(icons.strayDestroys, 0);
}
