#pragma once
// Per-class colours and font styles of a view: one table for the screen, one for print.

#include <QString>
#include <QtGlobal>
#include <array>
#include <functional>

// Font style bits of a token class.
namespace FontStyle {
inline constexpr int Bold = 1, Italic = 2, Underline = 4;
}

class TokenInfo {
public:
    static constexpr int kClasses = 16;
    void SetForegroundColor(int cls, qint32 color, bool set);
    void GetForegroundColor(int cls, qint32& color, bool& set) const;
    void SetBackgroundColor(int cls, qint32 color, bool set);
    // The colour may come as decimal text; text that isn't a number throws Failure.
    void SetBackgroundColor(int cls, const QString& color, bool set);
    void SetFontStyle(int cls, int style, bool set);

    qint32 foreground(int cls) const;
    bool hasForeground(int cls) const;
    qint32 background(int cls) const;
    bool hasBackground(int cls) const;
    int fontStyle(int cls) const;

    // Called after every change, so the view can restyle.
    std::function<void()> changed;

private:
    struct Entry {
        qint32 fore = 0;
        bool foreSet = false;
        qint32 back = 0;
        bool backSet = false;
        int style = 0;
    };
    std::array<Entry, kClasses> entries_{};
};
