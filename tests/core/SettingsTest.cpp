#include "core/Settings.h"
#include "support/Doubles.h"

#include <QDir>
#include <QFile>
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
    QDir().mkpath(w.configDir() + "/test_core");
    QFile f(settingsFilePath());
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("; my settings\r\n[Startup]\r\nCompilerCommandLineOptions=-a,-b\r\n"
            "File3=&3 /a;b.pbp\rCompilerPathName=C:\\PBP\\PBPW.EXE\n  # note\n"
            "  CompilerType =1\nnot a line\n[ViewFont]\nFontName=\"Courier\"\n");
    f.close();
    for (bool afterWrite : {false, true}) {
        SCOPED_TRACE(afterWrite);
        EXPECT_EQ(setting(Key::CompilerCommandLineOptions), "-a,-b");
        EXPECT_EQ(setting(Key::File3), "&3 /a;b.pbp");
        EXPECT_EQ(setting(Key::CompilerPathName), "C:\\PBP\\PBPW.EXE");
        EXPECT_EQ(setting(Key::CompilerType), "1");
        EXPECT_EQ(setting(Key::FontName), "\"Courier\"");
        saveSetting(Key::Top, "15");
    }
}
