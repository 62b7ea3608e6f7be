#pragma once
// Everything that leaves the process: programs, the compile script, web links.

#include <QString>
#include <QStringList>
#include <memory>

// A compile script started without a terminal; ending it ends its whole process group.
class HiddenProcess {
public:
    virtual ~HiddenProcess() = default;
    virtual void terminate() = 0;
    virtual bool running() const = 0;
};

class Launcher {
public:
    virtual ~Launcher() = default;
    // Starts a program without waiting. Throws Failure kFileNotFound when the program isn't there,
    // another Failure with the OS text when it can't be started.
    virtual void startDetached(const QString& program, const QStringList& args, const QString& workDir) = 0;
    // Runs a script hidden, in its own process group. Throws Failure when it can't start.
    virtual std::unique_ptr<HiddenProcess> startHidden(const QString& script, const QString& workDir) = 0;
    // Runs a script in the user's terminal emulator. False when none could be started.
    virtual bool startInTerminal(const QString& script, const QString& workDir) = 0;
    // Opens a URL with the user's default handler, without waiting. False when that failed.
    virtual bool openUrl(const QString& url) = 0;
};
