#pragma once
// The Launch Programmer command of a document window: the chosen programmer kind's template expanded for
// this document and the selected device, the programmer started in its own directory, its output shown in
// the "Programmer Output" window as it runs. The frame never waits for it.

#include <QString>

class frmEditor;

// Starts the programmer for the document. A failed launch is reported, then the programmer options open
// beside the frame, without blocking. A template that names the hex file launches nothing while that file
// is missing, nor one whose short-form token has no file: the short form's message says which. While a
// programmer runs, a second launch brings its output forward and says so instead.
void GoProgram(frmEditor& doc);

// The message for a launch while the programmer still runs.
QString programmerStillRunningText();
