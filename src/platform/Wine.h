#pragma once
// Windows programs on a POSIX system, through the wine found on PATH, in the user's own WINEPREFIX
// (wine's default, ~/.wine, when none is set).

#include <QHash>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// The wine program on PATH; empty when there is none.
QString wineProgram();
// The lasting wine server this program started, and when a compile last used it.
struct WineServerRecord {
    QString prefix;
    qint64 lastUseMs = -1;  // -1: none of ours is known to run
};
// What the wine host of the programs keeps for the whole process.
struct WineState {
    WineServerRecord server;
    // Wine's short DOS forms, by prefix and platform short form.
    QHash<QString, QString> shortForms;
};
// Whether a compile at nowMs must ask for a lasting server: ours may have ended, or run in another prefix.
bool wineServerCheckDue(const WineServerRecord& ours, const QString& prefix, qint64 nowMs);
// Starts the prefix's wine server outside any compile's process group, unless ours surely still runs; a
// server someone else started is left alone and asked about again at the next compile.
void keepWineServerWarm(WineServerRecord& ours, qint64 nowMs);

// A program that only runs through wine: a PE image, whatever its name.
bool needsWine(const QString& program);

// The one message for a Windows program without wine: names the file and how to get wine.
QString wineMissingMessage(const QString& program);

// The environment a Windows program runs in: base with wine's diagnostics switched off, and, when
// searchDirectory (a Windows path) is given, that directory on the Windows search path (WINEPATH).
QProcessEnvironment wineEnvironment(QProcessEnvironment base, const QString& searchDirectory = {});

// Windows forms of POSIX paths, one per path and in the same order; an empty string for a path that has
// no such form (the short form exists only for what exists). Each list costs one run of wine's winepath,
// which may first create the prefix. Empty strings throughout when wine is missing or fails.
QStringList wineWindowsPaths(const QStringList& paths);  // Z:\home\ann\my project\blink.pbp
QStringList wineShortPaths(const QStringList& paths);    // Z:\home\ann\MYPR~4UZ\blink.pbp

// One path at a time, as the programmer's command line tokens want them.
QString wineWindowsPath(const QString& path);
QString wineShortPath(const QString& path);

// Where Windows programs are usually installed under wine: the C: drive of the prefix, when it exists.
QStringList wineSearchRoots();
