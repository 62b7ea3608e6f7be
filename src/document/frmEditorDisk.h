#pragma once
// Keeps the open documents in step with their files when another program changes them: an unmodified
// document reads its file again by itself; a modified one asks, when it is activated, whether to reload
// and lose its changes; a file that is gone is said once. The documents' own saves pass unnoticed, since
// each document knows what it last wrote.

#include "document/DiskStamp.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>

class Editors;
class FileWatch;
class Frame;
class frmEditor;

class DiskWatch : public QObject {
    Q_OBJECT
public:
    // Notices are taken up after this quiet time: a program writing a file in pieces sends several.
    static constexpr int kQuietMs = 200;

    // Watches every document of editors, from its opening to its closing, through files.
    DiskWatch(Frame& frame, Editors& editors, std::unique_ptr<FileWatch> files, QObject* parent = nullptr);
    ~DiskWatch() override;

    // Single shot, restarted by each notice.
    QTimer DiskTimer;
    // Looks at the files noticed since the last tick. A question waits until its document is the active
    // one while the program is in front.
    void DiskTimer_Timer();
    // Whether the program is in front; a question never comes up over another program's window.
    std::function<bool()> applicationActive;

private:
    struct Watched {
        QString path;
        // Something to ask or say when the document is next activated.
        bool pending = false;
        // Its file's absence (or the folder in its place) was said.
        bool toldGone = false;
        // The file's content the user would not reload, or that could not be read: not asked about again.
        DiskStamp declined;
        // Text and file agree: nothing to ask, say or remember.
        void settled() { pending = toldGone = false, declined = {}; }
    };

    void Editors_Opened(frmEditor* doc);
    void Editors_Closed(frmEditor* doc);
    void Editors_Activated(frmEditor* doc);
    void Editors_PathChanged(frmEditor* doc);
    void Files_Changed(const QString& path);
    void Application_Active();
    void View_DiskSynced(frmEditor* doc);
    // Compares the document's file with what it last read or wrote, and reloads, asks, says or waits.
    void check(frmEditor& doc, bool mayAsk);
    void forget(frmEditor* doc);

    Frame& frame_;
    Editors& editors_;
    std::unique_ptr<FileWatch> files_;
    QHash<frmEditor*, Watched> docs_;
    QSet<QString> noticed_;
    // A box is up: a tick in its event loop waits.
    bool asking_ = false;
};

// The questions and notices of a changed file, by its path as the user reads it.
QString reloadQuestionText(const QString& path);
QString fileGoneText(const QString& path);
QString fileIsFolderText(const QString& path);
QString reloadFailedText(const QString& path, const QString& why);
