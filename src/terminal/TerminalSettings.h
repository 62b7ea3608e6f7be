#pragma once
// What the serial terminal is set to, as it is kept in the settings store's section SerialTerminal, and
// the names each setting is shown and stored by.

#include "platform/SerialPort.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

enum class LineEnd { CR, LF, CRLF, None };
enum class TerminalView { Text, Hex };

struct TerminalSettings {
    SerialSettings serial;
    // Added to each line the send field sends.
    LineEnd lineEnd = LineEnd::CRLF;
    TerminalView view = TerminalView::Text;
    bool localEcho = false;
    bool timeStamps = false;
    // The send field takes hex bytes instead of a line of text.
    bool hexInput = false;
    bool operator==(const TerminalSettings&) const = default;

    // From the store; a value the store holds that isn't one of the shown names gives that setting's default.
    static TerminalSettings load();
    void save() const;
};

// The baud rates offered, 300 to 921600; others in that range may be typed.
const QList<qint32>& offeredBauds();
// A typed baud rate: a whole number from 300 to 921600.
std::optional<qint32> baudFrom(const QString& text);

// The shown (and stored) names, in the order the lists show them.
QStringList dataBitsNames();
QStringList parityNames();
QStringList stopBitsNames();
QStringList lineEndNames();
QStringList viewNames();
QString nameOf(Parity p);
QString nameOf(StopBits s);
QString nameOf(LineEnd e);
QString nameOf(TerminalView v);
std::optional<Parity> parityFrom(const QString& name);
std::optional<StopBits> stopBitsFrom(const QString& name);
std::optional<LineEnd> lineEndFrom(const QString& name);
std::optional<TerminalView> viewFrom(const QString& name);
std::optional<int> dataBitsFrom(const QString& name);

// The frame in the usual short form: data bits, parity letter, stop bits ("8N1", "7E2", "8N1.5").
QString frameText(const SerialSettings& s);
// The bytes a line end adds.
QByteArray lineEndBytes(LineEnd e);
// A line as the send field sends it: its text in UTF-8, then the line end.
QByteArray outgoingLine(const QString& line, LineEnd e);
