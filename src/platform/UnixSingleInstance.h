#pragma once
#include "platform/SingleInstance.h"

#include <QObject>

#include <map>

class QSocketNotifier;

// The channel over a Unix domain socket that only this user may open. The running IDE answers one byte once
// it has a whole message; a later start that hears it ends. Plain sockets rather than Qt Network: that
// library and the Kerberos and proxy libraries it brings cost every start a tenth of its time in loading.
class UnixSingleInstance : public QObject, public SingleInstance {
public:
    explicit UnixSingleInstance(QString address, QObject* parent = nullptr);
    ~UnixSingleInstance() override;

    // The address of this process's IDE: its settings home, its user and the display it shows on.
    static QString addressFor(const QString& settingsHome);
    // The socket's file: an address that isn't a path names a file in the temp folder.
    static QString socketPath(const QString& address);

    bool handOver(const HandOver& message, int timeoutMs) override;
    bool listen(std::function<void(const HandOver&)> onMessage) override;
    QString address() const { return address_; }

    // A caller that stops sending halfway is dropped after this long.
    static constexpr int kReadTimeoutMs = 5000;

private:
    struct Caller {
        int fd = -1;
        QSocketNotifier* notifier = nullptr;
        HandOverReader reader;
    };
    void acceptConnections();
    void read(quint64 caller);
    void drop(quint64 caller);
    void stopListening();

    QString address_;
    int listener_ = -1;
    QSocketNotifier* accepting_ = nullptr;
    std::map<quint64, Caller> callers_;  // by id, which a timer may still name after the call went
    quint64 lastId_ = 0;
    std::function<void(const HandOver&)> onMessage_;
};
