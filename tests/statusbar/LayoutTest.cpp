// Where the panels go, read back with GetPanelRect from a bar over a recording target.

#include "StatusBarTesting.h"

#include <functional>

using Rects = std::vector<BarRect>;

TEST(StatusLayout, FramePanels) {
    struct Case {
        const char* name;
        qint32 width;
        std::function<void(cNoStatusBar&)> change;
        Rects expected;
    };
    const auto none = [](cNoStatusBar&) {};
    const Case cases[] = {
        // First pass 100, 164, 214 (10 of rest); the spring takes the other 86.
        {"300 wide", 300, none, {{0, 0, 99, 20}, {100, 0, 249, 20}, {250, 0, 300, 20}}},
        {"exact fit", 214, none, {{0, 0, 99, 20}, {100, 0, 163, 20}, {164, 0, 214, 20}}},
        {"too narrow: nothing shrinks", 150, none, {{0, 0, 99, 20}, {100, 0, 163, 20}, {164, 0, 214, 20}}},
        {"no spring", 300, [](cNoStatusBar& b) { b.PanelSpring(2, false); },
         {{0, 0, 99, 20}, {100, 0, 163, 20}, {164, 0, 300, 20}}},
        {"spring last", 300, [](cNoStatusBar& b) { b.PanelSpring(3, true); },
         {{0, 0, 99, 20}, {100, 0, 163, 20}, {164, 0, 300, 20}}},
        {"spring first", 300, [](cNoStatusBar& b) { b.PanelSpring(1, true); },
         {{0, 0, 185, 20}, {186, 0, 249, 20}, {250, 0, 300, 20}}},
        {"left offset", 300, [](cNoStatusBar& b) { b.SetLeftTopOffsets(5, 0); },
         {{5, 0, 99, 20}, {100, 0, 249, 20}, {250, 0, 300, 20}}},
        // The rest falls to (20 - 3) / 2 = 8, so the spring gets 2 more.
        {"top offset", 300, [](cNoStatusBar& b) { b.SetLeftTopOffsets(0, 3); },
         {{0, 3, 99, 20}, {100, 3, 251, 20}, {252, 3, 300, 20}}},
        // First pass 116, 180, 230.
        {"icon", 230, [](cNoStatusBar& b) { b.PanelIcon(1, 3); },
         {{0, 0, 115, 20}, {116, 0, 179, 20}, {180, 0, 230, 20}}},
        // 14 characters of 7 pixels, plus 12.
        {"fit to contents", 300, [](cNoStatusBar& b) { b.PanelFitToContents(1, true); },
         {{0, 0, 109, 20}, {110, 0, 249, 20}, {250, 0, 300, 20}}},
        // Set by hand, the ideal width has no lower limit.
        {"ideal width", 300, [](cNoStatusBar& b) { b.PanelFitToContents(1, true); b.PanelIdealWidth(1, 5); },
         {{0, 0, 4, 20}, {5, 0, 249, 20}, {250, 0, 300, 20}}},
    };
    for (const Case& c : cases) {
        RecordingTarget target(c.width, 20);
        CountingIcons icons;
        cNoStatusBar bar(icons);
        bar.ImageList(qint32(7));
        addFramePanels(bar, target);
        c.change(bar);
        bar.Draw();
        EXPECT_EQ(panelRects(bar), c.expected) << c.name;
    }
}

TEST(StatusLayout, OnePanelFillsTheBarOnlyWhenItFits) {
    RecordingTarget target(300, 20);
    CountingIcons icons;
    cNoStatusBar bar(icons);
    bar.Create(&target);
    bar.AddPanel(0, QStringLiteral("x"), -1, 100, false, false, 0, QString());
    EXPECT_EQ(bar.GetPanelRect(1), (BarRect{0, 0, 300, 20}));
    // Its own width, and no rest added, when it does not fit.
    target.client.right = 80;
    bar.Draw();
    EXPECT_EQ(bar.GetPanelRect(1), (BarRect{0, 0, 100, 20}));
}

TEST(StatusLayout, IdealWidthIsMeasuredOnlyWhenAsked) {
    RecordingTarget target(300, 20);
    CountingIcons icons;
    cNoStatusBar bar(icons);
    addFramePanels(bar, target);
    bar.PanelFitToContents(1, true);
    bar.PanelText(1, QStringLiteral("Line: 1000 Col: 1000"));
    EXPECT_EQ(bar.PanelIdealWidth(1), 110);
    // An empty text asks for its minimum width, or 12 when that is less.
    bar.PanelFitToContents(3, true);
    EXPECT_EQ(bar.PanelIdealWidth(3), 40);
    bar.AddPanel(0, QString(), -1, 3, false, true, 0, QStringLiteral("tiny"));
    EXPECT_EQ(bar.PanelIdealWidth(QStringLiteral("tiny")), 12);
}
