#include "statusbar/StatusLayout.h"

#include "platform/Twips.h"

#include <cmath>
#include <optional>
#include <vector>

qint32 idealWidth(qint32 textWidth, qint32 minWidth) {
    const qint32 w = textWidth + 12;
    return w < minWidth ? minWidth : w;
}

qint32 ownWidth(const StatusPanel& panel, qint32 iconSize) {
    const qint32 w = panel.bFitContents ? panel.lIdealWidth : panel.lMinWidth;
    return panel.hIcon != 0 ? w + iconSize : w;
}

void layoutPanels(std::span<StatusPanel> panels, const BarRect& client, qint32 iconSize) {
    const size_t count = panels.size();
    if (count == 0)
        return;
    // Integer division truncates toward 0, also for a negative height.
    const qint32 rest = (client.bottom - client.top) / 2;
    const size_t last = count - 1;

    // rightEdges[i]: running right edge behind panel i, counted from 0 (not from the left offset).
    std::vector<qint32> rightEdges(count, 0);
    auto edgeAfter = [&](size_t i) {
        const qint32 e = rightEdges[i - 1] + ownWidth(panels[i], iconSize);
        return i == last ? e + rest : e;
    };
    rightEdges[0] = ownWidth(panels[0], iconSize);
    std::optional<size_t> spring;
    if (panels[0].bSpring)
        spring = 0;
    for (size_t i = 1; i < count; ++i) {
        rightEdges[i] = edgeAfter(i);
        if (panels[i].bSpring)
            spring = i;
    }

    if (rightEdges[last] <= client.right) {
        const size_t s = spring.value_or(last);
        rightEdges[s] += client.right - rightEdges[last];
        for (size_t i = s + 1; i < count; ++i)
            rightEdges[i] = edgeAfter(i);
    }

    for (size_t i = 0; i < count; ++i) {
        BarRect& r = panels[i].rect;
        r.left = i == 0 ? client.left : rightEdges[i - 1];
        // One pixel column between two panels.
        r.right = i == last ? rightEdges[i] : rightEdges[i] - 1;
        r.top = client.top;
        r.bottom = client.bottom;
    }
}

BarRect paintRect(const BarRect& panel, qint32 clientRight, bool& last) {
    BarRect r = panel;
    if (r.right > clientRight) {
        r.right = clientRight - 1;
        last = true;
    }
    return r;
}

BarPoint iconOrigin(const BarRect& panel, qint32 iconSize) {
    return {panel.left + 2, panel.top + 1 + (panel.bottom - panel.top - 2 - iconSize) / 2};
}

BarRect offsetRect(const BarRect& r, qint32 dx, qint32 dy) {
    return {r.left + dx, r.top + dy, r.right + dx, r.bottom + dy};
}

qint32 heightInTwips(qint32 pixels, double dpiY) { return qint32(std::lround(pixelsToTwips(pixels, dpiY))); }
