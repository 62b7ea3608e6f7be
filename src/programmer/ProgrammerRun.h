#pragma once
// The Launch Programmer command of a document window: the chosen programmer kind's template expanded for
// this document and the selected device, the programmer started in its own directory without waiting.

class frmEditor;

// Reports a failed launch and then opens the programmer options beside the frame, without blocking.
void GoProgram(frmEditor& doc);
