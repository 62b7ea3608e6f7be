// device.ide as any bytes: both readers end, never crash, list exactly the device lines, and read only
// digits into Ports; a mark without a digit is the one failure, reported in the reader's own box.
#include "FuzzWorld.h"
#include "devices/DeviceCatalogue.h"

namespace {

FuzzWorld* world;

// The lines as the catalogue splits them: at CR LF, LF or a lone CR.
QStringList catalogueLines(const QString& text) {
    QString t = text;
    t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    t.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QStringList lines = t.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();  // a last line end starts no line
    return lines;
}

QStringList expectedNames(const QStringList& lines, bool usePBP) {
    QStringList names;
    for (const QString& line : lines) {
        if (!usePBP && !line.contains(QLatin1String("PBC")))
            continue;
        const qsizetype colon = line.indexOf(QLatin1Char(':'));
        if (colon >= 0)
            names << line.left(colon);
    }
    return names;
}

void checkDeviceData(ListCombo& combo, int index) {
    combo.index = index;
    PortTable& ports = globals().Ports;
    ports = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7};  // none of the catalogue's, so a change shows
    const PortTable before = ports;
    world->prompts.boxes.clear();
    bool reloaded = false;
    GetDeviceData(combo, true, [&] { reloaded = true; });
    for (int p : ports)
        FUZZ_CHECK(p >= 0 && p <= 9, "port %d", p);
    const QString name = combo.List(index);
    if (!world->prompts.boxes.empty()) {
        FUZZ_CHECK(world->prompts.boxes.size() == 1);
        const RecordedBox& box = world->prompts.boxes.front();
        FUZZ_CHECK(box.text.startsWith(QStringLiteral("Get Device Data Error: ")), "%s", qPrintable(box.text));
        FUZZ_CHECK(box.title.isEmpty());
        FUZZ_CHECK(!reloaded, "words reloaded after a failure");
    } else {
        FUZZ_CHECK(reloaded, "words not reloaded");
    }
    // The line is compared in upper case and the entry as listed: an entry with a lower-case letter, or
    // no selection, matches nothing.
    if (index < 0 || index >= combo.ListCount() || name.toUpper() != name) {
        FUZZ_CHECK(ports == before, "ports changed for an entry that matches no line");
        FUZZ_CHECK(world->prompts.boxes.empty());
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    world = new FuzzWorld;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes = fuzzBytes(data, size);
    world->write(QStringLiteral("device.ide"), bytes);
    const QStringList lines = catalogueLines(QString::fromUtf8(bytes));

    ListCombo combo;
    for (bool usePBP : {false, true}) {
        globals().UsePBP = usePBP;
        combo.entries = {QStringLiteral("left over")};
        world->prompts.boxes.clear();
        GetDevices(combo);
        FUZZ_CHECK(world->prompts.boxes.empty(), "box: %s", qPrintable(world->prompts.boxes.front().text));
        FUZZ_CHECK(combo.entries == expectedNames(lines, usePBP), "listed %lld names",
                   static_cast<long long>(combo.entries.size()));
    }

    // No selection, one past the end, and the first and last few entries (a real catalogue has hundreds).
    checkDeviceData(combo, -1);
    checkDeviceData(combo, combo.ListCount());
    const int n = combo.ListCount();
    for (int i = 0; i < n; ++i) {
        if (i < 6 || i >= n - 2)
            checkDeviceData(combo, i);
    }
    return 0;
}
