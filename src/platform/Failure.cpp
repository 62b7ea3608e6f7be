#include "platform/Failure.h"

#include <cstring>

const char* Failure::what() const noexcept {
    what_ = QStringLiteral("%1 (%2)").arg(description).arg(number).toStdString();
    return what_.c_str();
}

Failure osFailure(int err, const QString& path) {
    QString text = QString::fromLocal8Bit(std::strerror(err));
    if (!path.isEmpty())
        text = path + QStringLiteral(": ") + text;
    return Failure(err, text);
}

QString errorBoxText(const Failure& f) {
    const QString num = f.number >= 0 ? QStringLiteral(" %1").arg(f.number) : QString::number(f.number);
    return QStringLiteral("Error(") + num + QStringLiteral("): ") + f.description;
}
