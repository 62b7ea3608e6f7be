#include "platform/PeImage.h"

#include <QFile>

namespace {
constexpr qsizetype kOffsetField = 0x3C;
// Real images put their header within the first few hundred bytes; a larger offset is a stray MZ file.
constexpr quint32 kMaxHeaderOffset = 64 * 1024;

quint32 headerOffset(const QByteArray& head) {
    const auto byte = [&](qsizetype i) { return quint32(quint8(head[kOffsetField + i])); };
    return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}
}  // namespace

bool isPeImage(const QByteArray& head) {
    if (head.size() < kOffsetField + 4 || !head.startsWith("MZ"))
        return false;
    const quint32 at = headerOffset(head);
    if (at > kMaxHeaderOffset || qsizetype(at) + 4 > head.size())
        return false;
    return head.mid(at, 4) == QByteArray("PE\0\0", 4);
}

std::optional<quint16> peMachine(const QByteArray& head) {
    if (!isPeImage(head))
        return std::nullopt;
    const qsizetype at = qsizetype(headerOffset(head)) + 4;
    if (at + 2 > head.size())
        return std::nullopt;
    return quint16(quint8(head[at]) | quint8(head[at + 1]) << 8);
}

namespace {

// The file's bytes up to the end of the machine field; fewer when the file is shorter or no PE image.
QByteArray readHead(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    const QByteArray start = f.read(kOffsetField + 4);
    if (start.size() < kOffsetField + 4 || !start.startsWith("MZ"))
        return start;
    const quint32 at = headerOffset(start);
    if (at > kMaxHeaderOffset)
        return start;
    // Only the bytes up to the header the offset names are needed.
    const qint64 more = qint64(at) + 6 - start.size();
    return more > 0 ? start + f.read(more) : start;
}

}  // namespace

bool isPeImageFile(const QString& path) { return isPeImage(readHead(path)); }

std::optional<quint16> peMachineOfFile(const QString& path) { return peMachine(readHead(path)); }
