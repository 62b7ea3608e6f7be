#include "statusbar/RecordingTarget.h"

#include "platform/Failure.h"

#include <QStringList>

std::vector<DrawCall> RecordingTarget::only(DrawCall::Op op) const {
    std::vector<DrawCall> out;
    for (const DrawCall& c : calls)
        if (c.op == op)
            out.push_back(c);
    return out;
}

std::vector<DrawCall> RecordingTarget::painting() const {
    std::vector<DrawCall> out;
    for (const DrawCall& c : calls)
        if (c.op != DrawCall::Measure)
            out.push_back(c);
    return out;
}

int RecordingTarget::scaleWidth() const {
    if (notASurface)
        throw notSupportedByObject();
    return client.width();
}

int RecordingTarget::scaleHeight() const {
    if (notASurface)
        throw notSupportedByObject();
    return client.height();
}

void RecordingTarget::record(DrawCall call) {
    call.font = currentFont;
    call.foreColor = currentForeColor;
    calls.push_back(std::move(call));
}

void RecordingTarget::fillRect(const BarRect& rect, qint32 color) { record({DrawCall::Fill, rect, {}, 0, color}); }

BarRect RecordingTarget::measureText(const QString& text) {
    const QStringList lines = text.split(QLatin1Char('\n'));
    qsizetype widest = 0;
    for (const QString& line : lines)
        widest = std::max(widest, line.size());
    const BarRect r{0, 0, qint32(widest) * charWidth, qint32(lines.size()) * lineHeight};
    record({DrawCall::Measure, r, text});
    return r;
}

void RecordingTarget::drawText(const QString& text, const BarRect& rect, unsigned flags) {
    record({DrawCall::Text, rect, text, flags});
}

void RecordingTarget::drawPanel(const BarRect& rect, const QString& text, qint32 style) {
    record({DrawCall::Panel, rect, text, 0, style});
}

void RecordingTarget::drawIcon(int x, int y, IconHandle icon, int width, int height) {
    record({DrawCall::Icon, {x, y, x + width, y + height}, {}, 0, 0, icon});
}

void RecordingTarget::setFont(const BarFont& font) {
    currentFont = font;
    record({DrawCall::SetFont});
}

void RecordingTarget::setForeColor(qint32 color) {
    currentForeColor = color;
    record({DrawCall::SetForeColor, {}, {}, 0, color});
}
