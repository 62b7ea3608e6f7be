// Panels by position and key, the limit, the failures the bar gives its caller, and its height.

#include "StatusBarTesting.h"

#include <functional>

namespace {

// The numbers as the caller sees them: 32-bit, so the high bit makes them negative.
const long kTooMany = qint32(0x8004041Bu), kBadIndex = qint32(0x8004041Au);

// Runs `step`, which must fail with exactly this number, source and description.
void expectFailure(const std::function<void()>& step, long number, const QString& description) {
    try {
        step();
        ADD_FAILURE() << "no failure, expected " << description.toStdString();
    } catch (const Failure& f) {
        EXPECT_EQ(f.number, number) << description.toStdString();
        EXPECT_EQ(f.source, QStringLiteral("test_statusbar.vbalStatusBar"));
        EXPECT_EQ(f.description, description);
    }
}

}  // namespace

TEST(StatusPanels, BadKeysIndexesAndTheTwoHundredFiftySixthPanelFailAndChangeNothing) {
    BarOnTarget b;
    for (const char* key : {"ABC", "twin", "twin"})
        b.bar.AddPanel(0, QString::fromLatin1(key).toLower(), -1, 10, false, false, 0, key);
    EXPECT_EQ(b.bar.PanelIndex(QStringLiteral(" 3 ")), 3);
    EXPECT_EQ(b.bar.PanelIndex("twin"), 2);  // the first of two equal keys
    // Digits are always a position, even when another panel carries them as its key.
    b.bar.PanelKey(3, 1);
    EXPECT_EQ(b.bar.PanelText("1"), "abc");

    struct Case { std::function<void()> step; const char* shown; };
    const Case cases[] = {
        {[&] { b.bar.PanelIndex("abc"); }, "abc"},  // letter case counts
        {[&] { b.bar.PanelIndex(0); }, "0"},
        {[&] { b.bar.PanelIndex(4); }, "4"},
        {[&] { b.bar.PanelText("9", "x"); }, "9"},
        {[&] { b.bar.PanelKey(7); }, "7"},
        {[&] { b.bar.PanelKey(-1, "k"); }, "-1"},
        {[&] { b.bar.AddPanel(0, "x", -1, 10, false, false, 0, "x", 5); }, "5"},
        {[&] { b.bar.AddPanel(0, "x", -1, 10, false, false, 0, "x", "nothing"); }, "nothing"},
        {[&] { b.bar.RemovePanel("nothing"); }, "nothing"},
    };
    for (const Case& c : cases)
        expectFailure(c.step, kBadIndex, QStringLiteral("Invalid Panel Index: ") + c.shown);
    EXPECT_EQ(b.bar.PanelCount(), 3);

    while (b.bar.PanelCount() < 255)
        b.bar.AddPanel(0, QString(), -1, 1, false, false, 0, QString());
    expectFailure([&] { b.bar.AddPanel(0, "one more", -1, 1, false, false, 0, "k", 1); }, kTooMany,
                  QStringLiteral("Too many panels."));
    EXPECT_EQ(b.bar.PanelCount(), 255);
    EXPECT_EQ(b.bar.PanelText(1), "abc");
}

TEST(StatusPanels, HeightInTwipsIsTheMeasuredTextPlusSix) {
    CountingIcons icons;
    cNoStatusBar bar(icons);
    RecordingTarget target(300, 20);
    bar.Create(&target);
    EXPECT_EQ(bar.Height(96), (13 + 6) * 15);
    EXPECT_EQ(bar.Height(144), (13 + 6) * 10);
    // Only Create and Font measure it again.
    target.lineHeight = 20;
    EXPECT_EQ(bar.Height(96), 19 * 15);
    bar.Font(BarFont{QStringLiteral("DejaVu Sans"), 14, true});
    EXPECT_EQ(bar.Height(96), 26 * 15);
}
