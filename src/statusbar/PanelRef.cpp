#include "statusbar/PanelRef.h"

#include <cmath>
#include <limits>

std::optional<qint64> PanelRef::position() const {
    if (const auto* n = std::get_if<qint64>(&value_))
        return *n;
    bool ok = false;
    const double d = std::get<QString>(value_).trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(d))
        return std::nullopt;
    // A huge number is still a number: it stays a position, just never a valid one.
    if (std::fabs(d) >= double(std::numeric_limits<qint32>::max()))
        return d < 0 ? std::numeric_limits<qint32>::min() : std::numeric_limits<qint32>::max();
    // Halves go to the even neighbour, as whole-number conversion of a text does.
    return qint64(std::nearbyint(d));
}

QString PanelRef::text() const {
    if (const auto* n = std::get_if<qint64>(&value_))
        return QString::number(*n);
    return std::get<QString>(value_);
}
