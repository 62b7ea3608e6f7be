#pragma once
// The open documents: one registry that every part asks, instead of walking the loaded windows. The
// frame's implementation makes and counts the document windows; a dock that follows the active document
// listens here.

#include <QList>
#include <QObject>
#include <QString>
#include <QtGlobal>

class frmEditor;  // the document window: handed on here, never looked into

class Editors : public QObject {
    Q_OBJECT
public:
    // The document of a path. Two spellings of one file (a symlink, "..", a doubled "/") are one document;
    // a file that doesn't exist yet is compared by its cleaned absolute path.
    virtual frmEditor* find(const QString& path) const = 0;
    // The document whose title is exactly this text: a Window menu entry's id names one so.
    virtual frmEditor* titled(const QString& title) const = 0;
    // The frame's active document; null with none.
    virtual frmEditor* active() const = 0;
    // Every document in the order it was made, a document still being made included.
    virtual QList<frmEditor*> all() const = 0;
    // The document of a path brought to the front, made first when it isn't open: as open() of the frame's
    // registry, missingIsEmpty giving an empty document for a path that doesn't exist. Throws Failure when
    // the file can't be read; then no document is made.
    virtual frmEditor& show(const QString& path, bool missingIsEmpty) = 0;
    // miDocCount: raised as a document window is made, before its file is read; lowered when it closes or
    // its making is refused.
    qint16 count() const { return qint16(all().size()); }

signals:
    // Shown and active, with its path and title.
    void opened(frmEditor* doc);
    // Closing for good: still whole, but no longer counted or listed.
    void closed(frmEditor* doc);
    void activated(frmEditor* doc);
    // Once per edit operation, after it is done.
    void textChanged(frmEditor* doc);
    // The title moved to another path (Save As); oldTitle is the one the document had.
    void pathChanged(frmEditor* doc, const QString& oldTitle);
};
