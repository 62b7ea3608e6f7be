// The terminal window's controls, their places and their wiring, as the window is made; its settings as
// the controls show them.
#include "terminal/SerialTerminal.h"

#include "core/Globals.h"
#include "platform/Failure.h"
#include "platform/SerialPort.h"
#include "terminal/TerminalTexts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

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
    if (!t)
        t = new SerialTerminal(ports, owner);
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

    // Three short rows, so that the window fits beside a frame on a small screen: the port and the buttons
    // that use it, the line's settings, the view's.
    auto* portRow = new QHBoxLayout;
    portRow->addWidget(label(this, QStringLiteral("&Port:"), Port));
    portRow->addWidget(Port, 1);
    portRow->addWidget(cmdRefresh);
    portRow->addWidget(cmdConnect);
    portRow->addWidget(cmdDisconnect);
    auto* lineRow = new QHBoxLayout;
    const std::pair<const char*, QComboBox*> line[] = {
        {"&Baud:", Baud}, {"Data:", DataBits}, {"Parity:", Parity}, {"Stop:", StopBits}, {"&Line end:", LineEnd}};
    for (const auto& [text, box] : line) {
        lineRow->addWidget(label(this, QString::fromLatin1(text), box));
        lineRow->addWidget(box);
    }
    lineRow->addStretch(1);
    auto* viewRow = new QHBoxLayout;
    viewRow->addWidget(label(this, QStringLiteral("&View:"), View));
    viewRow->addWidget(View);
    viewRow->addWidget(chkLocalEcho);
    viewRow->addWidget(chkTimeStamps);
    viewRow->addStretch(1);
    viewRow->addWidget(cmdClear);
    viewRow->addWidget(cmdSaveLog);
    auto* sendRow = new QHBoxLayout;
    sendRow->addWidget(SendText, 1);
    sendRow->addWidget(chkHexInput);
    sendRow->addWidget(cmdSend);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(portRow);
    layout->addLayout(lineRow);
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

    resize(sizeHint().expandedTo(QSize(640, 440)));
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
