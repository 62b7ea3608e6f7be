#pragma once
#include "platform/SingleInstance.h"

#include <QObject>

class QLocalServer;

// The channel over a local socket (a Unix domain socket, a named pipe on Windows) that only this user may
// open. The running IDE answers one byte once it has a whole message; a later start that hears it ends.
class QtSingleInstance : public QObject, public SingleInstance {
public:
    explicit QtSingleInstance(QString address, QObject* parent = nullptr);
    ~QtSingleInstance() override;

    // The address of this process's IDE: its settings home, its user and the display it shows on.
    static QString addressFor(const QString& settingsHome);

    bool handOver(const HandOver& message, int timeoutMs) override;
    bool listen(std::function<void(const HandOver&)> onMessage) override;
    QString address() const { return address_; }

    // A caller that stops sending halfway is dropped after this long.
    static constexpr int kReadTimeoutMs = 5000;

private:
    void acceptConnections();

    QString address_;
    QLocalServer* server_ = nullptr;
    std::function<void(const HandOver&)> onMessage_;
};
