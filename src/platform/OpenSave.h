#pragma once
// The frame's one file and colour dialog. Its properties stay as the last user left them.

#include <QString>
#include <QtGlobal>

class Prompts;

class OpenSave {
public:
    explicit OpenSave(Prompts* prompts = nullptr) : prompts_(prompts) {}
    void setPrompts(Prompts* p) { prompts_ = p; }

    // With CancelError set, Cancel throws Failure kCancelError; without it, Cancel empties FileName.
    bool CancelError = false;
    // The stored start values: a Basic source filter, and "bas" added to a saved name without extension.
    QString Filter = QStringLiteral("PicBasic Source Code (*.bas)|*.bas|");
    QString DefaultExt = QStringLiteral("bas");
    QString FileName;
    qint32 Color = 0;

    // False when the user cancelled (and CancelError wasn't set).
    bool ShowOpen();
    bool ShowSave();
    bool ShowColor();

private:
    void cancelled();
    Prompts* prompts_;
};
