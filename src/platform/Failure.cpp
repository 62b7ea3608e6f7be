#include "platform/Failure.h"

#include <cstring>

const char* Failure::what() const noexcept {
    what_ = QStringLiteral("%1 (%2)").arg(description).arg(number).toStdString();
    return what_.c_str();
}

Q_LOGGING_CATEGORY(lcSkipped, "tarnlet.skipped", QtInfoMsg)

void traceSkipped(const Failure& f) {
    qCDebug(lcSkipped).noquote() << QStringLiteral("skipped failure %1: %2%3")
                                        .arg(f.number)
                                        .arg(f.description,
                                             f.source.isEmpty() ? QString() : QStringLiteral(" (source: %1)").arg(f.source));
}

namespace {
Failure withText(long number, const char* text, const QString& detail) {
    return Failure(number, detail.isEmpty() ? QString::fromLatin1(text) : detail);
}
}  // namespace

Failure invalidProcedureCall(const QString& detail) {
    return withText(kInvalidProcedureCall, "Invalid procedure call or argument", detail);
}
Failure overflow() { return Failure(kOverflow, QStringLiteral("Overflow")); }
Failure subscriptOutOfRange(const QString& detail) {
    return withText(kSubscriptOutOfRange, "Subscript out of range", detail);
}
Failure typeMismatch(const QString& detail) { return withText(kTypeMismatch, "Type mismatch", detail); }
Failure fileNotFound(const QString& detail) { return withText(kFileNotFound, "File not found", detail); }
Failure pathFileAccessError(const QString& detail) {
    return Failure(kPathFileAccessError, QStringLiteral("Path/File access error: ") + detail);
}
Failure objectNotSet() {
    return Failure(kObjectNotSet, QStringLiteral("Object variable or With block variable not set"));
}
Failure invalidPropertyValue() { return Failure(kInvalidPropertyValue, QStringLiteral("Invalid property value")); }
Failure notSupportedByObject() {
    return Failure(kNotSupportedByObject, QStringLiteral("Object doesn't support this property or method"));
}
Failure printerError(const QString& detail) { return Failure(kPrinterError, detail); }
Failure fileAccessFailure(const QString& osText) { return Failure(kPathFileAccessError, osText); }
Failure cancelError() { return Failure(kCancelError, QStringLiteral("Cancel was selected.")); }

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
