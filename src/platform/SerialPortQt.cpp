#include "platform/SerialPortQt.h"

#include "platform/Failure.h"

#include <QSerialPort>
#include <QSerialPortInfo>

#include <cerrno>
#include <unistd.h>

namespace {

QSerialPort::Parity qtParity(Parity p) {
    switch (p) {
    case Parity::None: return QSerialPort::NoParity;
    case Parity::Even: return QSerialPort::EvenParity;
    case Parity::Odd: return QSerialPort::OddParity;
    case Parity::Mark: return QSerialPort::MarkParity;
    case Parity::Space: return QSerialPort::SpaceParity;
    }
    return QSerialPort::NoParity;
}

QSerialPort::StopBits qtStopBits(StopBits s) {
    switch (s) {
    case StopBits::One: return QSerialPort::OneStop;
    case StopBits::OneAndHalf: return QSerialPort::OneAndHalfStop;
    case StopBits::Two: return QSerialPort::TwoStop;
    }
    return QSerialPort::OneStop;
}

// Qt says PermissionError both for a device the user may not open and for one that another program holds
// (its lock file, or the exclusive mode a holder sets): only the file's own access tells them apart.
int errnoOf(QSerialPort::SerialPortError e, const QString& path) {
    switch (e) {
    case QSerialPort::PermissionError:
        return ::access(path.toLocal8Bit().constData(), R_OK | W_OK) != 0 && errno == EACCES ? EACCES : EBUSY;
    case QSerialPort::DeviceNotFoundError: return ENOENT;
    case QSerialPort::UnsupportedOperationError: return EINVAL;
    default: return EIO;
    }
}

class QtPort : public SerialPort {
public:
    explicit QtPort(const SerialSettings& s) : settings_(s) {
        port_.setPortName(serialPortPath(s.port));
        connect(&port_, &QSerialPort::readyRead, this, &SerialPort::received);
        connect(&port_, &QSerialPort::errorOccurred, this, &QtPort::onError);
    }

    void open() {
        const QString path = port_.portName();
        const bool ok = port_.open(QIODevice::ReadWrite) && port_.setBaudRate(settings_.baud) &&
                        port_.setDataBits(QSerialPort::DataBits(settings_.dataBits)) &&
                        port_.setParity(qtParity(settings_.parity)) &&
                        port_.setStopBits(qtStopBits(settings_.stopBits)) &&
                        port_.setFlowControl(QSerialPort::NoFlowControl);
        if (ok) {
            opening_ = false;
            return;
        }
        const QSerialPort::SerialPortError e = port_.error();
        const QString text = port_.errorString();
        port_.close();
        const int err = errnoOf(e, serialPortPath(settings_.port));
        // The system's own words for what a user can act on; Qt's for the rest.
        if (err == EACCES || err == EBUSY || err == ENOENT)
            throw osFailure(err, path);
        throw Failure(err, path + QStringLiteral(": ") + text);
    }

    QByteArray readAll() override { return port_.readAll(); }

    void write(const QByteArray& bytes) override {
        if (!port_.isOpen() || port_.write(bytes) != bytes.size())
            throw osFailure(EIO, port_.portName());
    }

    void discardInput() override {
        if (port_.isOpen())
            port_.clear(QSerialPort::Input);
    }

    qint64 bytesToWrite() const override { return port_.isOpen() ? port_.bytesToWrite() : 0; }
    const SerialSettings& settings() const override { return settings_; }

private:
    void onError(QSerialPort::SerialPortError e) {
        // The errors of the open itself are thrown by open; a device that goes while open can't be used again.
        if (opening_ || !(e == QSerialPort::ResourceError || e == QSerialPort::ReadError ||
                          e == QSerialPort::WriteError || e == QSerialPort::DeviceNotFoundError))
            return;
        if (!port_.isOpen())
            return;
        const QString why = port_.errorString();
        port_.close();
        emit vanished(why);
    }

    SerialSettings settings_;
    QSerialPort port_;
    bool opening_ = true;
};

}  // namespace

QList<SerialPortEntry> SerialPortsQt::list() {
    QList<SerialPortEntry> out;
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts())
        out.append({info.systemLocation(), info.description()});
    return out;
}

std::unique_ptr<SerialPort> SerialPortsQt::open(const SerialSettings& settings) {
    auto port = std::make_unique<QtPort>(settings);
    port->open();
    return port;
}

SerialPorts& systemSerialPorts() {
    static SerialPortsQt ports;
    return ports;
}
