// The device catalogue: which file is read, the device list, the port table, their failures, and the
// shipped data/device.ide.
#include "devices/DeviceCatalogue.h"
#include "support/FakeDeviceCombo.h"
#include "core/Globals.h"
#include "support/Doubles.h"
#include "support/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <iterator>

namespace {

const PortTable kSevens = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7};

class DeviceCatalogueTest : public ::testing::Test {
protected:
    TestWorld world;
    FakeDeviceCombo combo;
    int reloads = 0;

    void catalogue(const QByteArray& text) { world.write(QStringLiteral("device.ide"), text); }
    QStringList devices(bool pbp) {
        globals().UsePBP = pbp;
        GetDevices(combo);
        return combo.entries;
    }
    // The ports read for an entry with this name, starting from a table of sevens.
    PortTable portsOf(const QString& name, bool reloadWords = false) {
        globals().Ports = kSevens;
        combo.entries = {name};
        combo.index = 0;
        GetDeviceData(combo, reloadWords, [this] { ++reloads; });
        return globals().Ports;
    }
    // The boxes shown so far as "title|text|icon", the icon as its number (0 none, 1 critical), taken away.
    QString boxes() {
        QStringList shown;
        for (const Box& b : world.prompts.boxes)
            shown << b.title + "|" + b.text + "|" + QString::number(int(b.icon));
        world.prompts.boxes.clear();
        return shown.join('\n');
    }
};

TEST_F(DeviceCatalogueTest, ListsDeviceLinesInFileOrderOnlyThoseMarkedPbcForPicBasicWhateverTheLineEnds) {
    catalogue("Device list for tests, PBC devices follow\nPIC16F84A: PBC PORTA=5 PORTB=8\nPIC18F452: PORTA=7\n"
              " PIC12F675 :PBC GPIO=6\nPICPBC1:\nPIC16F877A: pbc\nA:B:C\n");
    combo.entries = {QStringLiteral("left over")};
    EXPECT_EQ(devices(true), QStringList({"PIC16F84A", "PIC18F452", " PIC12F675 ", "PICPBC1", "PIC16F877A", "A"}));
    // Only an upper-case "PBC" anywhere in the line counts, the name included.
    EXPECT_EQ(devices(false), QStringList({"PIC16F84A", " PIC12F675 ", "PICPBC1"}));
    // CR, LF or CR LF alike, also mixed in one file; an empty line between is no line.
    catalogue("PIC1: PORTA=1\rPIC2: PORTB=2\r\rPIC3: GPIO=3\r\nPIC4: PBC\nPIC5: PORTJ=5");
    EXPECT_EQ(devices(true), QStringList({"PIC1", "PIC2", "PIC3", "PIC4", "PIC5"}));
    EXPECT_EQ(portsOf("PIC2"), (PortTable{0, 0, 2, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(portsOf("PIC5"), (PortTable{0, 0, 0, 0, 0, 0, 0, 0, 0, 5}));
}

TEST_F(DeviceCatalogueTest, ReadsTheDigitBehindTheFirstOfEachMarkOfTheFirstMatchingLine) {
    catalogue("PIC16F877A:PBC porta=6 PORTB=8 PortC=8 PORTD=8 PORTE=3\r\n"
              "PIC18F97J60: PORTJ=9 PORTG=5 PORTB=12 PORTA=8 GPIO=0\nPIC16F84: PORTA=8 PORTA=0 PORTB=0\n"
              "PIC16F84: PORTA=3\npic16f628: PORTA=8\nPIC16F628: PORTB=8\nPIC16F8\n"
              "PIC16A: GPIO=2 PORTA=3 PORTB=4 PORTC=\nPIC16B: PORTA=Z PORTB=1\n");
    // The file's line is compared in upper case, the entry as it stands.
    const std::pair<const char*, PortTable> cases[] = {
        {"PIC16F877A", {0, 6, 8, 8, 8, 3, 0, 0, 0, 0}}, {"PIC18F97J60", {0, 8, 1, 0, 0, 0, 0, 5, 0, 9}},
        {"PIC16F84", {0, 8, 0, 0, 0, 0, 0, 0, 0, 0}},   {"PIC16F628", {0, 8, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"pic16f628", kSevens}};
    for (const auto& [name, ports] : cases)
        EXPECT_EQ(portsOf(name), ports) << name;
    // No matching device line: Ports stays, and the words are reloaded all the same.
    for (const char* name : {"PIC16F8", " PIC16F84", ""})
        EXPECT_EQ(portsOf(name, true), kSevens) << name;
    // A mark without a digit is reported, keeps what was read before it, and reloads nothing.
    EXPECT_EQ(portsOf("PIC16A", true), (PortTable{2, 3, 4, 7, 7, 7, 7, 7, 7, 7}));
    EXPECT_EQ(portsOf("PIC16B", true), (PortTable{0, 7, 7, 7, 7, 7, 7, 7, 7, 7}));
    EXPECT_EQ(reloads, 3);
    EXPECT_EQ(boxes(), "|Get Device Data Error: Type mismatch|0\n|Get Device Data Error: Type mismatch|0");
}

TEST_F(DeviceCatalogueTest, TheUsersOwnCatalogueWinsOverTheInstalledOneAndNeitherIsReportedByBothReaders) {
    QTemporaryDir share;
    world.paths.installedData = share.path();
    EXPECT_EQ(devices(true), QStringList());
    EXPECT_EQ(portsOf("PIC16F84", true), kSevens);
    // The message names the application directory's file, where a user would put one.
    const QString notFound = "|File: " + world.appDir() + "/device.ide not found|1";
    EXPECT_EQ(boxes(), "Get Micro Listing Error" + notFound + "\nGet Device Data Error" + notFound);
    ASSERT_TRUE(writeFile(share.filePath("device.ide"), "PIC16F84A: PBC PORTA=5\n"));
    EXPECT_EQ(devices(true), QStringList{"PIC16F84A"});
    catalogue("PIC18F452: PORTA=7\n");
    EXPECT_EQ(devices(true), QStringList{"PIC18F452"});
    EXPECT_EQ(boxes(), "");
    // Any other failure carries the platform's text behind the operation's, without a title.
    ASSERT_TRUE(QFile::remove(world.file("device.ide")) && QDir(world.appDir()).mkdir("device.ide"));
    devices(true);
    EXPECT_EQ(portsOf("PIC16F84"), kSevens);
    const QRegularExpression other("^\\|Get Micro Listing Error: [^\n]+\\|0\n\\|Get Device Data Error: [^\n]+\\|0$");
    EXPECT_TRUE(other.match(boxes()).hasMatch());
}

TEST_F(DeviceCatalogueTest, TheShippedFileHoldsEveryDeviceOnceInOrderAndIsWhatTheGeneratorMakes) {
    const QByteArray shipped = readFile(QStringLiteral(QB_SOURCE_DIR "/data/device.ide"));
    catalogue(shipped);
    const QStringList all = devices(true), pbc = devices(false);
    ASSERT_GT(all.size(), 600);
    EXPECT_EQ(all.first(), "PIC16F84A") << "a first start selects the first entry";
    EXPECT_EQ(QSet<QString>(all.begin(), all.end()).size(), all.size()) << "no name twice";
    // PicBasic gets the 12- and 14-bit cores and none of the PIC17 and PIC18.
    for (const QString& name : all)
        EXPECT_EQ(pbc.contains(name), !name.startsWith("PIC17") && !name.startsWith("PIC18")) << name.toStdString();
    // Family first, then natural order inside a family.
    const char* ordered[] = {"PIC10F200", "PIC12F675", "PIC14000", "PIC16C54", "PIC16F84",
                             "PIC16F628A", "PIC16F1827", "PIC17C44", "PIC18F452", "PIC18F4550"};
    for (size_t i = 1; i < std::size(ordered); ++i)
        EXPECT_LT(all.indexOf(ordered[i - 1]), all.indexOf(ordered[i])) << ordered[i];
    EXPECT_EQ(portsOf("PIC18F4550"), (PortTable{0, 7, 8, 7, 8, 4, 0, 0, 0, 0}));
    EXPECT_EQ(boxes(), "");

    const QString headers = QStringLiteral("/usr/share/gputils/header");
    if (!QFileInfo::exists(headers + "/p16f84a.inc"))
        GTEST_SKIP() << "gputils headers are not installed, so the file is not regenerated";
    QTemporaryDir dir;
    QProcess gen;
    gen.start("/bin/sh", {QB_SOURCE_DIR "/tools/gen-device-ide", "-d", headers, "-o", dir.filePath("device.ide")});
    ASSERT_TRUE(gen.waitForFinished(-1) && gen.exitStatus() == QProcess::NormalExit && gen.exitCode() == 0)
        << gen.readAllStandardError().toStdString();
    EXPECT_EQ(readFile(dir.filePath("device.ide")), shipped) << "data/device.ide is stale: run tools/gen-device-ide";
}

}  // namespace
