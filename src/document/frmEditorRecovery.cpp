#include "document/frmEditorRecovery.h"

#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"

#include <QDir>
#include <QFile>
#include <climits>

RecoveryWatch::RecoveryWatch(frmEditor& editor, QString dir) : QObject(&editor), editor_(editor), dir_(std::move(dir)) {
    RecoveryTimer.setSingleShot(true);
    RecoveryTimer.setInterval(kQuietMs);
    connect(&RecoveryTimer, &QTimer::timeout, this, &RecoveryWatch::RecoveryTimer_Timer);
    connect(editor.View, &SourceView::TextEdited, this, &RecoveryWatch::View_TextEdited);
    // Saving reaches the control's save point, whichever way the document was saved.
    connect(editor.View, &SourceView::ModifiedChanged, this, &RecoveryWatch::View_ModifiedChanged);
    connect(&editor, &frmEditor::unloading, this, &RecoveryWatch::Editor_Unloading);
}

RecoveryWatch::~RecoveryWatch() { removeFile(); }

// The typing path: nothing here but the timer's restart.
void RecoveryWatch::View_TextEdited() {
    if (!closed_)
        RecoveryTimer.start();
}

void RecoveryWatch::View_ModifiedChanged(bool modified) {
    if (modified || closed_)
        return;
    RecoveryTimer.stop();
    removeFile();
}

void RecoveryWatch::Editor_Unloading() {
    closed_ = true;
    RecoveryTimer.stop();
    removeFile();
}

void RecoveryWatch::RecoveryTimer_Timer() {
    if (closed_)
        return;
    Document& doc = editor_.View->document();
    if (!doc.Modified()) {
        removeFile();
        return;
    }
    if (file_.isEmpty())
        file_ = dir_ + QLatin1Char('/') + newRecoveryFileName(ownProcessId());
    // A disk that takes no file now may take the next one; the editor goes on either way.
    skipOnFailure([&] { writeRecoveryFile(file_, doc.PathName(), ownProcessId(), doc.utf8Text()); });
}

void RecoveryWatch::adopt(const QString& path) {
    if (path == file_)
        return;
    removeFile();
    file_ = path;
}

void RecoveryWatch::removeFile() {
    if (file_.isEmpty())
        return;
    QFile::remove(file_);
    file_.clear();
}

RecoveryWatch& attachRecovery(frmEditor& editor) {
    if (RecoveryWatch* w = recoveryOf(editor))
        return *w;
    return *new RecoveryWatch(editor, recoveryDirectory());
}

RecoveryWatch* recoveryOf(frmEditor& editor) { return editor.findChild<RecoveryWatch*>(QString(), Qt::FindDirectChildrenOnly); }

void restoreRecovered(frmEditor& editor, const RecoveredDocument& recovered) {
    Document& doc = editor.View->document();
    doc.setPathName(recovered.pathName);
    // One edit step over the loaded text, so that Undo shows what the file holds.
    doc.DeleteImpl(0, 0, INT_MAX, INT_MAX);
    doc.InsertImpl(0, 0, recovered.text);
    doc.UpdateViews();
    editor.View->SetSel(0, 0, 0, 0);
    RecoveryWatch& watch = attachRecovery(editor);
    watch.adopt(recovered.recoveryFile);
    // The file takes this process's id at once.
    watch.RecoveryTimer_Timer();
}

int recoverDocuments(const std::function<frmEditor*(const QString&)>& open) {
    int restored = 0;
    for (const RecoveredDocument& r : offerRecovery()) {
        frmEditor* editor = nullptr;
        skipOnFailure([&] { editor = open(r.pathName); });
        if (!editor)
            continue;
        restoreRecovered(*editor, r);
        ++restored;
    }
    return restored;
}
