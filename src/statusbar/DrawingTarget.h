#pragma once
// The surface the status bar paints on. It belongs to someone else; the bar only borrows it.

#include "statusbar/IconSource.h"

#include <QString>
#include <QtGlobal>

// Pixels in the target's client coordinates; right and bottom lie just outside, as a client rectangle's do.
struct BarRect {
    qint32 left = 0, top = 0, right = 0, bottom = 0;
    qint32 width() const { return right - left; }
    qint32 height() const { return bottom - top; }
    friend bool operator==(const BarRect&, const BarRect&) = default;
};

struct BarFont {
    QString name;
    double size = 8.25;  // points
    bool bold = false, italic = false, underline = false;
    friend bool operator==(const BarFont&, const BarFont&) = default;
};

// Text flags, with the values the painting code and its readers share.
inline constexpr unsigned kTextCenter = 0x1, kTextRight = 0x2, kTextVCenter = 0x4, kTextBottom = 0x8;
inline constexpr unsigned kTextSingleLine = 0x20;
inline constexpr unsigned kTextCalcRect = 0x400;
inline constexpr unsigned kTextPanel = kTextSingleLine | kTextVCenter;             // 0x24
inline constexpr unsigned kTextGrip = kTextSingleLine | kTextRight | kTextBottom;  // 0x2A

// The grip is two glyphs of a symbol font laid on each other: highlight strokes, then shadow strokes.
// A target may draw the strokes itself when asked for these glyphs in that font.
inline constexpr char kGripFontName[] = "Marlett";
inline constexpr char kGripHighlightGlyph[] = "o";
inline constexpr char kGripShadowGlyph[] = "p";

// Panel styles beyond the default sunken frame.
inline constexpr qint32 kPanelNoBorders = 0x100, kPanelPopOut = 0x200;

class DrawingTarget {
public:
    virtual ~DrawingTarget() = default;

    // The size of the drawing surface; throws Failure if the object cannot be drawn on.
    virtual int scaleWidth() const = 0;
    virtual int scaleHeight() const = 0;

    virtual BarRect clientRect() const = 0;
    // Fills with a colour in the settings' form (0x00BBGGRR or a system colour).
    virtual void fillRect(const BarRect& rect, qint32 color) = 0;
    // The extent of the text in the current font, with line breaks but no wrapping, from (0, 0).
    virtual BarRect measureText(const QString& text) = 0;
    // Text in the fore colour, no background, cut at the rectangle.
    virtual void drawText(const QString& text, const BarRect& rect, unsigned flags) = 0;
    // A panel frame with its text inside, in the system's look; `style` 0 is the sunken panel.
    virtual void drawPanel(const BarRect& rect, const QString& text, qint32 style) = 0;
    virtual void drawIcon(int x, int y, IconHandle icon, int width, int height) = 0;

    virtual BarFont font() const = 0;
    virtual void setFont(const BarFont& font) = 0;
    virtual qint32 foreColor() const = 0;
    virtual void setForeColor(qint32 color) = 0;
};
