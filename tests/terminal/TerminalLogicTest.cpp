// The serial terminal's rules without a window: its settings and their store, the line ends, hex input,
// the text and hex views of the traffic, and which command lines name a port.
#include "core/Globals.h"
#include "core/Settings.h"
#include "platform/SerialPortHandover.h"
#include "support/Doubles.h"
#include "terminal/HexInput.h"
#include "terminal/TerminalSettings.h"
#include "terminal/Transcript.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
const QTime t0(12, 34, 56, 789);
const QTime t1(12, 34, 57, 5);
}  // namespace

TEST(TerminalSettings, DefaultsRoundTripAndStoredTextsInSectionSerialTerminal) {
    TestWorld w;
    EXPECT_EQ(TerminalSettings::load(), TerminalSettings());
    EXPECT_EQ(TerminalSettings().lineEnd, LineEnd::CRLF);

    TerminalSettings s;
    s.serial = {"/dev/ttyACM0", 115200, 7, Parity::Even, StopBits::OneAndHalf};
    s.lineEnd = LineEnd::None;
    s.view = TerminalView::Hex;
    s.localEcho = s.timeStamps = s.hexInput = true;
    s.save();
    EXPECT_EQ(TerminalSettings::load(), s);
    const QSettings ini(settingsFilePath(), QSettings::IniFormat);
    const QStringList keys = {"Port", "Baud", "DataBits", "Parity", "StopBits", "LineEnd", "View", "LocalEcho",
                              "TimeStamps", "HexInput"};
    QStringList values;
    for (const QString& k : keys)
        values << ini.value("SerialTerminal/" + k).toString();
    EXPECT_EQ(values, QStringList({"/dev/ttyACM0", "115200", "7", "Even", "1.5", "None", "Hex", "1", "1", "1"}));

    // Each setting that isn't one of its names falls back to its own default alone.
    SaveSettings(applicationName(), "SerialTerminal",
                 {{"Baud", "250"}, {"DataBits", "9"}, {"Parity", "maybe"}, {"StopBits", "3"}, {"LineEnd", "cr"},
                  {"View", ""}, {"LocalEcho", "yes"}});
    const TerminalSettings back = TerminalSettings::load();
    EXPECT_EQ(back.serial, (SerialSettings{"/dev/ttyACM0", 9600, 8, Parity::None, StopBits::One}));
    EXPECT_EQ(back.lineEnd, LineEnd::CR);  // names are read in any letter case
    EXPECT_EQ(back.view, TerminalView::Text);
    EXPECT_FALSE(back.localEcho);
    EXPECT_TRUE(back.timeStamps);
}

TEST(TerminalSettings, BaudsFramesLineEndsAndNames) {
    const struct { const char* typed; std::optional<qint32> baud; } bauds[] = {
        {"300", 300}, {" 921600 ", 921600}, {"299", std::nullopt}, {"921601", std::nullopt}, {"31250", 31250},
        {"9600.5", std::nullopt}, {"", std::nullopt}, {"-9600", std::nullopt}};
    for (const auto& b : bauds)
        EXPECT_EQ(baudFrom(b.typed), b.baud) << b.typed;
    EXPECT_EQ(offeredBauds().front(), 300);
    EXPECT_EQ(offeredBauds().back(), 921600);
    for (const qint32 b : offeredBauds())
        EXPECT_EQ(baudFrom(QString::number(b)), b);

    EXPECT_EQ(frameText({"x", 9600, 8, Parity::None, StopBits::One}), "8N1");
    EXPECT_EQ(frameText({"x", 9600, 7, Parity::Even, StopBits::Two}), "7E2");
    EXPECT_EQ(frameText({"x", 9600, 5, Parity::Space, StopBits::OneAndHalf}), "5S1.5");
    EXPECT_EQ(frameText({"x", 9600, 6, Parity::Mark, StopBits::One}), "6M1");
    EXPECT_EQ(frameText({"x", 9600, 8, Parity::Odd, StopBits::One}), "8O1");

    const struct { LineEnd end; QByteArray bytes; } ends[] = {
        {LineEnd::CR, "Hi\xC3\xA9\r"}, {LineEnd::LF, "Hi\xC3\xA9\n"}, {LineEnd::CRLF, "Hi\xC3\xA9\r\n"},
        {LineEnd::None, "Hi\xC3\xA9"}};
    for (const auto& e : ends) {
        EXPECT_EQ(outgoingLine(QString::fromUtf8("Hié"), e.end), e.bytes);
        EXPECT_EQ(lineEndFrom(nameOf(e.end)), e.end);
    }
    EXPECT_EQ(lineEndNames(), QStringList({"CR", "LF", "CR LF", "None"}));
    for (const QString& n : parityNames())
        EXPECT_EQ(nameOf(*parityFrom(n)), n);
    for (const QString& n : stopBitsNames())
        EXPECT_EQ(nameOf(*stopBitsFrom(n)), n);
    EXPECT_EQ(serialPortPath("ttyUSB0"), "/dev/ttyUSB0");
    EXPECT_EQ(serialPortPath(" /tmp/pty/a "), "/tmp/pty/a");
    EXPECT_EQ(serialPortPath("./link"), "./link");
}

TEST(HexInput, GroupsPrefixesSeparatorsAndWhereItStops) {
    const struct { const char* text; QByteArray bytes; qsizetype errorAt; } cases[] = {
        {"48 65 6C 6C 6F 0D 0A", "Hello\r\n", -1},
        {"48656c6C6f", "Hello", -1},
        {"0x48,0X65, 0x0d", "He\r", -1},
        {" D  A\t", "\r\n", -1},
        {"", "", -1},
        {" , ,", "", -1},
        {"00 ff", QByteArray("\x00\xFF", 2), -1},
        {"486", "", 2},        // an odd run: its last digit
        {"48 6G", "H", 4},     // a letter that isn't hex
        {"0x", "", 0},         // a prefix without digits
        {"48 0x ", "H", 3},
        {"4 8 x", QByteArray("\x04\x08", 2), 4},
        {"48;65", "", 2},
        {"０A", "", 0},         // a full-width digit is no digit
    };
    for (const auto& c : cases) {
        const HexInput h = parseHexInput(QString::fromUtf8(c.text));
        EXPECT_EQ(h.errorAt, c.errorAt) << c.text;
        if (c.errorAt < 0) {
            EXPECT_EQ(h.bytes, c.bytes) << c.text;
        }
    }
    const QByteArray all = [] {
        QByteArray b;
        for (int i = 0; i < 256; ++i)
            b.append(char(i));
        return b;
    }();
    EXPECT_EQ(parseHexInput(hexText(all)).bytes, all);
    EXPECT_EQ(hexText("\r\n\xAB"), "0D 0A AB");
}

namespace {
// The view's text after the edits: what the window does to its document, on a string.
void applyEdits(QString& view, const std::vector<ViewEdit>& edits) {
    for (const ViewEdit& e : edits) {
        ASSERT_LE(e.removeTail, view.size());
        view.chop(e.removeTail);
        view += e.text;
    }
}

struct Piece {
    Direction d;
    QByteArray bytes;
    QTime at;
};

QString rendered(TerminalView view, bool stamps, const std::vector<Piece>& pieces) {
    Transcript t;
    t.restart(view, stamps);
    for (const Piece& p : pieces)
        t.add(p.d, p.bytes, p.at);
    return t.text(view, stamps);
}
}  // namespace

TEST(Transcript, TextViewLineEndsControlsUtf8DirectionsAndStamps) {
    const Direction I = Direction::In, O = Direction::Out;
    const struct { std::vector<Piece> pieces; bool stamps; QString text; } cases[] = {
        {{{I, "one\r\ntwo\rthree\nfour", t0}}, false, "one\ntwo\nthree\nfour"},
        // CR LF split over two pieces is one line end; LF CR is two.
        {{{I, "a\r", t0}, {I, "\nb\n\r", t1}}, false, "a\nb\n\n"},
        {{{I, "\x01\tx\x7F\x1B", t0}}, false, QString::fromUtf8("␁\tx␡␛")},
        // UTF-8 split inside a character, and a byte that isn't UTF-8.
        {{{I, "\xC3", t0}, {I, "\xA9\xFF", t1}}, false, QString::fromUtf8("é\uFFFD")},
        // Echo starts its own line, and the reply after it another; an echo of a whole line ends it.
        {{{I, "> ", t0}, {O, "led on\r", t1}, {I, "ok\r\n", t1}}, false, "> \nled on\nok\n"},
        {{{I, "\r", t0}, {O, "x", t1}, {I, "\ny", t1}}, false, "\nx\ny"},
        // Stamps: the time of a line's first byte; an empty line has one too.
        {{{I, "ab", t0}, {I, "c\r\n\r\nd", t1}}, true,
         "[12:34:56.789] abc\n[12:34:57.005] \n[12:34:57.005] d"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(rendered(TerminalView::Text, c.stamps, c.pieces), c.text) << c.text.toStdString();

    // A line without end is broken after its limit, the next part stamped anew.
    const QString longLine = rendered(TerminalView::Text, true, {{I, QByteArray(TrafficRender::kMaxLine + 5, 'x'), t0}});
    const QStringList parts = longLine.split('\n');
    ASSERT_EQ(parts.size(), 2);
    EXPECT_EQ(parts[0], "[12:34:56.789] " + QString(TrafficRender::kMaxLine, 'x'));
    EXPECT_EQ(parts[1], "[12:34:56.789] xxxxx");
}

TEST(Transcript, HexViewRowsDirectionsAndStamps) {
    const Direction I = Direction::In, O = Direction::Out;
    const QString pad(3 * 9 - 1, ' ');  // seven bytes shown leave nine places
    EXPECT_EQ(rendered(TerminalView::Hex, false, {{I, "Hello\r\n", t0}}), "48 65 6C 6C 6F 0D 0A" + pad + "   Hello..");
    const QString rows = rendered(TerminalView::Hex, true,
                                  {{I, "0123456789", t0}, {I, "abcdefgh", t1}, {O, "\x80", t1}, {I, "z", t1}});
    EXPECT_EQ(rows.split('\n'),
              QStringList({"[12:34:56.789] 30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66  0123456789abcdef",
                           "[12:34:57.005] 67 68" + QString(3 * 14 + 2, ' ') + "gh",
                           "[12:34:57.005] 80" + QString(3 * 15 + 2, ' ') + ".",
                           "[12:34:57.005] 7A" + QString(3 * 15 + 2, ' ') + "z"}));
}

TEST(Transcript, SlicesOfAnySizeBuildTheSameViewAndSwitchingViewsStartsAgain) {
    QByteArray bytes;
    for (int i = 0; i < 700; ++i)
        bytes.append(char((i * 37) % 256));
    bytes += "line\r\nend\r";
    const std::vector<Piece> pieces = {{Direction::In, bytes.left(33), t0}, {Direction::In, bytes.mid(33, 1), t0},
                                       {Direction::Out, "AT\r", t1}, {Direction::In, bytes.mid(34), t1},
                                       {Direction::In, "\n", t1}};
    for (const TerminalView view : {TerminalView::Text, TerminalView::Hex})
        for (const bool stamps : {false, true})
            for (const qsizetype budget : {1, 5, 16, 17, 4096}) {
                Transcript t;
                for (const Piece& p : pieces)
                    t.add(p.d, p.bytes, p.at);
                t.restart(view, stamps);
                QString view1;
                int turns = 0;
                while (!t.shownAll()) {
                    applyEdits(view1, t.next(budget));
                    ++turns;
                }
                EXPECT_TRUE(t.next(budget).empty());
                EXPECT_EQ(view1, t.text(view, stamps)) << int(view) << stamps << budget;
                EXPECT_GE(turns, (bytes.size() + 3) / budget);
                // More traffic after all was shown continues the same view.
                t.add(Direction::In, "tail", t1);
                applyEdits(view1, t.next(budget * 4));
                EXPECT_EQ(view1, t.text(view, stamps));
            }
    Transcript t;
    t.add(Direction::In, "abc", t0);
    t.clear();
    EXPECT_TRUE(t.shownAll() && t.next(100).empty() && t.text(TerminalView::Text, false).isEmpty());
}

TEST(Transcript, KeepsTheNewestWithinItsSizeAndShowsOnFromWhatIsLeft) {
    Transcript t(1000);
    t.add(Direction::In, QByteArray(600, 'a'), t0);
    QString view;
    applyEdits(view, t.next(100));  // part of the first shown
    t.add(Direction::In, QByteArray(300, 'b'), t0);
    t.add(Direction::In, QByteArray(300, 'c'), t0);
    ASSERT_EQ(t.record().size(), 2u);
    EXPECT_EQ(t.record().front().bytes, QByteArray(300, 'b'));
    applyEdits(view, t.next(10000));
    EXPECT_EQ(view, QString(100, 'a') + QString(300, 'b') + QString(300, 'c'));
    t.add(Direction::In, QByteArray(5000, 'd'), t0);  // larger than all: it alone stays
    EXPECT_EQ(t.record().size(), 1u);
}

namespace {
class Holder : public SerialPortHolder {
public:
    explicit Holder(QString port) : port(std::move(port)) {}
    QString port;
    QStringList events;
    bool refuse = false;
    QString heldPort() const override { return port; }
    bool release(const QString& p) override {
        events << "release " + p;
        return !refuse;
    }
    void reacquire() override { events << "reacquire"; }
};
}  // namespace

TEST(SerialPortHandover, ArgumentsThatNameAPortAndLeasesThatGiveItBack) {
    QTemporaryDir dir;
    const QString link = dir.filePath("board");
    ASSERT_TRUE(QFile::link("/dev/null", link));
    const struct { QString arg; QString port; bool names; } cases[] = {
        {"/dev/ttyUSB0", "/dev/ttyUSB0", true},
        {"-c/dev/ttyACM0", "/dev/ttyACM0", true},
        {"--port=/dev/ttyUSB0", "/dev/ttyUSB0", true},
        {"/dev/ttyUSB10", "/dev/ttyUSB1", false},
        {"-p/dev/ttyUSB1x", "/dev/ttyUSB1", false},
        {"/dev/ttyUSB0.hex", "/dev/ttyUSB0", false},
        {"-Fblink.hex", "/dev/null", false},
        {"", "/dev/null", false},
        {link, "/dev/null", true},  // a link to the port, and the port's link to the device
        {"/dev/null", link, true},
        {"-d" + link, "/dev/null", true},
        {dir.filePath("missing"), "/dev/null", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(argumentNamesPort(c.arg, c.port), c.names) << c.arg.toStdString() << " " << c.port.toStdString();

    SerialPortHandover h;
    Holder usb("/dev/ttyUSB0"), acm("/dev/ttyACM0"), none(""), refusing("/dev/ttyS0");
    refusing.refuse = true;
    for (Holder* x : {&usb, &acm, &none, &refusing, &usb})
        h.add(x);
    {
        auto lease = h.releasePortsNamedIn({"-c", "/dev/ttyUSB0", "-t", "16f1829", "/dev/ttyS0"});
        EXPECT_FALSE(lease->empty());
        EXPECT_EQ(usb.events, QStringList({"release /dev/ttyUSB0"}));  // once, though added twice
        EXPECT_TRUE(acm.events.isEmpty() && none.events.isEmpty());
        EXPECT_EQ(refusing.events, QStringList({"release /dev/ttyS0"}));
    }
    EXPECT_EQ(usb.events.last(), "reacquire");
    EXPECT_EQ(refusing.events.size(), 1);  // it kept its port: nothing to give back

    // A holder that is gone by the lease's end isn't called.
    auto lease = h.releasePortsNamedIn({"--port=/dev/ttyACM0"});
    h.remove(&acm);
    lease.reset();
    EXPECT_EQ(acm.events, QStringList({"release /dev/ttyACM0"}));
    EXPECT_TRUE(h.releasePortsNamedIn({"-P16F84A"})->empty());
}
