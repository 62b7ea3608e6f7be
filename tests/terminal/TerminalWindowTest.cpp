// The terminal window over the serial port double: connecting and its failures, sending, the views, the
// log, the store, the port going away and coming back.
#include "core/Globals.h"
#include "core/Settings.h"
#include "platform/Failure.h"
#include "support/Doubles.h"
#include "support/FakeSerialPort.h"
#include "support/Files.h"
#include "terminal/SerialTerminal.h"
#include "terminal/TerminalTexts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

#include <cerrno>

namespace {

class TerminalTest : public ::testing::Test {
protected:
    TestWorld w;
    FakeSerialPorts ports;
    std::unique_ptr<SerialTerminal> t;

    void SetUp() override {
        ports.entries = {{"/dev/ttyUSB0", "FT232R USB UART"}, {"/dev/ttyACM0", ""}};
        t = std::make_unique<SerialTerminal>(ports);
    }
    QString shown() {
        t->catchUp();
        return t->Output->toPlainText();
    }
    QString status() const { return t->Status->text(); }
    QStringList boxTexts() const {
        QStringList out;
        for (const Box& b : w.prompts.boxes) {
            EXPECT_EQ(b.title, "Serial Terminal");
            EXPECT_EQ(b.icon, Icon::Exclamation);
            out << b.text;
        }
        return out;
    }
    void connectTo(const QString& port) {
        t->Port->setEditText(port);
        t->cmdConnect_Click();
    }
    // What the controls allow: Connect, Disconnect, Send, and the port list.
    std::array<bool, 4> enabled() const {
        return {t->cmdConnect->isEnabled(), t->cmdDisconnect->isEnabled(), t->cmdSend->isEnabled(),
                t->Port->isEnabled()};
    }
};

}  // namespace

TEST_F(TerminalTest, ConnectsWithTheSettingsShownAndKeepsThemInTheStore) {
    EXPECT_EQ(t->Port->count(), 2);
    EXPECT_EQ(t->Port->itemData(0, Qt::ToolTipRole).toString(), "FT232R USB UART");
    EXPECT_EQ(status(), "not connected");
    EXPECT_EQ(enabled(), (std::array{true, false, false, true}));

    t->Baud->setEditText("115200");
    t->DataBits->setCurrentText("7");
    t->Parity->setCurrentText("Odd");
    t->StopBits->setCurrentText("2");
    t->LineEnd->setCurrentText("LF");
    connectTo("ttyACM0");
    ASSERT_EQ(ports.opened.size(), 1);
    EXPECT_EQ(ports.opened[0], (SerialSettings{"ttyACM0", 115200, 7, Parity::Odd, StopBits::Two}));
    EXPECT_EQ(status(), "connected to /dev/ttyACM0 at 115200 7O2");
    EXPECT_EQ(t->heldPort(), "/dev/ttyACM0");
    EXPECT_EQ(enabled(), (std::array{false, true, true, false}));
    EXPECT_TRUE(w.prompts.boxes.empty());

    // A new window starts from the store.
    const TerminalSettings kept = t->settings();
    t->cmdDisconnect_Click();
    EXPECT_EQ(status(), "not connected");
    EXPECT_FALSE(ports.last);  // the port is closed, not only forgotten
    t = std::make_unique<SerialTerminal>(ports);
    EXPECT_EQ(t->settings(), kept);
    EXPECT_EQ(QSettings(settingsFilePath(), QSettings::IniFormat).value("SerialTerminal/Port").toString(), "ttyACM0");
}

TEST_F(TerminalTest, AltCConnectsFromTheKeyboard) {
    t->Port->setEditText("/dev/ttyUSB0");
    t->show();
    t->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(t.get()));
    t->SendText->setFocus();
    QTest::keyClick(t->SendText, Qt::Key_C, Qt::AltModifier);
    // A mnemonic clicks the button as a user sees it pressed: the click comes from the event loop.
    EXPECT_TRUE(waitFor([&] { return t->port() != nullptr; }));
    EXPECT_EQ(ports.opened.size(), 1);
}

TEST_F(TerminalTest, ConnectFailuresSayWhatToDoAndNameTheDialoutGroup) {
    ports.failures.insert("/dev/ttyUSB0", osFailure(EACCES, "/dev/ttyUSB0"));
    ports.failures.insert("/dev/ttyUSB1", osFailure(EBUSY, "/dev/ttyUSB1"));
    ports.failures.insert("/dev/ttyUSB2", osFailure(ENOENT, "/dev/ttyUSB2"));
    ports.failures.insert("/dev/ttyUSB3", Failure(EINVAL, "/dev/ttyUSB3: Unsupported operation"));
    for (const char* port : {"/dev/ttyUSB0", "ttyUSB1", "/dev/ttyUSB2", "/dev/ttyUSB3", " "})
        connectTo(port);
    t->Baud->setEditText("50");
    connectTo("/dev/ttyACM0");
    EXPECT_EQ(boxTexts(),
              QStringList({"You may not open /dev/ttyUSB0.\n\nSerial ports belong to the group dialout. Join it with\n\n"
                           "    sudo usermod -aG dialout $USER\n\nthen log out and in again.",
                           "/dev/ttyUSB1 is in use by another program. Close that program, or choose another port.",
                           "There is no serial port /dev/ttyUSB2. Plug in the adapter, or choose another port.",
                           "/dev/ttyUSB3 could not be opened: /dev/ttyUSB3: Unsupported operation",
                           "Choose a port from the list, or type its path.",
                           "The baud rate is a whole number from 300 to 921600."}));
    EXPECT_TRUE(ports.opened.isEmpty());
    EXPECT_EQ(status(), "not connected");
    EXPECT_EQ(enabled(), (std::array{true, false, false, true}));
}

TEST_F(TerminalTest, SendsEachLineEndHexAndEchoesWhenAsked) {
    connectTo("/dev/ttyUSB0");
    FakeSerialPort* port = ports.last;
    ASSERT_TRUE(port);
    const struct { const char* end; QByteArray bytes; } ends[] = {
        {"CR", "led 1\r"}, {"LF", "led 1\n"}, {"CR LF", "led 1\r\n"}, {"None", "led 1"}};
    for (const auto& e : ends) {
        port->written.clear();
        t->LineEnd->setCurrentText(e.end);
        t->SendText->setText("led 1");
        QTest::keyClick(t->SendText, Qt::Key_Return);
        EXPECT_EQ(port->written, e.bytes) << e.end;
        EXPECT_TRUE(t->SendText->text().isEmpty());
    }
    EXPECT_TRUE(shown().isEmpty());  // no echo unless asked

    port->written.clear();
    t->chkLocalEcho->setChecked(true);
    t->chkHexInput->setChecked(true);
    t->SendText->setText("0x41 42,0d");
    t->cmdSend_Click();
    t->SendText->setText("41 4");  // the single digit is a byte of its own
    t->cmdSend_Click();
    t->SendText->setText("41 4G");
    t->cmdSend_Click();
    EXPECT_EQ(port->written, QByteArray("AB\rA\x04", 5));
    EXPECT_EQ(t->SendText->text(), "41 4G");  // kept for mending
    EXPECT_EQ(boxTexts(), QStringList({notHexText("41 4G", 4)}));
    EXPECT_EQ(shown(), QString::fromUtf8("AB\nA␄"));
    EXPECT_EQ(t->transcript().record().size(), 2u);
    EXPECT_EQ(t->transcript().record()[0].direction, Direction::Out);
    EXPECT_EQ(QSettings(settingsFilePath(), QSettings::IniFormat).value("SerialTerminal/HexInput").toString(), "1");
}

TEST_F(TerminalTest, ViewsStampsClearAndTheLog) {
    connectTo("/dev/ttyUSB0");
    ports.last->arrive("T=21.5\r\n");
    ports.last->arrive("OK");
    EXPECT_EQ(shown(), "T=21.5\nOK");
    t->View->setCurrentText("Hex");
    EXPECT_EQ(shown(), "54 3D 32 31 2E 35 0D 0A 4F 4B" + QString(47 - 29 + 2, ' ') + "T=21.5..OK");
    t->chkTimeStamps->setChecked(true);
    const QStringList stamped = shown().split(' ');
    EXPECT_TRUE(QRegularExpression(R"(^\[\d\d:\d\d:\d\d\.\d\d\d\]$)").match(stamped[0]).hasMatch()) << stamped[0].toStdString();
    EXPECT_EQ(stamped[1], "54");
    EXPECT_EQ(TerminalSettings::load().view, TerminalView::Hex);
    EXPECT_TRUE(TerminalSettings::load().timeStamps);

    // The log holds the view's form, all of what is kept.
    const QString log = w.file("log.txt");
    w.prompts.files = {log, std::nullopt};
    t->cmdSaveLog_Click();
    t->cmdSaveLog_Click();  // cancelled: nothing written
    EXPECT_EQ(QString::fromUtf8(readFile(log)), t->transcript().text(TerminalView::Hex, true));
    EXPECT_TRUE(readFile(log).contains("54 3D 32"));
    w.prompts.files = {w.file("no/such/folder/log.txt")};
    t->cmdSaveLog_Click();
    ASSERT_EQ(boxTexts().size(), 1);
    EXPECT_TRUE(boxTexts()[0].startsWith("The log could not be saved: " + w.file("no/such/folder/log.txt")));

    t->cmdClear_Click();
    EXPECT_TRUE(shown().isEmpty());
    ports.last->arrive("A");
    EXPECT_TRUE(shown().endsWith("41" + QString(3 * 15 + 2, ' ') + "A"));
}

TEST_F(TerminalTest, AVanishedPortLeavesTheTerminalAndConnectWorksAgain) {
    connectTo("/dev/ttyUSB0");
    ports.last->arrive("before\r\n");
    ports.last->vanish("Input/output error");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(ports.last);
    EXPECT_EQ(status(), "disconnected: /dev/ttyUSB0 went away (Input/output error)");
    EXPECT_EQ(enabled(), (std::array{true, false, false, true}));
    EXPECT_EQ(shown(), "before\n");  // what came is kept

    // Back: the same settings connect again, and a write to a port gone since tells the same.
    t->cmdConnect_Click();
    EXPECT_EQ(ports.opened.size(), 2);
    ports.last->arrive("after\r\n");
    EXPECT_EQ(shown(), "before\nafter\n");
    ports.last->gone = true;
    t->SendText->setText("x");
    t->cmdSend_Click();
    EXPECT_TRUE(status().startsWith("disconnected: /dev/ttyUSB0 went away"));
    EXPECT_TRUE(w.prompts.boxes.empty());
}

TEST_F(TerminalTest, LendsItsPortAndTakesItBackOrSaysWhyNot) {
    connectTo("/dev/ttyUSB0");
    EXPECT_FALSE(t->release("/dev/ttyACM0"));
    EXPECT_TRUE(t->release("/dev/ttyUSB0"));
    EXPECT_FALSE(ports.last);
    EXPECT_EQ(status(), "disconnected while a programmer uses /dev/ttyUSB0");
    EXPECT_EQ(enabled(), (std::array{true, true, false, true}));
    t->reacquire();
    EXPECT_EQ(ports.opened.size(), 2);
    EXPECT_EQ(status(), "connected to /dev/ttyUSB0 at 9600 8N1");

    // The programmer left it unusable; and a Disconnect while lent keeps it closed.
    t->release("/dev/ttyUSB0");
    ports.failures.insert("/dev/ttyUSB0", osFailure(ENOENT, "/dev/ttyUSB0"));
    t->reacquire();
    EXPECT_EQ(status(), "disconnected: /dev/ttyUSB0 could not be opened again after the programmer (/dev/ttyUSB0: No "
                        "such file or directory)");
    ports.failures.clear();
    t->cmdConnect_Click();
    t->release("/dev/ttyUSB0");
    t->cmdDisconnect_Click();
    t->reacquire();
    EXPECT_EQ(ports.opened.size(), 3);
    EXPECT_FALSE(t->port());
    EXPECT_TRUE(w.prompts.boxes.empty());

    // Closing the window lets go of the port.
    t->cmdConnect_Click();
    t->close();
    EXPECT_FALSE(ports.last);
    EXPECT_EQ(SerialTerminal::find(), t.get());
}
