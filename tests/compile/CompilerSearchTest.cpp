#include "compile/CompilerSearch.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <unistd.h>

namespace {

struct Walk {
    QStringList shown;
    QStringList paths;
    QStringList progress;
    int events = 0;
    int stopAfterFinds = -1;  // processEvents answers false once this many files were found

    void run(const QString& root) {
        CompilerSearchHooks hooks;
        hooks.found = [this](const QString& s, const QString& p) {
            shown << s;
            paths << p;
        };
        hooks.progress = [this](const QString& text) { progress << text; };
        hooks.processEvents = [this] {
            ++events;
            return stopAfterFinds < 0 || shown.size() < stopAfterFinds;
        };
        FindCompilerFiles(root, hooks);
    }
};

void touch(const QString& path) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).absolutePath()));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
}

class CompilerSearchTest : public ::testing::Test {
protected:
    QTemporaryDir tmp;
    QString root;

    void SetUp() override {
        ASSERT_TRUE(tmp.isValid());
        root = tmp.path() + "/drive";
        touch(root + "/tools/pbp/pbpw.exe");
        touch(root + "/tools/pbp/PBPX.EXE");
        touch(root + "/tools/pbp/pbpw.exe.bak");
        touch(root + "/Pbc.Exe");
        touch(root + "/.hidden/PBP.EXE");
        // A directory named as a compiler is searched, not listed.
        touch(root + "/PBC.EXE/inner/PBP.EXE");
        touch(root + "/empty/.keep");
        // Links back up and across: followed, they would never end.
        ASSERT_TRUE(QFile::link(root, root + "/tools/up"));
        ASSERT_TRUE(QFile::link("..", root + "/PBC.EXE/inner/parent"));
        ASSERT_TRUE(QFile::link(root + "/tools", root + "/empty/tools"));
        // A link to a compiler file is a file like any other.
        ASSERT_TRUE(QFile::link(root + "/tools/pbp/pbpw.exe", root + "/empty/PBPW.EXE"));
    }
};

TEST_F(CompilerSearchTest, ListsEachCompilerFileOnceWalkingDepthFirstPastLinkedDirectories) {
    Walk walk;
    walk.run(root);  // no closing separator: one is added
    QStringList shown = walk.shown;
    shown.sort();
    const QString up = root.toUpper();
    EXPECT_EQ(shown, QStringList({up + "/.HIDDEN/PBP.EXE", up + "/EMPTY/PBPW.EXE", up + "/PBC.EXE",
                                  up + "/PBC.EXE/INNER/PBP.EXE", up + "/TOOLS/PBP/PBPW.EXE"}));
    for (const QString& p : walk.paths)
        EXPECT_EQ(p.toUpper(), walk.shown[walk.paths.indexOf(p)]);
    EXPECT_TRUE(walk.paths.contains(root + "/tools/pbp/pbpw.exe")) << "the real path goes along";

    for (const char* dir : {"/", "/tools/", "/tools/pbp/", "/PBC.EXE/inner/", "/empty/", "/.hidden/"})
        EXPECT_TRUE(walk.progress.contains("Searching: " + root + dir)) << dir;
    for (const QString& text : walk.progress)
        EXPECT_FALSE(text.contains("/up/") || text.contains("/parent/") || text.contains("/empty/tools/"))
            << text.toStdString();
    // Depth first: tools/pbp is walked before tools is announced for the last time.
    EXPECT_LT(walk.progress.indexOf("Searching: " + root + "/tools/pbp/"),
              walk.progress.lastIndexOf("Searching: " + root + "/tools/"));
    EXPECT_GE(walk.events, walk.progress.size() + walk.shown.size());
}

TEST_F(CompilerSearchTest, EndsWhenTheWindowGoesAway) {
    Walk walk;
    walk.stopAfterFinds = 1;
    walk.run(root + "/");
    EXPECT_EQ(walk.shown.size(), 1);
}

TEST_F(CompilerSearchTest, PassesOverWhatCannotBeRead) {
    Walk missing;
    missing.run(tmp.path() + "/no such drive");
    missing.run(root + "/Pbc.Exe");
    missing.run("");
    EXPECT_TRUE(missing.shown.isEmpty());

    if (geteuid() == 0)
        GTEST_SKIP() << "every directory is readable for root";
    const QString locked = root + "/locked";
    touch(locked + "/PBC.EXE");
    ASSERT_TRUE(QFile::setPermissions(locked, QFileDevice::Permissions()));
    Walk walk;
    walk.run(root);
    QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_EQ(walk.shown.size(), 5);
    EXPECT_FALSE(walk.paths.contains(locked + "/PBC.EXE"));
}

TEST(CompilerSearchNames, MatchOnlyTheThreeCompilersInAnyCase) {
    for (const char* name : {"PBC.EXE", "PBP.EXE", "PBPW.EXE", "pbc.exe", "PbPw.ExE"})
        EXPECT_TRUE(isCompilerFileName(name)) << name;
    for (const char* name : {"PBPX.EXE", "PBC.EX", "PBC.EXE.BAK", "XPBC.EXE", "PBC", "", " PBC.EXE"})
        EXPECT_FALSE(isCompilerFileName(name)) << name;

    EXPECT_EQ(TrimToNul(QString::fromLatin1("PBC.EXE\0junk", 12)), "PBC.EXE");
    EXPECT_EQ(TrimToNul(QString::fromLatin1("\0PBC.EXE", 8)), "");
    EXPECT_EQ(TrimToNul("PBPW.EXE"), "PBPW.EXE");
}

}  // namespace
