#pragma once
// The rules of the frame's commands that have a number, a text or an order in them.

#include <QString>
#include <QStringList>

// "Untitled" + n + ".pbp" in the directory of new documents.
QString untitledPath(const QString& sourceCodePath, int n);

// One pass over the loaded windows' titles, from the first: n starts at 1 and grows by one for each title
// that stands anywhere inside the candidate of the moment, letter case ignored. Windows already passed
// are not tried again, so the result can name a document that is open.
int untitledNumber(const QStringList& titles, const QString& sourceCodePath);

// The already-open test: whole titles compared in upper case, no path normalisation.
bool isAlreadyOpen(const QStringList& documentTitles, const QString& path);

// The target of a web link tool, or empty for any other id.
QString webLinkFor(const QString& toolId);
