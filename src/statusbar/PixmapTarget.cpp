#include "statusbar/PixmapTarget.h"

#include "platform/SystemColors.h"

#include <QApplication>
#include <QWidget>
#include <qdrawutil.h>

namespace {

QRect toQRect(const BarRect& r) { return QRect(r.left, r.top, r.width(), r.height()); }

int toQtAlignment(unsigned flags) {
    int a = Qt::AlignLeft;
    if (flags & kTextRight)
        a = Qt::AlignRight;
    else if (flags & kTextCenter)
        a = Qt::AlignHCenter;
    // Vertical placement only means something on a single line.
    if (flags & kTextSingleLine) {
        a |= Qt::TextSingleLine;
        a |= (flags & kTextBottom) ? Qt::AlignBottom : (flags & kTextVCenter) ? Qt::AlignVCenter : Qt::AlignTop;
    } else {
        a |= Qt::AlignTop;
    }
    return a;
}

}  // namespace

QFont toQFont(const BarFont& font) {
    QFont f(font.name);
    if (font.size > 0)
        f.setPointSizeF(font.size);
    f.setBold(font.bold);
    f.setItalic(font.italic);
    f.setUnderline(font.underline);
    return f;
}

BarFont fromQFont(const QFont& font) {
    const double size = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
    return {font.family(), size, font.bold(), font.italic(), font.underline()};
}

PixmapTarget::PixmapTarget(const IconTable& icons, QWidget* widget, QSize size)
    : icons_(icons), widget_(widget), foreColor_(systemColor(kColorWindowText)) {
    setFont(fromQFont(widget ? widget->font() : QApplication::font()));
    resize(size);
}

PixmapTarget::~PixmapTarget() {
    if (painter_.isActive())
        painter_.end();
}

void PixmapTarget::resize(QSize size, qreal devicePixelRatio) {
    if (painter_.isActive())
        painter_.end();
    size_ = size.expandedTo(QSize(0, 0));
    // A pixmap needs at least one pixel to be painted on; the client rectangle keeps the true size.
    const QSize device = (size_ * devicePixelRatio).expandedTo(QSize(1, 1));
    pixmap_ = QPixmap(device);
    pixmap_.setDevicePixelRatio(devicePixelRatio);
    pixmap_.fill(toQColor(systemColor(kColorButtonFace)));
    drawn_ = false;
}

const QPixmap& PixmapTarget::pixmap() {
    if (painter_.isActive())
        painter_.end();
    drawn_ = false;
    return pixmap_;
}

QPainter& PixmapTarget::painter() {
    if (!painter_.isActive()) {
        painter_.begin(&pixmap_);
        if (!drawn_ && drawingStarted)
            drawingStarted();
        drawn_ = true;
    }
    return painter_;
}

void PixmapTarget::fillRect(const BarRect& rect, qint32 color) { painter().fillRect(toQRect(rect), toQColor(color)); }

BarRect PixmapTarget::measureText(const QString& text) {
    const QSize s = metrics_->size(0, text);
    return {0, 0, s.width(), s.height()};
}

void PixmapTarget::setFont(const BarFont& font) {
    font_ = font;
    qfont_ = toQFont(font);
    metrics_.emplace(qfont_);
}

void PixmapTarget::drawText(const QString& text, const BarRect& rect, unsigned flags) {
    if (font_.name == QLatin1String(kGripFontName)) {
        // The symbol font is a Windows one: its two grip glyphs are drawn as strokes, anything else not at all.
        if (text == QLatin1String(kGripHighlightGlyph) || text == QLatin1String(kGripShadowGlyph))
            drawGripGlyph(rect, text == QLatin1String(kGripHighlightGlyph));
        return;
    }
    QPainter& p = painter();
    p.setFont(qfont_);
    p.setPen(toQColor(foreColor_));
    p.drawText(toQRect(rect), toQtAlignment(flags), text);
}

// The grip fills a square as high as the glyph font, in the bottom right corner of `rect`: three groups
// of diagonal strokes, each a highlight stroke with two shadow strokes nearer the corner.
void PixmapTarget::drawGripGlyph(const BarRect& rect, bool highlight) {
    QPainter& p = painter();
    const int side = qRound(font_.size * pixmap_.logicalDpiY() / 72.0);
    const int period = qMax(4, side / 4);
    const int right = rect.right - 1, bottom = rect.bottom - 1;
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.setPen(QPen(toQColor(foreColor_), 0));
    for (int group = 1; group <= 3; ++group) {
        const int outer = group * period;
        const int first = highlight ? outer : outer - 2, last = highlight ? outer : outer - 1;
        for (int offset = first; offset <= last && offset < side; ++offset)
            p.drawLine(right - offset, bottom, right, bottom - offset);
    }
    p.restore();
}

void PixmapTarget::drawPanel(const BarRect& rect, const QString& text, qint32 style) {
    QPainter& p = painter();
    const QRect r = toQRect(rect);
    if (r.width() <= 0 || r.height() <= 0)
        return;
    const QPalette pal = widget_ ? widget_->palette() : QApplication::palette();
    // The classic one-pixel shade frame: some styles draw no status bar item frame at all.
    if (!(style & kPanelNoBorders))
        qDrawShadeRect(&p, r, pal, !(style & kPanelPopOut), 1, 0);
    if (text.isEmpty())
        return;
    // Text after a tab is centred, after a second tab right-aligned.
    const QRect inner = r.adjusted(3, 1, -3, -1);
    const QStringList parts = text.split(QLatin1Char('\t'));
    static constexpr int kAlign[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    p.setFont(qfont_);
    p.setPen(pal.color(QPalette::ButtonText));
    for (qsizetype i = 0; i < parts.size() && i < 3; ++i) {
        if (!parts[i].isEmpty())
            p.drawText(inner, kAlign[i] | Qt::AlignVCenter | Qt::TextSingleLine, parts[i]);
    }
}

void PixmapTarget::drawIcon(int x, int y, IconHandle icon, int width, int height) {
    if (const QPixmap* pm = icons_.icon(icon))
        painter().drawPixmap(QRect(x, y, width, height), *pm);
}
