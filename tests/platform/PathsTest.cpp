// Where the program keeps its files: installed tree, build tree, portable copy; the per-user directory.
#include "platform/Failure.h"
#include "platform/PosixPaths.h"
#include "support/Doubles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>

TEST(Paths, OnlyAnInstalledTreeKeepsTheUsersFilesInTheDataHome) {
    QTemporaryDir root;
    const QString r = root.path() + '/', home = r + "home/ann";
    for (const char* d : {"usr/bin", "usr/share/tarnlet", "home/ann/bin", "build", "share/tarnlet", "opt/bin",
                          "opt/share/other", "local/bin", "local/share"})
        QDir().mkpath(r + d);
    ASSERT_TRUE(QFile(r + "local/share/tarnlet").open(QIODevice::WriteOnly));  // a file where ours would be
    const struct { QString exe, xdg, app, data; } cases[] = {
        {r + "usr/bin", r + "xdg", r + "xdg/tarnlet", r + "usr/share/tarnlet"},
        {r + "usr/bin/", r + "xdg/", r + "xdg/tarnlet", r + "usr/share/tarnlet"},
        {r + "usr/bin", "", home + "/.local/share/tarnlet", r + "usr/share/tarnlet"},
        {r + "usr/bin", "relative/data", home + "/.local/share/tarnlet", r + "usr/share/tarnlet"},
        {r + "build", r + "xdg", r + "build", ""},  // a build tree, even beside a share/tarnlet
        {r + "home/ann/bin/", r + "xdg", r + "home/ann/bin", ""},
        {r + "opt/bin", r + "xdg", r + "opt/bin", ""},
        {r + "local/bin", r + "xdg", r + "local/bin", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.exe.toStdString() + " " + c.xdg.toStdString());
        const ApplicationPlaces p = applicationPlaces(c.exe, c.xdg, home);
        EXPECT_EQ(p.applicationDirectory, c.app);
        EXPECT_EQ(p.installedDataDirectory, c.data);
    }
    // Decided from the layout alone: nothing is made here.
    EXPECT_FALSE(QFileInfo::exists(r + "xdg") || QFileInfo::exists(home + "/.local"));
}

TEST(Paths, TheApplicationDirectoryIsMadeAtStartOrOneMessageNamesWhatFailed) {
    QTemporaryDir root;
    const QString r = root.path() + '/';
    FakePrompts prompts;
    EXPECT_TRUE(PosixPaths(r + "xdg/tarnlet").makeApplicationDirectory(prompts));
    EXPECT_TRUE(QFileInfo(r + "xdg/tarnlet").isDir());
    EXPECT_NO_THROW(makeDirectory(r + "xdg/tarnlet/"));
    EXPECT_TRUE(prompts.boxes.empty());
    // A file in the way stops it even for root, which permissions would not.
    ASSERT_TRUE(QFile(r + "blocked").open(QIODevice::WriteOnly));
    for (const QString& dir : {r + "blocked/share/tarnlet", r + "blocked"}) {
        long number = 0;
        try {
            makeDirectory(dir);
        } catch (const Failure& f) {
            number = f.number;
            EXPECT_TRUE(f.description.startsWith(r + "blocked: ")) << f.description.toStdString();
        }
        EXPECT_EQ(number, ENOTDIR) << dir.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(r + "blocked/share"));
    EXPECT_FALSE(PosixPaths(r + "blocked/tarnlet").makeApplicationDirectory(prompts));
    ASSERT_EQ(prompts.boxes.size(), 1u);
    const Box& b = prompts.boxes[0];
    EXPECT_EQ(b.text, "Quillbay Lite cannot make the folder for its own files:\r" + r + "blocked/tarnlet\r\r" + r +
                          "blocked: " + QString::fromLocal8Bit(std::strerror(ENOTDIR)) +
                          "\r\rNew documents cannot be saved there, and compiling will fail.");
    EXPECT_TRUE(b.title.isEmpty() && b.icon == Icon::Critical && b.buttons == Buttons::Ok);
}
