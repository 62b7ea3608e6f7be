#pragma once
// The walk of the compiler search: every directory below a root, depth first, for the compilers'
// executables PBC.EXE, PBP.EXE and PBPW.EXE (file names compared in upper case).

#include <QString>
#include <functional>

struct CompilerSearchHooks {
    // A compiler file: shown is the whole path in upper case, as the list shows it; path is the file's
    // real path, which on a file system that tells letter cases apart is the one that opens.
    std::function<void(const QString& shown, const QString& path)> found;
    // "Searching: " and the directory being walked (with its closing separator).
    std::function<void(const QString& text)> progress;
    // Lets waiting window events through; false ends the walk (its window has gone).
    std::function<bool()> processEvents;
};

// Walks root and everything below it. A directory that cannot be read is passed over in silence; links
// to directories are not followed, so a link back up cannot loop. From "/" the kernel's views /proc,
// /sys and /dev are not entered: they hold no programs, and /proc has a link loop per process.
void FindCompilerFiles(const QString& root, const CompilerSearchHooks& hooks);

// True for "PBC.EXE", "PBP.EXE" and "PBPW.EXE" in any letter case.
bool isCompilerFileName(const QString& name);

// text up to, not including, its first NUL; the whole text when it holds none.
QString TrimToNul(const QString& text);
