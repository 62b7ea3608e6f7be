#pragma once
// The per-user store of everything remembered between runs, and the one table of its keys.
// There is no copy in memory: every use reads the store, with the key's default applied there.

#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

class QLocale;

// The store's two operations. A missing value gives the default and stores nothing.
QString GetSetting(const QString& application, const QString& section, const QString& key,
                   const QString& defaultValue = {});
void SaveSetting(const QString& application, const QString& section, const QString& key, const QString& value);

// Several values of one section at once, in one reading or one writing of the store: the values of the
// keys asked for that the store has, and the pairs written in their order.
QHash<QString, QString> GetSettings(const QString& application, const QString& section, const QStringList& keys);
void SaveSettings(const QString& application, const QString& section, const QList<QPair<QString, QString>>& values);

// The executable's base name, taken from the running process.
QString applicationName();
// The settings home: $XDG_CONFIG_HOME, else the platform's configuration folder.
QString settingsHome();
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
    // SerialTerminal
    Port, Baud, DataBits, Parity, StopBits, LineEnd, View, LocalEcho, TimeStamps, HexInput,
    // Editor: the completion list opening by itself; the docks' places and visibility
    AutoComplete, Docks,
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

// Where new documents go unless SourceCodePath says otherwise. An installed program names them in the
// user's documents folder (documentsLocation, the desktop's own), or in home when that folder doesn't
// exist, never in its own hidden directory; a build tree or a portable copy keeps them beside the program.
QString newDocumentsDirectory(const QString& applicationDirectory, bool installed, const QString& documentsLocation,
                              const QString& home);
