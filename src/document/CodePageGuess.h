#pragma once
// Which code page the bytes of a file that isn't UTF-8 are in, as ICU's charset detector sees them. Plain logic.

#include <QByteArray>
#include <QByteArrayView>
#include <optional>

// A single-byte Windows or ISO code page, by a name the converters know, when the detector names one with
// good confidence: enough 8-bit text to judge (a tiny file gives no guess), a confidence of its own, and a
// clear lead over the next page it names. nullopt otherwise: the caller falls back on the user's page.
std::optional<QByteArray> guessCodePage(QByteArrayView bytes);
