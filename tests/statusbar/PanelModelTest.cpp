// Panels by position and key, the limit, the failures the bar gives its caller, and its height.

#include "StatusBarTesting.h"

namespace {

// How `step` fails: number (32-bit, so the high bit makes it negative), source and description.
QString failure(const std::function<void()>& step) {
    try {
        step();
    } catch (const Failure& f) {
        return QStringLiteral("%1 %2: %3").arg(f.number).arg(f.source, f.description);
    }
    return QStringLiteral("no failure");
}

const QString kBadIndex = QString::number(qint32(0x8004041Au)) + " test_statusbar.vbalStatusBar: Invalid Panel Index: ";

}  // namespace

TEST(StatusPanels, BadKeysIndexesAndTheTwoHundredFiftySixthPanelFailAndChangeNothing) {
    BarOnTarget b(300, false);
    for (const char* key : {"ABC", "twin", "twin"})
        b.bar.AddPanel(0, QString::fromLatin1(key).toLower(), -1, 10, false, false, 0, key);
    EXPECT_EQ(b.bar.PanelIndex(QStringLiteral(" 3 ")), 3);
    EXPECT_EQ(b.bar.PanelIndex("twin"), 2);  // the first of two equal keys
    // Digits are always a position, even when another panel carries them as its key.
    b.bar.PanelKey(3, 1);
    EXPECT_EQ(b.bar.PanelText("1"), "abc");

    const std::pair<std::function<void()>, const char*> cases[] = {
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
    for (const auto& [step, shown] : cases)
        EXPECT_EQ(failure(step), kBadIndex + shown);
    EXPECT_EQ(b.bar.PanelCount(), 3);

    while (b.bar.PanelCount() < 255)
        b.bar.AddPanel(0, QString(), -1, 1);
    EXPECT_EQ(failure([&] { b.bar.AddPanel(0, "one more", -1, 1, false, false, 0, "k", 1); }),
              QString::number(qint32(0x8004041Bu)) + " test_statusbar.vbalStatusBar: Too many panels.");
    EXPECT_EQ(b.bar.PanelCount(), 255);
    EXPECT_EQ(b.bar.PanelText(1), "abc");
}

TEST(StatusPanels, HeightInTwipsIsTheMeasuredTextPlusSix) {
    BarOnTarget b(300, false);
    EXPECT_EQ(b.bar.Height(96), (13 + 6) * 15);
    EXPECT_EQ(b.bar.Height(144), (13 + 6) * 10);
    // Only Create and Font measure it again.
    b.target.lineHeight = 20;
    EXPECT_EQ(b.bar.Height(96), 19 * 15);
    b.bar.Font(BarFont{QStringLiteral("DejaVu Sans"), 14, true});
    EXPECT_EQ(b.bar.Height(96), 26 * 15);
}
