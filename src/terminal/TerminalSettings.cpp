#include "terminal/TerminalSettings.h"

#include "core/Settings.h"

#include <algorithm>
#include <utility>

namespace {

template <class E>
using Name = std::pair<E, const char*>;

constexpr Name<Parity> kParity[] = {
    {Parity::None, "None"}, {Parity::Even, "Even"}, {Parity::Odd, "Odd"}, {Parity::Mark, "Mark"}, {Parity::Space, "Space"}};
constexpr Name<StopBits> kStopBits[] = {{StopBits::One, "1"}, {StopBits::OneAndHalf, "1.5"}, {StopBits::Two, "2"}};
constexpr Name<LineEnd> kLineEnd[] = {
    {LineEnd::CR, "CR"}, {LineEnd::LF, "LF"}, {LineEnd::CRLF, "CR LF"}, {LineEnd::None, "None"}};
constexpr Name<TerminalView> kView[] = {{TerminalView::Text, "Text"}, {TerminalView::Hex, "Hex"}};

template <class E, std::size_t N>
QStringList namesIn(const Name<E> (&table)[N]) {
    QStringList out;
    for (const auto& entry : table)
        out << QString::fromLatin1(entry.second);
    return out;
}

template <class E, std::size_t N>
QString nameIn(const Name<E> (&table)[N], E value) {
    for (const auto& [v, name] : table)
        if (v == value)
            return QString::fromLatin1(name);
    return {};
}

template <class E, std::size_t N>
std::optional<E> valueIn(const Name<E> (&table)[N], const QString& name) {
    for (const auto& [v, n] : table)
        if (name.compare(QLatin1String(n), Qt::CaseInsensitive) == 0)
            return v;
    return std::nullopt;
}

bool flag(Key k) { return setting(k).trimmed() == QLatin1String("1"); }
QString flagText(bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); }

}  // namespace

const QList<qint32>& offeredBauds() {
    static const QList<qint32> bauds = {300,   600,   1200,   2400,   4800,   9600,  19200,
                                        38400, 57600, 115200, 230400, 460800, 921600};
    return bauds;
}

std::optional<qint32> baudFrom(const QString& text) {
    bool ok = false;
    const qint32 baud = text.trimmed().toInt(&ok);
    if (!ok || baud < 300 || baud > 921600)
        return std::nullopt;
    return baud;
}

QStringList dataBitsNames() { return {"5", "6", "7", "8"}; }
QStringList parityNames() { return namesIn(kParity); }
QStringList stopBitsNames() { return namesIn(kStopBits); }
QStringList lineEndNames() { return namesIn(kLineEnd); }
QStringList viewNames() { return namesIn(kView); }
QString nameOf(Parity p) { return nameIn(kParity, p); }
QString nameOf(StopBits s) { return nameIn(kStopBits, s); }
QString nameOf(LineEnd e) { return nameIn(kLineEnd, e); }
QString nameOf(TerminalView v) { return nameIn(kView, v); }
std::optional<Parity> parityFrom(const QString& name) { return valueIn(kParity, name.trimmed()); }
std::optional<StopBits> stopBitsFrom(const QString& name) { return valueIn(kStopBits, name.trimmed()); }
std::optional<LineEnd> lineEndFrom(const QString& name) { return valueIn(kLineEnd, name.trimmed()); }
std::optional<TerminalView> viewFrom(const QString& name) { return valueIn(kView, name.trimmed()); }

std::optional<int> dataBitsFrom(const QString& name) {
    if (!dataBitsNames().contains(name.trimmed()))
        return std::nullopt;
    return name.trimmed().toInt();
}

TerminalSettings TerminalSettings::load() {
    TerminalSettings s;
    s.serial.port = setting(Key::Port);
    s.serial.baud = baudFrom(setting(Key::Baud)).value_or(s.serial.baud);
    s.serial.dataBits = dataBitsFrom(setting(Key::DataBits)).value_or(s.serial.dataBits);
    s.serial.parity = parityFrom(setting(Key::Parity)).value_or(s.serial.parity);
    s.serial.stopBits = stopBitsFrom(setting(Key::StopBits)).value_or(s.serial.stopBits);
    s.lineEnd = lineEndFrom(setting(Key::LineEnd)).value_or(s.lineEnd);
    s.view = viewFrom(setting(Key::View)).value_or(s.view);
    s.localEcho = flag(Key::LocalEcho);
    s.timeStamps = flag(Key::TimeStamps);
    s.hexInput = flag(Key::HexInput);
    return s;
}

void TerminalSettings::save() const {
    const std::pair<Key, QString> values[] = {
        {Key::Port, serial.port},
        {Key::Baud, QString::number(serial.baud)},
        {Key::DataBits, QString::number(serial.dataBits)},
        {Key::Parity, nameOf(serial.parity)},
        {Key::StopBits, nameOf(serial.stopBits)},
        {Key::LineEnd, nameOf(lineEnd)},
        {Key::View, nameOf(view)},
        {Key::LocalEcho, flagText(localEcho)},
        {Key::TimeStamps, flagText(timeStamps)},
        {Key::HexInput, flagText(hexInput)},
    };
    QList<QPair<QString, QString>> pairs;
    for (const auto& [key, value] : values)
        pairs.append({nameOf(key), value});
    SaveSettings(applicationName(), sectionOf(Key::Port), pairs);
}

QString frameText(const SerialSettings& s) {
    return QString::number(s.dataBits) + nameOf(s.parity).left(1) + nameOf(s.stopBits);
}

QByteArray lineEndBytes(LineEnd e) {
    switch (e) {
    case LineEnd::CR: return "\r";
    case LineEnd::LF: return "\n";
    case LineEnd::CRLF: return "\r\n";
    case LineEnd::None: return {};
    }
    return {};
}

QByteArray outgoingLine(const QString& line, LineEnd e) { return line.toUtf8() + lineEndBytes(e); }
