// The frame's status picture really paints what the bar draws, and asks for a Draw when it has nothing new.

#include "platform/SystemColors.h"
#include "statusbar/StatusPicture.h"
#include "statusbar/cNoStatusBar.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

int countColor(const QImage& img, const QRect& r, QColor c) {
    int n = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            n += img.pixel(x, y) == c.rgb();
    return n;
}

// Whether a region holds more than one colour.
bool varies(const QImage& img, const QRect& r) {
    return countColor(img, r, img.pixelColor(r.topLeft())) < r.width() * r.height();
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
    QObject::connect(&picStatus, &StatusPicture::Paint, [&] { ++paints; bar.Draw(); });
    QObject::connect(&picStatus, &StatusPicture::Resized, [&] { bar.Draw(); });
    bar.AddPanel(0, QStringLiteral("Line: 1 Col: 1"), -1, 100, false, false, 0, QString());
    bar.AddPanel(0, QString(), 0, 64, true, false, 0, QString());
    bar.SizeGrip(true);

    // Drawn since the last paint: the picture is shown as it is, text, icon and the grip's shadow strokes.
    const QImage img = picStatus.grab().toImage();
    EXPECT_EQ(paints, 0);
    EXPECT_TRUE(varies(img, QRect(3, 3, 94, 16)));
    EXPECT_GT(countColor(img, QRect(bar.GetPanelRect(2).left, 0, 20, 22), Qt::red), 100);
    EXPECT_GT(countColor(img, QRect(380, 8, 18, 13), toQColor(systemColor(kColorShadow))), 5);

    bar.PanelText(1, QStringLiteral("Line: 1234 Col: 56"));
    EXPECT_NE(picStatus.grab().toImage().copy(0, 0, 100, 22), img.copy(0, 0, 100, 22));
    // Nothing new to show: the picture asks for a Draw.
    picStatus.grab();
    EXPECT_EQ(paints, 1);
    // A resize gives a blank picture of the new size, which the Resized handler fills at once.
    picStatus.resize(500, 22);
    EXPECT_TRUE(varies(picStatus.grab().toImage(), QRect(3, 3, 94, 16)));
    EXPECT_EQ(paints, 1);
    EXPECT_EQ(bar.GetPanelRect(2).right, 500);
}
