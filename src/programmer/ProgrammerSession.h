#pragma once
// One run of the programmer, from its start to its end: the command, its output as it arrives (standard
// output and standard error, each in the order written), and how it ended. The frame never waits for it.

#include "platform/Launcher.h"
#include "platform/SerialPortHandover.h"
#include "programmer/ProgrammerTemplate.h"

#include <QObject>
#include <QString>
#include <QStringDecoder>
#include <memory>
#include <optional>

class ProgrammerSession : public QObject {
    Q_OBJECT
public:
    explicit ProgrammerSession(QObject* parent = nullptr);
    ~ProgrammerSession() override;

    // Starts command in workDir through launcher and returns at once. Throws Failure as the launcher does
    // when the program can't be started at all; then the session stays unstarted.
    void start(Launcher& launcher, const ProgrammerCommand& command, const QString& workDir);
    // Asks a running programmer to end; its end then comes as Stopped.
    void stop();
    bool running() const;

    const ProgrammerCommand& command() const { return command_; }
    // Everything it wrote so far, both channels in the order it came, line ends made "\n".
    QString output() const { return output_; }
    // How it ended; none while it runs or before the start.
    std::optional<ProcessEnd> end() const { return end_; }
    // It ended, otherwise than by itself with exit status 0.
    bool failed() const;

    // The line that tells how a run ended.
    static QString endText(const ProcessEnd& end);
    // A run that ended for want of something on this machine: the program could not be started (126 and
    // 127 are a shell's and wine's "cannot run" and "not found"), or a serial port that its arguments name
    // was refused to it ("Permission denied" in its output).
    static bool wantsSetupCheck(const ProcessEnd& end, const QString& output, const QStringList& args);

signals:
    // A piece of output, line ends made "\n"; standardError tells the channel.
    void outputArrived(const QString& text, bool standardError);
    void ended();

private:
    // Bytes to text for one channel: UTF-8 across chunk borders, "\r\n" and a lone "\r" made "\n".
    struct Channel {
        QStringDecoder decoder{QStringDecoder::Utf8};
        bool pendingCr = false;
        QString take(const QByteArray& bytes);
    };
    void arrived(ProcessEvents::Channel channel, const QByteArray& bytes);
    void finished(const ProcessEnd& end);

    ProgrammerCommand command_;
    // The serial ports lent to the programmer while it runs; before process_, so that they come back only
    // after a programmer still running at the session's end has been ended.
    std::unique_ptr<SerialPortLease> ports_;
    std::unique_ptr<WatchedProcess> process_;
    Channel out_;
    Channel err_;
    QString output_;
    std::optional<ProcessEnd> end_;
};
