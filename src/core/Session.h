#pragma once
// The open documents that a normal close leaves for the next start: in their order, with the active one
// and each one's caret line. Stored in the settings, section Session: Count, Active (from 1, 0 for none),
// File1..FileN and Line1..LineN (lines from 1, as the status bar counts them).

#include <QList>
#include <QString>

struct SessionDocument {
    QString path;
    int line = 0;  // the caret's line, from 0
    friend bool operator==(const SessionDocument&, const SessionDocument&) = default;
};

struct Session {
    QList<SessionDocument> documents;
    int active = -1;  // index into documents, -1 for none
    friend bool operator==(const Session&, const Session&) = default;
};

// What the store holds; any value that isn't a number reads as none there: a count as no documents, an
// active index as none, a line as the first. Entries with an empty path are left out.
Session readSession();
// Writes the whole session in one go. Entries behind the count stay in the store, unread.
void saveSession(const Session& session);

// At most this many documents are kept.
inline constexpr int kSessionMaxDocuments = 500;
