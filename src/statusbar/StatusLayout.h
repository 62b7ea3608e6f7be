#pragma once
// The arithmetic of the bar: how wide a panel wants to be, where each panel goes, where an icon sits.
// Integers only, so every edge is exact.

#include "statusbar/StatusPanel.h"

#include <span>

// The width a fit-to-contents panel asks for, from the measured width of its text.
qint32 idealWidth(qint32 textWidth, qint32 minWidth);

// The width of a panel before any free width is given out: an icon adds its size.
qint32 ownWidth(const StatusPanel& panel, qint32 iconSize);

// Gives every panel its rectangle in `client` (offsets already added). The last panel gets half the bar's
// height on top of its own width; the free width goes to the spring panel, else to the last one. A bar
// wider than the client keeps its widths and runs past the right edge.
void layoutPanels(std::span<StatusPanel> panels, const BarRect& client, qint32 iconSize);

// The rectangle a panel is painted in: cut one pixel short of the client's right edge when it runs past
// it, in which case `last` becomes true and no panel behind it is painted.
BarRect paintRect(const BarRect& panel, qint32 clientRight, bool& last);

struct BarPoint {
    qint32 x = 0, y = 0;
    friend bool operator==(const BarPoint&, const BarPoint&) = default;
};
// Where a square icon of `iconSize` goes in a panel: 2 in from the left, centred inside a 1 pixel frame.
BarPoint iconOrigin(const BarRect& panel, qint32 iconSize);

BarRect offsetRect(const BarRect& r, qint32 dx, qint32 dy);

// The bar is its sample text's height plus 6.
inline qint32 barHeightFor(qint32 textHeight) { return textHeight + 6; }
// The bar's height as the frame sizes its picture: pixels into twips at the screen's Y resolution.
qint32 heightInTwips(qint32 pixels, double dpiY);
