#include "document/CodePageGuess.h"

#include <unicode/ucsdet.h>

#include <cstring>
#include <memory>

namespace {

// Some thirty lines of the writer's language are plenty for the detector's statistics, and its time grows
// with what it is given: a large file costs no more to judge than a small one.
constexpr qsizetype kSampleBytes = 2048;
// Fewer 8-bit bytes than this are a word or two: any page's guess is as good as another's.
constexpr int kMinHighBytes = 8;
// The detector's confidence runs from 0 to 100; short texts in a single-byte page score from about 15 up,
// and a close second means it could as well be that page.
constexpr int kMinConfidence = 15;
constexpr int kMinLead = 5;

// The page read for each name the detector gives a single-byte Windows or ISO page. A file written on
// Windows is in the Windows page of its script; the detector names it only when the file holds one of the
// bytes 0x80 to 0x9F that the ISO page leaves to control codes, and its letters stand where the ISO
// page's do, but for a few of Central European and Greek that the ISO page has elsewhere.
struct PageName {
    const char* detected;
    const char* page;
};
constexpr PageName kPages[] = {
    {"windows-1250", "windows-1250"}, {"windows-1251", "windows-1251"}, {"windows-1252", "windows-1252"},
    {"windows-1253", "windows-1253"}, {"windows-1254", "windows-1254"}, {"windows-1255", "windows-1255"},
    {"windows-1256", "windows-1256"}, {"ISO-8859-1", "windows-1252"},   {"ISO-8859-2", "windows-1250"},
    {"ISO-8859-5", "ISO-8859-5"},     {"ISO-8859-6", "ISO-8859-6"},     {"ISO-8859-7", "windows-1253"},
    {"ISO-8859-8", "windows-1255"},   {"ISO-8859-8-I", "windows-1255"}, {"ISO-8859-9", "windows-1254"},
};

const char* pageFor(const char* detected) {
    for (const PageName& p : kPages)
        if (std::strcmp(p.detected, detected) == 0)
            return p.page;
    return nullptr;
}

bool isHigh(char c) { return static_cast<unsigned char>(c) >= 0x80; }
bool isBreak(char c) { return c == '\n' || c == '\r'; }

// The lines that hold 8-bit bytes: the comments and strings in the writer's language. The program's
// English keywords around them would only blur the detector's picture of that language.
QByteArray sampleOf(QByteArrayView bytes, int& high) {
    QByteArray sample;
    high = 0;
    const char* const begin = bytes.data();
    const char* const end = begin + bytes.size();
    const char* p = begin;
    while (p < end && sample.size() < kSampleBytes) {
        while (p < end && !isHigh(*p))
            ++p;
        if (p == end)
            break;
        const char* start = p;
        while (start > begin && !isBreak(start[-1]))
            --start;
        const char* stop = p;
        while (stop < end && !isBreak(*stop))
            ++stop;
        for (const char* c = p; c < stop; ++c)
            high += isHigh(*c);
        sample.append(start, stop - start).append('\n');
        p = stop;
    }
    return sample;
}

}  // namespace

std::optional<QByteArray> guessCodePage(QByteArrayView bytes) {
    int high = 0;
    const QByteArray sample = sampleOf(bytes, high);
    if (high < kMinHighBytes)
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)> detector(ucsdet_open(&status), ucsdet_close);
    if (U_FAILURE(status))
        return std::nullopt;
    ucsdet_setText(detector.get(), sample.constData(), int32_t(sample.size()), &status);
    int32_t count = 0;
    const UCharsetMatch** matches = ucsdet_detectAll(detector.get(), &count, &status);
    if (U_FAILURE(status) || count == 0)
        return std::nullopt;
    const char* page = pageFor(ucsdet_getName(matches[0], &status));
    const int32_t confidence = ucsdet_getConfidence(matches[0], &status);
    if (U_FAILURE(status) || !page || confidence < kMinConfidence)
        return std::nullopt;
    // The next guess that reads the bytes otherwise must lag well behind.
    for (int32_t i = 1; i < count; ++i) {
        const char* name = ucsdet_getName(matches[i], &status);
        const char* other = pageFor(name);
        if (U_FAILURE(status))
            return std::nullopt;
        if (other && std::strcmp(other, page) == 0)
            continue;
        if (confidence - ucsdet_getConfidence(matches[i], &status) < kMinLead)
            return std::nullopt;
        break;
    }
    return QByteArray(page);
}
