#pragma once
// Serial ports as a test tells them: the ports listed, what an open throws, the bytes written, and bytes
// arriving when the test says.

#include "platform/Failure.h"
#include "platform/SerialPort.h"

#include <QHash>
#include <QPointer>

#include <utility>

class FakeSerialPort : public SerialPort {
    Q_OBJECT
public:
    explicit FakeSerialPort(const SerialSettings& s) : settings_(s) {}
    QByteArray written;
    QByteArray pending;
    bool gone = false;

    QByteArray readAll() override { return std::exchange(pending, {}); }
    void write(const QByteArray& bytes) override {
        if (gone)
            throw osFailure(5, settings_.port);
        written += bytes;
    }
    void discardInput() override { pending.clear(); }
    qint64 bytesToWrite() const override { return 0; }
    const SerialSettings& settings() const override { return settings_; }

    void arrive(const QByteArray& bytes) {
        pending += bytes;
        emit received();
    }

private:
    SerialSettings settings_;
};

class FakeSerialPorts : public SerialPorts {
public:
    QList<SerialPortEntry> entries;
    // The failure an open of a path throws, by path.
    QHash<QString, Failure> failures;
    // Every open, in order; the last one's port while it is open.
    QList<SerialSettings> opened;
    QPointer<FakeSerialPort> last;

    QList<SerialPortEntry> list() override { return entries; }
    std::unique_ptr<SerialPort> open(const SerialSettings& s) override {
        if (const auto it = failures.constFind(serialPortPath(s.port)); it != failures.constEnd())
            throw *it;
        opened << s;
        auto port = std::make_unique<FakeSerialPort>(s);
        last = port.get();
        return port;
    }
};
