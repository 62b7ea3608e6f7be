#pragma once
// The "Serial Terminal" window: a top-level window beside the frame that talks to the board through a
// serial port. It shows what comes in as text or hex, sends a line with its line end, keeps its settings in
// the store's SerialTerminal section, and lives on when the port goes away. While a programmer uses its
// port it lets go, and takes the port back when the programmer ends. There is one for the application;
// closing it lets go of the port and hides it.
//
// It is a window of its own and not a dock of the frame: its mnemonics (Alt+C Connect) would clash with
// the frame's menus (Alt+C Compile) inside the frame's window, and a user puts it on another screen.

#include "platform/SerialPortHandover.h"
#include "terminal/TerminalSettings.h"
#include "terminal/Transcript.h"

#include <QTimer>
#include <QWidget>
#include <memory>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QToolButton;
class SerialPort;
class SerialPorts;
struct Failure;

class SerialTerminal : public QWidget, public SerialPortHolder {
    Q_OBJECT
public:
    // The window, or null before it was first shown.
    static SerialTerminal* find();
    // Shows the window, made now beside owner if there is none, and brings it forward.
    static SerialTerminal& showBeside(QWidget* owner, SerialPorts& ports);

    explicit SerialTerminal(SerialPorts& ports, QWidget* owner = nullptr);
    ~SerialTerminal() override;

    QComboBox* Port = nullptr;  // listed ports; a path may be typed
    QToolButton* cmdRefresh = nullptr;
    QComboBox* Baud = nullptr;  // offered rates; another may be typed
    QComboBox* DataBits = nullptr;
    QComboBox* Parity = nullptr;
    QComboBox* StopBits = nullptr;
    QPushButton* cmdConnect = nullptr;
    QPushButton* cmdDisconnect = nullptr;
    QComboBox* View = nullptr;
    QCheckBox* chkLocalEcho = nullptr;
    QCheckBox* chkTimeStamps = nullptr;
    QComboBox* LineEnd = nullptr;
    QPushButton* cmdClear = nullptr;
    QPushButton* cmdSaveLog = nullptr;
    QPlainTextEdit* Output = nullptr;
    QLineEdit* SendText = nullptr;
    QCheckBox* chkHexInput = nullptr;
    QPushButton* cmdSend = nullptr;
    QLabel* Status = nullptr;

    void cmdConnect_Click();
    void cmdDisconnect_Click();
    void cmdRefresh_Click();
    void cmdSend_Click();
    void cmdClear_Click();
    void cmdSaveLog_Click();
    // The view or the time stamps changed: everything kept is shown again in the new form.
    void View_Change();
    // Any setting changed: the store gets it at once.
    void Settings_Change();

    // The settings as the controls show them; a baud rate being typed that isn't one yet keeps the last.
    TerminalSettings settings() const;
    SerialPort* port() const { return port_.get(); }
    const Transcript& transcript() const { return transcript_; }
    // Draws at once what waits for the next turns of the event loop.
    void catchUp();

    QString heldPort() const override;
    bool release(const QString& port) override;
    void reacquire() override;

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void Port_Received();
    void Port_Vanished(const QString& why);
    void open(const SerialSettings& s);
    void letGo();
    void setControls(const TerminalSettings& s);
    void showState();
    void setStatus(const QString& text);
    void listPorts();
    void record(Direction d, const QByteArray& bytes);
    void showSlice();
    void apply(const std::vector<ViewEdit>& edits);
    void message(const QString& text);

    SerialPorts& ports_;
    std::unique_ptr<SerialPort> port_;
    // The port let go of for a programmer, to be opened again with these settings; none when not lent.
    std::optional<SerialSettings> lent_;
    Transcript transcript_;
    QTimer sliceTimer_;
    qint32 lastBaud_ = 9600;
    bool showing_ = false;
};
