#pragma once
// Everything that leaves the process: programs, the compile script, web links.

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

// A compile script started without a terminal; ending it ends its whole process group.
class HiddenProcess {
public:
    virtual ~HiddenProcess() = default;
    virtual void terminate() = 0;
    virtual bool running() const = 0;
    // Called once, on the thread of the event loop, when the script has ended by itself; not after
    // terminate(). A process that can't tell its end never calls it.
    virtual void whenFinished(std::function<void()> callback) { (void)callback; }
    // The script's process id, which is also its process group; 0 when there is none.
    virtual qint64 processId() const { return 0; }
    // The script's exit status when it ended by itself, also when terminate() came later; none while it
    // runs, when terminate() ended it, or when it can't tell.
    virtual std::optional<int> exitStatus() const { return std::nullopt; }
    // Nobody waits for the script any more: it runs on to its own end, and dropping the handle no longer
    // ends it. No end is told after this.
    virtual void letRun() {}
};

// How a watched program ended.
struct ProcessEnd {
    enum class How {
        Exited,         // it ended by itself, with exitStatus
        Crashed,        // a signal ended it
        FailedToStart,  // it never ran; error holds the system's text
        Stopped,        // stop() ended it
    };
    How how = How::Exited;
    int exitStatus = 0;
    QString error;
};

// What a watched program reports, on the thread of the event loop, never from within the start itself:
// each piece of its output as it arrives, then its end, once.
struct ProcessEvents {
    enum class Channel { Out, Err };
    std::function<void(Channel, const QByteArray&)> output;
    std::function<void(const ProcessEnd&)> ended;
};

// A program started with its standard output and standard error captured, in its own process group.
// Dropping the handle ends a program that still runs, with everything it started, and tells nothing; it is
// not dropped from within its own events.
class WatchedProcess {
public:
    virtual ~WatchedProcess() = default;
    virtual bool running() const = 0;
    // Asks the program and its process group to end, and makes sure of it shortly after; its end is
    // told as Stopped.
    virtual void stop() = 0;
};

class Launcher {
public:
    virtual ~Launcher() = default;
    // Starts a program without waiting; a Windows program (a PE image) through wine. Throws Failure
    // kFileNotFound when the program isn't there, another Failure with the OS text when it can't be
    // started, or with wineMissingMessage when it needs wine and there is none.
    virtual void startDetached(const QString& program, const QStringList& args, const QString& workDir) = 0;
    // Starts a program as startDetached does, but watched: its output and end reach events. Throws as
    // startDetached does for what can be told before the start; a start that fails later ends with
    // FailedToStart.
    virtual std::unique_ptr<WatchedProcess> startWatched(const QString& program, const QStringList& args,
                                                         const QString& workDir, ProcessEvents events) = 0;
    // Runs a script hidden, in its own process group. Throws Failure when it can't start.
    virtual std::unique_ptr<HiddenProcess> startHidden(const QString& script, const QString& workDir) = 0;
    // Runs a script in the user's terminal emulator. False when none could be started.
    virtual bool startInTerminal(const QString& script, const QString& workDir) = 0;
    // Opens a URL with the user's default handler, without waiting. False when that failed.
    virtual bool openUrl(const QString& url) = 0;
};

// text in single quotes for sh, any single quote inside closed, escaped and reopened.
inline QString shellQuote(const QString& text) {
    QString quoted = text;
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

// The message for a launch that failed, naming what it tried to open.
inline QString unableToLaunchText(const QString& what) {
    return QStringLiteral("Unable to launch application.\r\r") + what;
}

// What the compile script in a terminal needs: one of these, found on PATH.
inline QString terminalCandidatesText() {
    return QStringLiteral("a terminal ($TERMINAL, x-terminal-emulator or xterm)");
}
