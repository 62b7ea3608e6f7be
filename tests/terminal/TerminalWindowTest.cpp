// The terminal window over the serial port double: connecting and its failures, hex input and echo, the
// views, the log, the store, and lending the port.
#include "core/Settings.h"
#include "platform/Failure.h"
#include "support/Doubles.h"
#include "support/FakeSerialPort.h"
#include "support/Files.h"
#include "terminal/SerialTerminal.h"
#include "terminal/TerminalTexts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
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
            EXPECT_EQ(std::tuple(b.title, b.icon, b.buttons), std::tuple("Serial Terminal", Icon::Exclamation, Buttons::Ok));
            out << b.text;
        }
        return out;
    }
    void connectTo(const QString& port) {
        t->Port->setEditText(port);
        t->cmdConnect_Click();
    }
    // Connect, Disconnect, Send and the port list as they are enabled.
    std::array<bool, 4> enabled() const {
        return {t->cmdConnect->isEnabled(), t->cmdDisconnect->isEnabled(), t->cmdSend->isEnabled(), t->Port->isEnabled()};
    }
};

}  // namespace

TEST_F(TerminalTest, ConnectsWithTheSettingsShownKeepsThemAndAltCIsConnect) {
    EXPECT_EQ(t->Port->count(), 2);
    EXPECT_EQ(t->Port->itemData(0, Qt::ToolTipRole).toString(), "FT232R USB UART");
    EXPECT_EQ(status(), "not connected");
    EXPECT_EQ(enabled(), (std::array{true, false, false, true}));
    t->Baud->setEditText("115200");
    t->DataBits->setCurrentText("7");
    t->Parity->setCurrentText("Odd");
    t->StopBits->setCurrentText("2");
    t->LineEnd->setCurrentText("LF");
    t->Port->setEditText("ttyACM0");
    t->show();
    t->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(t.get()));
    QTest::keyClick(t->Output, Qt::Key_C, Qt::AltModifier);
    // A mnemonic clicks the button as a user sees it pressed: the click comes from the event loop.
    ASSERT_TRUE(waitFor([&] { return t->port() != nullptr; }));
    EXPECT_EQ(ports.opened, QList<SerialSettings>({{"ttyACM0", 115200, 7, Parity::Odd, StopBits::Two}}));
    EXPECT_EQ(status(), "connected to /dev/ttyACM0 at 115200 7O2");
    EXPECT_EQ(t->heldPort(), "/dev/ttyACM0");
    EXPECT_EQ(enabled(), (std::array{false, true, true, false}));
    EXPECT_TRUE(t->SendText->hasFocus());

    const TerminalSettings kept = t->settings();
    t->cmdDisconnect_Click();
    EXPECT_EQ(status(), "not connected");
    EXPECT_FALSE(ports.last);  // closed, not only forgotten
    t = std::make_unique<SerialTerminal>(ports);
    EXPECT_EQ(t->settings(), kept);
    EXPECT_TRUE(w.prompts.boxes.empty());
}

// The other failures of an open come from the system in the pty tests; root may open anything, so this one
// comes from the double.
TEST_F(TerminalTest, APortNotAllowedNamesTheDialoutGroupAndItsCommand) {
    ports.failures.insert("/dev/ttyUSB0", osFailure(EACCES, "/dev/ttyUSB0"));
    connectTo("ttyUSB0");
    connectTo(" ");
    t->Baud->setEditText("50");
    connectTo("/dev/ttyACM0");
    EXPECT_EQ(boxTexts(),
              QStringList({"You may not open /dev/ttyUSB0.\n\nSerial ports belong to the group dialout. Join it with\n\n"
                           "    sudo usermod -aG dialout $USER\n\nthen log out and in again.",
                           "Choose a port from the list, or type its path.",
                           "The baud rate is a whole number from 300 to 921600."}));
    EXPECT_TRUE(ports.opened.isEmpty());
    EXPECT_EQ(status(), "not connected");
    EXPECT_EQ(enabled(), (std::array{true, false, false, true}));
}

TEST_F(TerminalTest, HexInputEchoAndAWriteToAPortGone) {
    connectTo("/dev/ttyUSB0");
    FakeSerialPort* port = ports.last;
    t->SendText->setText("led 1");
    QTest::keyClick(t->SendText, Qt::Key_Return);
    EXPECT_TRUE(shown().isEmpty());  // no echo unless asked
    t->chkLocalEcho->setChecked(true);
    t->chkHexInput->setChecked(true);
    for (const char* hex : {"0x41 42,0d", "41 4", "41 4G"})  // a single digit is a byte of its own
        t->SendText->setText(hex), t->cmdSend_Click();
    EXPECT_EQ(port->written, QByteArray("led 1\r\nAB\rA\x04", 12));
    EXPECT_EQ(t->SendText->text(), "41 4G");  // kept for mending
    EXPECT_EQ(boxTexts(), QStringList({notHexText("41 4G", 4)}));
    EXPECT_EQ(shown(), QString::fromUtf8("AB\nA␄"));
    EXPECT_EQ(t->transcript().record()[0].direction, Direction::Out);
    EXPECT_EQ(TerminalSettings::load().hexInput, true);

    port->gone = true;
    t->SendText->setText("41");
    t->cmdSend_Click();
    EXPECT_TRUE(status().startsWith("disconnected: /dev/ttyUSB0 went away")) << status().toStdString();
    EXPECT_EQ(enabled(), (std::array{true, false, false, true}));
}

TEST_F(TerminalTest, ViewsStampsClearAndTheLog) {
    connectTo("/dev/ttyUSB0");
    ports.last->arrive("T=21.5\r\n");
    ports.last->arrive("OK");
    EXPECT_EQ(shown(), "T=21.5\nOK");
    t->View->setCurrentText("Hex");
    EXPECT_EQ(shown(), "54 3D 32 31 2E 35 0D 0A 4F 4B" + QString(47 - 29 + 2, ' ') + "T=21.5..OK");
    t->chkTimeStamps->setChecked(true);
    EXPECT_TRUE(QRegularExpression(R"(^\[\d\d:\d\d:\d\d\.\d\d\d\] 54 3D)").match(shown()).hasMatch()) << shown().toStdString();
    EXPECT_EQ(std::pair(TerminalSettings::load().view, TerminalSettings::load().timeStamps), std::pair(TerminalView::Hex, true));

    // The log holds all that is kept, in the view's form; a cancel writes nothing, a failure says why.
    const QString log = w.file("log.txt");
    w.prompts.files = {log, std::nullopt, w.file("no/such/folder/log.txt")};
    for (int i = 0; i < 3; ++i)
        t->cmdSaveLog_Click();
    EXPECT_EQ(QString::fromUtf8(readFile(log)), t->transcript().text(TerminalView::Hex, true));
    ASSERT_EQ(boxTexts().size(), 1);
    EXPECT_TRUE(boxTexts()[0].startsWith("The log could not be saved: " + w.file("no/such/folder/log.txt")));

    t->cmdClear_Click();
    EXPECT_TRUE(shown().isEmpty());
    ports.last->arrive("A");
    EXPECT_TRUE(shown().endsWith("] 41" + QString(3 * 15 + 2, ' ') + "A")) << shown().toStdString();
}

TEST_F(TerminalTest, LendsItsPortAndTakesItBackOrSaysWhyNot) {
    connectTo("/dev/ttyUSB0");
    EXPECT_FALSE(t->release("/dev/ttyACM0"));
    EXPECT_TRUE(t->release("/dev/ttyUSB0"));
    EXPECT_EQ(status(), "disconnected while a programmer uses /dev/ttyUSB0");
    EXPECT_EQ(enabled(), (std::array{true, true, false, true}));
    // The programmer left it unusable.
    ports.failures.insert("/dev/ttyUSB0", osFailure(ENOENT, "/dev/ttyUSB0"));
    t->reacquire();
    EXPECT_EQ(status(), "disconnected: /dev/ttyUSB0 could not be opened again after the programmer "
                        "(/dev/ttyUSB0: No such file or directory)");
    // A Disconnect while it is lent keeps it closed.
    ports.failures.clear();
    t->cmdConnect_Click();
    t->release("/dev/ttyUSB0");
    t->cmdDisconnect_Click();
    t->reacquire();
    EXPECT_EQ(ports.opened.size(), 2);
    EXPECT_TRUE(w.prompts.boxes.empty());
    // Closing the window lets go of the port; the window stays for the next View > Serial Terminal.
    t->cmdConnect_Click();
    t->close();
    EXPECT_FALSE(ports.last);
    EXPECT_EQ(SerialTerminal::find(), t.get());
}
