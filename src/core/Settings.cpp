#include "core/Settings.h"

#include "platform/Paths.h"
#include "core/Globals.h"
#include "core/IniText.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

#include <mutex>
#include <optional>

#include <sys/stat.h>

namespace {

struct KeyInfo {
    Key key;
    const char* section;
    const char* name;
    // Fixed default; for the keys that depend on the application directory this is the file name in it.
    const char* fixedDefault;
    bool inAppDir;
};

// Every key the system reads, with the one default that all its readers share.
constexpr KeyInfo kKeys[] = {
    {Key::CompilerType, "Startup", "CompilerType", "0", false},
    {Key::CompilerPathName, "Startup", "CompilerPathName", "PBPW.EXE", true},
    {Key::CompilerCommandLineOptions, "Startup", "CompilerCommandLineOptions", "", false},
    {Key::CompilerPathName1, "Startup", "CompilerPathName1", "PBC.EXE", true},
    {Key::CompilerCommandLineOptions1, "Startup", "CompilerCommandLineOptions1", "", false},
    {Key::DosWindow, "Startup", "DosWindow", "1", false},
    {Key::AutoCloseCW, "Startup", "AutoCloseCW", "1", false},
    {Key::AutoCloseCWTime, "Startup", "AutoCloseCWTime", "5", false},
    {Key::ProgrammerType, "Startup", "ProgrammerType", "0", false},
    {Key::ProgrammerPathName, "Startup", "ProgrammerPathName", "EPICWIN.EXE", true},
    {Key::ProgrammerCommandLineOptions, "Startup", "ProgrammerCommandLineOptions",
     "-dPIC{DeviceName} \"{HexFileWinPath}\"", false},
    {Key::ProgrammerPathNameMeLoader, "Startup", "ProgrammerPathNameMeLoader", "Meloader.exe", true},
    {Key::ProgrammerCommandLineOptionsMeLoader, "Startup", "ProgrammerCommandLineOptionsMeLoader",
     "\"{HexFileWinPath}\"", false},
    {Key::ProgrammerPathName1, "Startup", "ProgrammerPathName1", "C:\\Program Files\\MPLAB\\MPLAB.EXE", false},
    {Key::ProgrammerCommandLineOptions1, "Startup", "ProgrammerCommandLineOptions1", "", false},
    {Key::ProgrammerPathNameOther, "Startup", "ProgrammerPathNameOther", "PicProgrammer.exe", true},
    {Key::ProgrammerCommandLineOptionsOther, "Startup", "ProgrammerCommandLineOptionsOther", "", false},
    {Key::Height, "Startup", "Height", "6000", false},
    {Key::Width, "Startup", "Width", "9000", false},
    {Key::Left, "Startup", "Left", "0", false},
    {Key::Top, "Startup", "Top", "0", false},
    {Key::WindowState, "Startup", "WindowState", "0", false},
    {Key::File1, "Startup", "File1", "", false},
    {Key::File2, "Startup", "File2", "", false},
    {Key::File3, "Startup", "File3", "", false},
    {Key::File4, "Startup", "File4", "", false},
    {Key::DefaultDevice, "Startup", "DefaultDevice", "0", false},
    {Key::LastFile, "Startup", "LastFile", nullptr, false},
    {Key::SourceCodePath, "Startup", "SourceCodePath", nullptr, false},
    {Key::LegacyEncoding, "Startup", "LegacyEncoding", "windows-1252", false},
    {Key::FontName, "ViewFont", "FontName", "Courier", false},
    {Key::svSymbol, "ViewColors", "svSymbol", "0", false},
    {Key::svNumber, "ViewColors", "svNumber", "12632064", false},
    {Key::svSpecial, "ViewColors", "svSpecial", "0", false},
    {Key::svComment, "ViewColors", "svComment", "38400", false},
    {Key::svString, "ViewColors", "svString", "180", false},
    {Key::svStatements, "ViewColors", "svStatements", "11796480", false},
    {Key::svDefines, "ViewColors", "svDefines", "12583104", false},
    {Key::svVarSize, "ViewColors", "svVarSize", "11796480", false},
    {Key::svMath, "ViewColors", "svMath", "11796480", false},
    {Key::svLogic, "ViewColors", "svLogic", "11796480", false},
    {Key::svModifer, "ViewColors", "svModifer", "11796480", false},
    {Key::svBackGround, "ViewColors", "svBackGround", "-2147483643", false},
    {Key::ViewSelBackColor, "ViewColors", "ViewSelBackColor", "-2147483635", false},
    {Key::ViewSelForeColor, "ViewColors", "ViewSelForeColor", "-2147483634", false},
    {Key::Port, "SerialTerminal", "Port", "", false},
    {Key::Baud, "SerialTerminal", "Baud", "9600", false},
    {Key::DataBits, "SerialTerminal", "DataBits", "8", false},
    {Key::Parity, "SerialTerminal", "Parity", "None", false},
    {Key::StopBits, "SerialTerminal", "StopBits", "1", false},
    {Key::LineEnd, "SerialTerminal", "LineEnd", "CR LF", false},
    {Key::View, "SerialTerminal", "View", "Text", false},
    {Key::LocalEcho, "SerialTerminal", "LocalEcho", "0", false},
    {Key::TimeStamps, "SerialTerminal", "TimeStamps", "0", false},
    {Key::HexInput, "SerialTerminal", "HexInput", "0", false},
    {Key::AutoComplete, "Editor", "AutoComplete", "1", false},
    {Key::Docks, "Editor", "Docks", "", false},
};

const KeyInfo& info(Key k) {
    for (const KeyInfo& i : kKeys)
        if (i.key == k)
            return i;
    Q_UNREACHABLE();
}

QString applicationDirectory() {
    Paths* p = globals().paths;
    return p ? p->applicationDirectory() : QCoreApplication::applicationDirPath();
}

}  // namespace

QString applicationName() {
    return QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
}

QString settingsHome() {
    const QString base = qEnvironmentVariable("XDG_CONFIG_HOME");
    return base.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) : base;
}

// One file holds every application's store; the application level names the file.
static QString fileFor(const QString& application) {
    return settingsHome() + QLatin1Char('/') + application + QLatin1Char('/') + application + QStringLiteral(".ini");
}

QString settingsFilePath() { return fileFor(applicationName()); }

// QSettings' own INI form reads ";" as a comment and "\" as an escape in what users type by hand; this one
// takes every value as it stands. QSettings still gives the file's locking and atomic rewrite.
static bool readIni(QIODevice& device, QSettings::SettingsMap& map) {
    const IniEntries entries = parseIniText(device.readAll());
    for (auto it = entries.cbegin(); it != entries.cend(); ++it)
        map.insert(it.key(), it.value());
    return true;
}

static bool writeIni(QIODevice& device, const QSettings::SettingsMap& map) {
    IniEntries entries;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        entries.insert(it.key(), it.value().toString());
    const QByteArray text = iniText(entries);
    return device.write(text) == text.size();
}

static QSettings::Format iniFormat() {
    static const QSettings::Format format = QSettings::registerFormat(QStringLiteral("ini"), readIni, writeIni);
    return format;
}

namespace {
// The file as the system last saw it: another program's edit, an atomic rewrite (a new inode) or a write of
// the same size in the same nanosecond is told apart from the file last parsed.
struct FileStamp {
    bool exists = false;
    qint64 size = 0, mtimeNs = 0;
    quint64 inode = 0;
    bool operator==(const FileStamp&) const = default;
};

FileStamp stampOf(const QString& file) {
    struct stat st {};
    if (::stat(QFile::encodeName(file).constData(), &st) != 0)
        return {};
    return {true, qint64(st.st_size), qint64(st.st_mtim.tv_sec) * 1'000'000'000 + st.st_mtim.tv_nsec,
            quint64(st.st_ino)};
}

// Every read used to parse the whole file, and a document's start reads some twenty values: with a long
// session in the file, restoring 200 documents spent seconds parsing. The file is parsed again only when
// it has changed.
const IniEntries& entriesOf(const QString& file) {
    static QString cachedFile;
    static FileStamp cachedStamp;
    static IniEntries cached;
    const FileStamp now = stampOf(file);
    if (file != cachedFile || !(now == cachedStamp)) {
        QFile f(file);
        cached = f.open(QIODevice::ReadOnly) ? parseIniText(f.readAll()) : IniEntries();
        cachedFile = file;
        cachedStamp = now;
    }
    return cached;
}
}  // namespace

// nullopt when the store has no such value.
static std::optional<QString> readValue(const QString& file, const QString& section, const QString& key) {
    static std::mutex cacheLock;
    const std::lock_guard<std::mutex> hold(cacheLock);
    const IniEntries& entries = entriesOf(file);
    const auto it = entries.constFind(section + QLatin1Char('/') + key);
    if (it == entries.cend())
        return std::nullopt;
    return *it;
}

QString GetSetting(const QString& application, const QString& section, const QString& key,
                   const QString& defaultValue) {
    return readValue(fileFor(application), section, key).value_or(defaultValue);
}

void SaveSetting(const QString& application, const QString& section, const QString& key, const QString& value) {
    // A document's close saves its colours, mostly as they were: each unchanged write cost a synced rewrite.
    if (readValue(fileFor(application), section, key) == value)
        return;
    QSettings s(fileFor(application), iniFormat());
    s.setValue(section + QLatin1Char('/') + key, value);
    s.sync();
}

QHash<QString, QString> GetSettings(const QString& application, const QString& section, const QStringList& keys) {
    QHash<QString, QString> out;
    for (const QString& key : keys) {
        if (const auto v = readValue(fileFor(application), section, key))
            out.insert(key, *v);
    }
    return out;
}

void SaveSettings(const QString& application, const QString& section, const QList<QPair<QString, QString>>& values) {
    QSettings s(fileFor(application), iniFormat());
    for (const auto& [key, value] : values)
        s.setValue(section + QLatin1Char('/') + key, value);
    s.sync();
}

QString sectionOf(Key k) { return QString::fromLatin1(info(k).section); }
QString nameOf(Key k) { return QString::fromLatin1(info(k).name); }

QString inApplicationDirectory(const QString& name) {
    const QString dir = applicationDirectory();
    return dir.endsWith(QLatin1Char('/')) ? dir + name : dir + pathSeparator() + name;
}

QString newDocumentsDirectory(const QString& applicationDirectory, bool installed, const QString& documentsLocation,
                              const QString& home) {
    if (!installed)
        return applicationDirectory;
    if (!documentsLocation.isEmpty() && QFileInfo(documentsLocation).isDir())
        return documentsLocation;
    return home;
}

QString defaultOf(Key k) {
    switch (k) {
    case Key::SourceCodePath: {
        Paths* p = globals().paths;
        const bool installed = p && !p->installedDataDirectory().isEmpty();
        return newDocumentsDirectory(applicationDirectory(), installed,
                                     installed ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                                               : QString(),
                                     QDir::homePath());
    }
    case Key::LegacyEncoding:
        return legacyEncodingFor(QLocale::system());
    case Key::LastFile: {
        const QString dir = setting(Key::SourceCodePath);
        return (dir.endsWith(QLatin1Char('/')) ? dir : dir + pathSeparator()) + QStringLiteral("Untitled.pbp");
    }
    default:
        break;
    }
    const KeyInfo& i = info(k);
    const QString fixed = QString::fromLatin1(i.fixedDefault);
    return i.inAppDir ? inApplicationDirectory(fixed) : fixed;
}

QString legacyEncodingFor(const QLocale& locale) {
    const bool cyrillic = locale.script() == QLocale::CyrillicScript;
    switch (locale.language()) {
    case QLocale::Polish: case QLocale::Czech: case QLocale::Slovak: case QLocale::Hungarian:
    case QLocale::Slovenian: case QLocale::Croatian: case QLocale::Romanian: case QLocale::Albanian:
    case QLocale::LowerSorbian: case QLocale::UpperSorbian:
        return QStringLiteral("windows-1250");
    case QLocale::Serbian: case QLocale::Bosnian:
        return cyrillic ? QStringLiteral("windows-1251") : QStringLiteral("windows-1250");
    case QLocale::Russian: case QLocale::Ukrainian: case QLocale::Belarusian: case QLocale::Bulgarian:
    case QLocale::Macedonian: case QLocale::Kazakh: case QLocale::Kyrgyz: case QLocale::Tatar:
    case QLocale::Mongolian: case QLocale::Tajik: case QLocale::Bashkir:
        return QStringLiteral("windows-1251");
    case QLocale::Greek:
        return QStringLiteral("windows-1253");
    case QLocale::Turkish:
        return QStringLiteral("windows-1254");
    case QLocale::Azerbaijani: case QLocale::Uzbek:
        return cyrillic ? QStringLiteral("windows-1251") : QStringLiteral("windows-1254");
    case QLocale::Hebrew: case QLocale::Yiddish:
        return QStringLiteral("windows-1255");
    case QLocale::Arabic: case QLocale::Persian: case QLocale::Urdu:
        return QStringLiteral("windows-1256");
    case QLocale::Lithuanian: case QLocale::Latvian: case QLocale::Estonian:
        return QStringLiteral("windows-1257");
    case QLocale::Vietnamese:
        return QStringLiteral("windows-1258");
    case QLocale::Thai:
        return QStringLiteral("windows-874");
    default:
        return QStringLiteral("windows-1252");
    }
}

QString setting(Key k) {
    const KeyInfo& i = info(k);
    if (auto v = readValue(settingsFilePath(), QString::fromLatin1(i.section), QString::fromLatin1(i.name)))
        return *v;
    return defaultOf(k);
}

void saveSetting(Key k, const QString& value) {
    SaveSetting(applicationName(), sectionOf(k), nameOf(k), value);
}

Key recentFileKey(int i) {
    static constexpr Key keys[] = {Key::File1, Key::File2, Key::File3, Key::File4};
    return keys[qBound(1, i, 4) - 1];
}
