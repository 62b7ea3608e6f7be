#include "platform/SerialPort.h"

QString serialPortPath(const QString& typed) {
    const QString t = typed.trimmed();
    if (t.isEmpty() || t.contains(QLatin1Char('/')))
        return t;
    return QStringLiteral("/dev/") + t;
}
