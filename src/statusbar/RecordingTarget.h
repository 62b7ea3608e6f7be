#pragma once
// A drawing target that paints nothing and writes down every drawing call, with its rectangles, texts,
// and the font and fore colour in force at the time. Text is measured with fixed cell sizes.

#include "statusbar/DrawingTarget.h"
#include "platform/SystemColors.h"

#include <vector>

struct DrawCall {
    enum Op { Fill, Measure, Text, Panel, Icon, SetFont, SetForeColor } op;
    BarRect rect{};
    QString text{};
    unsigned flags = 0;  // Text
    qint32 value = 0;    // Fill: colour; Panel: style; SetForeColor: colour
    IconHandle icon = 0;
    BarFont font{};      // in force after the call
    qint32 foreColor = 0;
};

class RecordingTarget : public DrawingTarget {
public:
    RecordingTarget(qint32 width = 300, qint32 height = 20) : client{0, 0, width, height} {}

    BarRect client;
    BarFont currentFont{QStringLiteral("MS Sans Serif"), 8.25};
    qint32 currentForeColor = systemColor(kColorWindowText);
    qint32 charWidth = 7;    // every character
    qint32 lineHeight = 13;  // every line, also of an empty text
    bool notASurface = false;  // scaleWidth and scaleHeight then fail
    std::vector<DrawCall> calls;

    // The calls of one kind, in order.
    std::vector<DrawCall> only(DrawCall::Op op) const;
    // The calls without measuring: what a Draw leaves on the surface.
    std::vector<DrawCall> painting() const;

    int scaleWidth() const override;
    int scaleHeight() const override;
    BarRect clientRect() const override { return client; }
    void fillRect(const BarRect& rect, qint32 color) override;
    BarRect measureText(const QString& text) override;
    void drawText(const QString& text, const BarRect& rect, unsigned flags) override;
    void drawPanel(const BarRect& rect, const QString& text, qint32 style) override;
    void drawIcon(int x, int y, IconHandle icon, int width, int height) override;
    BarFont font() const override { return currentFont; }
    void setFont(const BarFont& font) override;
    qint32 foreColor() const override { return currentForeColor; }
    void setForeColor(qint32 color) override;

private:
    void record(DrawCall call);
};
