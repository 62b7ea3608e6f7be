#pragma once
// A drawing target that paints into a pixmap with QPainter, in the widget's palette and font. The pixmap keeps what
// was drawn until the next drawing, so a window can show it at any time.

#include "statusbar/DrawingTarget.h"
#include "statusbar/IconTable.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QPixmap>

#include <functional>
#include <optional>

class QWidget;

QFont toQFont(const BarFont& font);
BarFont fromQFont(const QFont& font);

class PixmapTarget : public DrawingTarget {
public:
    // Icons are looked up in `icons`; font and palette come from `widget` (or the application's).
    explicit PixmapTarget(const IconTable& icons, QWidget* widget = nullptr, QSize size = {1, 1});
    ~PixmapTarget() override;

    // A new, blank pixmap of `size` logical pixels.
    void resize(QSize size, qreal devicePixelRatio = 1.0);
    // The finished picture: drawing so far is complete in it.
    const QPixmap& pixmap();
    // Whether anything was drawn since the pixmap was last taken.
    bool drawnSinceTaken() const { return drawn_; }
    // Called when drawing starts on a pixmap that was taken, so the window can schedule a repaint.
    std::function<void()> drawingStarted;

    int scaleWidth() const override { return size_.width(); }
    int scaleHeight() const override { return size_.height(); }
    BarRect clientRect() const override { return {0, 0, size_.width(), size_.height()}; }
    void fillRect(const BarRect& rect, qint32 color) override;
    BarRect measureText(const QString& text) override;
    void drawText(const QString& text, const BarRect& rect, unsigned flags) override;
    void drawPanel(const BarRect& rect, const QString& text, qint32 style) override;
    void drawIcon(int x, int y, IconHandle icon, int width, int height) override;
    BarFont font() const override { return font_; }
    void setFont(const BarFont& font) override;
    qint32 foreColor() const override { return foreColor_; }
    void setForeColor(qint32 color) override { foreColor_ = color; }

private:
    QPainter& painter();
    void drawGripGlyph(const BarRect& rect, bool highlight);

    const IconTable& icons_;
    QWidget* widget_;
    QSize size_;
    QPixmap pixmap_;
    QPainter painter_;
    bool drawn_ = false;
    BarFont font_;
    QFont qfont_;
    std::optional<QFontMetrics> metrics_;
    qint32 foreColor_;
};
