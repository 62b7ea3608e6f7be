#pragma once
// Windows programs on a POSIX system, through the wine found on PATH, in the user's own WINEPREFIX
// (wine's default, ~/.wine, when none is set).

#include "platform/WineNames.h"

#include <QHash>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// The wine program on PATH; empty when there is none.
QString wineProgram();
// The prefix wine runs programs in: WINEPREFIX, else ~/.wine.
QString winePrefix();
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
    // The compiler's outputs that got their document's long name.
    LongNamedOutputs longNamed;
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

// Whether the wine program (as found on PATH) runs 32-bit Windows programs, on a system whose files lie
// under root. Debian's wine, and Ubuntu's, is a wrapper, root/usr/bin/wine, that runs the 32-bit loader
// root/usr/lib/wine/wine of the wine32 package when it is there, else the 64-bit one of wine64, which
// runs a 32-bit program as if it had done nothing. Any other wine is taken to run them.
bool wineRuns32Bit(const QString& wine, const QString& root = QStringLiteral("/"));

// The message for a 32-bit Windows program where wine runs only 64-bit ones: names the file and what
// to install.
QString wine32MissingMessage(const QString& program);

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
