#include "compile/CompilerScreen.h"

#include "compile/CompileSession.h"
#include "compile/MessageNavigation.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/KeyCodes.h"
#include "platform/Prompts.h"
#include "platform/QtFixedDialog.h"
#include "platform/Twips.h"
#include "core/Convert.h"
#include "core/Frame.h"
#include "core/Globals.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace {
constexpr int kEnter = 13, kEscape = 27, kF4 = 115;
// About a title bar's height.
constexpr int kCascadePixels = 28;

LineTone toneOf(CompileMessage::Severity s) {
    switch (s) {
    case CompileMessage::Severity::Error: return LineTone::Error;
    case CompileMessage::Severity::Warning: return LineTone::Warning;
    case CompileMessage::Severity::Note: break;
    }
    return LineTone::Note;
}

// A number as the title prints it: a blank in front unless it is negative.
QString printed(double n) {
    const QString digits = QString::number(n, 'g', 15);
    return n < 0 ? digits : QLatin1Char(' ') + digits;
}
}  // namespace

QString CompilerScreen::readyTitle() { return QStringLiteral("Compiler Output - Esc to Close"); }

QString CompilerScreen::cancelledTitle() {
    return QStringLiteral("Compiler Output - Auto Close Canceled - Esc to Close");
}

QString CompilerScreen::countingTitle(const QString& tag) {
    return QStringLiteral("Compiler Output - Auto Close in:") + printed(numberOf(tag)) +
           QStringLiteral(" Secs - Esc to Cancel");
}

std::vector<CompilerScreen*> CompilerScreen::all() {
    std::vector<CompilerScreen*> screens;
    for (QWidget* w : globals().loadedWindows)
        if (auto* screen = qobject_cast<CompilerScreen*>(w))
            screens.push_back(screen);
    return screens;
}

CompilerScreen* CompilerScreen::withMessages() {
    CompilerScreen* latest = nullptr;
    for (CompilerScreen* s : all())
        if (!s->messages_.empty() && (!latest || s->used_ > latest->used_))
            latest = s;
    return latest;
}

CompilerScreen* CompilerScreen::find() {
    const std::vector<CompilerScreen*> screens = all();
    return screens.empty() ? nullptr : screens.front();
}

CompilerScreen& CompilerScreen::fresh() {
    const auto& loaded = globals().loadedWindows;
    const auto others = int(all().size());
    auto* screen = new CompilerScreen(loaded.empty() ? nullptr : loaded.front());
    // A second compile's screen stands down and to the right of the first, not hiding it.
    screen->move(screen->pos() + QPoint(kCascadePixels, kCascadePixels) * others);
    return *screen;
}

CompilerScreen& CompilerScreen::instance() {
    CompilerScreen* live = find();
    return live ? *live : fresh();
}

CompilerScreen::CompilerScreen(QWidget* owner) : QWidget(owner, Qt::Window) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(readyTitle());

    CompilerOutput = new SourceView(this, true);
    CompilerOutput->setFontName(QStringLiteral("Courier New"));
    // Read-only: a message is found by its line, and Enter goes to it rather than breaking the line. The
    // loads (SetText, Document.LoadFile) lift the guard themselves.
    CompilerOutput->setReadOnly(true);
    connect(CompilerOutput, &SourceView::KeyDown, this, &CompilerScreen::CompilerOutput_KeyDown);
    connect(CompilerOutput, &SourceView::DblClick, this, &CompilerScreen::CompilerOutput_DblClick);
    connect(CompilerOutput, &SourceView::MouseDown, this, &CompilerScreen::CompilerOutput_MouseDown);
    MessageCount = new QLabel(this);
    MessageCount->setObjectName(QStringLiteral("MessageCount"));
    MessageCount->setTextFormat(Qt::PlainText);
    MessageCount->setIndent(6);
    MessageCount->hide();
    cmdCheckSetup = new QPushButton(checkSetupCaption(), this);
    cmdCheckSetup->hide();
    connect(cmdCheckSetup, &QPushButton::clicked, this, [this] {
        if (frame_)
            frame_->showSetupCheck();
    });

    CompileScreenTimer.setInterval(1000);
    connect(&CompileScreenTimer, &QTimer::timeout, this, &CompilerScreen::CompileScreenTimer_Timer);

    centreInTwips(*this, owner, 6420, 3195);
    Form_Resize();

    globals().addWindow(this);
}

CompilerScreen::~CompilerScreen() { globals().removeWindow(this); }

void CompilerScreen::startCountdown(const QString& seconds) {
    const QString title = countingTitle(seconds);
    CompileScreenTimer.Tag = seconds;
    setWindowTitle(title);
    CompileScreenTimer.start();
}

bool CompilerScreen::live() const {
    const auto& loaded = globals().loadedWindows;
    return std::find(loaded.begin(), loaded.end(), this) != loaded.end();
}

CompileSession* CompilerScreen::session() const { return session_; }

void CompilerScreen::setSession(CompileSession* session) {
    if (session == session_)
        return;
    if (session_)
        disconnect(session_, nullptr, this, nullptr);
    session_ = session;
    const bool had = !messages_.empty();
    messages_.clear();
    current_ = -1;
    MessageCount->hide();
    cmdCheckSetup->hide();
    Form_Resize();
    if (had && frame_)
        frame_->EnableTools();
    if (session_)
        connect(session_, &CompileSession::ended, this, &CompilerScreen::Session_Ended);
}

void CompilerScreen::Session_Ended() {
    // A screen that the user closed during the compile gave way to a new one, which shows the messages.
    CompileSession* s = session_;
    if (!s || s->screen() != this || s->outcome() != CompileSession::Outcome::OutputFound)
        return;
    showMessages(s->document().frame(), s->messages(), s->document().View->document().PathName());
}

void CompilerScreen::showMessages(Frame& frame, std::vector<CompileMessage> messages, const QString& source) {
    frame_ = &frame;
    messages_ = std::move(messages);
    source_ = source;
    current_ = -1;
    used_ = std::chrono::steady_clock::now();
    CompilerOutput->clearLineTags();
    tagMessageLines();
    const bool errors = std::any_of(messages_.begin(), messages_.end(), [](const CompileMessage& m) {
        return m.severity == CompileMessage::Severity::Error;
    });
    MessageCount->setText(messageCountText(messages_));
    MessageCount->setStyleSheet(errors ? QStringLiteral("font-weight: bold; color: #c01c28;")
                                       : QStringLiteral("font-weight: bold;"));
    MessageCount->setVisible(!messages_.empty());
    Form_Resize();
    frame.EnableTools();
}

QString CompilerScreen::countText() const { return MessageCount->isVisible() ? MessageCount->text() : QString(); }

bool CompilerScreen::goToMessage(int index) {
    if (!frame_ || index < 0 || index >= int(messages_.size()))
        return false;
    current_ = index;
    used_ = std::chrono::steady_clock::now();
    const CompileMessage& m = messages_[size_t(index)];
    SourceView& out = *CompilerOutput;
    // Selected from its end back to its start, so that a long line shows its start.
    out.SetSel(out.document().GetLineLength(m.outputLine), m.outputLine, 0, m.outputLine);
    const QString path = messageFilePath(m, source_);
    if (!frame_->editors().find(path) && !QFileInfo(path).isFile()) {
        globals().prompts->message(QStringLiteral("File Not Found: ") + path, QString(), Icon::None, Buttons::Ok);
        return false;
    }
    frmEditor* doc = nullptr;
    try {
        doc = &frame_->editors().show(path, false);
    } catch (const Failure& f) {
        skipOnFailure([&] { frame_->EnableTools(); });
        frame_->ShowError(f);
        return false;
    }
    SourceView& view = *doc->View;
    if (m.line > 0) {
        const int line = std::min(m.line, view.document().NumLines()) - 1;
        view.SetSel(0, line, view.document().GetLineLength(line), line);
        view.markMessageLine(line, toneOf(m.severity));
    }
    // The keys go to the document; the screen stays in sight above the frame for the next message.
    if (QWidget* w = frame_->frameWindow())
        w->activateWindow();
    view.setFocus();
    if (isVisible())
        raise();
    frame_->EnableTools();
    return true;
}

void CompilerScreen::tagMessageLines() {
    for (const CompileMessage& m : messages_) {
        CompilerOutput->setLineTag(m.outputLine, messageTag(m.severity), toneOf(m.severity));
        if (const QString note = mappedLineNote(m); !note.isEmpty())
            CompilerOutput->setLineNote(m.outputLine, note);
    }
}

bool CompilerScreen::stepMessage(bool forward) {
    const int next = ::stepMessage(messages_, current_, forward);
    return next >= 0 && goToMessage(next);
}

void CompilerScreen::tell(const QString& line) {
    SourceView& out = *CompilerOutput;
    QString text = out.Text();
    if (!text.isEmpty() && !text.endsWith(QLatin1Char('\n')))
        text += QLatin1Char('\n');
    // SetText takes the tags away with the old text: they come back on the same lines.
    out.SetText(text + line + QLatin1Char('\n'));
    tagMessageLines();
    out.setLineTag(out.document().NumLines() - 2, QStringLiteral("note"), LineTone::Note);
    cancelCountdown();
    if (!isVisible())
        show();
}

void CompilerScreen::offerSetupCheck(Frame& frame) {
    frame_ = &frame;
    cmdCheckSetup->show();
    Form_Resize();
}

void CompilerScreen::cancelCountdown() {
    if (!CompileScreenTimer.isActive())
        return;
    CompileScreenTimer.stop();
    setWindowTitle(cancelledTitle());
}

void CompilerScreen::CompilerOutput_KeyDown(int keyCode, int shift) {
    if (keyCode == kEnter) {
        goToMessage(messageAtLine(messages_, CompilerOutput->CaretY()));
        return;
    }
    if (keyCode == kF4) {
        stepMessage(!(shift & kShiftMask));
        return;
    }
    if (keyCode != kEscape)
        return;
    if (CompileScreenTimer.isActive())
        cancelCountdown();
    else
        close();
}

void CompilerScreen::CompilerOutput_DblClick() { goToMessage(messageAtLine(messages_, CompilerOutput->CaretY())); }

void CompilerScreen::CompilerOutput_MouseDown(int, int, int, int) {
    // A click means the user reads: the screen stays, as after Esc.
    cancelCountdown();
}

void CompilerScreen::CompileScreenTimer_Timer() {
    double left = 0;
    try {
        left = numberOf(CompileScreenTimer.Tag) - 1;
    } catch (const Failure&) {
        // A Tag that holds no number cannot count down: the screen stays until the user closes it.
        CompileScreenTimer.stop();
        return;
    }
    CompileScreenTimer.Tag = QString::number(left, 'g', 15);
    setWindowTitle(countingTitle(CompileScreenTimer.Tag));
    // Exactly 0: a start below 1 goes on into the negative numbers until Esc.
    if (left == 0)
        close();
}

void CompilerScreen::Form_Resize() {
    const QRect outer = frameGeometry();
    const int width = std::max(0, outer.width() - twipsToPixelsX(100));
    // The count stands above the output while there are messages: the output's foot lies below the client
    // area, as the outer size is taken.
    const QSize button = cmdCheckSetup->isVisibleTo(this) ? cmdCheckSetup->sizeHint() : QSize(0, 0);
    const int top = std::max(MessageCount->isVisible() ? MessageCount->sizeHint().height() + 4 : 0,
                             button.height() ? button.height() + 4 : 0);
    MessageCount->setGeometry(0, 0, std::max(0, width - button.width()), top);
    cmdCheckSetup->setGeometry(width - button.width(), 2, button.width(), button.height());
    CompilerOutput->setGeometry(0, top, width, std::max(0, outer.height() - twipsToPixelsY(100) - top));
}

void CompilerScreen::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    Form_Resize();
}

void CompilerScreen::closeEvent(QCloseEvent* e) {
    // A closed screen is gone for its users at once, even before Qt deletes it.
    CompileScreenTimer.stop();
    globals().removeWindow(this);
    e->accept();
    // Its messages are no longer there to step through.
    if (frame_ && !messages_.empty())
        skipOnFailure([&] { frame_->EnableTools(); });
}
