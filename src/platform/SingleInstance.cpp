#include "platform/SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QStringDecoder>
#include <QtEndian>

namespace {

constexpr char kMagic[] = {'Q', 'B', 'L', 'H', 1};
constexpr qsizetype kMagicSize = sizeof(kMagic);
constexpr qsizetype kHeaderSize = kMagicSize + 4;

void appendU32(QByteArray& out, quint32 v) {
    char b[4];
    qToBigEndian(v, b);
    out.append(b, 4);
}

quint32 u32At(const QByteArray& bytes, qsizetype at) { return qFromBigEndian<quint32>(bytes.constData() + at); }

}  // namespace

QByteArray handOverBytes(const HandOver& message) {
    QByteArray payload;
    char count[2];
    qToBigEndian(quint16(message.files.size()), count);
    payload.append(count, 2);
    for (const QString& f : message.files) {
        const QByteArray utf8 = f.toUtf8();
        appendU32(payload, quint32(utf8.size()));
        payload.append(utf8);
    }
    QByteArray out(kMagic, kMagicSize);
    appendU32(out, quint32(payload.size()));
    return out + payload;
}

HandOverReader::State HandOverReader::feed(QByteArrayView bytes) {
    if (state_ != State::More) {
        // A message is one message: nothing may follow its end.
        if (state_ == State::Done && !bytes.isEmpty())
            state_ = State::Bad;
        return state_;
    }
    buffer_.append(bytes);
    // A foreign program is turned away at its first wrong byte, not after it has sent a megabyte.
    const qsizetype known = std::min(buffer_.size(), kMagicSize);
    if (QByteArrayView(buffer_).first(known) != QByteArrayView(kMagic, known))
        return state_ = State::Bad;
    if (buffer_.size() < kHeaderSize)
        return state_;
    const quint32 length = u32At(buffer_, kMagicSize);
    if (length > quint32(kHandOverMaxBytes))
        return state_ = State::Bad;
    const qsizetype whole = kHeaderSize + qsizetype(length);
    if (buffer_.size() < whole)
        return state_;
    if (buffer_.size() > whole)
        return state_ = State::Bad;
    return state_ = parsePayload();
}

HandOverReader::State HandOverReader::parsePayload() {
    const QByteArray& b = buffer_;
    qsizetype at = kHeaderSize;
    if (b.size() - at < 2)
        return State::Bad;
    const int count = qFromBigEndian<quint16>(b.constData() + at);
    at += 2;
    if (count > kHandOverMaxFiles)
        return State::Bad;
    HandOver m;
    for (int i = 0; i < count; ++i) {
        if (b.size() - at < 4)
            return State::Bad;
        const quint32 len = u32At(b, at);
        at += 4;
        if (len == 0 || len > quint32(kHandOverMaxPathBytes) || qsizetype(len) > b.size() - at)
            return State::Bad;
        const QByteArrayView bytes(b.constData() + at, qsizetype(len));
        at += qsizetype(len);
        // A byte order mark stays a character: no two byte strings give one path.
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
        const QString path = utf8.decode(bytes);
        if (utf8.hasError() || path.contains(QChar(0)) || !QDir::isAbsolutePath(path))
            return State::Bad;
        m.files << path;
    }
    if (at != b.size())
        return State::Bad;
    message_ = std::move(m);
    return State::Done;
}

std::optional<HandOver> readHandOver(QByteArrayView bytes) {
    HandOverReader r;
    if (r.feed(bytes) != HandOverReader::State::Done)
        return std::nullopt;
    return r.message();
}

QString singleInstanceAddress(const QString& configHome, const QString& user, const QString& display,
                              const QString& runtimeDir) {
    QCryptographicHash h(QCryptographicHash::Sha256);
    for (const QString& part : {QDir::cleanPath(configHome), user, display}) {
        h.addData(part.toUtf8());
        h.addData(QByteArrayView("\0", 1));
    }
    const QString name = QStringLiteral("tarnlet-") + QString::fromLatin1(h.result().toHex().left(24));
    // A socket's path is short (108 bytes); a long or relative runtime directory leaves it to the temp folder.
    if (runtimeDir.isEmpty() || !QDir::isAbsolutePath(runtimeDir) || runtimeDir.toUtf8().size() > 70)
        return name;
    return QDir::cleanPath(runtimeDir) + QLatin1Char('/') + name;
}
