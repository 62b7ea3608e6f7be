#pragma once
// Lending a serial port for a while: a programmer that talks to the board through the port a terminal
// holds can't open it until the terminal lets go, and the terminal takes it back when the programmer ends.

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

// One that holds a serial port open and can let go of it.
class SerialPortHolder {
public:
    virtual ~SerialPortHolder() = default;
    // The path of the port it holds open now; empty when none.
    virtual QString heldPort() const = 0;
    // Closes port when it holds that one, remembering to take it back; true when it did.
    virtual bool release(const QString& port) = 0;
    // Opens again what release closed.
    virtual void reacquire() = 0;
};

class SerialPortHandover;

// The ports let go of; dropping it gives each back to its holder, when that holder is still there.
class SerialPortLease {
public:
    SerialPortLease(SerialPortHandover& handover, std::vector<SerialPortHolder*> released)
        : handover_(handover), released_(std::move(released)) {}
    ~SerialPortLease();
    SerialPortLease(const SerialPortLease&) = delete;
    SerialPortLease& operator=(const SerialPortLease&) = delete;
    // Nobody let go of anything.
    bool empty() const { return released_.empty(); }

private:
    SerialPortHandover& handover_;
    std::vector<SerialPortHolder*> released_;
};

// The holders of ports in this process.
class SerialPortHandover {
public:
    void add(SerialPortHolder* holder);
    void remove(SerialPortHolder* holder);
    bool has(const SerialPortHolder* holder) const;
    // Every holder whose port one of args names lets go of it until the lease is dropped.
    std::unique_ptr<SerialPortLease> releasePortsNamedIn(const QStringList& args);

private:
    std::vector<SerialPortHolder*> holders_;
};

// An argument names port when it is the port, or ends with it after an option ("-c/dev/ttyACM0") or an "="
// ("--port=/dev/ttyUSB0"); a link to the port names it too, and the port's link names the device.
bool argumentNamesPort(const QString& arg, const QString& port);
