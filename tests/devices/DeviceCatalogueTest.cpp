#include "devices/DeviceCatalogue.h"
#include "devices/FakeDeviceCombo.h"
#include "shell/Globals.h"
#include "support/Doubles.h"

#include <QDir>
#include <gtest/gtest.h>

namespace {

const PortTable kSevens = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7};

class DeviceCatalogueTest : public ::testing::Test {
protected:
    TestWorld world;
    FakeDeviceCombo combo;
    int reloads = 0;

    void catalogue(const QByteArray& text) { world.write(QStringLiteral("device.ide"), text); }

    // The ports read for an entry with this name, starting from a table of sevens.
    PortTable portsOf(const QString& name, bool reloadWords = false) {
        globals().Ports = kSevens;
        combo.entries = {name};
        combo.index = 0;
        GetDeviceData(combo, reloadWords, [this] { ++reloads; });
        return globals().Ports;
    }
};

TEST_F(DeviceCatalogueTest, ListsDeviceLinesInFileOrderFilteredForPicBasic) {
    catalogue("Device list for tests, PBC devices follow\n"
              "\n"
              "PIC16F84A: PBC PORTA=5 PORTB=8\n"
              "PIC18F452: PORTA=7 PORTB=8\n"
              " PIC12F675 :PBC GPIO=6\n"
              "pic16f628a: PBC\n"
              "PIC16F84A: PORTA=1\n"
              "PICPBC1:\n"
              "PIC16F877A: pbc\n"
              "A:B:C\n");
    combo.entries = {QStringLiteral("left over")};
    GetDevices(combo);
    EXPECT_EQ(combo.clears, 1);
    EXPECT_EQ(combo.entries, QStringList({"PIC16F84A", "PIC18F452", " PIC12F675 ", "pic16f628a", "PIC16F84A",
                                          "PICPBC1", "PIC16F877A", "A"}));

    // Only an upper-case "PBC" anywhere in the line counts, the name included.
    globals().UsePBP = false;
    GetDevices(combo);
    EXPECT_EQ(combo.entries, QStringList({"PIC16F84A", " PIC12F675 ", "pic16f628a", "PICPBC1"}));
    EXPECT_EQ(combo.index, -1) << "the selection is not set here";
    EXPECT_TRUE(world.prompts.boxes.empty());
}

TEST_F(DeviceCatalogueTest, ReadsTheDigitBehindTheFirstOfEachMarkOfTheFirstMatchingLine) {
    catalogue("PIC12F675: GPIO=1\r\n"
              "PIC16F877A:PBC porta=6 PORTB=8 PortC=8 PORTD=8 PORTE=3\r\n"
              "PIC18F97J60: PORTJ=9 PORTH=8 PORTG=5 PORTF=8 PORTE=8 PORTD=8 PORTC=8 PORTB=12 PORTA=8 GPIO=0\n"
              "PIC16F84: PORTA=8 PORTA=0 PORTB=0\n"
              "PIC16X: PORTI=5 PORTK=3 PORT A=4\n"
              "PIC16F84: PORTA=3\n"
              "pic16f628: PORTA=8\n"
              "PIC16F628: PORTB=8\n"
              "PIC16F8\n");
    EXPECT_EQ(portsOf("PIC12F675"), (PortTable{1, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(portsOf("PIC16F877A"), (PortTable{0, 6, 8, 8, 8, 3, 0, 0, 0, 0}));
    EXPECT_EQ(portsOf("PIC18F97J60"), (PortTable{0, 8, 1, 8, 8, 8, 8, 5, 8, 9}));
    EXPECT_EQ(portsOf("PIC16F84"), (PortTable{0, 8, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(portsOf("PIC16X"), (PortTable{}));
    // The file's line is compared in upper case, the entry as it stands.
    EXPECT_EQ(portsOf("PIC16F628"), (PortTable{0, 8, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(portsOf("pic16f628"), kSevens);
    // No matching device line: Ports stays, and the words are reloaded all the same.
    for (const char* name : {"PIC16F8", " PIC16F84", "", "PIC99"})
        EXPECT_EQ(portsOf(name, true), kSevens) << name;
    EXPECT_EQ(reloads, 4);

    combo.entries = {"PIC16F84"};
    for (int index : {-1, 1, 5}) {
        combo.index = index;
        GetDeviceData(combo, false);
        EXPECT_EQ(globals().Ports, kSevens) << "index " << index;
    }
    EXPECT_TRUE(world.prompts.boxes.empty());
}

TEST_F(DeviceCatalogueTest, AMarkWithoutADigitIsReportedAndKeepsWhatWasRead) {
    catalogue("PIC16A: GPIO=2 PORTA=3 PORTB=4 PORTC=\n"
              "PIC16B: PORTA=Z PORTB=1\n"
              "PIC16C: PORTJ=\n");
    // Entries up to the failing mark are written, the rest stay; no reload after a failure.
    EXPECT_EQ(portsOf("PIC16A", true), (PortTable{2, 3, 4, 7, 7, 7, 7, 7, 7, 7}));
    EXPECT_EQ(portsOf("PIC16B", true), (PortTable{0, 7, 7, 7, 7, 7, 7, 7, 7, 7}));
    EXPECT_EQ(portsOf("PIC16C", true), (PortTable{0, 0, 0, 0, 0, 0, 0, 0, 0, 7}));
    EXPECT_EQ(reloads, 0);
    ASSERT_EQ(world.prompts.boxes.size(), 3u);
    const Box& box = world.prompts.boxes[0];
    EXPECT_EQ(box.text, "Get Device Data Error: no digit behind PORTC= in the line of PIC16A");
    EXPECT_EQ(box.title, "");
    EXPECT_EQ(box.icon, Icon::None);
    EXPECT_EQ(box.buttons, Buttons::Ok);
    EXPECT_EQ(world.prompts.boxes[1].text, "Get Device Data Error: no digit behind PORTA= in the line of PIC16B");
}

TEST_F(DeviceCatalogueTest, ACatalogueThatIsMissingOrCannotBeOpenedIsReportedByBothReaders) {
    combo.entries = {"PIC16F84"};
    GetDevices(combo);
    EXPECT_TRUE(combo.entries.isEmpty()) << "a missing file leaves an empty list";
    EXPECT_EQ(portsOf("PIC16F84", true), kSevens);
    EXPECT_EQ(reloads, 0);
    const QString text = "File: " + world.appDir() + "/device.ide not found";
    ASSERT_EQ(world.prompts.boxes.size(), 2u);
    EXPECT_EQ(world.prompts.boxes[0].text, text);
    EXPECT_EQ(world.prompts.boxes[0].title, "Get Micro Listing Error");
    EXPECT_EQ(world.prompts.boxes[0].icon, Icon::Critical);
    EXPECT_EQ(world.prompts.boxes[0].buttons, Buttons::Ok);
    EXPECT_EQ(world.prompts.boxes[1].text, text);
    EXPECT_EQ(world.prompts.boxes[1].title, "Get Device Data Error");
    EXPECT_EQ(world.prompts.boxes[1].icon, Icon::Critical);

    // Any other failure carries the platform's text behind the operation's.
    world.prompts.boxes.clear();
    ASSERT_TRUE(QDir(world.appDir()).mkdir("device.ide"));
    GetDevices(combo);
    EXPECT_EQ(portsOf("PIC16F84"), kSevens);
    ASSERT_EQ(world.prompts.boxes.size(), 2u);
    const QString prefixes[] = {"Get Micro Listing Error: ", "Get Device Data Error: "};
    for (int i = 0; i < 2; ++i) {
        const Box& box = world.prompts.boxes[i];
        EXPECT_TRUE(box.text.startsWith(prefixes[i]) && box.text.size() > prefixes[i].size())
            << box.text.toStdString();
        EXPECT_EQ(box.title, "");
        EXPECT_EQ(box.icon, Icon::None);
    }
}

}  // namespace
