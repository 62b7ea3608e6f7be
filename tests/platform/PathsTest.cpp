// Where the program keeps its files: installed tree, build tree, portable copy; the per-user directory.
#include "platform/Failure.h"
#include "platform/PosixPaths.h"
#include "support/Doubles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>

namespace {

class PathsTest : public ::testing::Test {
protected:
    QTemporaryDir root;
    QString at(const QString& relative) const { return root.path() + '/' + relative; }
    QString dir(const QString& relative) const {
        EXPECT_TRUE(QDir().mkpath(at(relative)));
        return at(relative);
    }
    void file(const QString& relative) const {
        QFile f(at(relative));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
};

TEST_F(PathsTest, AnInstalledTreeKeepsTheUsersFilesInTheDataHomeAndReadsTheShippedData) {
    dir("usr/bin");
    dir("usr/share/tarnlet");
    const QString home = dir("home/ann");

    ApplicationPlaces p = applicationPlaces(at("usr/bin"), at("xdg"), home);
    EXPECT_EQ(p.applicationDirectory, at("xdg/tarnlet"));
    EXPECT_EQ(p.installedDataDirectory, at("usr/share/tarnlet"));

    // Closing slashes on either side change nothing.
    p = applicationPlaces(at("usr/bin/"), at("xdg/"), home + '/');
    EXPECT_EQ(p.applicationDirectory, at("xdg/tarnlet"));
    EXPECT_EQ(p.installedDataDirectory, at("usr/share/tarnlet"));

    // No XDG_DATA_HOME, or a relative one, which does not count: the default under the home directory.
    EXPECT_EQ(applicationPlaces(at("usr/bin"), QString(), home).applicationDirectory,
              home + "/.local/share/tarnlet");
    EXPECT_EQ(applicationPlaces(at("usr/bin"), "relative/data", home).applicationDirectory,
              home + "/.local/share/tarnlet");

    // The decision is made from the layout alone: the directory need not exist yet and is not made here.
    EXPECT_FALSE(QFileInfo::exists(at("xdg")));
    EXPECT_FALSE(QFileInfo::exists(home + "/.local"));
}

TEST_F(PathsTest, AnythingButAnInstalledTreeKeepsEverythingBesideTheExecutable) {
    const QString home = dir("home/ann");
    // A build tree, even one that has a share/tarnlet next to it.
    dir("build");
    dir("share/tarnlet");
    ApplicationPlaces p = applicationPlaces(at("build"), at("xdg"), home);
    EXPECT_EQ(p.applicationDirectory, at("build"));
    EXPECT_TRUE(p.installedDataDirectory.isEmpty());

    // A portable copy in ~/bin, with no data of ours in ~/share.
    dir("home/ann/bin");
    p = applicationPlaces(at("home/ann/bin/"), at("xdg"), home);
    EXPECT_EQ(p.applicationDirectory, at("home/ann/bin"));
    EXPECT_TRUE(p.installedDataDirectory.isEmpty());

    // A prefix whose share holds other programs' data, or a file where our directory would be.
    dir("opt/bin");
    dir("opt/share/other");
    EXPECT_EQ(applicationPlaces(at("opt/bin"), at("xdg"), home).applicationDirectory, at("opt/bin"));
    dir("local/bin");
    dir("local/share");
    file("local/share/tarnlet");
    EXPECT_EQ(applicationPlaces(at("local/bin"), at("xdg"), home).applicationDirectory, at("local/bin"));
}

TEST_F(PathsTest, MakingADirectoryMakesEveryMissingLevelAndNamesTheOneThatFails) {
    makeDirectory(at("data/home/tarnlet"));
    EXPECT_TRUE(QFileInfo(at("data/home/tarnlet")).isDir());
    EXPECT_NO_THROW(makeDirectory(at("data/home/tarnlet/")));  // there already

    // A file in the way stops it even for root, which permissions would not.
    file("blocked");
    try {
        makeDirectory(at("blocked/share/tarnlet"));
        FAIL() << "no failure";
    } catch (const Failure& f) {
        EXPECT_EQ(f.number, ENOTDIR);
        EXPECT_TRUE(f.description.startsWith(at("blocked") + ": ")) << f.description.toStdString();
        EXPECT_FALSE(QFileInfo::exists(at("blocked/share")));
    }
    try {
        makeDirectory(at("blocked"));
        FAIL() << "no failure";
    } catch (const Failure& f) {
        EXPECT_EQ(f.number, ENOTDIR);
        EXPECT_TRUE(f.description.startsWith(at("blocked") + ": ")) << f.description.toStdString();
    }
}

TEST_F(PathsTest, TheApplicationDirectoryIsMadeAtStartOrOneMessageNamesIt) {
    FakePrompts prompts;
    PosixPaths fresh(at("xdg/tarnlet"));
    EXPECT_TRUE(fresh.makeApplicationDirectory(prompts));
    EXPECT_TRUE(QFileInfo(at("xdg/tarnlet")).isDir());
    EXPECT_TRUE(prompts.boxes.empty());

    file("xdg-file");
    PosixPaths blocked(at("xdg-file/tarnlet"));
    EXPECT_FALSE(blocked.makeApplicationDirectory(prompts));
    ASSERT_EQ(prompts.boxes.size(), 1u);
    const Box& b = prompts.boxes[0];
    EXPECT_EQ(b.text, "Quillbay Lite cannot make the folder for its own files:\r" + at("xdg-file/tarnlet") + "\r\r" +
                          at("xdg-file") + ": " + QString::fromLocal8Bit(std::strerror(ENOTDIR)) +
                          "\r\rNew documents cannot be saved there, and compiling will fail.");
    EXPECT_EQ(b.title, QString());
    EXPECT_EQ(b.icon, Icon::Critical);
    EXPECT_EQ(b.buttons, Buttons::Ok);
}

}  // namespace
