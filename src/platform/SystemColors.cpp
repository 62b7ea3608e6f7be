#include "platform/SystemColors.h"

#include <QGuiApplication>
#include <QPalette>

QColor toQColor(qint32 c) {
    if (!isSystemColor(c))
        return QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
    const QPalette pal = QGuiApplication::palette();
    switch (quint32(c) & 0xFFu) {
    case kColorWindow: return pal.color(QPalette::Base);
    case kColorWindowText: return pal.color(QPalette::Text);
    case kColorHighlight: return pal.color(QPalette::Highlight);
    case kColorHighlightText: return pal.color(QPalette::HighlightedText);
    case kColorButtonFace: return pal.color(QPalette::Button);
    case kColorShadow: return pal.color(QPalette::Dark);
    case kColor3DHighlight: return pal.color(QPalette::Light);
    default: return pal.color(QPalette::Window);
    }
}

qint32 fromQColor(const QColor& c) { return qint32(c.red() | (c.green() << 8) | (c.blue() << 16)); }
