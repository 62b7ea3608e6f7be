#pragma once
// Colours as the settings hold them: 0x00BBGGRR, or 0x80000000 plus a system colour index.

#include <QColor>
#include <QtGlobal>

inline constexpr qint32 kSystemColorFlag = qint32(0x80000000u);
inline constexpr int kColorWindow = 5, kColorWindowText = 8, kColorHighlight = 13, kColorHighlightText = 14,
                     kColorButtonFace = 15, kColorShadow = 16, kColor3DHighlight = 20;

inline constexpr qint32 systemColor(int index) { return qint32(0x80000000u | unsigned(index)); }
inline constexpr bool isSystemColor(qint32 c) { return (quint32(c) & 0x80000000u) != 0; }

// The system colours resolve against the application palette, so they follow the desktop scheme.
QColor toQColor(qint32 c);
qint32 fromQColor(const QColor& c);
