#pragma once
// How a source file's bytes hold its text: the character set and the line ending. Plain logic.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <optional>

enum class TextEncoding { Utf8, Utf8Bom, Windows1252 };
enum class LineEnding { CrLf, Lf, Cr };

struct TextFormat {
    TextEncoding encoding = TextEncoding::Utf8;
    LineEnding lineEnding = LineEnding::Lf;
};

// Strict UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(QByteArrayView bytes);
// The first line ending in the bytes; `none` when there is no line break at all.
LineEnding detectLineEnding(QByteArrayView bytes, LineEnding none = LineEnding::Lf);
// UTF-8 (with its byte order mark noted) when the bytes are valid UTF-8, else Windows-1252.
TextFormat detectFormat(QByteArrayView bytes);

// Every byte has a character: the five bytes the code page leaves undefined stand for the C1 control
// characters of the same number, so any file decodes and encodes back to the same bytes.
QString decodeWindows1252(QByteArrayView bytes);
// nullopt when some character has no byte in the code page.
std::optional<QByteArray> encodeWindows1252(QStringView text);

// The file's text as UTF-8, without a byte order mark; and back.
QByteArray toUtf8Text(QByteArrayView fileBytes, TextEncoding encoding);
// nullopt when the text can't be written in that encoding.
std::optional<QByteArray> fromUtf8Text(QByteArrayView utf8, TextEncoding encoding);
