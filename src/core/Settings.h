#pragma once
// The per-user store of everything remembered between runs, and the one table of its keys.
// There is no copy in memory: every use reads the store, with the key's default applied there.

#include <QString>

class QLocale;

// The store's two operations. A missing value gives the default and stores nothing.
QString GetSetting(const QString& application, const QString& section, const QString& key,
                   const QString& defaultValue = {});
void SaveSetting(const QString& application, const QString& section, const QString& key, const QString& value);

// The executable's base name, taken from the running process.
QString applicationName();
// Where the INI file lies: $XDG_CONFIG_HOME/<name>/<name>.ini.
QString settingsFilePath();

enum class Key {
    // Startup
    CompilerType, CompilerPathName, CompilerCommandLineOptions, CompilerPathName1, CompilerCommandLineOptions1,
    DosWindow, AutoCloseCW, AutoCloseCWTime,
    ProgrammerType, ProgrammerPathName, ProgrammerCommandLineOptions, ProgrammerPathNameMeLoader,
    ProgrammerCommandLineOptionsMeLoader, ProgrammerPathName1, ProgrammerCommandLineOptions1,
    ProgrammerPathNameOther, ProgrammerCommandLineOptionsOther,
    Height, Width, Left, Top, WindowState,
    File1, File2, File3, File4,
    DefaultDevice, LastFile, SourceCodePath, LegacyEncoding,
    // ViewFont
    FontName,
    // ViewColors
    svSymbol, svNumber, svSpecial, svComment, svString, svStatements, svDefines, svVarSize, svMath, svLogic,
    svModifer, svBackGround, ViewSelBackColor, ViewSelForeColor,
};

QString sectionOf(Key k);
QString nameOf(Key k);
// The default, worked out now: some depend on the application directory or on another key.
QString defaultOf(Key k);

// The Windows code page that text in the locale's language is written in, by the name Qt knows it by:
// LegacyEncoding's default.
QString legacyEncodingFor(const QLocale& locale);

// Read with the key's own default; save as text.
QString setting(Key k);
void saveSetting(Key k, const QString& value);

// "File" and the digit, 1..4.
Key recentFileKey(int i);

// The application directory followed by the platform's separator and a name.
QString inApplicationDirectory(const QString& name);
