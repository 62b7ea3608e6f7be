// What Draw leaves on the target, call by call, and which operations paint.

#include "StatusBarTesting.h"

#include <functional>

namespace {
// Draws once on a fresh record and gives what it painted.
QStringList drawOnce(cNoStatusBar& bar, RecordingTarget& target) {
    target.calls.clear();
    bar.Draw();
    return trace(target.painting());
}
const QStringList kGrip = {"Font Marlett 12", "Color 80000014", "Text -2,-1,298,19 [o] 2a", "Color 80000010",
                           "Text -2,-1,298,19 [p] 2a", "Font Tahoma 9", "Color 80000008"};
}  // namespace

TEST(StatusDraw, BackgroundThenEachPanelCutAtTheRightEdge) {
    RecordingTarget target(300, 20);
    CountingIcons icons;
    cNoStatusBar bar(icons);
    addFramePanels(bar, target);
    EXPECT_EQ(drawOnce(bar, target), (QStringList{"Fill 0,0,300,20 8000000f", "Panel 0,0,99,20 [Line: 1 Col: 1] 0",
                                                  "Panel 100,0,249,20 [] 0", "Panel 250,0,300,20 [] 0"}));

    // Panel 2 is cut one short of the edge and panel 3 stays unpainted; the layout keeps the whole panels.
    target.client.right = 150;
    EXPECT_EQ(drawOnce(bar, target), (QStringList{"Fill 0,0,150,20 8000000f", "Panel 0,0,99,20 [Line: 1 Col: 1] 0",
                                                  "Panel 100,0,149,20 [] 0"}));
    EXPECT_EQ(bar.GetPanelRect(2), (BarRect{100, 0, 163, 20}));

    // Offsets move the panels, not the background.
    target.client.right = 300;
    bar.SetLeftTopOffsets(5, 3);
    EXPECT_EQ(drawOnce(bar, target).mid(0, 2),
              (QStringList{"Fill 0,0,300,20 8000000f", "Panel 5,3,99,20 [Line: 1 Col: 1] 0"}));
}

TEST(StatusDraw, AnIconPanelPaintsFrameIconThenText) {
    RecordingTarget target(300, 20);
    CountingIcons icons;
    cNoStatusBar bar(icons);
    bar.ImageList(qint32(7));
    addFramePanels(bar, target);
    bar.PanelIcon(1, 4);
    bar.PanelIcon(2, 5);
    bar.PanelStyle(2, kPanelPopOut);
    const QString icon1 = QString::number(bar.PanelhIcon(1)), icon2 = QString::number(bar.PanelhIcon(2));
    // No text beside the second icon: no text call.
    EXPECT_EQ(drawOnce(bar, target).mid(1),
              (QStringList{"Panel 0,0,115,20 [] 0", "Icon 2,2,18,18 " + icon1, "Text 20,0,115,20 [Line: 1 Col: 1] 24",
                           "Panel 116,0,249,20 [] 200", "Icon 118,2,134,18 " + icon2, "Panel 250,0,300,20 [] 0"}));
}

TEST(StatusDraw, TheGripRestoresTheFontAndLeavesWindowText) {
    RecordingTarget target(300, 20);
    CountingIcons icons;
    cNoStatusBar bar(icons);
    addFramePanels(bar, target);
    const BarFont font{QStringLiteral("Tahoma"), 9, true, true, true};
    target.currentFont = font;
    target.currentForeColor = 0x0000FF;
    bar.SizeGrip(true);

    // Over the panels, in a font of the same style, 4/3 the size.
    const QStringList calls = drawOnce(bar, target);
    EXPECT_EQ(calls.mid(4), kGrip);
    EXPECT_TRUE(target.calls[4].font.bold && target.calls[4].font.italic && target.calls[4].font.underline);
    EXPECT_EQ(target.currentFont, font);
    EXPECT_EQ(target.currentForeColor, systemColor(kColorWindowText));

    // With no panels left only the background and the grip remain.
    for (int i = 0; i < 3; ++i)
        bar.RemovePanel(1);
    EXPECT_EQ(drawOnce(bar, target), QStringList{"Fill 0,0,300,20 8000000f"} + kGrip);
}

TEST(StatusDraw, SimpleModeShowsOneTextInsteadOfThePanels) {
    RecordingTarget target(300, 20);
    target.currentFont = {QStringLiteral("Tahoma"), 9};
    CountingIcons icons;
    cNoStatusBar bar(icons);
    addFramePanels(bar, target);

    target.calls.clear();
    bar.SimpleText(QStringLiteral("Compiling"));
    EXPECT_TRUE(target.calls.empty());
    bar.SimpleMode(true);
    EXPECT_EQ(trace(target.painting()), (QStringList{"Fill 0,0,300,20 8000000f", "Text 0,0,300,20 [Compiling] 24"}));

    bar.SizeGrip(true);
    EXPECT_EQ(drawOnce(bar, target).mid(2), kGrip);
    bar.SimpleMode(false);
    EXPECT_EQ(target.only(DrawCall::Panel).size(), 3u);
}

TEST(StatusDraw, WhichOperationsPaint) {
    RecordingTarget target(300, 20);
    CountingIcons icons;
    cNoStatusBar bar(icons);
    bar.ImageList(qint32(7));
    addFramePanels(bar, target);

    struct Case {
        const char* name;
        std::function<void()> run;
        size_t draws, measures;
    };
    const Case cases[] = {
        {"PanelText", [&] { bar.PanelText(1, QStringLiteral("Line: 2 Col: 1")); }, 1, 0},
        {"PanelIcon", [&] { bar.PanelIcon(3, 1); }, 1, 0},
        {"PanelhIcon", [&] { bar.PanelhIcon(3, icons.make()); }, 1, 0},
        {"PanelStyle", [&] { bar.PanelStyle(3, 0); }, 1, 0},
        {"SizeGrip", [&] { bar.SizeGrip(false); }, 1, 0},
        {"SimpleMode", [&] { bar.SimpleMode(false); }, 1, 0},
        {"SetLeftTopOffsets", [&] { bar.SetLeftTopOffsets(1, 1); }, 0, 0},
        {"ImageList", [&] { bar.ImageList(qint32(7)); }, 0, 0},
        {"PanelKey", [&] { bar.PanelKey(1, QStringLiteral("caret")); }, 0, 0},
        {"PanelSpring same", [&] { bar.PanelSpring(2, true); }, 0, 0},
        {"PanelSpring", [&] { bar.PanelSpring(1, true); }, 0, 1},
        {"PanelFitToContents same", [&] { bar.PanelFitToContents(1, false); }, 0, 0},
        {"PanelFitToContents", [&] { bar.PanelFitToContents(1, true); }, 0, 1},
        {"PanelIdealWidth", [&] { bar.PanelIdealWidth(1, 30); }, 0, 0},
        {"Font", [&] { bar.Font(BarFont{QStringLiteral("Tahoma"), 10}); }, 0, 1},
        {"AddPanel", [&] { bar.AddPanel(0, QStringLiteral("x"), 2, 10, false, false, 0, QString()); }, 3, 1},
        {"RemovePanel", [&] { bar.RemovePanel(4); }, 1, 0},
    };
    for (const Case& c : cases) {
        target.calls.clear();
        c.run();
        EXPECT_EQ(target.only(DrawCall::Fill).size(), c.draws) << c.name;
        EXPECT_EQ(target.only(DrawCall::Measure).size(), c.measures) << c.name;
    }
}
