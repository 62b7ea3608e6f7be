#pragma once
// How a program runs on this system and which forms of paths it reads: natively, or, for a Windows
// program (a PE image) on POSIX, through wine. The compile and the programmer ask their program's host;
// whether it is a Windows program is decided here alone.

#include "platform/Paths.h"
#include "platform/RunpbScripts.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <memory>

struct WineState;

class ProgramHost : public ShortPaths {
public:
    // The host of program: through wine for a Windows program, else native (also for a program that isn't
    // there: its launch reports that). Throws Failure 5 with wineMissingMessage(program) when the program
    // needs wine and there is none, and with wine32MissingMessage(program) when it is a 32-bit program and
    // wine runs only 64-bit ones. native gives the platform's short forms; wine holds what the wine host
    // keeps between compiles.
    static std::unique_ptr<ProgramHost> of(const QString& program, Paths& native, WineState& wine);
    // The host of a program that runs natively.
    static std::unique_ptr<ProgramHost> native(Paths& paths);

    // The whole path as the program reads it: the path itself, or Z:\... through wine.
    virtual QString fullPath(const QString& path) = 0;
    // The short form of an existing path as the program reads it (through wine, wine's short DOS form of
    // the platform's short form); empty for a path that has none.
    QString shortPath(const QString& path) override = 0;

    // Gets ready for a compile with this program as the compiler. Through wine: a lasting wine server, so
    // that a compile doesn't boot the prefix, and the short forms of paths fetched in one run of wine.
    virtual void prepareCompile(const QStringList& /*paths*/) {}
    // The compile script for this compiler. in holds the platform's forms; P and D are shortPath of the
    // compiler and of the document.
    virtual QByteArray compileScript(const CompileInputs& in, const QString& P, const QString& D) = 0;
    // Right before that script starts, with the same inputs. Through wine: notes what lies beside the
    // document under its DOS alias.
    virtual void compileStarting(const CompileInputs& /*in*/, const QString& /*P*/, const QString& /*D*/) {}
    // After the compiler has ended, with its text. Through wine: the outputs it named after the document's
    // DOS alias get the document's own name (WineNames.h), and the text gets the user's names back for
    // the forms the compiler was given, followed by a line for each output that keeps its alias. Gives
    // the text to show.
    virtual QString compileEnded(const QString& output) { return output; }
    // A file as the program's text names it, as a path of this system: a name without a folder, or with
    // a relative one, lies in directory (a path of this system). Through wine, a Windows path (Z:\...,
    // C:\..., or one with DOS aliases in it) is the file it stands for.
    virtual QString localPath(const QString& named, const QString& directory) { return nativePath(named, directory); }
    // The native reading: a relative path lies in directory.
    static QString nativePath(const QString& named, const QString& directory);
};
