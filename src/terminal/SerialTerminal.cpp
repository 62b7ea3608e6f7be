#include "terminal/SerialTerminal.h"

#include "core/Globals.h"
#include "core/Settings.h"
#include "platform/Failure.h"
#include "platform/Prompts.h"
#include "platform/SerialPort.h"
#include "terminal/HexInput.h"
#include "terminal/TerminalTexts.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QToolButton>

namespace {

// Bytes drawn in one turn of the event loop: what keeps a turn well under a frame at 921600 baud, where
// about 92 kB come each second.
constexpr qsizetype kTextSlice = 8 * 1024;
constexpr qsizetype kHexSlice = 2 * 1024;
// Lines the view holds; older ones go from its top. The record behind it keeps more for a log.
constexpr int kViewLines = 20000;
const QColor kSentColor(0, 0, 160);

}  // namespace

void SerialTerminal::message(const QString& text) {
    globals().prompts->message(text, terminalTitle(), Icon::Exclamation, Buttons::Ok);
}

void SerialTerminal::cmdConnect_Click() {
    const TerminalSettings s = settings();
    if (s.serial.port.isEmpty()) {
        message(noPortText());
        return;
    }
    if (!baudFrom(Baud->currentText())) {
        message(badBaudText());
        return;
    }
    skipOnFailure([&] { s.save(); });
    try {
        open(s.serial);
        SendText->setFocus();
    } catch (const Failure& f) {
        setStatus(notConnectedText());
        message(openFailureText(serialPortPath(s.serial.port), f));
    }
    showState();
}

void SerialTerminal::open(const SerialSettings& s) {
    letGo();
    port_ = ports_.open(s);
    connect(port_.get(), &SerialPort::received, this, [this] { Port_Received(); });
    connect(port_.get(), &SerialPort::vanished, this, [this](const QString& why) { Port_Vanished(why); });
    setStatus(connectedText(s));
    showState();
}

void SerialTerminal::letGo() {
    lent_.reset();
    // Closed now: a programmer that starts next opens it.
    port_.reset();
}

void SerialTerminal::cmdDisconnect_Click() {
    letGo();
    setStatus(notConnectedText());
    showState();
}

void SerialTerminal::Port_Received() {
    if (port_)
        record(Direction::In, port_->readAll());
}

void SerialTerminal::Port_Vanished(const QString& why) {
    const QString path = heldPort();
    lent_.reset();
    // The port may be within its own signal: it goes after it.
    if (port_)
        port_.release()->deleteLater();
    setStatus(vanishedText(path, why));
    listPorts();
    showState();
}

void SerialTerminal::cmdSend_Click() {
    if (!port_)
        return;
    const TerminalSettings s = settings();
    const QString text = SendText->text();
    QByteArray bytes;
    if (s.hexInput) {
        const HexInput hex = parseHexInput(text);
        if (!hex.ok()) {
            message(notHexText(text, hex.errorAt));
            return;
        }
        bytes = hex.bytes;
    } else {
        bytes = outgoingLine(text, s.lineEnd);
    }
    try {
        port_->write(bytes);
    } catch (const Failure& f) {
        Port_Vanished(f.description);
        return;
    }
    if (s.localEcho)
        record(Direction::Out, bytes);
    SendText->clear();
}

void SerialTerminal::cmdClear_Click() {
    transcript_.clear();
    Output->clear();
}

void SerialTerminal::cmdSaveLog_Click() {
    int filter = 0;
    const QString dir = setting(Key::SourceCodePath);
    const std::optional<QString> path = globals().prompts->saveFile(
        QStringLiteral("Text Files (*.txt)|*.txt|All Files (*.*)|*.*|"), dir + QStringLiteral("/serial.txt"), filter);
    if (!path || path->isEmpty())
        return;
    const TerminalSettings s = settings();
    QSaveFile file(*path);
    const QByteArray bytes = transcript_.text(s.view, s.timeStamps).toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        message(QStringLiteral("The log could not be saved: %1: %2").arg(*path, file.errorString()));
}

void SerialTerminal::record(Direction d, const QByteArray& bytes) {
    if (bytes.isEmpty())
        return;
    transcript_.add(d, bytes, QTime::currentTime());
    if (!sliceTimer_.isActive())
        sliceTimer_.start();
}

void SerialTerminal::showSlice() {
    apply(transcript_.next(settings().view == TerminalView::Hex ? kHexSlice : kTextSlice));
    if (!transcript_.shownAll())
        sliceTimer_.start();
}

void SerialTerminal::catchUp() {
    sliceTimer_.stop();
    while (!transcript_.shownAll())
        apply(transcript_.next(kTextSlice));
}

void SerialTerminal::apply(const std::vector<ViewEdit>& edits) {
    if (edits.empty())
        return;
    QScrollBar* bar = Output->verticalScrollBar();
    const bool follow = bar->value() == bar->maximum();
    QTextCharFormat in, out;
    out.setForeground(kSentColor);
    QTextCursor c(Output->document());
    c.beginEditBlock();
    for (const ViewEdit& e : edits) {
        c.movePosition(QTextCursor::End);
        if (e.removeTail > 0)
            c.movePosition(QTextCursor::PreviousCharacter, QTextCursor::KeepAnchor, int(e.removeTail));
        c.insertText(e.text, e.direction == Direction::Out ? out : in);
    }
    c.endEditBlock();
    // The oldest lines go in one cut of their own. The view's own limit would step the cursor over each line
    // it drops, laying every one of them out again; in the same edit as the new text the change would span
    // the whole document, and the view would look at every line.
    if (const int extra = Output->document()->blockCount() - kViewLines; extra > 0) {
        c.setPosition(0);
        c.setPosition(Output->document()->findBlockByNumber(extra).position(), QTextCursor::KeepAnchor);
        c.removeSelectedText();
    }
    if (follow)
        bar->setValue(bar->maximum());
}

void SerialTerminal::setStatus(const QString& text) { Status->setText(text); }

void SerialTerminal::showState() {
    const bool open = port_ != nullptr;
    for (QWidget* w : std::initializer_list<QWidget*>{Port, cmdRefresh, Baud, DataBits, Parity, StopBits, cmdConnect})
        w->setEnabled(!open);
    cmdDisconnect->setEnabled(open || lent_.has_value());
    cmdSend->setEnabled(open);
}

QString SerialTerminal::heldPort() const { return port_ ? serialPortPath(port_->settings().port) : QString(); }

bool SerialTerminal::release(const QString& port) {
    if (!port_ || heldPort() != port)
        return false;
    const SerialSettings s = port_->settings();
    letGo();
    lent_ = s;
    setStatus(lentText(port));
    showState();
    return true;
}

void SerialTerminal::reacquire() {
    if (!lent_)
        return;
    const SerialSettings s = *lent_;
    try {
        open(s);
        // What came while the programmer had the port was the programmer's.
        port_->discardInput();
    } catch (const Failure& f) {
        lent_.reset();
        setStatus(notRegainedText(serialPortPath(s.port), f));
    }
    showState();
}

void SerialTerminal::closeEvent(QCloseEvent* e) {
    // A hidden window holding the port would keep every other program from it.
    letGo();
    setStatus(notConnectedText());
    showState();
    e->accept();
}
