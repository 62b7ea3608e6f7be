#include "document/TextFormat.h"

#include <algorithm>
#include <cstring>

namespace {

// Bytes 0x80 to 0x9F; the rest of Windows-1252 is Latin-1.
constexpr char16_t kHigh1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80-87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88-8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90-97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98-9F
};

const char kBom[] = "\xEF\xBB\xBF";

bool hasBom(QByteArrayView b) { return b.size() >= 3 && std::memcmp(b.data(), kBom, 3) == 0; }

}  // namespace

bool isValidUtf8(QByteArrayView bytes) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* end = p + bytes.size();
    while (p < end) {
        // Plain ASCII eight bytes at a time: most source text is.
        if (end - p >= 8) {
            quint64 word;
            std::memcpy(&word, p, 8);
            if ((word & 0x8080808080808080ull) == 0) {
                p += 8;
                continue;
            }
        }
        const unsigned c = *p;
        if (c < 0x80) {
            ++p;
            continue;
        }
        int extra;
        unsigned min;
        unsigned cp;
        if (c >= 0xC2 && c <= 0xDF) {
            extra = 1, min = 0x80, cp = c & 0x1F;
        } else if (c >= 0xE0 && c <= 0xEF) {
            extra = 2, min = 0x800, cp = c & 0x0F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            extra = 3, min = 0x10000, cp = c & 0x07;
        } else {
            return false;
        }
        if (end - p <= extra)
            return false;
        for (int k = 1; k <= extra; ++k) {
            if ((p[k] & 0xC0) != 0x80)
                return false;
            cp = (cp << 6) | (p[k] & 0x3F);
        }
        if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        p += extra + 1;
    }
    return true;
}

LineEnding detectLineEnding(QByteArrayView bytes, LineEnding none) {
    const qsizetype cr = bytes.indexOf('\r'), lf = bytes.indexOf('\n');
    if (cr < 0 && lf < 0)
        return none;
    if (cr < 0 || (lf >= 0 && lf < cr))
        return LineEnding::Lf;
    return (cr + 1 < bytes.size() && bytes[cr + 1] == '\n') ? LineEnding::CrLf : LineEnding::Cr;
}

TextFormat detectFormat(QByteArrayView bytes) {
    TextFormat f;
    f.lineEnding = detectLineEnding(bytes);
    if (hasBom(bytes))
        f.encoding = isValidUtf8(bytes.sliced(3)) ? TextEncoding::Utf8Bom : TextEncoding::Windows1252;
    else
        f.encoding = isValidUtf8(bytes) ? TextEncoding::Utf8 : TextEncoding::Windows1252;
    return f;
}

QString decodeWindows1252(QByteArrayView bytes) {
    QString out(bytes.size(), Qt::Uninitialized);
    QChar* o = out.data();
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const unsigned char b = static_cast<unsigned char>(bytes[i]);
        o[i] = (b >= 0x80 && b <= 0x9F) ? QChar(kHigh1252[b - 0x80]) : QChar(char16_t(b));
    }
    return out;
}

std::optional<QByteArray> encodeWindows1252(QStringView text) {
    QByteArray out(text.size(), Qt::Uninitialized);
    char* o = out.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            o[i] = char(c);
            continue;
        }
        const char16_t* hit = std::find(std::begin(kHigh1252), std::end(kHigh1252), c);
        if (hit == std::end(kHigh1252))
            return std::nullopt;
        o[i] = char(0x80 + (hit - std::begin(kHigh1252)));
    }
    return out;
}

QByteArray toUtf8Text(QByteArrayView fileBytes, TextEncoding encoding) {
    switch (encoding) {
    case TextEncoding::Utf8: return fileBytes.toByteArray();
    case TextEncoding::Utf8Bom: return fileBytes.sliced(3).toByteArray();
    case TextEncoding::Windows1252: return decodeWindows1252(fileBytes).toUtf8();
    }
    return {};
}

std::optional<QByteArray> fromUtf8Text(QByteArrayView utf8, TextEncoding encoding) {
    switch (encoding) {
    case TextEncoding::Utf8: return utf8.toByteArray();
    case TextEncoding::Utf8Bom: return QByteArray(kBom, 3) + utf8.toByteArray();
    case TextEncoding::Windows1252: return encodeWindows1252(QString::fromUtf8(utf8));
    }
    return std::nullopt;
}
