#pragma once
// The one kind of failure that logic and platform code throw, and the two ways a handler meets it.

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

// The number the file and colour dialogs raise on Cancel.
inline constexpr long kCancelError = 32755;
// "File not found", as the launch of a program reports it.
inline constexpr long kFileNotFound = 53;

// A failure from an errno value, with the OS text; path, when given, stands in front of it.
Failure osFailure(int err, const QString& path = {});

// Skip mode: a failing step is passed over and the next one runs.
template <class Step>
void skipOnFailure(Step&& step) {
    try {
        step();
    } catch (const Failure&) {
    }
}

// "Error( 5): text": the number with a blank in front when positive, its minus sign otherwise.
QString errorBoxText(const Failure& f);
