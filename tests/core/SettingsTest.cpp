#include "core/Settings.h"
#include "support/Doubles.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <gtest/gtest.h>

TEST(Settings, FirstRunReadsDefaultsAndStoresNothing) {
    TestWorld w;
    const QString app = w.appDir();
    EXPECT_EQ(setting(Key::CompilerType), "0");
    EXPECT_EQ(setting(Key::CompilerPathName), app + "/PBPW.EXE");
    EXPECT_EQ(setting(Key::CompilerPathName1), app + "/PBC.EXE");
    EXPECT_EQ(setting(Key::ProgrammerCommandLineOptions), "-dPIC{DeviceName} \"{HexFileWinPath}\"");
    EXPECT_EQ(setting(Key::ProgrammerPathName1), "C:\\Program Files\\MPLAB\\MPLAB.EXE");
    EXPECT_EQ(setting(Key::Height), "6000");
    EXPECT_EQ(setting(Key::Width), "9000");
    EXPECT_EQ(setting(Key::File3), "");
    EXPECT_EQ(setting(Key::FontName), "Courier");
    EXPECT_EQ(setting(Key::svBackGround), "-2147483643");
    EXPECT_EQ(setting(Key::svNumber), "12632064");
    EXPECT_EQ(setting(Key::SourceCodePath), app);
    EXPECT_EQ(setting(Key::LastFile), app + "/Untitled.pbp");
    // Reading never writes a default back.
    EXPECT_FALSE(QFile::exists(settingsFilePath()));
}

TEST(Settings, StoreLivesUnderTheExecutableName) {
    TestWorld w;
    EXPECT_EQ(applicationName(), "test_core");
    EXPECT_EQ(settingsFilePath(), w.configDir() + "/test_core/test_core.ini");
    saveSetting(Key::Top, "15");
    QFile raw(settingsFilePath());
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    EXPECT_EQ(raw.readAll(), "[Startup]\nTop=15\n");
    saveSetting(Key::svComment, "255");
    EXPECT_EQ(GetSetting(applicationName(), "ViewColors", "svComment"), "255");
}

TEST(Settings, EmptyValueIsNotAMissingOne) {
    TestWorld w;
    saveSetting(Key::CompilerPathName, "");
    EXPECT_EQ(setting(Key::CompilerPathName), "");
    EXPECT_EQ(GetSetting(applicationName(), "Startup", "Nowhere", "dflt"), "dflt");
    EXPECT_EQ(GetSetting(applicationName(), "Startup", "Nowhere"), "");
}

TEST(Settings, AwkwardTextsRoundTrip) {
    TestWorld w;
    const QStringList values = {"a,b,c",       "\"quoted\"",     "C:\\PBP\\PBPW.EXE", "  leading blanks",
                                "trailing  ",  "Grüße – ÆØÅ ☃", "-ampasm -oq",      "@at start",
                                "semi;colon=eq", "#hash",        "two\nlines\r\n",  "@Lines(x\\n)",
                                "[Startup]",   "\\\\server\\share", "=", ""};
    for (const QString& v : values) {
        saveSetting(Key::CompilerCommandLineOptions, v);
        EXPECT_EQ(setting(Key::CompilerCommandLineOptions), v) << v.toStdString();
    }
}

TEST(Settings, DefaultsFollowOtherKeys) {
    TestWorld w;
    saveSetting(Key::SourceCodePath, "/home/pic/src");
    EXPECT_EQ(setting(Key::LastFile), "/home/pic/src/Untitled.pbp");
    saveSetting(Key::SourceCodePath, "/");
    EXPECT_EQ(setting(Key::LastFile), "/Untitled.pbp");
}

TEST(Settings, HandWrittenValuesReadAsTyped) {
    TestWorld w;
    QDir().mkpath(w.configDir() + "/test_core");
    QFile f(settingsFilePath());
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("; my settings\r\n[Startup]\r\nCompilerCommandLineOptions=-a,-b\r\n"
            "File3=&3 /a;b.pbp\rCompilerPathName=C:\\PBP\\PBPW.EXE\n  # note\n"
            "  CompilerType =1\nnot a line\n[ViewFont]\nFontName=\"Courier\"\n");
    f.close();
    EXPECT_EQ(setting(Key::CompilerCommandLineOptions), "-a,-b");
    EXPECT_EQ(setting(Key::File3), "&3 /a;b.pbp");
    EXPECT_EQ(setting(Key::CompilerPathName), "C:\\PBP\\PBPW.EXE");
    EXPECT_EQ(setting(Key::CompilerType), "1");
    EXPECT_EQ(setting(Key::FontName), "\"Courier\"");
    // A write keeps the others as they were read.
    saveSetting(Key::Top, "15");
    EXPECT_EQ(setting(Key::File3), "&3 /a;b.pbp");
    EXPECT_EQ(setting(Key::CompilerPathName), "C:\\PBP\\PBPW.EXE");
}
