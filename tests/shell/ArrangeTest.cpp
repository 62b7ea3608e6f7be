// Where the arrange commands put the document windows.
#include "shell/Arrange.h"

#include <gtest/gtest.h>

TEST(Arrange, TilesFillTheAreaExactlyTheLastTakingTheRest) {
    const QRect area(0, 0, 301, 200);
    EXPECT_EQ(tiles(area, 3, ArrangeMode::TileVertical),
              QList<QRect>({QRect(0, 0, 100, 200), QRect(100, 0, 100, 200), QRect(200, 0, 101, 200)}));
    EXPECT_EQ(tiles(area, 3, ArrangeMode::TileHorizontal),
              QList<QRect>({QRect(0, 0, 301, 66), QRect(0, 66, 301, 66), QRect(0, 132, 301, 68)}));
    EXPECT_EQ(tiles(area, 1, ArrangeMode::TileHorizontal), QList<QRect>({area}));
    EXPECT_TRUE(tiles(area, 0, ArrangeMode::TileVertical).isEmpty());
}

TEST(Arrange, IconsRunAlongTheBottomAndWrapAtTheRightEdge) {
    const QRect area(0, 0, 250, 400);
    const QSize icon(100, 30);
    EXPECT_EQ(iconPlaces(area, {icon, icon, icon, QSize(300, 40)}),
              QList<QPoint>({QPoint(0, 370), QPoint(100, 370), QPoint(0, 370), QPoint(0, 360)}));
    // One wider than the area still starts at the left edge.
    EXPECT_EQ(iconPlaces(area, {QSize(300, 20)}), QList<QPoint>({QPoint(0, 380)}));
}
