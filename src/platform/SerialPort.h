#pragma once
// Serial ports: the ones the system has, and one opened for reading and writing. A port is named by its
// path (/dev/ttyUSB0, a pty's /dev/pts/3 or a link to one); a bare name is taken in /dev.

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <memory>

enum class Parity { None, Even, Odd, Mark, Space };
enum class StopBits { One, OneAndHalf, Two };

struct SerialSettings {
    QString port;
    qint32 baud = 9600;
    int dataBits = 8;
    Parity parity = Parity::None;
    StopBits stopBits = StopBits::One;
    bool operator==(const SerialSettings&) const = default;
};

struct SerialPortEntry {
    QString path;
    // What the system says the device is ("FT232R USB UART"); may be empty.
    QString description;
};

// An open port. It stays open until it is dropped; a device that goes away is told once through vanished,
// after which the port reads and writes nothing.
class SerialPort : public QObject {
    Q_OBJECT
public:
    // Everything that arrived since the last read.
    virtual QByteArray readAll() = 0;
    // Queues bytes to go out; throws Failure when the port is gone.
    virtual void write(const QByteArray& bytes) = 0;
    // Drops what came and wasn't read yet, also what the system holds for the port.
    virtual void discardInput() = 0;
    // Bytes queued but not yet handed to the device.
    virtual qint64 bytesToWrite() const = 0;
    virtual const SerialSettings& settings() const = 0;

signals:
    // Bytes wait to be read.
    void received();
    // The device went away (an adapter pulled out, the other end of a pty closed); why is the system's text.
    void vanished(const QString& why);
};

// The failure numbers an open throws, with the system's text: errno values.
//   EACCES   the user may not open the device (not in its group)
//   EBUSY    another program holds it
//   ENOENT   no such device
//   EINVAL   a setting the device refuses (a baud rate it can't do)
//   anything else as the system said.
class SerialPorts {
public:
    virtual ~SerialPorts() = default;
    // The ports present now, in the system's order.
    virtual QList<SerialPortEntry> list() = 0;
    // Opens a port with its settings; throws Failure as above.
    virtual std::unique_ptr<SerialPort> open(const SerialSettings& settings) = 0;
};

// The system's full path for a port name as typed: a bare name is in /dev.
QString serialPortPath(const QString& typed);
