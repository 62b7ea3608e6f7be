// The serial terminal's two readers of outside bytes, with any bytes:
//   the send field's hex: it takes exactly the texts that a plain reading by groups takes, gives the same
//   bytes, and says where a refused text stops being hex;
//   the views of the traffic: the view built a slice at a time is the view built at once, the text view
//   holds no control character but tab and line end, and the hex view's digits, read back by the hex
//   reader, are the traffic's bytes in order.
#include "FuzzWorld.h"
#include "terminal/HexInput.h"
#include "terminal/Transcript.h"

#include <QRegularExpression>

namespace {

// The groups read one by one, with the rules as the send field states them.
std::optional<QByteArray> plainHex(const QString& text) {
    static const QRegularExpression group(QStringLiteral("^(0[xX])?([0-9a-fA-F]+)$"));
    QByteArray out;
    for (const QString& g : text.split(QRegularExpression(QStringLiteral("[ ,\t]")), Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch m = group.match(g);
        if (!m.hasMatch())
            return std::nullopt;
        QString digits = m.captured(2);
        if (digits.size() % 2 != 0) {
            if (digits.size() != 1)
                return std::nullopt;
            digits.prepend(QLatin1Char('0'));
        }
        out += QByteArray::fromHex(digits.toLatin1());
    }
    return out;
}

void checkHexInput(const QByteArray& bytes) {
    const QString text = QString::fromUtf8(bytes);
    const HexInput h = parseHexInput(text);
    const std::optional<QByteArray> plain = plainHex(text);
    FUZZ_CHECK(h.ok() == plain.has_value(), "hex reader and plain reading disagree on \"%s\"", qPrintable(text));
    if (h.ok()) {
        FUZZ_CHECK(h.bytes == *plain);
        FUZZ_CHECK(parseHexInput(hexText(h.bytes)).bytes == h.bytes);
    } else {
        FUZZ_CHECK(h.errorAt >= 0 && h.errorAt < text.size());
        // Cut just before where it stopped, the text's start is read whole.
        const QString before = text.left(h.errorAt);
        const qsizetype lastSeparator = before.lastIndexOf(QRegularExpression(QStringLiteral("[ ,\t]")));
        FUZZ_CHECK(parseHexInput(before.left(lastSeparator + 1)).ok());
    }
}

void checkViews(const uint8_t* data, size_t size) {
    if (size < 2)
        return;
    const bool stamps = data[0] & 1;
    Transcript t;
    // Cuts, directions and times from the bytes themselves.
    for (size_t at = 1, i = 0; at < size; ++i) {
        const size_t step = std::min<size_t>(1 + data[i % size] % 23, size - at);
        const Direction d = (data[(i + 1) % size] % 5 == 0) ? Direction::Out : Direction::In;
        const QByteArray piece(reinterpret_cast<const char*>(data + at), qsizetype(step));
        t.add(d, piece, QTime(12, 0).addMSecs(int(i) * 7));
        at += step;
    }
    for (const TerminalView view : {TerminalView::Text, TerminalView::Hex}) {
        t.restart(view, stamps);
        QString shown;
        for (qsizetype budget = 1 + data[1] % 40; !t.shownAll();) {
            for (const ViewEdit& e : t.next(budget)) {
                FUZZ_CHECK(e.removeTail <= shown.size());
                shown.chop(e.removeTail);
                shown += e.text;
            }
        }
        FUZZ_CHECK(t.next(1).empty());
        // What comes after all was shown goes on from there.
        t.add(Direction::In, QByteArray(reinterpret_cast<const char*>(data), qsizetype(std::min<size_t>(size, 5))), QTime(13, 0));
        for (const ViewEdit& e : t.next(qsizetype(size))) {
            shown.chop(e.removeTail);
            shown += e.text;
        }
        const QString whole = t.text(view, stamps);
        FUZZ_CHECK(shown == whole, "slices and the whole differ");
        if (view == TerminalView::Text) {
            for (const QChar c : whole)
                FUZZ_CHECK(c.unicode() >= 0x20 || c == u'\t' || c == u'\n');
            continue;
        }
        // Each row: a stamp maybe, 47 places of digits, two blanks, the bytes as ASCII.
        QByteArray digits;
        for (QString row : whole.split(QLatin1Char('\n'))) {
            if (stamps)
                row = row.mid(stampText(QTime(0, 0)).size());
            FUZZ_CHECK(row.size() <= 47 + 2 + 16 && row.size() > 49, "row \"%s\"", qPrintable(row));
            const HexInput h = parseHexInput(row.left(47));
            FUZZ_CHECK(h.ok() && h.bytes.size() == row.size() - 49);
            digits += h.bytes;
        }
        QByteArray all;
        for (const Traffic& x : t.record())
            all += x.bytes;
        FUZZ_CHECK(digits == all, "the hex view's digits aren't the traffic");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    checkHexInput(fuzzBytes(data, size));
    checkViews(data, size);
    return 0;
}
