// The terminal over Qt Serial Port with a pty pair from socat standing in for the USB adapter: the
// terminal opens one end, the test is the board at the other.
#include "core/Globals.h"
#include "platform/Failure.h"
#include "platform/SerialPortQt.h"
#include "programmer/ProgrammerSession.h"
#include "support/Doubles.h"
#include "support/Files.h"
#include "terminal/SerialTerminal.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class PtyPair {
public:
    explicit PtyPair(const QString& dir) : term(dir + "/term"), board(dir + "/board") {}
    ~PtyPair() { stop(); }
    const QString term;
    const QString board;

    // Up when socat has both ends and moves bytes between them.
    bool start() {
        log_.clear();
        socat_.setProcessChannelMode(QProcess::SeparateChannels);
        QObject::connect(&socat_, &QProcess::readyReadStandardError, [this] { log_ += socat_.readAllStandardError(); });
        socat_.start("socat", {"-d", "-d", "pty,raw,echo=0,link=" + term, "pty,raw,echo=0,link=" + board});
        if (!socat_.waitForStarted() || !waitFor([&] { return log_.contains("starting data transfer loop"); }))
            return false;
        fd_ = ::open(QFile::encodeName(board).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        return fd_ >= 0;
    }
    // The adapter pulled out: the pair is gone, links and all.
    void stop() {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = -1;
        if (socat_.state() != QProcess::NotRunning) {
            socat_.terminate();
            socat_.waitForFinished();
        }
        QObject::disconnect(&socat_, nullptr, nullptr, nullptr);
    }
    void send(const QByteArray& bytes) const { ASSERT_EQ(::write(fd_, bytes.constData(), bytes.size()), bytes.size()); }
    // What the board got, once n bytes have come.
    QByteArray receive(qsizetype n) {
        QByteArray got;
        waitFor([&] {
            char buf[4096];
            for (ssize_t r; (r = ::read(fd_, buf, sizeof buf)) > 0;)
                got.append(buf, r);
            return got.size() >= n;
        });
        return got;
    }

private:
    QProcess socat_;
    QByteArray log_;
    int fd_ = -1;
};

class PtyTest : public ::testing::Test {
protected:
    TestWorld w;
    QTemporaryDir dir;
    PtyPair pty{dir.path()};
    SerialPortsQt ports;
    std::unique_ptr<SerialTerminal> t;

    void SetUp() override {
        if (QStandardPaths::findExecutable("socat").isEmpty())
            GTEST_SKIP() << "socat is missing (scripts/setup installs it)";
        ASSERT_TRUE(pty.start());
        t = std::make_unique<SerialTerminal>(ports);
        t->Baud->setEditText("921600");
        t->Port->setEditText(pty.term);
    }
    void TearDown() override { t.reset(); }
    QString shown() {
        t->catchUp();
        return t->Output->toPlainText();
    }
    bool shows(const QString& text) {
        return waitFor([&] { return shown() == text; });
    }
    QString status() const { return t->Status->text(); }
    // The file descriptors of this process open on the port's device.
    int openOnPort() const {
        const QString device = QFileInfo(pty.term).canonicalFilePath();
        int n = 0;
        for (const QFileInfo& fd : QDir("/proc/self/fd").entryInfoList(QDir::System | QDir::NoDotAndDotDot))
            n += fd.symLinkTarget() == device;
        return n;
    }
};

}  // namespace

TEST_F(PtyTest, ReceivesSendsEachLineEndAndShowsEveryByteInHex) {
    t->cmdConnect_Click();
    ASSERT_TRUE(t->port()) << w.prompts.boxes.front().text.toStdString();
    EXPECT_EQ(status(), "connected to " + pty.term + " at 921600 8N1");
    EXPECT_EQ(openOnPort(), 1);
    pty.send("T=21.5\r\nready");
    EXPECT_TRUE(shows("T=21.5\nready")) << shown().toStdString();

    const struct { const char* end; QByteArray bytes; } ends[] = {
        {"CR", "led 1\r"}, {"LF", "led 1\n"}, {"CR LF", "led 1\r\n"}, {"None", "led 1"}};
    for (const auto& e : ends) {
        t->LineEnd->setCurrentText(e.end);
        t->SendText->setText("led 1");
        t->cmdSend_Click();
        EXPECT_EQ(pty.receive(e.bytes.size()), e.bytes) << e.end;
    }

    // Every byte value goes through untouched: no line end or signal character is taken by the tty.
    t->cmdClear_Click();
    t->View->setCurrentText("Hex");
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(char(i));
    pty.send(all);
    ASSERT_TRUE(waitFor([&] { return shown().count('\n') == 15 && shown().size() == 16 * 66 - 1; })) << shown().toStdString();
    const QStringList rows = shown().split('\n');
    EXPECT_EQ(rows[0], "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F  ................");
    EXPECT_EQ(rows[4], "40 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F  @ABCDEFGHIJKLMNO");
    EXPECT_EQ(rows[15], "F0 F1 F2 F3 F4 F5 F6 F7 F8 F9 FA FB FC FD FE FF  ................");
    EXPECT_TRUE(w.prompts.boxes.empty());
}

TEST_F(PtyTest, TheAdapterPulledOutAndPluggedInAgain) {
    t->cmdConnect_Click();
    ASSERT_TRUE(t->port());
    pty.send("before\r\n");
    ASSERT_TRUE(shows("before\n"));
    pty.stop();
    ASSERT_TRUE(waitFor([&] { return !t->port(); }));
    EXPECT_TRUE(status().startsWith("disconnected: " + pty.term + " went away")) << status().toStdString();
    EXPECT_TRUE(t->cmdConnect->isEnabled() && t->Port->isEnabled());
    EXPECT_EQ(openOnPort(), 0);

    // While it is out Connect says so; once it is back Connect works again.
    t->cmdConnect_Click();
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_EQ(w.prompts.boxes[0].text,
              "There is no serial port " + pty.term + ". Plug in the adapter, or choose another port.");
    ASSERT_TRUE(pty.start());
    t->cmdConnect_Click();
    ASSERT_TRUE(t->port());
    pty.send("after\r\n");
    EXPECT_TRUE(shows("before\nafter\n")) << shown().toStdString();
    t->SendText->setText("again");
    t->cmdSend_Click();
    EXPECT_EQ(pty.receive(7), "again\r\n");
}

TEST_F(PtyTest, PortsThatMayNotBeOpened) {
    // Held by another: Qt Serial Port's lock tells it even to root.
    std::unique_ptr<SerialPort> holder = ports.open({pty.term, 9600});
    const QString notATty = w.write("notatty", "x");
    for (const QString& port : {pty.term, dir.filePath("nothing"), notATty}) {
        t->Port->setEditText(port);
        t->cmdConnect_Click();
        EXPECT_FALSE(t->port());
    }
    ASSERT_EQ(w.prompts.boxes.size(), 3u);
    EXPECT_EQ(w.prompts.boxes[0].text, pty.term + " is in use by another program. Close that program, or choose another port.");
    EXPECT_EQ(w.prompts.boxes[1].text, "There is no serial port " + dir.filePath("nothing") +
                                           ". Plug in the adapter, or choose another port.");
    EXPECT_TRUE(w.prompts.boxes[2].text.startsWith(notATty + " could not be opened: " + notATty + ": "));
    holder.reset();

    // A device the user has no right to. Root has every right: the double's test shows that case alone then.
    if (::geteuid() == 0)
        return;
    const QByteArray device = QFile::encodeName(QFileInfo(pty.term).canonicalFilePath());
    ASSERT_EQ(::chmod(device.constData(), 0), 0);
    try {
        ports.open({pty.term, 9600});
        ADD_FAILURE() << "opened a port without rights";
    } catch (const Failure& f) {
        EXPECT_EQ(f.number, EACCES);
    }
    t->Port->setEditText(pty.term);
    t->cmdConnect_Click();
    ASSERT_EQ(w.prompts.boxes.size(), 4u);
    EXPECT_TRUE(w.prompts.boxes[3].text.contains("sudo usermod -aG dialout $USER"));
}

TEST_F(PtyTest, AProgrammerNamingThePortHasItWhileItRuns) {
    t->cmdConnect_Click();
    ASSERT_TRUE(t->port());

    auto run = std::make_unique<ProgrammerSession>();
    run->start(w.launcher, {"pp3", {"-c", pty.term, "-t", "16f1829", "blink.hex"}}, dir.path());
    EXPECT_FALSE(t->port());
    EXPECT_EQ(openOnPort(), 0);  // really closed, and the programmer can open it
    EXPECT_EQ(status(), "disconnected while a programmer uses " + pty.term);
    // What the board says to the programmer isn't the terminal's: the programmer reads it.
    std::unique_ptr<SerialPort> programmer;
    ASSERT_NO_THROW(programmer = ports.open({pty.term, 9600}));
    pty.send("boot\r\n");
    QByteArray heard;
    EXPECT_TRUE(waitFor([&] { return (heard += programmer->readAll()) == "boot\r\n"; })) << heard.toStdString();
    programmer.reset();

    w.launcher.runs.back()->end({ProcessEnd::How::Exited, 0, {}});
    ASSERT_TRUE(t->port());
    EXPECT_EQ(status(), "connected to " + pty.term + " at 921600 8N1");
    pty.send("running\r\n");
    EXPECT_TRUE(shows("running\n")) << shown().toStdString();

    // A start that fails gives it back at once; a session dropped while its programmer runs does too.
    w.launcher.failWatched = kFileNotFound;
    EXPECT_THROW(run->start(w.launcher, {"pp3", {"-c" + pty.term}}, dir.path()), Failure);
    EXPECT_TRUE(t->port());
    w.launcher.failWatched.reset();
    run = std::make_unique<ProgrammerSession>();
    run->start(w.launcher, {"picpro", {"program", "-p", QFileInfo(pty.term).canonicalFilePath()}}, dir.path());
    EXPECT_FALSE(t->port());
    run.reset();
    EXPECT_TRUE(t->port());
}
