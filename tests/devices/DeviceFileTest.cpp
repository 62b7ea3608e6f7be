// The shipped catalogue data/device.ide and the generator that makes it from gputils' headers.
#include "devices/DeviceCatalogue.h"
#include "devices/FakeDeviceCombo.h"
#include "shell/Globals.h"
#include "support/Doubles.h"

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

const QString kSourceDir = QStringLiteral(QB_SOURCE_DIR);
const QString kHeaders = QStringLiteral("/usr/share/gputils/header");

QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Runs the generator; gives its exit code, with its error output in err.
int generate(const QStringList& args, QString* err = nullptr) {
    QProcess p;
    p.start(QStringLiteral("/bin/sh"), QStringList{kSourceDir + "/tools/gen-device-ide"} + args);
    p.waitForFinished(-1);
    if (err)
        *err = QString::fromLocal8Bit(p.readAllStandardError());
    return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
}

class ShippedCatalogue : public ::testing::Test {
protected:
    TestWorld world;
    FakeDeviceCombo combo;

    void SetUp() override {
        const QByteArray text = readAll(kSourceDir + "/data/device.ide");
        ASSERT_FALSE(text.isEmpty());
        world.write(QStringLiteral("device.ide"), text);
    }
    PortTable portsOf(const QString& name) {
        EXPECT_TRUE(combo.select(name)) << name.toStdString();
        globals().Ports.fill(-1);
        GetDeviceData(combo, false);
        return globals().Ports;
    }
};

TEST_F(ShippedCatalogue, HoldsEveryDeviceOnceWithItsCoreAndPorts) {
    GetDevices(combo);
    const QStringList all = combo.entries;
    globals().UsePBP = false;
    GetDevices(combo);
    const QStringList pbc = combo.entries;

    ASSERT_GT(all.size(), 600);
    EXPECT_EQ(all.first(), "PIC16F84A") << "a first start selects the first entry";
    EXPECT_EQ(pbc.first(), "PIC16F84A");
    EXPECT_EQ(QSet<QString>(all.begin(), all.end()).size(), all.size()) << "no name twice";
    const QRegularExpression form(QStringLiteral("^PIC1[0-8][0-9A-Z]+$"));
    for (const QString& name : all) {
        EXPECT_TRUE(form.match(name).hasMatch()) << name.toStdString();
        // PicBasic gets the 12- and 14-bit cores and none of the PIC17 and PIC18.
        const bool wide = name.startsWith("PIC17") || name.startsWith("PIC18");
        EXPECT_EQ(pbc.contains(name), !wide) << name.toStdString();
    }
    // Family first, then natural order inside a family.
    const char* ordered[] = {"PIC10F200", "PIC12F675", "PIC14000", "PIC16C54", "PIC16F84", "PIC16F628A",
                             "PIC16F877A", "PIC16F1827", "PIC17C44", "PIC18F97J60", "PIC18F452", "PIC18F4550"};
    for (size_t i = 1; i < std::size(ordered); ++i)
        EXPECT_LT(all.indexOf(ordered[i - 1]), all.indexOf(ordered[i])) << ordered[i];

    combo.entries = all;
    EXPECT_EQ(portsOf("PIC16F84A"), (PortTable{0, 5, 8, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(portsOf("PIC16F877A"), (PortTable{0, 6, 8, 8, 8, 3, 0, 0, 0, 0}));
    EXPECT_EQ(portsOf("PIC12F675"), (PortTable{6, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(portsOf("PIC18F4550"), (PortTable{0, 7, 8, 7, 8, 4, 0, 0, 0, 0}));
    EXPECT_EQ(portsOf("PIC18F97J60"), (PortTable{0, 6, 8, 8, 8, 8, 8, 8, 8, 8}));
    EXPECT_TRUE(world.prompts.boxes.empty());

    // Comment lines carry no colon, so neither reader takes them for devices.
    const QList<QByteArray> lines = readAll(kSourceDir + "/data/device.ide").split('\n');
    EXPECT_TRUE(lines.first().startsWith("; "));
    for (const QByteArray& line : lines)
        EXPECT_TRUE(line.startsWith("PIC") || !line.contains(':')) << line.toStdString();
}

TEST(DeviceCatalogueFile, IsWhatTheGeneratorMakesFromTheInstalledHeaders) {
    if (!QFileInfo::exists(kHeaders + "/p16f84a.inc"))
        GTEST_SKIP() << "gputils headers are not installed";
    QTemporaryDir dir;
    const QString out = dir.filePath("device.ide");
    QString err;
    ASSERT_EQ(generate({"-d", kHeaders, "-o", out}, &err), 0) << err.toStdString();
    EXPECT_EQ(readAll(out), readAll(kSourceDir + "/data/device.ide"))
        << "data/device.ide is stale: run tools/gen-device-ide";
}

// A header in the form of gputils' processor headers.
void header(const QTemporaryDir& dir, const QString& file, const QByteArray& body) {
    QFile f(dir.filePath(file));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(body);
}

TEST(DeviceCatalogueGenerator, AppliesItsRulesForNamesCoresPortsAndOrder) {
    QTemporaryDir dir;
    header(dir, "p16f84a.inc",
           "        IFNDEF __16F84A\n"
           "PORTA            EQU  H'0005'\n"
           "PORTB            EQU  H'0006'\n"
           "RA0 EQU H'0000'\nRA1 EQU H'0001'\nRA2 EQU H'0002'\nRA3 EQU H'0003'\nRA4 EQU H'0004'\n"
           "RB0 EQU H'0000'\nRB1 EQU H'0001'\nRB2 EQU H'0002'\nRB3 EQU H'0003'\n"
           "RB4 EQU H'0004'\nRB5 EQU H'0005'\nRB6 EQU H'0006'\nRB7 EQU H'0007'\n");
    // Bits by TRIS names only, a port without any bit names, a receive bit that looks like a port bit,
    // a register name without a port (PORTI).
    header(dir, "p16x10.inc",
           "  IFNDEF __16X10\n"
           "PORTA EQU H'0005'\nPORTC EQU H'0007'\nPORTD EQU H'0008'\nPORTI EQU H'0009'\n"
           "TRISA0 EQU H'0000'\nTRISA1 EQU H'0001'\n"
           "RC0 EQU H'0000'\nRC9 EQU H'0006'\nrc1 equ H'0001'\n");
    header(dir, "p16x2.inc",
           "  IFNDEF __16X2\n"
           "GPIO EQU H'0006'\nGP0 EQU 0\nGP1 EQU 1\nGPIO1 EQU 1\nGPIO2 EQU 2\n");
    header(dir, "p18x1.inc",
           "  IFNDEF __18X1\n"
           "PORTJ EQU H'0F88'\nTBLPTRL EQU H'0FF6'\nRJ7 EQU 7\n");
    header(dir, "p12x1.inc", "  IFNDEF __12X1\nGPIO EQU H'0006'\n");
    // A generic header, no device of its own.
    header(dir, "p16c5x.inc", "PORTA EQU H'0005'\n");

    QTemporaryDir outDir;
    const QString out = outDir.filePath("device.ide");
    QString err;
    ASSERT_EQ(generate({"-d", dir.path(), "-o", out}, &err), 0) << err.toStdString();
    QStringList devices;
    for (const QString& line : QString::fromUtf8(readAll(out)).split('\n'))
        if (line.contains(':'))
            devices << line;
    EXPECT_EQ(devices, QStringList({
                           "PIC16F84A: PBC PORTA=5 PORTB=8",
                           "PIC12X1: PBC GPIO=8",
                           "PIC16X2: PBC GPIO=3",
                           "PIC16X10: PBC PORTA=2 PORTC=2 PORTD=8",
                           "PIC18X1: PORTJ=1",
                       }));

    // Without the device that goes first the generator refuses and leaves the old file alone.
    QFile::remove(dir.filePath("p16f84a.inc"));
    EXPECT_NE(generate({"-d", dir.path(), "-o", out}), 0);
    EXPECT_TRUE(readAll(out).contains("PIC16X10"));
    EXPECT_NE(generate({"-d", outDir.path() + "/none", "-o", out}), 0);
}

}  // namespace
