// What a later start sends the running IDE, as any bytes from anyone: the reader never reads past what it
// was given, takes a message only when it is exactly one whole message of ours, with absolute paths, and
// reads it the same in pieces of any size as at once. What it takes writes back as the same bytes.
#include "FuzzWorld.h"
#include "platform/SingleInstance.h"

#include <QDir>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes = fuzzBytes(data, size);
    const std::optional<HandOver> whole = readHandOver(bytes);

    // The same bytes in pieces, the cuts taken from the bytes themselves.
    HandOverReader pieces;
    qsizetype at = 0;
    for (qsizetype i = 0; at < bytes.size(); ++i) {
        const qsizetype step = 1 + (size ? data[size_t(i) % size] % 7 : 0);
        pieces.feed(QByteArrayView(bytes).sliced(at, std::min(step, bytes.size() - at)));
        at += step;
    }
    FUZZ_CHECK((pieces.state() == HandOverReader::State::Done) == whole.has_value());
    if (!whole)
        return 0;
    FUZZ_CHECK(pieces.message() == *whole);
    FUZZ_CHECK(whole->files.size() <= kHandOverMaxFiles);
    for (const QString& f : whole->files)
        FUZZ_CHECK(QDir::isAbsolutePath(f) && !f.contains(QChar(0)), "%s", qPrintable(f));
    FUZZ_CHECK(handOverBytes(*whole) == bytes, "a message that doesn't write back as it came");
    // Nothing may follow a whole message.
    FUZZ_CHECK(pieces.feed("x") == HandOverReader::State::Bad);
    return 0;
}
