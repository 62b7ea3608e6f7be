#pragma once
// The frame's one file and colour dialog. Its properties stay as the last user left them.

#include <QString>
#include <QStringList>
#include <QtGlobal>

class Prompts;

class OpenSave {
public:
    explicit OpenSave(Prompts* prompts = nullptr) : prompts_(prompts) {}
    void setPrompts(Prompts* p) { prompts_ = p; }

    // With CancelError set, Cancel throws Failure kCancelError; without it, Cancel empties FileName.
    bool CancelError = false;
    // The stored start value: a Basic source filter.
    QString Filter = QStringLiteral("PicBasic Source Code (*.bas)|*.bas|");
    // The filter a save dialog shows first, from 1, and afterwards the one chosen. ShowSave starts at the
    // filter of FileName's extension when Filter has one.
    int FilterIndex = 1;
    QString FileName;
    qint32 Color = 0;

    // False when the user cancelled (and CancelError wasn't set).
    bool ShowOpen();
    // A saved name without extension takes the chosen filter's, when that filter names exactly one.
    bool ShowSave();
    bool ShowColor();

private:
    void cancelled();
    Prompts* prompts_;
};

// The one extension each filter of "description|pattern|..." stands for, lower case, in order; empty for a
// filter of several patterns or of all files.
QStringList filterExtensions(const QString& filter);
// fileName with ".extension" when it has no extension of its own and extension isn't empty.
QString withFilterExtension(const QString& fileName, const QString& extension);
