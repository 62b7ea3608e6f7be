#include "terminal/SerialTerminal.h"

#include "core/Globals.h"
#include "core/Settings.h"
#include "platform/Failure.h"
#include "platform/Prompts.h"
#include "platform/SerialPort.h"
#include "terminal/HexInput.h"
#include "terminal/TerminalTexts.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// Bytes drawn in one turn of the event loop: what keeps a turn well under a frame at 921600 baud, where
// about 92 kB come each second.
constexpr qsizetype kTextSlice = 8 * 1024;
constexpr qsizetype kHexSlice = 2 * 1024;
// Lines the view holds; older ones go from its top. The record behind it keeps more for a log.
constexpr int kViewLines = 20000;

QComboBox* list(QWidget* parent, const QStringList& items, bool editable = false) {
    auto* box = new QComboBox(parent);
    box->addItems(items);
    box->setEditable(editable);
    return box;
}

QLabel* label(QWidget* parent, const QString& text, QWidget* buddy) {
    auto* l = new QLabel(text, parent);
    l->setBuddy(buddy);
    return l;
}

}  // namespace

SerialTerminal* SerialTerminal::find() {
    for (QWidget* w : globals().loadedWindows)
        if (auto* t = qobject_cast<SerialTerminal*>(w))
            return t;
    return nullptr;
}

SerialTerminal& SerialTerminal::showBeside(QWidget* owner, SerialPorts& ports) {
    SerialTerminal* t = find();
    if (!t) {
        t = new SerialTerminal(ports, owner);
        t->setAttribute(Qt::WA_DeleteOnClose, false);
    }
    t->listPorts();
    t->show();
    t->raise();
    t->activateWindow();
    return *t;
}

SerialTerminal::SerialTerminal(SerialPorts& ports, QWidget* owner) : QWidget(owner, Qt::Window), ports_(ports) {
    setWindowTitle(terminalTitle());
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);

    Port = list(this, {}, true);
    Port->setMinimumContentsLength(16);
    Port->setToolTip(QStringLiteral("The serial port: one of the system's, or a path typed in"));
    cmdRefresh = new QToolButton(this);
    cmdRefresh->setText(QStringLiteral("\u21BB"));
    cmdRefresh->setToolTip(QStringLiteral("List the ports again"));
    QStringList bauds;
    for (const qint32 b : offeredBauds())
        bauds << QString::number(b);
    Baud = list(this, bauds, true);
    Baud->setValidator(new QIntValidator(1, 921600, Baud));
    Baud->setInsertPolicy(QComboBox::NoInsert);
    DataBits = list(this, dataBitsNames());
    Parity = list(this, parityNames());
    StopBits = list(this, stopBitsNames());
    cmdConnect = new QPushButton(QStringLiteral("&Connect"), this);
    cmdDisconnect = new QPushButton(QStringLiteral("&Disconnect"), this);

    View = list(this, viewNames());
    chkLocalEcho = new QCheckBox(QStringLiteral("Local &echo"), this);
    chkTimeStamps = new QCheckBox(QStringLiteral("&Time stamps"), this);
    LineEnd = list(this, lineEndNames());
    LineEnd->setToolTip(QStringLiteral("What each line sent ends with"));
    cmdClear = new QPushButton(QStringLiteral("Clea&r"), this);
    cmdSaveLog = new QPushButton(QStringLiteral("&Save Log..."), this);

    Output = new QPlainTextEdit(this);
    Output->setReadOnly(true);
    Output->setUndoRedoEnabled(false);
    Output->setFont(fixed);
    Output->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    SendText = new QLineEdit(this);
    SendText->setFont(fixed);
    SendText->setToolTip(QStringLiteral("A line to send; Enter sends it with its line end"));
    chkHexInput = new QCheckBox(QStringLiteral("&Hex"), this);
    chkHexInput->setToolTip(QStringLiteral("Send the bytes typed as hex digits, such as 48 65 0D, and no line end"));
    cmdSend = new QPushButton(QStringLiteral("Se&nd"), this);
    Status = new QLabel(this);
    Status->setWordWrap(true);

    auto* settingsRow = new QHBoxLayout;
    settingsRow->addWidget(label(this, QStringLiteral("&Port:"), Port));
    settingsRow->addWidget(Port, 1);
    settingsRow->addWidget(cmdRefresh);
    settingsRow->addWidget(label(this, QStringLiteral("&Baud:"), Baud));
    settingsRow->addWidget(Baud);
    settingsRow->addWidget(label(this, QStringLiteral("Data:"), DataBits));
    settingsRow->addWidget(DataBits);
    settingsRow->addWidget(label(this, QStringLiteral("Parity:"), Parity));
    settingsRow->addWidget(Parity);
    settingsRow->addWidget(label(this, QStringLiteral("Stop:"), StopBits));
    settingsRow->addWidget(StopBits);
    settingsRow->addWidget(cmdConnect);
    settingsRow->addWidget(cmdDisconnect);
    auto* viewRow = new QHBoxLayout;
    viewRow->addWidget(label(this, QStringLiteral("&View:"), View));
    viewRow->addWidget(View);
    viewRow->addWidget(chkLocalEcho);
    viewRow->addWidget(chkTimeStamps);
    viewRow->addWidget(label(this, QStringLiteral("&Line end:"), LineEnd));
    viewRow->addWidget(LineEnd);
    viewRow->addStretch(1);
    viewRow->addWidget(cmdClear);
    viewRow->addWidget(cmdSaveLog);
    auto* sendRow = new QHBoxLayout;
    sendRow->addWidget(SendText, 1);
    sendRow->addWidget(chkHexInput);
    sendRow->addWidget(cmdSend);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(settingsRow);
    layout->addLayout(viewRow);
    layout->addWidget(Output, 1);
    layout->addLayout(sendRow);
    layout->addWidget(Status);

    setControls(TerminalSettings::load());
    listPorts();
    setStatus(notConnectedText());
    showState();

    connect(cmdConnect, &QPushButton::clicked, this, [this] { cmdConnect_Click(); });
    connect(cmdDisconnect, &QPushButton::clicked, this, [this] { cmdDisconnect_Click(); });
    connect(cmdRefresh, &QToolButton::clicked, this, [this] { cmdRefresh_Click(); });
    connect(cmdSend, &QPushButton::clicked, this, [this] { cmdSend_Click(); });
    connect(SendText, &QLineEdit::returnPressed, this, [this] { cmdSend_Click(); });
    connect(cmdClear, &QPushButton::clicked, this, [this] { cmdClear_Click(); });
    connect(cmdSaveLog, &QPushButton::clicked, this, [this] { cmdSaveLog_Click(); });
    for (QComboBox* box : {Port, Baud})
        connect(box, &QComboBox::editTextChanged, this, [this] { Settings_Change(); });
    for (QComboBox* box : {DataBits, Parity, StopBits, LineEnd})
        connect(box, &QComboBox::currentIndexChanged, this, [this] { Settings_Change(); });
    for (QCheckBox* box : {chkLocalEcho, chkHexInput})
        connect(box, &QCheckBox::toggled, this, [this] { Settings_Change(); });
    connect(View, &QComboBox::currentIndexChanged, this, [this] { View_Change(); });
    connect(chkTimeStamps, &QCheckBox::toggled, this, [this] { View_Change(); });

    sliceTimer_.setSingleShot(true);
    sliceTimer_.setInterval(0);
    connect(&sliceTimer_, &QTimer::timeout, this, [this] { showSlice(); });

    resize(760, 420);
    // Beside the frame on its right, moved in as far as the screen needs, lower down when it covers the frame.
    if (owner) {
        const QRect f = owner->frameGeometry();
        const QScreen* s = owner->screen();
        const QRect room = s ? s->availableGeometry() : QRect();
        QPoint at(f.right() + 1, f.top());
        if (room.isValid() && at.x() + width() > room.right() + 1) {
            at.setX(std::max(room.left(), room.right() + 1 - width()));
            at.setY(std::max(f.top(), std::min(f.bottom() - height() / 2, room.bottom() + 1 - height())));
        }
        move(at);
    }
    globals().addWindow(this);
    globals().serialPorts.add(this);
}

SerialTerminal::~SerialTerminal() {
    globals().serialPorts.remove(this);
    globals().removeWindow(this);
}

void SerialTerminal::setControls(const TerminalSettings& s) {
    showing_ = true;
    Port->setEditText(s.serial.port);
    Baud->setEditText(QString::number(s.serial.baud));
    lastBaud_ = s.serial.baud;
    DataBits->setCurrentText(QString::number(s.serial.dataBits));
    Parity->setCurrentText(nameOf(s.serial.parity));
    StopBits->setCurrentText(nameOf(s.serial.stopBits));
    LineEnd->setCurrentText(nameOf(s.lineEnd));
    View->setCurrentText(nameOf(s.view));
    chkLocalEcho->setChecked(s.localEcho);
    chkTimeStamps->setChecked(s.timeStamps);
    chkHexInput->setChecked(s.hexInput);
    transcript_.restart(s.view, s.timeStamps);
    showing_ = false;
}

TerminalSettings SerialTerminal::settings() const {
    TerminalSettings s;
    s.serial.port = Port->currentText().trimmed();
    s.serial.baud = baudFrom(Baud->currentText()).value_or(lastBaud_);
    s.serial.dataBits = dataBitsFrom(DataBits->currentText()).value_or(8);
    s.serial.parity = parityFrom(Parity->currentText()).value_or(Parity::None);
    s.serial.stopBits = stopBitsFrom(StopBits->currentText()).value_or(StopBits::One);
    s.lineEnd = lineEndFrom(LineEnd->currentText()).value_or(LineEnd::CRLF);
    s.view = viewFrom(View->currentText()).value_or(TerminalView::Text);
    s.localEcho = chkLocalEcho->isChecked();
    s.timeStamps = chkTimeStamps->isChecked();
    s.hexInput = chkHexInput->isChecked();
    return s;
}

void SerialTerminal::Settings_Change() {
    if (showing_)
        return;
    const TerminalSettings s = settings();
    lastBaud_ = s.serial.baud;
    // The store is a convenience: a failed write costs the user nothing now.
    skipOnFailure([&] { s.save(); });
}

void SerialTerminal::View_Change() {
    if (showing_)
        return;
    Settings_Change();
    const TerminalSettings s = settings();
    transcript_.restart(s.view, s.timeStamps);
    Output->clear();
    showSlice();
}

void SerialTerminal::listPorts() {
    const QString typed = Port->currentText();
    showing_ = true;
    Port->clear();
    for (const SerialPortEntry& e : ports_.list()) {
        Port->addItem(e.path);
        Port->setItemData(Port->count() - 1, e.description, Qt::ToolTipRole);
    }
    Port->setEditText(typed);
    showing_ = false;
}

void SerialTerminal::cmdRefresh_Click() { listPorts(); }

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
        message(QStringLiteral("The baud rate is a whole number from 300 to 921600."));
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
    out.setForeground(QColor(0, 0, 160));
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
