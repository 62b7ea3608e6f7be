#include "platform/UnixSingleInstance.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr char kTaken = 'K';

// False when the path doesn't fit a socket address (108 bytes).
bool socketAddress(const QString& path, sockaddr_un& a) {
    const QByteArray bytes = QFile::encodeName(path);
    std::memset(&a, 0, sizeof a);
    if (bytes.isEmpty() || size_t(bytes.size()) >= sizeof a.sun_path)
        return false;
    a.sun_family = AF_UNIX;
    std::memcpy(a.sun_path, bytes.constData(), size_t(bytes.size()));
    return true;
}

int newSocket() { return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0); }

int connectTo(int fd, const sockaddr_un& a) {
    int r;
    do
        r = ::connect(fd, reinterpret_cast<const sockaddr*>(&a), sizeof a);
    while (r != 0 && errno == EINTR);
    return r;
}

// Until fd has one of events, or the deadline passes (false).
bool await(int fd, short events, const QDeadlineTimer& deadline) {
    for (;;) {
        const qint64 left = deadline.remainingTime();
        if (left == 0)
            return false;
        pollfd p{fd, events, 0};
        const int r = ::poll(&p, 1, left < 0 ? -1 : int(std::min<qint64>(left, INT_MAX)));
        if (r > 0)
            return true;  // or hung up: the next call says which
        if (r == 0 || errno != EINTR)
            return false;
    }
}

struct Closer {
    int fd;
    ~Closer() {
        if (fd >= 0)
            ::close(fd);
    }
};

// Another user's process on the other end is never listened to, nor called: in the shared temp folder,
// they could make the file first.
bool sameUser(int fd) {
#ifdef SO_PEERCRED
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::getuid();
#else
    uid_t uid = 0;
    gid_t gid = 0;
    return ::getpeereid(fd, &uid, &gid) == 0 && uid == ::getuid();
#endif
}

}  // namespace

UnixSingleInstance::UnixSingleInstance(QString address, QObject* parent)
    : QObject(parent), address_(std::move(address)) {}

UnixSingleInstance::~UnixSingleInstance() {
    while (!callers_.empty())
        drop(callers_.begin()->first);
    stopListening();
}

QString UnixSingleInstance::addressFor(const QString& settingsHome) {
    // The platform the windows go to and its display: two X displays, or X and Wayland, are two desktops.
    const QString platform = QGuiApplication::platformName();
    const QString display =
        qEnvironmentVariable(platform == QLatin1String("wayland") ? "WAYLAND_DISPLAY" : "DISPLAY");
    return singleInstanceAddress(settingsHome, QString::number(::getuid()), platform + QLatin1Char(' ') + display,
                                 qEnvironmentVariable("XDG_RUNTIME_DIR"));
}

QString UnixSingleInstance::socketPath(const QString& address) {
    return QDir::isAbsolutePath(address) ? address : QDir::tempPath() + QLatin1Char('/') + address;
}

bool UnixSingleInstance::handOver(const HandOver& message, int timeoutMs) {
    const QDeadlineTimer deadline(timeoutMs);
    const QString path = socketPath(address_);
    sockaddr_un a;
    struct stat st {};
    if (!socketAddress(path, a) || ::lstat(QFile::encodeName(path).constData(), &st) != 0 ||
        !S_ISSOCK(st.st_mode) || st.st_uid != ::getuid())
        return false;
    const Closer s{newSocket()};
    if (s.fd < 0)
        return false;
    // A listening IDE takes the call at once; one whose queue of calls is full is called again.
    while (connectTo(s.fd, a) != 0) {
        if (errno == EINPROGRESS) {
            int error = 0;
            socklen_t size = sizeof error;
            if (!await(s.fd, POLLOUT, deadline) ||
                ::getsockopt(s.fd, SOL_SOCKET, SO_ERROR, &error, &size) != 0 || error != 0)
                return false;
            break;
        }
        if (errno != EAGAIN || deadline.hasExpired())
            return false;
        ::poll(nullptr, 0, 10);
    }
    if (!sameUser(s.fd))
        return false;
    const QByteArray bytes = handOverBytes(message);
    for (qsizetype sent = 0; sent < bytes.size();) {
        const ssize_t n = ::send(s.fd, bytes.constData() + sent, size_t(bytes.size() - sent), MSG_NOSIGNAL);
        if (n > 0)
            sent += n;
        else if (n < 0 && errno == EINTR)
            continue;
        else if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK) && await(s.fd, POLLOUT, deadline))
            continue;
        else
            return false;
    }
    for (;;) {
        char answer = 0;
        const ssize_t n = ::recv(s.fd, &answer, 1, 0);
        if (n == 1)
            return answer == kTaken;
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK) && await(s.fd, POLLIN, deadline))
            continue;
        return false;  // it hung up without an answer, or time is up
    }
}

bool UnixSingleInstance::listen(std::function<void(const HandOver&)> onMessage) {
    onMessage_ = std::move(onMessage);
    stopListening();
    const QString path = socketPath(address_);
    sockaddr_un a;
    if (!socketAddress(path, a))
        return false;
    const int fd = newSocket();
    if (fd < 0)
        return false;
    // Only this user may open the socket: Linux gives the file the socket's own mode.
    ::fchmod(fd, S_IRUSR | S_IWUSR);
    const auto bindTo = [&] { return ::bind(fd, reinterpret_cast<const sockaddr*>(&a), sizeof a) == 0; };
    bool bound = bindTo();
    if (!bound && errno == EADDRINUSE) {
        // The socket a killed IDE left behind is taken over; one that an IDE listens on (started at the same
        // moment as this one) is left to it.
        const Closer probe{newSocket()};
        const bool answered = probe.fd >= 0 && (connectTo(probe.fd, a) == 0 || errno == EAGAIN || errno == EINPROGRESS);
        if (!answered && ::unlink(QFile::encodeName(path).constData()) == 0)
            bound = bindTo();
    }
    if (!bound || ::chmod(QFile::encodeName(path).constData(), S_IRUSR | S_IWUSR) != 0 || ::listen(fd, 16) != 0) {
        ::close(fd);
        return false;
    }
    listener_ = fd;
    accepting_ = new QSocketNotifier(fd, QSocketNotifier::Read, this);
    connect(accepting_, &QSocketNotifier::activated, this, &UnixSingleInstance::acceptConnections);
    return true;
}

void UnixSingleInstance::stopListening() {
    if (listener_ < 0)
        return;
    delete accepting_;
    accepting_ = nullptr;
    ::close(listener_);
    listener_ = -1;
    ::unlink(QFile::encodeName(socketPath(address_)).constData());
}

void UnixSingleInstance::acceptConnections() {
    for (;;) {
        const int fd = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (fd < 0) {
            if (errno == EINTR || errno == ECONNABORTED)
                continue;
            return;
        }
        if (!sameUser(fd)) {
            ::close(fd);
            continue;
        }
        const quint64 id = ++lastId_;
        Caller& caller = callers_[id];
        caller.fd = fd;
        caller.notifier = new QSocketNotifier(fd, QSocketNotifier::Read, this);
        connect(caller.notifier, &QSocketNotifier::activated, this, [this, id] { read(id); });
        QTimer::singleShot(kReadTimeoutMs, caller.notifier, [this, id] { drop(id); });
        read(id);  // bytes may have come with the call
    }
}

void UnixSingleInstance::read(quint64 id) {
    const auto found = callers_.find(id);
    if (found == callers_.end())
        return;
    Caller& c = found->second;
    char buffer[4096];
    for (;;) {
        const ssize_t n = ::recv(c.fd, buffer, sizeof buffer, 0);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            return;
        if (n <= 0) {
            drop(id);  // hung up before a whole message
            return;
        }
        switch (c.reader.feed(QByteArrayView(buffer, n))) {
        case HandOverReader::State::More:
            continue;
        case HandOverReader::State::Bad:
            drop(id);
            return;
        case HandOverReader::State::Done: {
            ::send(c.fd, &kTaken, 1, MSG_NOSIGNAL);
            const HandOver message = c.reader.message();
            drop(id);
            // The files open after this handler, on the event loop: opening one may ask the user something.
            QTimer::singleShot(0, this, [this, message] {
                if (onMessage_)
                    onMessage_(message);
            });
            return;
        }
        }
    }
}

void UnixSingleInstance::drop(quint64 id) {
    const auto found = callers_.find(id);
    if (found == callers_.end())
        return;
    // Its notifier may be the one signalling now: it goes once that is over.
    found->second.notifier->setEnabled(false);
    found->second.notifier->deleteLater();
    ::close(found->second.fd);
    callers_.erase(found);
}
