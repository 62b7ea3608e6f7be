#pragma once
// Shared pieces of the status bar tests: an icon source whose icons are real allocations, an image list
// object that can be told to fail, and the frame's three panels.

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
    // A handle as a caller makes one for PanelhIcon.
    IconHandle make() { return getIcon(7, 0); }

private:
    IconHandle next_ = 100;
};

class FakeImageList : public ImageListObject {
public:
    bool fail = false;
    int draws = 0;
    ImageListHandle handle = 7;
    void drawFirstImage() override {
        ++draws;
        if (fail)
            throw Failure(35600, QStringLiteral("Index out of bounds"));
    }
    ImageListHandle hImageList() const override { return draws ? handle : 0; }
};

// Create, then the frame's three panels: 100 wide with the caret text, 64 wide spring, 40 wide.
inline void addFramePanels(cNoStatusBar& bar, RecordingTarget& target) {
    bar.Create(&target);
    bar.AddPanel(0, QStringLiteral("Line: 1 Col: 1"), -1, 100, false, false, 0, QString());
    bar.AddPanel(0, QString(), -1, 64, true, false, 0, QString());
    bar.AddPanel(0, QString(), -1, 40, false, false, 0, QString());
}

// Runs `step`, which must fail with exactly this number, source and description.
template <class Step>
void expectFailure(Step&& step, long number, const QString& source, const QString& description) {
    try {
        step();
        ADD_FAILURE() << "no failure, expected " << description.toStdString();
    } catch (const Failure& f) {
        EXPECT_EQ(f.number, number);
        EXPECT_EQ(f.source, source);
        EXPECT_EQ(f.description, description);
    }
}

inline std::vector<BarRect> panelRects(const cNoStatusBar& bar) {
    std::vector<BarRect> out;
    for (qint32 i = 1; i <= bar.PanelCount(); ++i)
        out.push_back(bar.GetPanelRect(i));
    return out;
}

// One line per drawing call, e.g. "Panel 0,0,99,20 [Line: 1 Col: 1] 0" or "Text -2,-1,298,19 [o] 2a".
inline QStringList trace(const std::vector<DrawCall>& calls) {
    QStringList out;
    for (const DrawCall& c : calls) {
        const QString r =
            QStringLiteral("%1,%2,%3,%4").arg(c.rect.left).arg(c.rect.top).arg(c.rect.right).arg(c.rect.bottom);
        const QString text = QLatin1Char('[') + c.text + QLatin1Char(']');
        switch (c.op) {
        case DrawCall::Fill: out << "Fill " + r + " " + QString::number(quint32(c.value), 16); break;
        case DrawCall::Measure: out << "Measure " + text; break;
        case DrawCall::Text: out << "Text " + r + " " + text + " " + QString::number(c.flags, 16); break;
        case DrawCall::Panel: out << "Panel " + r + " " + text + " " + QString::number(c.value, 16); break;
        case DrawCall::Icon: out << "Icon " + r + " " + QString::number(c.icon); break;
        case DrawCall::SetFont: out << "Font " + c.font.name + " " + QString::number(c.font.size); break;
        case DrawCall::SetForeColor: out << "Color " + QString::number(quint32(c.value), 16); break;
        }
    }
    return out;
}

inline void PrintTo(const BarRect& r, std::ostream* os) {
    *os << "{" << r.left << "," << r.top << "," << r.right << "," << r.bottom << "}";
}
