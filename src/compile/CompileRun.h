#pragma once
// The compile of one document window: GoCompile writes and starts the compile script, and the window's
// CheckFile timer watches once a second for the compiler's output. The run lives beside the window as a
// child object, made at the first compile; the document window itself knows nothing of compiling.

#include "platform/TaggedTimer.h"

#include <QObject>
#include <QString>

class Frame;
class frmEditor;

class CompileRun : public QObject {
    Q_OBJECT
public:
    // The run of a document, made at the first use.
    static CompileRun& of(frmEditor& doc);
    // The run of a document, or null when it never compiled.
    static CompileRun* find(const frmEditor& doc);

    // Interval 1000 ms, off until a compile; its Tag holds the wait count.
    TaggedTimer CheckFile;

    // Saves nothing: writes the compile script, starts it and shows the output screen; returns at once.
    void GoCompile();
    // One tick of CheckFile.
    void CheckFile_Timer();

    // Deletes a file; one that isn't there is no failure, any other failure is shown and passed over.
    static void DeleteFileQuietly(const QString& path);

private:
    explicit CompileRun(frmEditor& doc);
    // Steps 1 to 9 of the tick: takes the output when it is there; does nothing while the compiler runs.
    void takeOutput();

    frmEditor& doc_;
};

// The compile of the active document, as the Compile tool runs it after saving.
void GoCompile(frmEditor& doc);
