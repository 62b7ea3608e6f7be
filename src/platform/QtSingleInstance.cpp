#include "platform/QtSingleInstance.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include <memory>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {
constexpr char kTaken = 'K';
}

QtSingleInstance::QtSingleInstance(QString address, QObject* parent) : QObject(parent), address_(std::move(address)) {}

QtSingleInstance::~QtSingleInstance() = default;

QString QtSingleInstance::addressFor(const QString& settingsHome) {
#ifdef Q_OS_UNIX
    const QString user = QString::number(::getuid());
#else
    const QString user = qEnvironmentVariable("USERNAME");
#endif
    // The platform the windows go to and its display: two X displays, or X and Wayland, are two desktops.
    const QString platform = QGuiApplication::platformName();
    QString display = qEnvironmentVariable(platform == QLatin1String("wayland") ? "WAYLAND_DISPLAY" : "DISPLAY");
    return singleInstanceAddress(settingsHome, user, platform + QLatin1Char(' ') + display,
                                 qEnvironmentVariable("XDG_RUNTIME_DIR"));
}

bool QtSingleInstance::handOver(const HandOver& message, int timeoutMs) {
    QDeadlineTimer deadline(timeoutMs);
    QLocalSocket socket;
    socket.connectToServer(address_);
    if (!socket.waitForConnected(int(deadline.remainingTime())))
        return false;
    socket.write(handOverBytes(message));
    while (socket.bytesToWrite() > 0)
        if (!socket.waitForBytesWritten(int(deadline.remainingTime())))
            return false;
    while (socket.bytesAvailable() < 1)
        if (deadline.hasExpired() || !socket.waitForReadyRead(int(deadline.remainingTime())))
            return false;
    char answer = 0;
    return socket.getChar(&answer) && answer == kTaken;
}

bool QtSingleInstance::listen(std::function<void(const HandOver&)> onMessage) {
    onMessage_ = std::move(onMessage);
    delete server_;
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    connect(server_, &QLocalServer::newConnection, this, &QtSingleInstance::acceptConnections);
    if (server_->listen(address_))
        return true;
    // The socket a killed IDE left behind is taken over; one that an IDE listens on (started at the same
    // moment as this one) is left to it.
    if (server_->serverError() == QAbstractSocket::AddressInUseError) {
        QLocalSocket probe;
        probe.connectToServer(address_);
        if (!probe.waitForConnected(kRunningIdeAnswerMs / 4)) {
            QLocalServer::removeServer(address_);
            if (server_->listen(address_))
                return true;
        }
    }
    delete server_;
    server_ = nullptr;
    return false;
}

void QtSingleInstance::acceptConnections() {
    while (QLocalSocket* socket = server_->nextPendingConnection()) {
        auto reader = std::make_shared<HandOverReader>();
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket, reader] {
            const HandOverReader::State state = reader->feed(socket->readAll());
            if (state == HandOverReader::State::More)
                return;
            if (state == HandOverReader::State::Bad) {
                socket->abort();
                socket->deleteLater();
                return;
            }
            socket->putChar(kTaken);
            socket->flush();
            socket->disconnectFromServer();
            // The files open after this handler, on the event loop: opening one may ask the user something.
            const HandOver message = reader->message();
            QTimer::singleShot(0, this, [this, message] {
                if (onMessage_)
                    onMessage_(message);
            });
        });
        QTimer::singleShot(kReadTimeoutMs, socket, [socket, reader] {
            if (reader->state() == HandOverReader::State::More) {
                socket->abort();
                socket->deleteLater();
            }
        });
        // Bytes may have come with the connection.
        if (socket->bytesAvailable() > 0)
            emit socket->readyRead();
    }
}
