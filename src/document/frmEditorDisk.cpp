#include "document/frmEditorDisk.h"

#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "core/Editors.h"
#include "core/Frame.h"
#include "core/Globals.h"
#include "platform/Failure.h"
#include "platform/FileWatch.h"
#include "platform/Prompts.h"

#include <QDir>
#include <QGuiApplication>
#include <QPointer>
#include <QScopedValueRollback>

#include <optional>
#include <utility>

namespace {
const QString kChangedTitle = QStringLiteral("File Changed");
}  // namespace

QString reloadQuestionText(const QString& path) {
    return QStringLiteral("%1 was changed by another program.\r\rReload it and lose the changes made here?")
        .arg(QDir::toNativeSeparators(path));
}

QString fileGoneText(const QString& path) {
    return QStringLiteral("%1 was deleted or moved away by another program.\r\rIts text stays open here; Save "
                          "writes the file again.")
        .arg(QDir::toNativeSeparators(path));
}

QString fileIsFolderText(const QString& path) {
    return QStringLiteral("%1 was replaced by a folder.\r\rIts text stays open here; Save As keeps it under "
                          "another name.")
        .arg(QDir::toNativeSeparators(path));
}

QString reloadFailedText(const QString& path, const QString& why) {
    return QStringLiteral("%1 was changed by another program, but it can't be read again:\r\r%2\r\rThe text "
                          "here stays as it was.")
        .arg(QDir::toNativeSeparators(path), why);
}

DiskWatch::DiskWatch(Frame& frame, Editors& editors, std::unique_ptr<FileWatch> files, QObject* parent)
    : QObject(parent), frame_(frame), editors_(editors), files_(std::move(files)) {
    applicationActive = [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; };
    DiskTimer.setSingleShot(true);
    DiskTimer.setInterval(kQuietMs);
    connect(&DiskTimer, &QTimer::timeout, this, &DiskWatch::DiskTimer_Timer);
    connect(files_.get(), &FileWatch::changed, this, &DiskWatch::Files_Changed);
    connect(&editors_, &Editors::opened, this, &DiskWatch::Editors_Opened);
    connect(&editors_, &Editors::closed, this, &DiskWatch::Editors_Closed);
    connect(&editors_, &Editors::activated, this, &DiskWatch::Editors_Activated);
    connect(&editors_, &Editors::pathChanged, this, [this](frmEditor* doc, const QString&) { Editors_PathChanged(doc); });
    if (auto* app = qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        connect(app, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
            if (state == Qt::ApplicationActive)
                Application_Active();
        });
    for (frmEditor* doc : editors_.all())
        Editors_Opened(doc);
}

DiskWatch::~DiskWatch() = default;

void DiskWatch::Editors_Opened(frmEditor* doc) {
    if (docs_.contains(doc))
        return;
    Watched& w = docs_[doc];
    w.path = doc->View->document().PathName();
    files_->watch(w.path);
    connect(doc->View, &SourceView::DiskSynced, this, [this, doc] { View_DiskSynced(doc); });
    connect(doc, &QObject::destroyed, this, [this, doc] { forget(doc); });
}

void DiskWatch::Editors_Closed(frmEditor* doc) { forget(doc); }

void DiskWatch::forget(frmEditor* doc) {
    const auto it = docs_.constFind(doc);
    if (it == docs_.constEnd())
        return;
    const QString path = it->path;
    // The connections to the window and its view go with them.
    docs_.erase(it);
    for (const Watched& other : std::as_const(docs_))
        if (other.path == path)
            return;
    files_->unwatch(path);
}

void DiskWatch::Editors_PathChanged(frmEditor* doc) {
    const auto it = docs_.find(doc);
    if (it == docs_.end())
        return;
    const QString old = it->path;
    it->path = doc->View->document().PathName();
    it->settled();
    files_->watch(it->path);
    for (const Watched& other : std::as_const(docs_))
        if (other.path == old)
            return;
    files_->unwatch(old);
}

// Text and file agree again: nothing is left to ask, and a file written anew (in a folder made anew)
// is watched again.
void DiskWatch::View_DiskSynced(frmEditor* doc) {
    const auto it = docs_.find(doc);
    if (it == docs_.end())
        return;
    it->settled();
    files_->watch(it->path);
}

void DiskWatch::Files_Changed(const QString& path) {
    noticed_.insert(path);
    DiskTimer.start();
}

void DiskWatch::DiskTimer_Timer() {
    if (asking_) {
        DiskTimer.start();
        return;
    }
    const QSet<QString> noticed = std::exchange(noticed_, {});
    for (frmEditor* doc : editors_.all()) {
        const auto it = docs_.constFind(doc);
        if (it != docs_.constEnd() && noticed.contains(it->path))
            skipOnFailure([&] { check(*doc, doc == editors_.active() && applicationActive()); });
    }
}

// Asked once the switch is done: a box within it would stand over a frame still half switched.
void DiskWatch::Editors_Activated(frmEditor* doc) {
    QMetaObject::invokeMethod(
        this,
        [this, alive = QPointer<frmEditor>(doc)] {
            frmEditor* d = alive.data();
            const auto it = docs_.constFind(d);
            if (d && it != docs_.constEnd() && it->pending && !asking_ && editors_.active() == d)
                skipOnFailure([&] { check(*d, true); });
        },
        Qt::QueuedConnection);
}

void DiskWatch::Application_Active() {
    if (frmEditor* doc = editors_.active())
        Editors_Activated(doc);
}

void DiskWatch::check(frmEditor& doc, bool mayAsk) {
    Document& d = doc.View->document();
    if (!d.changedOnDisk()) {
        docs_[&doc].settled();
        return;
    }
    const QString path = docs_[&doc].path;
    const DiskStamp now = DiskStamp::of(path);
    Prompts* prompts = globals().prompts;
    mayAsk = mayAsk && prompts;
    // A box runs an event loop of its own, in which the document might go: it is looked up again after.
    const QPointer<frmEditor> alive(&doc);
    auto box = [&](const QString& text, const QString& title, Icon icon, Buttons buttons) {
        const QScopedValueRollback<bool> busy(asking_, true);
        const Answer a = prompts->message(text, title, icon, buttons);
        return alive && docs_.contains(&doc) ? std::optional(a) : std::nullopt;
    };
    if (!now.isFile) {
        Watched& w = docs_[&doc];
        if (w.toldGone)
            return;
        w.pending = !mayAsk;
        w.toldGone = mayAsk;
        if (mayAsk)
            box(now.exists ? fileIsFolderText(path) : fileGoneText(path),
                now.exists ? QStringLiteral("File Replaced") : QStringLiteral("File Deleted"), Icon::Exclamation,
                Buttons::Ok);
        return;
    }
    {
        Watched& w = docs_[&doc];
        w.toldGone = false;
        if (now.sameAs(w.declined))
            return;
        w.pending = !mayAsk && d.Modified();
    }
    if (d.Modified()) {
        if (!mayAsk)
            return;
        const std::optional<Answer> answer =
            box(reloadQuestionText(path), kChangedTitle, Icon::Question, Buttons::YesNoDefaultNo);
        if (!answer)
            return;
        docs_[&doc].declined = now;
        if (*answer != Answer::Yes)
            return;
    }
    try {
        d.ReloadFile();
    } catch (const Failure& f) {
        // Nothing is lost: the text stays, and a Save asks before it writes over the file. Said once, in front.
        Watched& w = docs_[&doc];
        w.pending = !mayAsk;
        if (mayAsk) {
            w.declined = now;
            box(reloadFailedText(path, f.description), kChangedTitle, Icon::Exclamation, Buttons::Ok);
        }
        return;
    }
    skipOnFailure([&] { frame_.EnableTools(); });
}
