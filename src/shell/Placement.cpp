#include "shell/Placement.h"

#include "platform/Failure.h"
#include "core/Convert.h"

Placement defaultPlacement() {
    Placement p;
    p.height = 6000;
    p.left = 0;
    p.top = 0;
    p.width = 9000;
    return p;
}

Placement placementFrom(const QString& height, const QString& left, const QString& top, const QString& width,
                        const QString& windowState) {
    float t = 0;
    qint16 st = 0;
    try {
        t = singleOf(top);
        st = int16Of(windowState);
    } catch (const Failure&) {
        // Neither value can be compared: the safe branch, a window that is surely on the screen.
        return defaultPlacement();
    }
    if (t < 0 && st != 2)
        return defaultPlacement();
    Placement p;
    skipOnFailure([&] { p.height = singleOf(height); });
    skipOnFailure([&] { p.left = singleOf(left); });
    p.top = t;
    skipOnFailure([&] { p.width = singleOf(width); });
    p.windowState = st;
    return p;
}

QString singleText(float v) { return QString::number(double(v), 'g', 7); }
