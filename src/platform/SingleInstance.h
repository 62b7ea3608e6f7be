#pragma once
// One IDE per user, display and settings home: a later start hands its file to the IDE that runs and ends.
// The message on the channel and its reader are plain code; the channel itself is the platform's.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// What a later start asks of the running IDE: open these files (absolute paths), or with none just come
// to the front.
struct HandOver {
    QStringList files;
    friend bool operator==(const HandOver&, const HandOver&) = default;
};

// The bytes of one message: "QBLH", version 1, the payload's length (4 bytes, big-endian), then the
// payload: the number of files (2 bytes) and each file as its UTF-8 length (4 bytes) and bytes.
QByteArray handOverBytes(const HandOver& message);

inline constexpr qsizetype kHandOverMaxBytes = 1 << 20;
inline constexpr int kHandOverMaxFiles = 256;
inline constexpr qsizetype kHandOverMaxPathBytes = 16384;

// Reads one message as its bytes arrive, in pieces of any size. Anything that isn't exactly one whole
// message of ours (another program's bytes, a longer message, a relative path, text that isn't UTF-8, more
// bytes after the end) is Bad, and stays Bad.
class HandOverReader {
public:
    enum class State { More, Done, Bad };
    State feed(QByteArrayView bytes);
    State state() const { return state_; }
    // The message once Done.
    const HandOver& message() const { return message_; }

private:
    State parsePayload();
    QByteArray buffer_;
    State state_ = State::More;
    HandOver message_;
};

// The whole message in bytes, or nothing when they are not one.
std::optional<HandOver> readHandOver(QByteArrayView bytes);

// Where the running IDE listens: one name per settings home, user and display, hashed, so that a test or a
// portable copy with its own settings home is another IDE. In runtimeDir when there is one.
QString singleInstanceAddress(const QString& configHome, const QString& user, const QString& display,
                              const QString& runtimeDir);

// How long a later start waits for the running IDE's answer before it starts an IDE of its own.
inline constexpr int kRunningIdeAnswerMs = 2000;

class SingleInstance {
public:
    virtual ~SingleInstance() = default;
    // Gives the message to the IDE that runs; true when it took it within timeoutMs. False when none runs,
    // or it didn't answer in time.
    virtual bool handOver(const HandOver& message, int timeoutMs) = 0;
    // Takes the messages of later starts from now on; each reaches onMessage on this thread's event loop.
    // False when the channel can't be made: this IDE then runs alone.
    virtual bool listen(std::function<void(const HandOver&)> onMessage) = 0;
};
