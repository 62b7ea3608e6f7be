#include "programmer/ProgrammerSession.h"

#include "core/Globals.h"

#include <QPointer>

#include <algorithm>

ProgrammerSession::ProgrammerSession(QObject* parent) : QObject(parent) {}

ProgrammerSession::~ProgrammerSession() = default;

void ProgrammerSession::start(Launcher& launcher, const ProgrammerCommand& command, const QString& workDir) {
    command_ = command;
    // The events come from the event loop; a session deleted before then hears nothing more.
    const QPointer<ProgrammerSession> self(this);
    ProcessEvents events;
    events.output = [self](ProcessEvents::Channel channel, const QByteArray& bytes) {
        if (self)
            self->arrived(channel, bytes);
    };
    events.ended = [self](const ProcessEnd& end) {
        if (self)
            self->finished(end);
    };
    // A port that the command line names is let go of first, so that the programmer can open it; a start
    // that throws gives it back at once.
    auto ports = globals().serialPorts.releasePortsNamedIn(command.args);
    process_ = launcher.startWatched(command.program, command.args, workDir, std::move(events));
    ports_ = std::move(ports);
}

void ProgrammerSession::stop() {
    if (running())
        process_->stop();
}

bool ProgrammerSession::running() const { return process_ && !end_; }

bool ProgrammerSession::failed() const {
    return end_ && !(end_->how == ProcessEnd::How::Exited && end_->exitStatus == 0);
}

QString ProgrammerSession::endText(const ProcessEnd& end) {
    switch (end.how) {
    case ProcessEnd::How::Exited:
        return end.exitStatus == 0
                   ? QStringLiteral("The programmer finished (exit status 0).")
                   : QStringLiteral("The programmer failed with exit status %1.").arg(end.exitStatus);
    case ProcessEnd::How::Crashed:
        return QStringLiteral("The programmer crashed.");
    case ProcessEnd::How::FailedToStart:
        return QStringLiteral("The programmer could not be started: ") + end.error;
    case ProcessEnd::How::Stopped:
        return QStringLiteral("The programmer was stopped.");
    }
    return {};
}

bool ProgrammerSession::wantsSetupCheck(const ProcessEnd& end, const QString& output, const QStringList& args) {
    if (end.how == ProcessEnd::How::FailedToStart)
        return true;
    if (end.how != ProcessEnd::How::Exited || end.exitStatus == 0)
        return false;
    if (end.exitStatus == 126 || end.exitStatus == 127)
        return true;
    const bool namesPort = std::any_of(args.begin(), args.end(),
                                       [](const QString& a) { return a.contains(QLatin1String("/dev/")); });
    return namesPort && (output.contains(QLatin1String("Permission denied"), Qt::CaseInsensitive) ||
                         output.contains(QLatin1String("EACCES")));
}

QString ProgrammerSession::Channel::take(const QByteArray& bytes) {
    QString text = decoder.decode(bytes);
    if (pendingCr) {
        // The "\r" that ended the last piece was a line end already.
        if (text.startsWith(QLatin1Char('\n')))
            text.remove(0, 1);
        pendingCr = false;
    }
    if (text.endsWith(QLatin1Char('\r')))
        pendingCr = true;
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

void ProgrammerSession::arrived(ProcessEvents::Channel channel, const QByteArray& bytes) {
    const bool isErr = channel == ProcessEvents::Channel::Err;
    const QString text = (isErr ? err_ : out_).take(bytes);
    if (text.isEmpty())
        return;
    output_ += text;
    emit outputArrived(text, isErr);
}

void ProgrammerSession::finished(const ProcessEnd& end) {
    if (end_)
        return;
    end_ = end;
    ports_.reset();
    emit ended();
}
