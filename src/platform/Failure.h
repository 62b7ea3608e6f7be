#pragma once
// The one kind of failure that logic and platform code throw, and the two ways a handler meets it.

#include <QLoggingCategory>
#include <QString>
#include <exception>
#include <string>

struct Failure : std::exception {
    long number = 0;
    QString description;
    QString source;

    Failure() = default;
    Failure(long n, QString d, QString s = {}) : number(n), description(std::move(d)), source(std::move(s)) {}
    const char* what() const noexcept override;

private:
    mutable std::string what_;
};

// The numbers that callers test for.
inline constexpr long kInvalidProcedureCall = 5;
inline constexpr long kOverflow = 6;
inline constexpr long kSubscriptOutOfRange = 9;
inline constexpr long kTypeMismatch = 13;
inline constexpr long kFileNotFound = 53;
inline constexpr long kPathFileAccessError = 75;
inline constexpr long kObjectNotSet = 91;
inline constexpr long kInvalidPropertyValue = 380;
inline constexpr long kNotSupportedByObject = 438;
inline constexpr long kPrinterError = 482;
// The number the file and colour dialogs raise on Cancel.
inline constexpr long kCancelError = 32755;

// The failures of the system, each with the platform's text for it; detail, when given, replaces that text.
Failure invalidProcedureCall(const QString& detail = {});
Failure overflow();
Failure subscriptOutOfRange(const QString& detail = {});
Failure typeMismatch(const QString& detail = {});
Failure fileNotFound(const QString& detail = {});
// "Path/File access error", and what the file system said.
Failure pathFileAccessError(const QString& detail);
Failure objectNotSet();
Failure invalidPropertyValue();
Failure notSupportedByObject();
Failure printerError(const QString& detail);
Failure cancelError();

// A file that could not be opened or read, with what the file system said.
Failure fileAccessFailure(const QString& osText);

// A failure from an errno value, with the OS text; path, when given, stands in front of it.
Failure osFailure(int err, const QString& path = {});

// Where skip mode leaves a trace of each failure it passes over; off unless switched on, e.g. by
// QT_LOGGING_RULES="tarnlet.skipped.debug=true".
Q_DECLARE_LOGGING_CATEGORY(lcSkipped)
void traceSkipped(const Failure& f);

// Skip mode: a failing step is passed over and the next one runs. It runs on every keystroke's path, so
// the trace costs one flag test while its category is off.
template <class Step>
void skipOnFailure(Step&& step) {
    try {
        step();
    } catch (const Failure& f) {
        if (lcSkipped().isDebugEnabled())
            traceSkipped(f);
    }
}

// "Error( 5): text": the number with a blank in front when positive, its minus sign otherwise.
QString errorBoxText(const Failure& f);
