// The frame's status picture really paints what the bar draws, and asks for a Draw when it has nothing new.

#include "statusbar/StatusPicture.h"
#include "statusbar/cNoStatusBar.h"
#include "platform/SystemColors.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

// Whether a region holds more than one colour.
bool varies(const QImage& img, const QRect& r) {
    const QRgb first = img.pixel(r.topLeft());
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            if (img.pixel(x, y) != first)
                return true;
    return false;
}

int countColor(const QImage& img, const QRect& r, QColor c) {
    int n = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            n += img.pixel(x, y) == c.rgb();
    return n;
}

}  // namespace

TEST(StatusPicture, ShowsPanelsIconAndGrip) {
    StatusPicture picStatus;
    picStatus.resize(400, 22);
    picStatus.show();
    cNoStatusBar bar(picStatus.icons());
    QPixmap red(16, 16);
    red.fill(Qt::red);
    PixmapImageList list(picStatus.icons(), {red});
    bar.ImageList(&list);
    bar.Create(&picStatus.target());
    // As the frame does: the bar has its target before paint and resize reach it.
    int paints = 0;
    QObject::connect(&picStatus, &StatusPicture::Paint, [&] {
        ++paints;
        bar.Draw();
    });
    QObject::connect(&picStatus, &StatusPicture::Resized, [&] { bar.Draw(); });
    bar.AddPanel(0, QStringLiteral("Line: 1 Col: 1"), -1, 100, false, false, 0, QString());
    bar.AddPanel(0, QString(), 0, 64, true, false, 0, QString());
    bar.AddPanel(0, QStringLiteral("PBP"), -1, 40, false, false, 0, QString());
    bar.SizeGrip(true);
    EXPECT_GT(bar.Height(96), 6 * 15);

    // Drawn since the last paint: the picture is shown as it is.
    QImage img = picStatus.grab().toImage();
    EXPECT_EQ(paints, 0);
    const BarRect p1 = bar.GetPanelRect(1);
    EXPECT_TRUE(varies(img, QRect(p1.left + 3, 3, p1.width() - 6, 16)));
    const BarRect p2 = bar.GetPanelRect(2);
    EXPECT_GT(countColor(img, QRect(p2.left, 0, 20, 22), Qt::red), 100);
    // The grip's strokes sit in the corner, in the shadow colour.
    EXPECT_GT(countColor(img, QRect(380, 8, 18, 13), toQColor(systemColor(kColorShadow))), 5);

    // A new text changes the picture.
    bar.PanelText(1, QStringLiteral("Line: 1234 Col: 56"));
    const QImage changed = picStatus.grab().toImage();
    EXPECT_NE(changed.copy(0, 0, 100, 22), img.copy(0, 0, 100, 22));

    // Nothing new to show: the picture asks for a Draw.
    picStatus.grab();
    EXPECT_EQ(paints, 1);

    // A resize gives a blank picture of the new size, which the Resized handler fills at once.
    picStatus.resize(500, 22);
    img = picStatus.grab().toImage();
    EXPECT_EQ(paints, 1);
    EXPECT_EQ(bar.GetPanelRect(3).right, 500);
    EXPECT_TRUE(varies(img, QRect(bar.GetPanelRect(3).left + 2, 3, 30, 16)));
}
