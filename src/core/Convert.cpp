#include "core/Convert.h"

#include "platform/Failure.h"

#include <cmath>
#include <limits>

double numberOf(const QString& text) {
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v))
        throw typeMismatch();
    return v;
}

template <class T>
static T wholeOf(const QString& text) {
    const double r = std::nearbyint(numberOf(text));
    if (r < double(std::numeric_limits<T>::min()) || r > double(std::numeric_limits<T>::max()))
        throw overflow();
    return T(r);
}

qint16 int16Of(const QString& text) { return wholeOf<qint16>(text); }
qint32 int32Of(const QString& text) { return wholeOf<qint32>(text); }

float singleOf(const QString& text) {
    const double v = numberOf(text);
    if (std::fabs(v) > double(std::numeric_limits<float>::max()))
        throw overflow();
    return float(v);
}

