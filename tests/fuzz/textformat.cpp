// A source file's bytes as any bytes: the detected format decodes them and encodes them back to the same
// bytes, whatever code page the detector names; an encoding a user picks does so too or is refused; and
// the UTF-8 test agrees with Qt's own decoder.
#include "FuzzWorld.h"
#include "document/CodePageGuess.h"
#include "document/TextFormat.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes = fuzzBytes(data, size);

    // Qt's decoder puts U+FFFD for what is not UTF-8, so only valid bytes come back unchanged; it drops a
    // byte order mark at the start.
    const bool valid = isValidUtf8(bytes);
    const QByteArray bom("\xEF\xBB\xBF");
    const QByteArray again8 = (bytes.startsWith(bom) ? bom : QByteArray()) + QString::fromUtf8(bytes).toUtf8();
    FUZZ_CHECK(valid == (again8 == bytes), "isValidUtf8 says %d", int(valid));

    const TextFormat format = detectFormat(bytes);
    const QByteArray utf8 = toUtf8Text(bytes, format.encoding);
    FUZZ_CHECK(isValidUtf8(utf8), "decoded text is not UTF-8");
    const std::optional<QByteArray> back = fromUtf8Text(utf8, format.encoding);
    FUZZ_CHECK(back && *back == bytes, "encoding %d does not give the bytes back", int(format.encoding));

    // A guess is a single-byte page, which keeps any bytes.
    if (const std::optional<QByteArray> page = guessCodePage(bytes)) {
        FUZZ_CHECK(CodePage::named(*page).name() == *page && CodePage::named(*page).singleByte(), "guessed %s",
                   page->constData());
    }
    for (const EncodingChoice& choice : {encodingChoices()[0], encodingChoices()[5]}) {
        if (const std::optional<TextFormat> picked = formatIn(bytes, choice.name)) {
            const std::optional<QByteArray> kept =
                fromUtf8Text(toUtf8Text(bytes, picked->encoding, picked->codePage), picked->encoding, picked->codePage);
            FUZZ_CHECK(kept && *kept == bytes, "read in %s, the bytes change", choice.name.constData());
        } else {
            FUZZ_CHECK(choice.name == kUtf8Name && !valid, "%s refused", choice.name.constData());
        }
    }

    // Every byte is a character of the code page, both ways.
    const QString w = decodeWindows1252(bytes);
    FUZZ_CHECK(w.size() == bytes.size());
    const std::optional<QByteArray> again = encodeWindows1252(w);
    FUZZ_CHECK(again && *again == bytes, "Windows-1252 does not round-trip");

    // The line ending is that of the first break.
    const qsizetype cr = bytes.indexOf('\r'), lf = bytes.indexOf('\n');
    const LineEnding e = detectLineEnding(bytes, LineEnding::Cr);
    if (cr < 0 && lf < 0)
        FUZZ_CHECK(e == LineEnding::Cr);
    else if (cr < 0 || (lf >= 0 && lf < cr))
        FUZZ_CHECK(e == LineEnding::Lf);
    else
        FUZZ_CHECK(e == (bytes.mid(cr, 2) == "\r\n" ? LineEnding::CrLf : LineEnding::Cr));
    return 0;
}
