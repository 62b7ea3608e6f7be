// Panels by position and key, the limit, and the failures the bar gives its caller.

#include "StatusBarTesting.h"

namespace {
const QString kBarSource = QStringLiteral("test_statusbar.vbalStatusBar");
const QString kInvalid = QStringLiteral("Invalid Panel Index: ");
// The numbers as the caller sees them: 32-bit, so the high bit makes them negative.
const long kTooMany = qint32(0x8004041Bu), kBadIndex = qint32(0x8004041Au),
           kBadList = qint32(0x80040419u), kBadObject = 9;

QStringList keys(const cNoStatusBar& bar) {
    QStringList out;
    for (qint32 i = 1; i <= bar.PanelCount(); ++i)
        out << bar.PanelKey(i);
    return out;
}
}  // namespace

TEST(StatusPanels, TheTwoHundredFiftySixthPanelFails) {
    RecordingTarget target(300, 20);
    CountingIcons icons;
    cNoStatusBar bar(icons);
    bar.Create(&target);
    for (int i = 1; i <= 255; ++i)
        bar.AddPanel(0, QString(), -1, 1, false, false, 0, QString::number(i));
    EXPECT_EQ(bar.PanelCount(), 255);
    expectFailure([&] { bar.AddPanel(0, QStringLiteral("one more"), -1, 1, false, false, 0, QStringLiteral("k"), 1); },
                  kTooMany, kBarSource, QStringLiteral("Too many panels."));
    EXPECT_EQ(bar.PanelCount(), 255);
    EXPECT_EQ(bar.PanelText(1), QString());
}

TEST(StatusPanels, PositionsAndKeys) {
    RecordingTarget target(300, 20);
    CountingIcons icons;
    cNoStatusBar bar(icons);
    bar.Create(&target);
    bar.AddPanel(0, QStringLiteral("a"), -1, 10, false, false, 0, QStringLiteral("ABC"));
    bar.AddPanel(0, QStringLiteral("b"), -1, 10, false, false, 0, QStringLiteral("twin"));
    bar.AddPanel(0, QStringLiteral("c"), -1, 10, false, false, 0, QStringLiteral("twin"));

    EXPECT_EQ(bar.PanelIndex(3), 3);
    EXPECT_EQ(bar.PanelIndex(QStringLiteral(" 3 ")), 3);
    // The first of two equal keys; letter case counts.
    EXPECT_EQ(bar.PanelIndex(QStringLiteral("twin")), 2);
    expectFailure([&] { bar.PanelIndex(QStringLiteral("abc")); }, kBadIndex, kBarSource, kInvalid + "abc");
    expectFailure([&] { bar.PanelIndex(0); }, kBadIndex, kBarSource, kInvalid + "0");
    expectFailure([&] { bar.PanelIndex(4); }, kBadIndex, kBarSource, kInvalid + "4");
    expectFailure([&] { bar.PanelText(QStringLiteral("9"), QStringLiteral("x")); }, kBadIndex,
                  kBarSource, kInvalid + "9");
    EXPECT_EQ(bar.PanelText(1), QStringLiteral("a"));

    // Digits are always a position, even when another panel carries them as its key.
    bar.PanelKey(1, 2);
    EXPECT_EQ(bar.PanelKey(1), QStringLiteral("2"));
    EXPECT_EQ(bar.PanelIndex(QStringLiteral("2")), 2);
    EXPECT_EQ(bar.PanelText(QStringLiteral("2")), QStringLiteral("b"));

    expectFailure([&] { bar.PanelKey(7); }, kBadIndex, kBarSource, kInvalid + "7");
    expectFailure([&] { bar.PanelKey(-1, QStringLiteral("k")); }, kBadIndex, kBarSource, kInvalid + "-1");
}

TEST(StatusPanels, InsertingBeforeMovesTheOthersUp) {
    RecordingTarget target(300, 20);
    CountingIcons icons;
    cNoStatusBar bar(icons);
    bar.Create(&target);
    bar.AddPanel(0, QStringLiteral("one"), -1, 50, false, false, 0, QStringLiteral("one"));
    bar.AddPanel(0, QStringLiteral("two"), -1, 60, true, false, 0, QStringLiteral("two"));
    const BarRect twoBefore = bar.GetPanelRect(QStringLiteral("two"));

    EXPECT_EQ(bar.AddPanel(3, QStringLiteral("zero"), -1, 30, false, false, 0, QStringLiteral("zero"), 1), 1);
    EXPECT_EQ(keys(bar), (QStringList{"zero", "one", "two"}));
    EXPECT_EQ(bar.PanelStyle(1), 3);
    EXPECT_EQ(bar.PanelMinWidth(QStringLiteral("one")), 50);
    // The key still finds its panel, now one place on and pushed right by the new one.
    EXPECT_EQ(bar.GetPanelRect(QStringLiteral("two")).left, twoBefore.left + 30);

    bar.AddPanel(0, QStringLiteral("mid"), -1, 10, false, false, 0, QStringLiteral("mid"), QStringLiteral("two"));
    EXPECT_EQ(keys(bar), (QStringList{"zero", "one", "mid", "two"}));

    for (const PanelRef& bad : {PanelRef(0), PanelRef(5), PanelRef("nothing")}) {
        expectFailure([&] { bar.AddPanel(0, QString(), -1, 10, false, false, 0, QString(), bad); },
                      kBadIndex, kBarSource, kInvalid + bad.text());
    }
    EXPECT_EQ(bar.PanelCount(), 4);

    // A new spring takes the flag from the old one.
    bar.AddPanel(0, QString(), -1, 10, true, false, 0, QStringLiteral("spring"), 1);
    EXPECT_FALSE(bar.PanelSpring(QStringLiteral("two")));
    EXPECT_TRUE(bar.PanelSpring(1));

    // Removing closes the gap; a bad key removes nothing.
    bar.RemovePanel(QStringLiteral("one"));
    EXPECT_EQ(keys(bar), (QStringList{"spring", "zero", "mid", "two"}));
    expectFailure([&] { bar.RemovePanel(QStringLiteral("one")); }, kBadIndex, kBarSource, kInvalid + "one");
    EXPECT_EQ(bar.PanelCount(), 4);
}

TEST(StatusPanels, CreateAndImageListFailures) {
    CountingIcons icons;
    cNoStatusBar bar(icons);
    const QString createSource = QStringLiteral("test_statusbar.cNoStatusBar");
    const QString invalidObject = QStringLiteral("Invalid object passed to Create.");
    expectFailure([&] { bar.Create(nullptr); }, kBadObject, createSource, invalidObject);
    RecordingTarget notASurface;
    notASurface.notASurface = true;
    expectFailure([&] { bar.Create(&notASurface); }, kBadObject, createSource, invalidObject);

    // A usable target after all; the bar's height is the sample text's plus 6.
    RecordingTarget target(300, 20);
    bar.Create(&target);
    EXPECT_EQ(bar.Height(96), (13 + 6) * 15);
    EXPECT_EQ(bar.Height(144), (13 + 6) * 10);
    // Only Create and Font measure it again.
    target.lineHeight = 20;
    EXPECT_EQ(bar.Height(96), 19 * 15);
    const BarFont big{QStringLiteral("DejaVu Sans"), 14, true};
    bar.Font(big);
    EXPECT_EQ(bar.Font(), big);
    EXPECT_EQ(bar.Height(96), 26 * 15);

    const QString listMessage =
        QStringLiteral("ImageList property expects ImageList object or long hImageList handle.");
    for (const ImageListValue& bad : {ImageListValue{}, ImageListValue{QStringLiteral("7")},
                                      ImageListValue{static_cast<ImageListObject*>(nullptr)}}) {
        bar.ImageList(qint32(7));
        expectFailure([&] { bar.ImageList(bad); }, kBadList, kBarSource, listMessage);
        // The failed set left no list behind: no icon can be fetched.
        bar.AddPanel(0, QString(), 0, 10, false, false, 0, QString());
        EXPECT_EQ(bar.PanelhIcon(bar.PanelCount()), 0u);
    }

    // An object draws its first image to make its list; if it cannot, there is silently no list.
    FakeImageList list;
    bar.ImageList(&list);
    EXPECT_EQ(list.draws, 1);
    bar.AddPanel(0, QString(), 2, 10, false, false, 0, QString());
    EXPECT_NE(bar.PanelhIcon(bar.PanelCount()), 0u);
    list.fail = true;
    bar.ImageList(&list);
    bar.AddPanel(0, QString(), 2, 10, false, false, 0, QString());
    EXPECT_EQ(bar.PanelhIcon(bar.PanelCount()), 0u);
    EXPECT_EQ(bar.PanelIcon(bar.PanelCount()), 2);
}
