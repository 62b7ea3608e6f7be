// Stored texts as any bytes: the number readers give a number of their type or Failure 13 / 6 and agree
// with each other; the settings file parser takes anything, and what it writes reads back the same.
#include "FuzzWorld.h"
#include "core/Convert.h"
#include "core/IniText.h"
#include "platform/Failure.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// A decimal number as the readers take it, blanks around it allowed.
bool looksDecimal(const QString& text) {
    static const QRegularExpression number(QStringLiteral(R"(^[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?$)"));
    return number.match(text.trimmed()).hasMatch();
}

template <class Read>
std::optional<double> attempt(Read read, long& number) {
    try {
        return double(read());
    } catch (const Failure& f) {
        number = f.number;
        return std::nullopt;
    }
}

void checkNumbers(const QString& text) {
    long failure = 0;
    const std::optional<double> d = attempt([&] { return numberOf(text); }, failure);
    if (!d) {
        FUZZ_CHECK(failure == kTypeMismatch, "numberOf failed with %ld", failure);
    } else {
        FUZZ_CHECK(std::isfinite(*d));
        FUZZ_CHECK(looksDecimal(text), "took a text that is no decimal number");
    }

    const auto checkWhole = [&](auto read, double lo, double hi) {
        long n = 0;
        const std::optional<double> w = attempt(read, n);
        if (!d) {
            FUZZ_CHECK(!w && n == kTypeMismatch, "whole reader of a non-number: %ld", n);
            return;
        }
        const double r = std::nearbyint(*d);
        if (r < lo || r > hi) {
            FUZZ_CHECK(!w && n == kOverflow, "out of range but %ld", n);
        } else {
            FUZZ_CHECK(w && *w == r, "%g read as %g", r, w ? *w : 0.0);
        }
    };
    checkWhole([&] { return int16Of(text); }, -32768.0, 32767.0);
    checkWhole([&] { return int32Of(text); }, -2147483648.0, 2147483647.0);

    long n = 0;
    const std::optional<double> s = attempt([&] { return singleOf(text); }, n);
    if (!d) {
        FUZZ_CHECK(!s && n == kTypeMismatch);
    } else if (std::fabs(*d) > double(std::numeric_limits<float>::max())) {
        FUZZ_CHECK(!s && n == kOverflow);
    } else {
        FUZZ_CHECK(s && std::isfinite(*s));
    }
}

// Entries the program can store: its three sections, keys as it names them (no "=", no line break, no
// blank at either end, not taken for a comment or a header), values anything.
IniEntries entriesFrom(const QList<QByteArray>& fields) {
    static const QString sections[] = {QStringLiteral("Startup"), QStringLiteral("ViewFont"),
                                       QStringLiteral("ViewColors")};
    IniEntries entries;
    for (qsizetype i = 0; i + 1 < fields.size(); i += 2) {
        QString key = QString::fromUtf8(fields[i]);
        key.remove(QLatin1Char('=')).remove(QLatin1Char('\n')).remove(QLatin1Char('\r'));
        key = key.trimmed();
        if (key.isEmpty() || key.startsWith(QLatin1Char(';')) || key.startsWith(QLatin1Char('#')) ||
            key.startsWith(QLatin1Char('[')))
            continue;
        entries.insert(sections[(i / 2) % 3] + QLatin1Char('/') + key, QString::fromUtf8(fields[i + 1]));
    }
    return entries;
}

QByteArray shown(const QString& s) { return s.toUtf8().toPercentEncoding(" /=[]@()\\:;.,-_"); }

void checkReadsBack(const IniEntries& entries, const char* what) {
    const IniEntries back = parseIniText(iniText(entries));
    if (back == entries)
        return;
    for (auto it = entries.cbegin(); it != entries.cend(); ++it) {
        if (!back.contains(it.key()) || back.value(it.key()) != it.value())
            std::fprintf(stderr, "[%s]: wrote [%s], read [%s]\n", shown(it.key()).constData(), shown(it.value()).constData(),
                         shown(back.value(it.key(), QStringLiteral("<none>"))).constData());
    }
    for (auto it = back.cbegin(); it != back.cend(); ++it) {
        if (!entries.contains(it.key()))
            std::fprintf(stderr, "[%s]: read but not written\n", shown(it.key()).constData());
    }
    FUZZ_CHECK(false, "%s does not read back", what);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes = fuzzBytes(data, size);
    const QString text = QString::fromUtf8(bytes);
    checkNumbers(text);
    for (const QString& line : text.split(QLatin1Char('\n')))
        checkNumbers(line);

    // Any file parses, and writing what was parsed gives a file that parses the same.
    checkReadsBack(parseIniText(bytes), "a parsed file");
    checkReadsBack(entriesFrom(bytes.split('\0')), "entries");
    return 0;
}
