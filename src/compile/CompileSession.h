#pragma once
// One compile of one document, from the click to the end: GoCompile writes and starts the compile script,
// the CheckFile timer watches once a second for the compiler's output, and the session keeps what came of
// it. A session lives beside its document window as a child object; the document keeps its latest one.
// Compiles of different documents may run at once: each has its own script, output file and screen.

#include "compile/CompileMessages.h"
#include "platform/RunpbScripts.h"
#include "platform/TaggedTimer.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

class CompilerScreen;
class HiddenProcess;
class ProgramHost;
class frmEditor;

class CompileSession : public QObject {
    Q_OBJECT
public:
    enum class Outcome {
        NotStarted,   // stopped before its script ran: a message told why, or the compiler options came
        Waiting,      // the script was started; CheckFile looks for its output
        OutputFound,  // a tick took the output
        TimedOut,     // thirty ticks without an output
        Stopped,      // ended before its output came: by a new compile of its document, or the document closed
    };

    // The compile of a document, as the Compile tool runs it after saving: a new session, through
    // GoCompile. An earlier compile of the document that still runs is ended before the new script starts,
    // so that two compilers never write the same files.
    static CompileSession& start(frmEditor& doc);
    // The document's latest session; null before its first compile.
    static CompileSession* of(const frmEditor& doc);

    ~CompileSession() override;

    // Interval 1000 ms, off until the compile starts; its Tag holds the wait count.
    TaggedTimer CheckFile;
    // One tick of CheckFile.
    void CheckFile_Timer();

    // Ends a compile that still runs: its timer stops and its script's process group ends.
    void end();
    // Waiting for the output.
    bool running() const { return outcome_ == Outcome::Waiting; }
    Outcome outcome() const { return outcome_; }

    frmEditor& document() const { return doc_; }
    // D, S, P, O, C and M as the script got them, and the output file's name.
    const CompileInputs& inputs() const { return inputs_; }
    // How the compiler runs; null when the compile stopped before it knew.
    ProgramHost* host() const { return host_.get(); }
    // The hidden script; null in the visible mode and before the start.
    HiddenProcess* process() const { return process_.get(); }
    // The script and output files in the application directory; empty before the compile took them.
    QString scriptFile() const { return scriptFile_; }
    QString outputFile() const { return outputFile_; }

    // The compiler's text as the screen shows it, with the user's names for the forms a Windows compiler
    // was given, and its lines; empty until a tick took it. A line "exit status N" that the screen adds
    // for a failed compiler is no part of it.
    QString output() const { return output_; }
    QStringList outputLines() const;
    // The compiler's exit status, as its script left it beside the output; none before a tick took the
    // output, or when the script left none.
    std::optional<int> exitStatus() const { return exitStatus_; }
    // The errors, warnings and notes in the output, in its order, with their files as paths of this
    // machine (a name without a folder lies beside the source); an assembler's message is shown at the
    // BASIC line of the nearest tag above its line in the .ASM. Empty until a tick took the output.
    const std::vector<CompileMessage>& messages() const { return messages_; }
    // The output holds a line with "ERROR" in it.
    bool hasErrorLine() const { return errorLine_; }
    // The compile failed: an error line, or an exit status other than 0. Its screen stays then.
    bool failed() const { return errorLine_ || exitStatus_.value_or(0) != 0; }
    // The screen that shows this compile; null once it was closed or taken by a later compile.
    CompilerScreen* screen() const;

    // Deletes a file; one that isn't there is no failure, any other failure is shown and passed over.
    static void DeleteFileQuietly(const QString& path);

signals:
    // The wait is over: the output was found, the wait timed out, or the compile was ended. A session that
    // never started doesn't send it.
    void ended();

private:
    explicit CompileSession(frmEditor& doc);
    // Saves nothing: writes the compile script, starts it and shows the output screen; returns at once.
    void GoCompile();
    // Takes the first free slot of the application directory: its script and output names.
    void claimFiles();
    // The live screen that no running compile shows (a single compile's), else a new one.
    CompilerScreen& takeScreen();
    // Steps 1 to 9 of the tick: takes the output when it is there; does nothing while the compiler runs.
    void takeOutput();
    // Leaves the wait with the outcome, frees the files and tells it.
    void finish(Outcome outcome);
    void Document_Unloading();

    frmEditor& doc_;
    Outcome outcome_ = Outcome::NotStarted;
    CompileInputs inputs_;
    std::unique_ptr<ProgramHost> host_;
    std::unique_ptr<HiddenProcess> process_;
    int slot_ = 0;
    QString scriptFile_;
    QString outputFile_;
    QString output_;
    std::optional<int> exitStatus_;
    std::vector<CompileMessage> messages_;
    bool errorLine_ = false;
    QPointer<CompilerScreen> screen_;
};
