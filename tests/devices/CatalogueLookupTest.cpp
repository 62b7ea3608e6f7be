// Which device.ide is read: the user's own in the application directory before the installed one.
#include "devices/DeviceCatalogue.h"
#include "core/Globals.h"
#include "support/Doubles.h"
#include "support/FakeDeviceCombo.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class InstalledPaths : public FakePaths {
public:
    using FakePaths::FakePaths;
    QString shared;
    QString installedDataDirectory() override { return shared; }
};

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

TEST(CatalogueLookup, TheUsersOwnCatalogueWinsOverTheInstalledOne) {
    TestWorld world;
    QTemporaryDir share;
    InstalledPaths paths(world.appDir());
    paths.shared = share.path();
    globals().paths = &paths;
    FakeDeviceCombo combo;
    globals().UsePBP = true;

    // Neither: the message names the application directory's file, where a user would put one.
    GetDevices(combo);
    ASSERT_EQ(world.prompts.boxes.size(), 1u);
    EXPECT_EQ(world.prompts.boxes[0].text, "File: " + world.appDir() + "/device.ide not found");
    world.prompts.boxes.clear();

    writeFile(share.filePath("device.ide"), "PIC16F84A: PBC PORTA=5 PORTB=8\n");
    EXPECT_EQ(deviceCataloguePath(), share.path() + "/device.ide");
    GetDevices(combo);
    EXPECT_EQ(combo.entries, QStringList{"PIC16F84A"});

    world.write("device.ide", "PIC18F452: PORTA=7\n");
    EXPECT_EQ(deviceCataloguePath(), world.appDir() + "/device.ide");
    GetDevices(combo);
    EXPECT_EQ(combo.entries, QStringList{"PIC18F452"});
    EXPECT_TRUE(world.prompts.boxes.empty());
    globals().paths = &world.paths;
}

}  // namespace
