#pragma once
// Shared pieces of the status bar tests: an icon source whose icons are real allocations, and a bar over a
// recording target with the frame's three panels.

#include "platform/Failure.h"
#include "statusbar/IconSource.h"
#include "statusbar/RecordingTarget.h"
#include "statusbar/cNoStatusBar.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <map>
#include <vector>

// Each icon is a heap object freed on destroy; one the bar never gives back is left for LeakSanitizer.
class CountingIcons : public IconSource {
public:
    std::map<IconHandle, int*> live;  // list 7 holds images 0..9 of 16 pixels
    std::vector<IconHandle> destroyed;
    int strayDestroys = 0;

    IconHandle getIcon(ImageListHandle list, int index) override {
        if (list != 7 || index < 0 || index > 9)
            return 0;
        live[++next_] = new int(index);
        return next_;
    }
    int iconWidth(ImageListHandle list) override { return list == 7 ? 16 : 0; }
    void destroyIcon(IconHandle icon) override {
        const auto it = live.find(icon);
        if (it == live.end())
            return void(++strayDestroys);
        delete it->second;
        live.erase(it);
        destroyed.push_back(icon);
    }

private:
    IconHandle next_ = 100;
};

// A created bar with image list 7 over a target `width` by 20 pixels.
struct BarOnTarget {
    RecordingTarget target;
    CountingIcons icons;
    cNoStatusBar bar{icons};
    explicit BarOnTarget(qint32 width = 300) : target(width, 20) {
        bar.ImageList(qint32(7));
        bar.Create(&target);
    }
    // The frame's panels: 100 wide with the caret text, 64 wide spring, 40 wide.
    void framePanels() {
        bar.AddPanel(0, QStringLiteral("Line: 1 Col: 1"), -1, 100, false, false, 0, QString());
        bar.AddPanel(0, QString(), -1, 64, true, false, 0, QString());
        bar.AddPanel(0, QString(), -1, 40, false, false, 0, QString());
    }
};

inline void PrintTo(const BarRect& r, std::ostream* os) {
    *os << "{" << r.left << "," << r.top << "," << r.right << "," << r.bottom << "}";
}
