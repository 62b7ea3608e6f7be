#pragma once
// Where the frame's arrange commands put the document windows: plain rectangles, no windows.

#include <QList>
#include <QRect>
#include <QSize>

// The frame's arrange operation, by the numbers the commands pass.
enum class ArrangeMode { Cascade = 0, TileHorizontal = 1, TileVertical = 2, Icons = 3 };

// n windows tiled over the area: one above the other (horizontal) or side by side (vertical). The last
// takes what the division leaves over, so together they fill the area exactly.
QList<QRect> tiles(const QRect& area, int n, ArrangeMode mode);

// The top-left corners of minimised windows of these sizes, in a row along the bottom edge of the area,
// left to right, starting a new row at the left edge where one would run past the right edge.
QList<QPoint> iconPlaces(const QRect& area, const QList<QSize>& sizes);
