#pragma once
// The frame's registry of open documents: it makes each document window, counts it from the moment it
// exists, shows it in the frame's document area and says when it opens, closes, becomes active, changes
// its text or its path.

#include "core/Editors.h"

class Frame;
class QMdiArea;
class QMdiSubWindow;

class EditorRegistry : public Editors {
    Q_OBJECT
public:
    EditorRegistry(Frame& frame, QMdiArea& area);
    ~EditorRegistry() override;

    // The making of a document for a path: a new window (its Form_Load), the file read, path and title
    // set, shown maximised and active (its activation steps), then opened. With missingIsEmpty a path that
    // doesn't exist gives an empty document; any other failure to read removes the window and is thrown.
    // position: its place among the documents (from 0), -1 for the end.
    // behind: the document comes in behind the one in front, which keeps the focus.
    frmEditor& open(const QString& path, bool missingIsEmpty, qsizetype position = -1, bool behind = false);

    frmEditor& show(const QString& path, bool missingIsEmpty) override;
    frmEditor* find(const QString& path) const override;
    frmEditor* titled(const QString& title) const override;
    frmEditor* active() const override;
    QList<frmEditor*> all() const override { return docs_; }

private:
    void add(frmEditor& doc, qsizetype position);
    void onSubWindowActivated(QMdiSubWindow* sub);

    Frame& frame_;
    QMdiArea& area_;
    QList<frmEditor*> docs_;
    // The document being shown by open(): its activation is told after its opening.
    frmEditor* opening_ = nullptr;
};
