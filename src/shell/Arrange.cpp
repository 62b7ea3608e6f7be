#include "shell/Arrange.h"

QList<QRect> tiles(const QRect& area, int n, ArrangeMode mode) {
    QList<QRect> out;
    if (n <= 0)
        return out;
    for (int i = 0; i < n; ++i) {
        const bool last = i == n - 1;
        if (mode == ArrangeMode::TileHorizontal) {
            const int h = area.height() / n;
            out << QRect(area.x(), area.y() + i * h, area.width(), last ? area.height() - i * h : h);
        } else {
            const int w = area.width() / n;
            out << QRect(area.x() + i * w, area.y(), last ? area.width() - i * w : w, area.height());
        }
    }
    return out;
}

QList<QPoint> iconPlaces(const QRect& area, const QList<QSize>& sizes) {
    QList<QPoint> out;
    int x = area.x();
    for (const QSize& sz : sizes) {
        if (x + sz.width() > area.x() + area.width() && x > area.x())
            x = area.x();
        out << QPoint(x, area.y() + area.height() - sz.height());
        x += sz.width();
    }
    return out;
}
