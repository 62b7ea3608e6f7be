#pragma once
// How a source file's bytes hold its text: the character set and the line ending. Plain logic.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <array>
#include <optional>
#include <vector>

// A file that is not UTF-8 is in a code page: the one ICU's detector is sure of, else the user's
// (LegacyEncoding), else Windows-1252.
enum class TextEncoding { Utf8, Utf8Bom, CodePage };
enum class LineEnding { CrLf, Lf, Cr };

inline constexpr char kWindows1252[] = "windows-1252";

struct TextFormat {
    TextEncoding encoding = TextEncoding::Utf8;
    // The code page's name as Qt knows it; only read when encoding is CodePage.
    QByteArray codePage = kWindows1252;
    LineEnding lineEnding = LineEnding::Lf;
};

// A code page through Qt's converters. In a single-byte page every byte has a character: a byte the page
// leaves undefined stands for a character of its own (the C1 control of the same number, else one of the
// private use area) that encodes back to it, so any file decodes and encodes back to the same bytes.
class CodePage {
public:
    // Asks the converter about each byte (some microseconds: once per load or save, not per character).
    // A name Qt has no converter for gives Windows-1252.
    static CodePage named(QByteArrayView name);

    const QByteArray& name() const { return name_; }
    bool singleByte() const { return !toByte_.empty(); }
    // Whether decode gives text that encodes back to exactly these bytes: always, for a single-byte page.
    bool keeps(QByteArrayView bytes) const;
    QString decode(QByteArrayView bytes) const;
    // nullopt when some character has no bytes in the code page.
    std::optional<QByteArray> encode(QStringView text) const;
    // Where the first character without bytes in the code page starts; -1 when there is none.
    qsizetype firstMissing(QStringView text) const;

private:
    explicit CodePage(QByteArray name);
    QByteArray name_;
    std::array<char16_t, 256> toChar_{};
    // Byte of each UTF-16 unit, -1 for none; empty for a multi-byte page, which goes through the converter.
    std::vector<qint16> toByte_;
};

// Strict UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(QByteArrayView bytes);
// The first line ending in the bytes; `none` when there is no line break at all.
LineEnding detectLineEnding(QByteArrayView bytes, LineEnding none = LineEnding::Lf);
// UTF-8 (with its byte order mark noted) when the bytes are valid UTF-8, else the code page the charset
// detector is sure of, else the given one, or Windows-1252 when that code page can't keep these bytes as
// they are.
TextFormat detectFormat(QByteArrayView bytes, QByteArrayView codePage = kWindows1252);

// The name a user picks to read a file as UTF-8; any other name is a code page.
inline constexpr char kUtf8Name[] = "UTF-8";
// The bytes read in the encoding the user picked; nullopt when that encoding can't keep them as they are
// (bytes that aren't UTF-8, or aren't text of a multi-byte page), since a save would then change them.
std::optional<TextFormat> formatIn(QByteArrayView bytes, QByteArrayView encoding);
// The encoding's name as a user picks it: kUtf8Name, or the code page's.
QByteArray encodingName(const TextFormat& format);

struct EncodingChoice {
    QByteArray name;  // kUtf8Name or a code page the converters know
    QString label;    // as a list shows it
};
// What a file can be read again in: UTF-8 and the Windows code pages.
const std::vector<EncodingChoice>& encodingChoices();

// Every byte has a character: the five bytes the code page leaves undefined stand for the C1 control
// characters of the same number, so any file decodes and encodes back to the same bytes.
QString decodeWindows1252(QByteArrayView bytes);
// nullopt when some character has no byte in the code page.
std::optional<QByteArray> encodeWindows1252(QStringView text);

// The file's text as UTF-8, without a byte order mark; and back. The code page counts for CodePage only.
QByteArray toUtf8Text(QByteArrayView fileBytes, TextEncoding encoding, QByteArrayView codePage = kWindows1252);
// nullopt when the text can't be written in that encoding.
std::optional<QByteArray> fromUtf8Text(QByteArrayView utf8, TextEncoding encoding,
                                       QByteArrayView codePage = kWindows1252);
