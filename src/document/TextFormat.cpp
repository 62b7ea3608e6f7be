#include "document/TextFormat.h"

#include "document/CodePageGuess.h"

#include <QStringDecoder>
#include <QStringEncoder>
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

TextFormat detectFormat(QByteArrayView bytes, QByteArrayView codePage) {
    TextFormat f;
    f.lineEnding = detectLineEnding(bytes);
    if (hasBom(bytes) && isValidUtf8(bytes.sliced(3))) {
        f.encoding = TextEncoding::Utf8Bom;
    } else if (isValidUtf8(bytes)) {
        f.encoding = TextEncoding::Utf8;
    } else {
        // Windows-1252 keeps any bytes; a multi-byte page only those that are text of its own.
        const std::optional<QByteArray> guessed = guessCodePage(bytes);
        const CodePage& page = CodePage::named(guessed ? QByteArrayView(*guessed) : codePage);
        f.encoding = TextEncoding::CodePage;
        f.codePage = page.keeps(bytes) ? page.name() : QByteArray(kWindows1252);
    }
    return f;
}

std::optional<TextFormat> formatIn(QByteArrayView bytes, QByteArrayView encoding) {
    TextFormat f;
    f.lineEnding = detectLineEnding(bytes);
    if (encoding.compare(QByteArrayView(kUtf8Name), Qt::CaseInsensitive) == 0) {
        f.encoding = hasBom(bytes) ? TextEncoding::Utf8Bom : TextEncoding::Utf8;
        const bool valid = isValidUtf8(f.encoding == TextEncoding::Utf8Bom ? bytes.sliced(3) : bytes);
        return valid ? std::optional(f) : std::nullopt;
    }
    const CodePage& page = CodePage::named(encoding);
    if (!page.keeps(bytes))
        return std::nullopt;
    f.encoding = TextEncoding::CodePage;
    f.codePage = page.name();
    return f;
}

QByteArray encodingName(const TextFormat& format) {
    return format.encoding == TextEncoding::CodePage ? format.codePage : QByteArray(kUtf8Name);
}

const std::vector<EncodingChoice>& encodingChoices() {
    static const std::vector<EncodingChoice> choices = {
        {kUtf8Name, QStringLiteral("Unicode (UTF-8)")},
        {"windows-1250", QStringLiteral("Central European (Windows-1250)")},
        {"windows-1251", QStringLiteral("Cyrillic (Windows-1251)")},
        {"windows-1252", QStringLiteral("Western (Windows-1252)")},
        {"windows-1253", QStringLiteral("Greek (Windows-1253)")},
        {"windows-1254", QStringLiteral("Turkish (Windows-1254)")},
        {"windows-1255", QStringLiteral("Hebrew (Windows-1255)")},
        {"windows-1256", QStringLiteral("Arabic (Windows-1256)")},
        {"windows-1257", QStringLiteral("Baltic (Windows-1257)")},
        {"windows-1258", QStringLiteral("Vietnamese (Windows-1258)")},
    };
    return choices;
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

QByteArray toUtf8Text(QByteArrayView fileBytes, TextEncoding encoding, QByteArrayView codePage) {
    switch (encoding) {
    case TextEncoding::Utf8: return fileBytes.toByteArray();
    case TextEncoding::Utf8Bom: return fileBytes.sliced(3).toByteArray();
    case TextEncoding::CodePage: return CodePage::named(codePage).decode(fileBytes).toUtf8();
    }
    return {};
}

std::optional<QByteArray> fromUtf8Text(QByteArrayView utf8, TextEncoding encoding, QByteArrayView codePage) {
    switch (encoding) {
    case TextEncoding::Utf8: return utf8.toByteArray();
    case TextEncoding::Utf8Bom: return QByteArray(kBom, 3) + utf8.toByteArray();
    case TextEncoding::CodePage: return CodePage::named(codePage).encode(QString::fromUtf8(utf8));
    }
    return std::nullopt;
}

namespace {

bool isWindows1252(QByteArrayView name) { return name.toByteArray().toLower() == kWindows1252; }

// A converter Qt has, and not one of the Unicode forms: those are no code page of 8-bit text.
bool usableCodePage(const QByteArray& name) {
    if (name.isEmpty() || !QStringDecoder(name.constData()).isValid() || !QStringEncoder(name.constData()).isValid())
        return false;
    const auto e = QStringConverter::encodingForName(name.constData());
    return !e || *e == QStringConverter::Latin1 || *e == QStringConverter::System;
}

// Text of a multi-byte page, in pieces the converter is given one at a time.
constexpr qsizetype kPiece = 4096;

}  // namespace

CodePage CodePage::named(QByteArrayView name) {
    const QByteArray key = name.toByteArray().trimmed();
    return CodePage(isWindows1252(key) || !usableCodePage(key) ? QByteArray(kWindows1252) : key);
}

CodePage::CodePage(QByteArray name) : name_(std::move(name)) {
    std::array<bool, 256> defined{};
    QByteArray all(256, Qt::Uninitialized);
    for (int b = 0; b < 256; ++b)
        all[b] = char(b);
    if (isWindows1252(name_)) {
        // Our own table, so that this page needs no converter, and its five undefined bytes stay C1.
        const QString text = decodeWindows1252(all);
        for (int b = 0; b < 256; ++b)
            toChar_[b] = text[b].unicode(), defined[b] = true;
    } else {
        // The converter says byte by byte what each stands for: a byte it gives no single character for,
        // or an error, is undefined. A lead byte gives nothing alone: that page is a multi-byte one.
        QString singles;
        for (int b = 0; b < 256; ++b) {
            QStringDecoder one(name_.constData(), QStringConverter::Flag::Stateless);
            const QString c = one(QByteArrayView(all).sliced(b, 1));
            if (c.size() != 1)
                return;
            singles += c;
            toChar_[b] = c[0].unicode();
            defined[b] = !one.hasError() && !c[0].isSurrogate() && c[0] != QChar::ReplacementCharacter;
        }
        // A page with shift states reads a byte differently after others.
        QStringDecoder run(name_.constData(), QStringConverter::Flag::Stateless);
        if (QString(run(all)) != singles)
            return;
    }
    toByte_.assign(0x10000, -1);
    for (int b = 0; b < 256; ++b) {
        if (!defined[b])
            continue;
        if (toByte_[toChar_[b]] < 0)
            toByte_[toChar_[b]] = qint16(b);
        else
            defined[b] = false;  // a second byte for the same character could never be written back
    }
    // An undefined byte stands for the C1 control of its number where the page leaves that free, else
    // for a free character of the private use area.
    char16_t spare = 0xF700;
    for (int b = 0; b < 256; ++b) {
        if (defined[b])
            continue;
        char16_t c = b >= 0x80 && b <= 0x9F && toByte_[b] < 0 ? char16_t(b) : 0;
        if (c == 0) {
            while (toByte_[spare] >= 0)
                ++spare;
            c = spare;
        }
        toChar_[b] = c;
        toByte_[c] = qint16(b);
    }
}

bool CodePage::keeps(QByteArrayView bytes) const {
    if (singleByte())
        return true;
    QStringDecoder decoder(name_.constData(), QStringConverter::Flag::Stateless);
    const QString text = decoder(bytes);
    if (decoder.hasError())
        return false;
    const std::optional<QByteArray> back = encode(text);
    return back && *back == bytes;
}

QString CodePage::decode(QByteArrayView bytes) const {
    if (!singleByte())
        return QStringDecoder(name_.constData(), QStringConverter::Flag::Stateless)(bytes);
    QString out(bytes.size(), Qt::Uninitialized);
    QChar* o = out.data();
    for (qsizetype i = 0; i < bytes.size(); ++i)
        o[i] = QChar(toChar_[static_cast<unsigned char>(bytes[i])]);
    return out;
}

std::optional<QByteArray> CodePage::encode(QStringView text) const {
    if (!singleByte()) {
        // The converter may put a near character for one it lacks without calling it an error.
        QStringEncoder encoder(name_.constData(), QStringConverter::Flag::Stateless);
        QByteArray out = encoder(text);
        QStringDecoder decoder(name_.constData(), QStringConverter::Flag::Stateless);
        if (encoder.hasError() || QString(decoder(out)) != text)
            return std::nullopt;
        return out;
    }
    QByteArray out(text.size(), Qt::Uninitialized);
    char* o = out.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const qint16 b = toByte_[text[i].unicode()];
        if (b < 0)
            return std::nullopt;
        o[i] = char(b);
    }
    return out;
}

qsizetype CodePage::firstMissing(QStringView text) const {
    if (singleByte()) {
        for (qsizetype i = 0; i < text.size(); ++i)
            if (toByte_[text[i].unicode()] < 0)
                return i;
        return -1;
    }
    // Piece by piece, then character by character in the piece that fails; never between the two halves
    // of a surrogate pair.
    auto pairAt = [&](qsizetype i) { return i + 1 < text.size() && text[i].isHighSurrogate(); };
    for (qsizetype at = 0; at < text.size();) {
        qsizetype n = std::min(kPiece, text.size() - at);
        if (pairAt(at + n - 1))
            ++n;
        if (!encode(text.sliced(at, n))) {
            for (qsizetype i = at; i < at + n; i += pairAt(i) ? 2 : 1)
                if (!encode(text.sliced(i, pairAt(i) ? 2 : 1)))
                    return i;
            return at;  // only the piece as a whole fails: a page with shift states
        }
        at += n;
    }
    return -1;
}
