#pragma once
// Shared pieces of the status bar tests: an icon source whose icons are real allocations, and a bar over a
// recording target with the frame's three panels.

#include "platform/Failure.h"
#include "statusbar/IconSource.h"
#include "statusbar/RecordingTarget.h"
#include "statusbar/cNoStatusBar.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <vector>

// Each icon is a heap object freed on destroy; one the bar never gives back is left for LeakSanitizer.
struct CountingIcons : IconSource {
    std::map<IconHandle, int*> live;  // list 7 holds images 0..9 of 16 pixels
    std::vector<IconHandle> destroyed;
    int strayDestroys = 0;  // a handle destroyed twice, or never handed out
    IconHandle next = 100;

    IconHandle getIcon(ImageListHandle list, int index) override {
        if (list != 7 || index < 0 || index > 9)
            return 0;
        live[++next] = new int(index);
        return next;
    }
    int iconWidth(ImageListHandle list) override { return list == 7 ? 16 : 0; }
    void destroyIcon(IconHandle icon) override {
        auto node = live.extract(icon);
        if (node.empty())
            return void(++strayDestroys);
        delete node.mapped();
        destroyed.push_back(icon);
    }
};

// A created bar with image list 7 over a target `width` by 20 pixels, with the frame's panels: 100 wide with
// the caret text, 64 wide spring, 40 wide.
struct BarOnTarget {
    RecordingTarget target;
    CountingIcons icons;
    cNoStatusBar bar{icons};
    explicit BarOnTarget(qint32 width = 300, bool framePanels = true) : target(width, 20) {
        bar.ImageList(qint32(7));
        bar.Create(&target);
        const qint32 widths[] = {100, 64, 40};
        for (int i = 0; framePanels && i < 3; ++i)
            bar.AddPanel(0, i ? QString() : QStringLiteral("Line: 1 Col: 1"), -1, widths[i], i == 1);
    }
};

inline void PrintTo(const BarRect& r, std::ostream* os) {
    *os << "{" << r.left << "," << r.top << "," << r.right << "," << r.bottom << "}";
}
