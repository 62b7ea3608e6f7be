#pragma once
// Window lengths are kept in twips, 1440 to the logical inch of the screen.

#include <cmath>

inline constexpr double kTwipsPerInch = 1440.0;

inline int twipsToPixels(double twips, double dpi) { return int(std::lround(twips * dpi / kTwipsPerInch)); }
inline double pixelsToTwips(int pixels, double dpi) { return pixels * kTwipsPerInch / dpi; }

// The logical dots per inch of the primary screen (96 when there is none).
double screenDpiX();
double screenDpiY();
inline int twipsToPixelsX(double t) { return twipsToPixels(t, screenDpiX()); }
inline int twipsToPixelsY(double t) { return twipsToPixels(t, screenDpiY()); }
inline double pixelsToTwipsX(int p) { return pixelsToTwips(p, screenDpiX()); }
inline double pixelsToTwipsY(int p) { return pixelsToTwips(p, screenDpiY()); }
