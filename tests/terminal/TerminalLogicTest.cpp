// The serial terminal's rules without a window: its settings and their store, the line ends, hex input,
// the text and hex views of the traffic, and which command lines name a port.
#include "core/Globals.h"
#include "core/Settings.h"
#include "platform/SerialPortHandover.h"
#include "support/Doubles.h"
#include "terminal/HexInput.h"
#include "terminal/TerminalSettings.h"
#include "terminal/Transcript.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
const QTime t0(12, 34, 56, 789);
const QTime t1(12, 34, 57, 5);
}  // namespace

TEST(TerminalSettings, DefaultsStoreBaudsFramesAndLineEnds) {
    TestWorld w;
    EXPECT_EQ(TerminalSettings::load(), TerminalSettings());
    TerminalSettings s;
    s.serial = {"/dev/ttyACM0", 115200, 7, Parity::Even, StopBits::OneAndHalf};
    s.lineEnd = LineEnd::None;
    s.view = TerminalView::Hex;
    s.localEcho = s.timeStamps = s.hexInput = true;
    s.save();
    EXPECT_EQ(TerminalSettings::load(), s);
    EXPECT_EQ(GetSettings(applicationName(), "SerialTerminal", {"Port", "Baud", "DataBits", "Parity", "StopBits",
                                                                 "LineEnd", "View", "LocalEcho", "TimeStamps", "HexInput"}),
              (QHash<QString, QString>{{"Port", "/dev/ttyACM0"}, {"Baud", "115200"}, {"DataBits", "7"},
                                       {"Parity", "Even"}, {"StopBits", "1.5"}, {"LineEnd", "None"}, {"View", "Hex"},
                                       {"LocalEcho", "1"}, {"TimeStamps", "1"}, {"HexInput", "1"}}));
    // Each value that isn't one of its names falls back to its own default alone; names in any case.
    SaveSettings(applicationName(), "SerialTerminal",
                 {{"Baud", "250"}, {"DataBits", "9"}, {"Parity", "maybe"}, {"StopBits", "3"}, {"LineEnd", "cr"},
                  {"View", ""}, {"LocalEcho", "yes"}});
    const TerminalSettings back = TerminalSettings::load();
    EXPECT_EQ(back.serial, (SerialSettings{"/dev/ttyACM0", 9600, 8, Parity::None, StopBits::One}));
    EXPECT_EQ(std::tuple(back.lineEnd, back.view, back.localEcho, back.timeStamps),
              std::tuple(LineEnd::CR, TerminalView::Text, false, true));

    for (const auto& [typed, baud] : std::initializer_list<std::pair<const char*, std::optional<qint32>>>{
             {"300", 300}, {" 921600 ", 921600}, {"31250", 31250}, {"299", {}}, {"921601", {}}, {"9600.5", {}}, {"", {}}})
        EXPECT_EQ(baudFrom(typed), baud) << typed;
    EXPECT_EQ(frameText({"x", 9600, 8, Parity::None, StopBits::One}), "8N1");
    EXPECT_EQ(frameText({"x", 9600, 5, Parity::Space, StopBits::OneAndHalf}), "5S1.5");
    const std::pair<LineEnd, QByteArray> ends[] = {
        {LineEnd::CR, "Hi\xC3\xA9\r"}, {LineEnd::LF, "Hi\xC3\xA9\n"}, {LineEnd::CRLF, "Hi\xC3\xA9\r\n"},
        {LineEnd::None, "Hi\xC3\xA9"}};
    for (const auto& [end, bytes] : ends)
        EXPECT_EQ(outgoingLine(QString::fromUtf8("Hié"), end), bytes);
    EXPECT_EQ(serialPortPath("ttyUSB0") + serialPortPath(" /tmp/pty "), "/dev/ttyUSB0/tmp/pty");
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

TEST(Transcript, TextAndHexViewsLineEndsControlsUtf8DirectionsAndStamps) {
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
    EXPECT_EQ(longLine.split('\n'), QStringList({"[12:34:56.789] " + QString(TrafficRender::kMaxLine, 'x'),
                                                "[12:34:56.789] xxxxx"}));

    // Hex: rows of one direction, 16 bytes at most, filled up across pieces.
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
