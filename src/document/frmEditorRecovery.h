#pragma once
// Keeps a recovery file of one document window while its text is unsaved: written a short quiet time
// after typing stops, removed when the document is saved or closed.

#include "document/Recovery.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>

class frmEditor;

class RecoveryWatch : public QObject {
    Q_OBJECT
public:
    // How long typing must rest before the text is written.
    static constexpr int kQuietMs = 2000;

    // A child of the window: it goes with it. Files go into dir.
    RecoveryWatch(frmEditor& editor, QString dir);
    ~RecoveryWatch() override;

    // Single shot, restarted by each edit.
    QTimer RecoveryTimer;
    // Writes the text while the document is modified, removes the file once it isn't.
    void RecoveryTimer_Timer();
    // The file written or taken on; empty while there is none.
    QString file() const { return file_; }
    // Makes a recovery file of this process (a recovered one) this document's: written from now on,
    // removed on save or close. A file held before is removed.
    void adopt(const QString& path);

private:
    void View_TextEdited();
    void View_ModifiedChanged(bool modified);
    void Editor_Unloading();
    void removeFile();

    frmEditor& editor_;
    const QString dir_;
    QString file_;
    bool closed_ = false;
};

// Puts a watcher on a new document window, writing into recoveryDirectory().
RecoveryWatch& attachRecovery(frmEditor& editor);
// The watcher of a window; null when none was attached.
RecoveryWatch* recoveryOf(frmEditor& editor);
// Puts a recovered text into a document window opened on its path: the document is modified, Undo gives
// back the file's text, Save writes the original file, and the recovery file is the window's from now on.
void restoreRecovered(frmEditor& editor, const RecoveredDocument& recovered);
// At start-up: offers the recovery files of instances that are gone (offerRecovery) and, on Yes, puts
// each text into the window that open gives for its path. open gives null where no window could be
// made; that file stays and is offered again at the next start. Gives the number of documents restored.
int recoverDocuments(const std::function<frmEditor*(const QString& pathName)>& open);
