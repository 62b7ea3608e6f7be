#pragma once
// The walk of the compiler search: every directory below a root, depth first, for the compilers'
// executables PBC.EXE, PBP.EXE, PBPW.EXE and PicBasic Pro 3's PBPX.EXE (file names compared in upper case).

#include <QString>
#include <functional>

struct CompilerSearchHooks {
    // A compiler file, by its whole path in its own letter case: on a file system that tells letter cases
    // apart only that one names the file.
    std::function<void(const QString& path)> found;
    // "Searching: " and the directory being walked (with its closing separator).
    std::function<void(const QString& text)> progress;
    // Lets waiting window events through; false ends the walk (its window has gone).
    std::function<bool()> processEvents;
};

// Walks root and everything below it. A directory that cannot be read is passed over in silence; links
// to directories are not followed, so a link back up cannot loop. From "/" the kernel's views /proc,
// /sys and /dev are not entered: they hold no programs, and /proc has a link loop per process.
void FindCompilerFiles(const QString& root, const CompilerSearchHooks& hooks);

// True for "PBC.EXE", "PBP.EXE", "PBPW.EXE" and "PBPX.EXE" in any letter case.
bool isCompilerFileName(const QString& name);

// text up to, not including, its first NUL; the whole text when it holds none.
QString TrimToNul(const QString& text);
