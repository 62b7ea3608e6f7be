// A panel owns its icon: every handle the bar took goes back exactly once, and none is kept after the end.

#include "StatusBarTesting.h"

#include <algorithm>
#include <set>

TEST(StatusIcons, EveryIconIsDestroyedOnceAndOnlyByItsOwner) {
    RecordingTarget target(300, 20);
    CountingIcons icons;
    std::set<IconHandle> given;
    IconHandle moved = 0, external = 0;
    {
        cNoStatusBar bar(icons);
        bar.ImageList(qint32(7));
        bar.Create(&target);
        bar.AddPanel(0, QStringLiteral("a"), 0, 20, false, false, 0, QStringLiteral("a"));
        bar.AddPanel(0, QStringLiteral("b"), 1, 20, false, false, 0, QStringLiteral("b"));
        ASSERT_EQ(icons.live.size(), 2u);

        // Replacing an icon destroys the old one at once.
        const IconHandle first = bar.PanelhIcon(QStringLiteral("a"));
        bar.PanelIcon(QStringLiteral("a"), 2);
        EXPECT_EQ(icons.destroyed, std::vector<IconHandle>{first});
        EXPECT_NE(bar.PanelhIcon(QStringLiteral("a")), first);

        // -1 removes the icon and reads back.
        const IconHandle second = bar.PanelhIcon(QStringLiteral("a"));
        bar.PanelIcon(QStringLiteral("a"), -1);
        EXPECT_EQ(bar.PanelhIcon(QStringLiteral("a")), 0u);
        EXPECT_EQ(bar.PanelIcon(QStringLiteral("a")), -1);
        EXPECT_EQ(icons.destroyed.back(), second);

        // A panel inserted in front does not share the icon of the one it pushes along.
        moved = bar.PanelhIcon(QStringLiteral("b"));
        bar.AddPanel(0, QStringLiteral("c"), -1, 20, false, false, 0, QStringLiteral("c"), QStringLiteral("b"));
        EXPECT_EQ(bar.PanelhIcon(QStringLiteral("c")), 0u);
        EXPECT_EQ(bar.PanelhIcon(QStringLiteral("b")), moved);

        // A handle from outside becomes the panel's; giving it the same handle again keeps it alive.
        external = icons.make();
        bar.PanelhIcon(QStringLiteral("c"), external);
        bar.PanelhIcon(QStringLiteral("c"), external);
        EXPECT_TRUE(icons.live.count(external));
        bar.PanelIcon(QStringLiteral("c"), 3);  // the index goes with a new icon from the list
        EXPECT_EQ(icons.destroyed.back(), external);

        const IconHandle removed = bar.PanelhIcon(QStringLiteral("c"));
        bar.RemovePanel(QStringLiteral("c"));
        EXPECT_EQ(icons.destroyed.back(), removed);
        given = {first, second, external, removed};
        ASSERT_EQ(icons.live.size(), 1u);  // only "b"'s icon is left, for the bar's end
    }
    EXPECT_TRUE(icons.live.empty());
    EXPECT_EQ(icons.strayDestroys, 0);
    EXPECT_EQ(icons.destroyed.back(), moved);
    std::vector<IconHandle> sorted = icons.destroyed;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end());
    for (IconHandle h : given)
        EXPECT_EQ(std::count(sorted.begin(), sorted.end(), h), 1) << h;
}
