// Where the panels go, read back with GetPanelRect from a bar over a recording target.

#include "StatusBarTesting.h"

TEST(StatusLayout, FramePanels) {
    using Change = std::function<void(cNoStatusBar&)>;
    const Change none = [](cNoStatusBar&) {};
    const Change onlyFirst = [](cNoStatusBar& b) { b.RemovePanel(3); b.RemovePanel(2); };
    const struct { const char* name; qint32 width; Change change; std::vector<BarRect> expected; } cases[] = {
        // First pass 100, 164, 214 (10 of rest); the spring takes the other 86.
        {"300 wide", 300, none, {{0, 0, 99, 20}, {100, 0, 249, 20}, {250, 0, 300, 20}}},
        {"exact fit", 214, none, {{0, 0, 99, 20}, {100, 0, 163, 20}, {164, 0, 214, 20}}},
        {"too narrow: nothing shrinks", 150, none, {{0, 0, 99, 20}, {100, 0, 163, 20}, {164, 0, 214, 20}}},
        {"no spring", 300, [](auto& b) { b.PanelSpring(2, false); },
         {{0, 0, 99, 20}, {100, 0, 163, 20}, {164, 0, 300, 20}}},
        {"spring first", 300, [](auto& b) { b.PanelSpring(1, true); },
         {{0, 0, 185, 20}, {186, 0, 249, 20}, {250, 0, 300, 20}}},
        {"left offset", 300, [](auto& b) { b.SetLeftTopOffsets(5, 0); },
         {{5, 0, 99, 20}, {100, 0, 249, 20}, {250, 0, 300, 20}}},
        // The rest falls to (20 - 3) / 2 = 8, so the spring gets 2 more.
        {"top offset", 300, [](auto& b) { b.SetLeftTopOffsets(0, 3); },
         {{0, 3, 99, 20}, {100, 3, 251, 20}, {252, 3, 300, 20}}},
        // First pass 116, 180, 230.
        {"icon", 230, [](auto& b) { b.PanelIcon(1, 3); }, {{0, 0, 115, 20}, {116, 0, 179, 20}, {180, 0, 230, 20}}},
        // 14 characters of 7 pixels, plus 12.
        {"fit to contents", 300, [](auto& b) { b.PanelFitToContents(1, true); },
         {{0, 0, 109, 20}, {110, 0, 249, 20}, {250, 0, 300, 20}}},
        // The caret's text of 20 characters needs 152: the first panel widens, the spring gives way; a
        // shorter text later doesn't narrow it, and one that fits leaves the panel at its minimum.
        {"widens to its text", 300, [](auto& b) { b.PanelTextWiden(1, "Line: 12345 Col: 123"); },
         {{0, 0, 151, 20}, {152, 0, 249, 20}, {250, 0, 300, 20}}},
        {"and stays so", 300, [](auto& b) { b.PanelTextWiden(1, "Line: 12345 Col: 123"); b.PanelTextWiden(1, "L"); },
         {{0, 0, 151, 20}, {152, 0, 249, 20}, {250, 0, 300, 20}}},
        {"text that fits", 300, [](auto& b) { b.PanelTextWiden(1, "Line 1 Col 1"); },
         {{0, 0, 99, 20}, {100, 0, 249, 20}, {250, 0, 300, 20}}},
        // One panel fills the bar only when it fits; otherwise it keeps its own width and gets no rest.
        {"one panel", 300, onlyFirst, {{0, 0, 300, 20}}},
        {"one panel too wide", 80, onlyFirst, {{0, 0, 100, 20}}},
        {"no panels", 300, [&](cNoStatusBar& b) { onlyFirst(b); b.RemovePanel(1); }, {}},
    };
    for (const auto& c : cases) {
        BarOnTarget b(c.width);
        c.change(b.bar);
        b.bar.Draw();
        std::vector<BarRect> rects;
        for (qint32 i = 1; i <= b.bar.PanelCount(); ++i)
            rects.push_back(b.bar.GetPanelRect(i));
        EXPECT_EQ(rects, c.expected) << c.name;
    }
}
