#pragma once
// The script a compile runs: runpb.bat on Windows, runpb.sh on POSIX, both from the same inputs.
// Both remove the old output, go to the document's directory, put the compiler's directory in front of
// the search path, run the compiler with its standard output redirected, and show that output. Which one a
// compile writes is its compiler's host's choice (ProgramHost).

#include <QByteArray>
#include <QChar>
#include <QString>
#include <QStringList>
#include <optional>

struct CompileInputs {
    QString D;  // the document's path, as GetDosPath gives it
    QString S;  // the application directory, as GetDosPath gives it
    QString P;  // the compiler's path, as GetDosPath gives it
    QString O;  // the compiler's options, as stored
    QString C;  // the compiler's directory: compilerDirectory(P)
    QString M;  // the device without "PIC": compilerDevice(entry)
    // The output file's name in S; compiles that run at once each have their own.
    QString output = QStringLiteral("temp.dat");
};

// The eight CRLF lines of runpb.bat, in the platform's single-byte character set. Throws a Failure
// (number 5) when D has no backslash past its drive, since line 4 cannot be built then.
QByteArray runpbBat(const CompileInputs& in);

// runpb.sh in UTF-8: every path single-quoted, the options split into words as optionWords splits
// them, each quoted unless the shell takes it as it stands. The compiler's standard output, and its standard error in
// the order written, go to the output name with ".part" behind it, renamed to the output when the compiler
// ends, so the output never holds half a text. Its exit status goes into the status file first
// (compileStatusName); the script shows "exit status N" after the output when it isn't 0, and ends with
// that status. Throws a Failure (number 5) when D holds no "/".
QByteArray runpbSh(const CompileInputs& in);

// What a Windows compiler run through wine is handed instead of the POSIX paths.
struct WineForms {
    QString wine;  // the wine program
    QString P;     // the compiler's short Windows path
    QString D;     // the document's short Windows path
    QString C;     // the compiler's Windows directory: compilerDirectory(P, '\\')
};

// runpb.sh for a Windows compiler: the same steps, with the POSIX D and S for the directory and the
// output, and the compiler run through wine with its own short path, the options split into words as
// the Windows runtime splits a command line, "-p" with the device and the document's short path. The
// compiler's directory goes in front of the Windows search path (WINEPATH) and wine's diagnostics are
// off. The compiler's standard output and error reach the output as in runpbSh; the lines wine itself
// writes ("wine: ...") stay out of a compile that succeeds and follow the compiler's text in one that
// fails. Nothing reaches the shell unquoted.
QByteArray runpbShWine(const CompileInputs& in, const WineForms& win);

// The options as the words a program gets: blanks separate, double quotes keep a word together.
QStringList optionWords(const QString& options);

// The text of P in front of its last separator; empty when P holds none.
QString compilerDirectory(const QString& P, QChar separator);
QString compilerDirectory(const QString& P);  // with the platform's separator

// The files of the compile that holds slot n (from 1) of the application directory: slot 1 has runpb.sh
// (runpb.bat) and temp.dat, slot 2 runpb2.sh and temp2.dat, and so on.
QString compileScriptName(int slot);
QString compileOutputName(int slot);
// The status file of an output name: temp.dat.status beside temp.dat.
QString compileStatusName(const QString& output);
// The compiler's exit status that the script left beside outputFile; none when there is no such file or
// it holds no number.
std::optional<int> compileExitStatus(const QString& outputFile);
// "exit status " and the status, as the script and the output screen say it.
QString exitStatusText(const QString& status);
// text with line behind its last line, ended as the text's lines end (CRLF when it holds one).
QString withOutputLine(const QString& text, const QString& line);
