#include "core/Globals.h"
#include "core/Session.h"
#include "core/Settings.h"
#include "support/Doubles.h"
#include "support/Files.h"

#include <QDir>
#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

TEST(Settings, DefaultsFollowTheAppDirectoryOrAnotherKey) {
    TestWorld w;
    const QString app = w.appDir();
    const std::pair<Key, QString> defaults[] = {
        {Key::CompilerPathName, app + "/PBPW.EXE"}, {Key::CompilerPathName1, app + "/PBC.EXE"},
        {Key::ProgrammerPathName1, "C:\\Program Files\\MPLAB\\MPLAB.EXE"},  // a Windows path, not in it
        {Key::SourceCodePath, app}, {Key::LastFile, app + "/Untitled.pbp"}, {Key::File3, ""},
        {Key::svBackGround, "-2147483643"},
    };
    for (const auto& [key, value] : defaults)
        EXPECT_EQ(setting(key), value) << nameOf(key).toStdString();
    saveSetting(Key::SourceCodePath, "/");
    EXPECT_EQ(setting(Key::LastFile), "/Untitled.pbp");
    EXPECT_EQ(GetSetting(applicationName(), "Startup", "Nowhere", "dflt"), "dflt");
}

TEST(Settings, TheStoreLivesUnderTheExecutableNameInSectionsAndKeepsAnyTextExactly) {
    TestWorld w;
    EXPECT_EQ(settingsFilePath(), w.configDir() + "/test_core/test_core.ini");
    saveSetting(Key::Top, "15");
    QFile raw(settingsFilePath());
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    EXPECT_EQ(raw.readAll(), "[Startup]\nTop=15\n");
    saveSetting(Key::svComment, "255");
    EXPECT_EQ(GetSetting(applicationName(), "ViewColors", "svComment"), "255");
    // An empty value is no missing one: it hides the default.
    const QStringList values = {"",           "a,b,c",       "\"quoted\"",      "C:\\PBP\\PBPW.EXE", "  leading",
                                "trailing  ", "Grüße – ☃",   "@at start",       "semi;colon=eq",     "#hash",
                                "two\nlines\r\n", "@Lines(x\\n)", "[Startup]", "\\\\server\\share", "="};
    for (const QString& v : values) {
        saveSetting(Key::CompilerPathName, v);
        EXPECT_EQ(setting(Key::CompilerPathName), v) << v.toStdString();
    }
}

TEST(Settings, HandWrittenValuesReadAsTypedAndSurviveAWrite) {
    TestWorld w;
    ASSERT_TRUE(writeFile(settingsFilePath(), "; my settings\r\n[Startup]\r\nCompilerCommandLineOptions=-a,-b\r\n"
                                              "File3=&3 /a;b.pbp\rCompilerPathName=C:\\PBP\\PBPW.EXE\n  # note\n"
                                              "  CompilerType =1\nnot a line\n[ViewFont]\nFontName=\"Courier\"\n"));
    for (bool afterWrite : {false, true}) {
        SCOPED_TRACE(afterWrite);
        EXPECT_EQ(setting(Key::CompilerCommandLineOptions), "-a,-b");
        EXPECT_EQ(setting(Key::File3), "&3 /a;b.pbp");
        EXPECT_EQ(setting(Key::CompilerPathName), "C:\\PBP\\PBPW.EXE");
        EXPECT_EQ(setting(Key::CompilerType), "1");
        EXPECT_EQ(setting(Key::FontName), "\"Courier\"");
        saveSetting(Key::Top, "15");
    }
    // Another program's edit is read at once, even one of the same size within the same second; a value
    // saved as it stands writes nothing.
    ASSERT_TRUE(writeFile(settingsFilePath(), "[Startup]\nTop=16\n"));
    EXPECT_EQ(setting(Key::Top), "16");
    QFile f(settingsFilePath());
    ASSERT_TRUE(f.open(QIODevice::ReadWrite));
    f.seek(15);
    f.write("7");
    f.close();
    EXPECT_EQ(setting(Key::Top), "17");
    const QDateTime written = QFileInfo(settingsFilePath()).lastModified();
    QFile::setPermissions(settingsFilePath(), QFileDevice::ReadOwner);
    saveSetting(Key::Top, "17");
    EXPECT_EQ(QFileInfo(settingsFilePath()).lastModified(), written);
    QFile::setPermissions(settingsFilePath(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

// The session: written whole and read back; hand-made or broken values read as none, never as a failure.
TEST(Session, RoundTripsAndReadsBrokenValuesAsNone) {
    TestWorld w;
    EXPECT_EQ(readSession(), Session{});
    const Session three{{{"/a b/one.pbp", 0}, {"/two;x=y.bas", 41}, {"/Grüße.pbc", 7}}, 1};
    saveSession(three);
    EXPECT_EQ(readSession(), three);
    EXPECT_EQ(GetSetting(applicationName(), "Session", "Line2"), "42");  // lines as the status bar counts
    saveSession({{{"/only.pbp", 3}}, -1});
    EXPECT_EQ(readSession(), (Session{{{"/only.pbp", 3}}, -1}));
    EXPECT_EQ(GetSetting(applicationName(), "Session", "File3"), "/Grüße.pbc");  // behind the count, unread

    const auto raw = [](const QList<QPair<QString, QString>>& values) {
        SaveSettings(applicationName(), "Session", values);
        return readSession();
    };
    EXPECT_EQ(raw({{"Count", "x"}}), Session{});
    EXPECT_EQ(raw({{"Count", "-2"}}), Session{});
    EXPECT_EQ(raw({{"Count", "99999999999"}}), Session{});
    // An empty path is left out and the active index follows the entries kept; a bad line is the first.
    EXPECT_EQ(raw({{"Count", "3"}, {"Active", "3"}, {"File1", ""}, {"File2", "/b"}, {"Line2", "zz"}, {"File3", "/c"},
                   {"Line3", "-5"}}),
              (Session{{{"/b", 0}, {"/c", 0}}, 1}));
    EXPECT_EQ(raw({{"Count", "1"}, {"Active", "9"}, {"File1", "/b"}, {"Line1", "1e3"}}), (Session{{{"/b", 999}}, -1}));
}

// New documents: beside a build tree's or portable copy's program; for an installed one, in the user's
// documents folder or else home, never in its hidden application directory.
TEST(Settings, NewDocumentsOfAnInstalledProgramGoToTheDocumentsFolder) {
    EXPECT_EQ(newDocumentsDirectory("/opt/q", false, "/home/ann/Documents", "/home/ann"), "/opt/q");
    TestWorld w;
    QTemporaryDir home;
    const QString docs = home.filePath("Dokumente");
    EXPECT_EQ(newDocumentsDirectory("/h/.local/share/tarnlet", true, docs, home.path()), home.path());
    EXPECT_EQ(newDocumentsDirectory("/h/.local/share/tarnlet", true, QString(), home.path()), home.path());
    ASSERT_TRUE(QDir().mkpath(docs));
    EXPECT_EQ(newDocumentsDirectory("/h/.local/share/tarnlet", true, docs, home.path()), docs);

    // The desktop's own documents folder, as its user-dirs file names it.
    w.paths.installedData = "/usr/share/tarnlet";
    const ScopedEnv ownHome("HOME", home.path().toLocal8Bit());
    EXPECT_EQ(setting(Key::SourceCodePath), home.path());
    ASSERT_TRUE(writeFile(w.configDir() + "/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"));
    EXPECT_EQ(setting(Key::SourceCodePath), docs);
    EXPECT_EQ(setting(Key::LastFile), docs + "/Untitled.pbp");
    saveSetting(Key::SourceCodePath, "/mine");
    EXPECT_EQ(setting(Key::SourceCodePath), "/mine");
}
