#include "programmer/ProgrammerOutput.h"

#include "core/Frame.h"
#include "core/Globals.h"
#include "platform/Prompts.h"
#include "platform/QtFixedDialog.h"
#include "platform/Twips.h"
#include "programmer/ProgrammerSession.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextCursor>
#include <QVBoxLayout>

namespace {

QString titleOf(const ProgrammerSession* run) {
    const QString base = QStringLiteral("Programmer Output");
    if (!run)
        return base;
    if (!run->end())
        return base + QStringLiteral(" - Running");
    if (run->end()->how == ProcessEnd::How::Stopped)
        return base + QStringLiteral(" - Stopped");
    return base + (run->failed() ? QStringLiteral(" - Failed") : QStringLiteral(" - Finished"));
}

}  // namespace

ProgrammerOutput* ProgrammerOutput::find() {
    for (QWidget* w : globals().loadedWindows)
        if (auto* out = qobject_cast<ProgrammerOutput*>(w))
            return out;
    return nullptr;
}

ProgrammerOutput& ProgrammerOutput::showRun(Frame& frame, std::unique_ptr<ProgrammerSession> session) {
    ProgrammerOutput* out = find();
    if (!out)
        out = new ProgrammerOutput(frame.frameWindow());
    out->frame_ = &frame;
    out->setSession(std::move(session));
    out->comeForward();
    return *out;
}

ProgrammerOutput::ProgrammerOutput(QWidget* owner) : QWidget(owner, Qt::Window) {
    setWindowTitle(titleOf(nullptr));

    Output = new QPlainTextEdit(this);
    Output->setReadOnly(true);
    Output->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    cmdStop = new QPushButton(QStringLiteral("&Stop"), this);
    cmdStop->setToolTip(QStringLiteral("End the programmer"));
    cmdClose = new QPushButton(QStringLiteral("&Close"), this);
    cmdClose->setToolTip(QStringLiteral("Hide this window; a running programmer goes on"));

    cmdCheckSetup = new QPushButton(checkSetupCaption(), this);
    cmdCheckSetup->setToolTip(QStringLiteral("What a launch needs of this machine, and what is missing"));
    cmdCheckSetup->hide();

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdCheckSetup);
    buttons->addStretch(1);
    buttons->addWidget(cmdStop);
    buttons->addWidget(cmdClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Output, 1);
    layout->addLayout(buttons);

    connect(cmdStop, &QPushButton::clicked, this, [this] { cmdStop_Click(); });
    connect(cmdClose, &QPushButton::clicked, this, [this] { cmdClose_Click(); });
    connect(cmdCheckSetup, &QPushButton::clicked, this, [this] { cmdCheckSetup_Click(); });

    centreInTwips(*this, owner, 6420, 3195);
    showState();

    globals().addWindow(this);
}

// The run goes with the window: a programmer still running then is ended.
ProgrammerOutput::~ProgrammerOutput() { globals().removeWindow(this); }

bool ProgrammerOutput::running() const { return session_ && session_->running(); }

void ProgrammerOutput::comeForward() {
    show();
    raise();
    activateWindow();
}

void ProgrammerOutput::cmdStop_Click() {
    if (running())
        session_->stop();
    cmdStop->setEnabled(false);
}

void ProgrammerOutput::cmdClose_Click() { close(); }

void ProgrammerOutput::cmdCheckSetup_Click() {
    if (frame_)
        frame_->showSetupCheck();
}

void ProgrammerOutput::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(e);
}

void ProgrammerOutput::setSession(std::unique_ptr<ProgrammerSession> session) {
    if (session_)
        session_->disconnect(this);
    session_ = std::move(session);
    Output->clear();
    cmdCheckSetup->hide();
    if (!session_) {
        showState();
        return;
    }
    append(QStringLiteral("> ") + commandLineText(session_->command()) + QLatin1Char('\n'), false, true);
    // What came before the window took the run: a run that ended at once.
    if (!session_->output().isEmpty())
        append(session_->output(), false);
    connect(session_.get(), &ProgrammerSession::outputArrived, this,
            [this](const QString& text, bool error) { append(text, error); });
    connect(session_.get(), &ProgrammerSession::ended, this, [this] { Session_Ended(); });
    if (session_->end())
        Session_Ended();
    showState();
}

void ProgrammerOutput::append(const QString& text, bool error, bool bold) {
    QScrollBar* bar = Output->verticalScrollBar();
    const bool following = bar->value() == bar->maximum();
    QTextCharFormat format;
    if (error)
        format.setForeground(QColor(0xB0, 0x00, 0x00));
    if (bold)
        format.setFontWeight(QFont::Bold);
    QTextCursor cursor(Output->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(text, format);
    // A reader who scrolled back keeps the place; otherwise the newest line stays in view.
    if (following)
        bar->setValue(bar->maximum());
}

void ProgrammerOutput::Session_Ended() {
    const QString written = session_->output();
    const QString gap = written.isEmpty() || written.endsWith(QLatin1Char('\n')) ? QString() : QStringLiteral("\n");
    append(gap + ProgrammerSession::endText(*session_->end()) + QLatin1Char('\n'), session_->failed(), true);
    cmdCheckSetup->setVisible(
        ProgrammerSession::wantsSetupCheck(*session_->end(), written, session_->command().args));
    showState();
    // A failure is not left behind the frame or hidden; the keyboard stays where the user is.
    if (session_->failed() && session_->end()->how != ProcessEnd::How::Stopped) {
        show();
        raise();
    }
}

void ProgrammerOutput::showState() {
    setWindowTitle(titleOf(session_.get()));
    cmdStop->setEnabled(running());
}
