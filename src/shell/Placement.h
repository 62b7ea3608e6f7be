#pragma once
// Where the frame comes up, from the five stored placement values (twips), and what it stores at close.

#include <QString>
#include <QtGlobal>
#include <optional>

struct Placement {
    // Values the frame applies, in twips; a value that isn't a number stays unset and isn't applied.
    std::optional<float> height, left, top, width;
    // 0 normal, 1 minimised, 2 maximised; unset when the stored placement is ignored.
    std::optional<qint16> windowState;
};

// A frame closed minimised (Top below 0) comes back at the default size and place; a maximised one that
// sits a few twips above the screen keeps its values.
Placement placementFrom(const QString& height, const QString& left, const QString& top, const QString& width,
                        const QString& windowState);

// The defaults: 9000 by 6000 twips at the top left corner, state untouched.
Placement defaultPlacement();

// A single-precision value as the store keeps it: "9000", "13.5".
QString singleText(float v);

// Windows reports a minimised frame far above the screen; storing that keeps the next start from
// coming up minimised at a stale place.
inline constexpr float kMinimisedTopTwips = -32000.0f * 15.0f;
