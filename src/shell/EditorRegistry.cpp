#include "shell/EditorRegistry.h"

#include "core/Frame.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "document/frmEditorRecovery.h"
#include "platform/Failure.h"

#include <QDir>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>

#include <cerrno>

namespace {

// One spelling per file: symlinks and ".." resolved for what exists; for a file not made yet, its folder
// resolved and the name kept.
QString canonical(const QString& path) {
    const QFileInfo info(path);
    if (const QString c = info.canonicalFilePath(); !c.isEmpty())
        return c;
    if (const QString dir = info.absoluteDir().canonicalPath(); !dir.isEmpty())
        return dir + QLatin1Char('/') + info.fileName();
    return QDir::cleanPath(info.absoluteFilePath());
}

}  // namespace

EditorRegistry::EditorRegistry(Frame& frame, QMdiArea& area) : frame_(frame), area_(area) {
    connect(&area_, &QMdiArea::subWindowActivated, this, &EditorRegistry::onSubWindowActivated);
}

EditorRegistry::~EditorRegistry() = default;

frmEditor& EditorRegistry::open(const QString& path, bool missingIsEmpty, qsizetype position, bool behind) {
    auto* doc = new frmEditor(frame_);
    add(*doc, position);
    try {
        doc->View->document().LoadFile(path);
    } catch (const Failure& f) {
        if (f.number != ENOENT || !missingIsEmpty) {
            delete doc;
            throw;
        }
    }
    doc->View->document().setPathName(path);
    doc->setCaption(path);
    // After the load: loading is no edit to keep, nor one to tell.
    attachRecovery(*doc);
    connect(doc->View, &SourceView::TextEdited, this, [this, doc] { emit textChanged(doc); });
    QMdiSubWindow* sub = area_.addSubWindow(doc);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    // Its activation steps run as it is shown; those who listen hear of it as opened first.
    opening_ = doc;
    if (QMdiSubWindow* front = behind ? area_.activeSubWindow() : nullptr) {
        // Shown maximised it would take the front and the front window's size, and both would be laid out
        // again to put them back. Left as it is, it is maximised when it comes to the front.
        const bool asItIs = area_.testOption(QMdiArea::DontMaximizeSubWindowOnActivation);
        area_.setOption(QMdiArea::DontMaximizeSubWindowOnActivation, true);
        sub->show();
        area_.setActiveSubWindow(front);
        area_.setOption(QMdiArea::DontMaximizeSubWindowOnActivation, asItIs);
    } else {
        sub->showMaximized();
        area_.setActiveSubWindow(sub);
    }
    opening_ = nullptr;
    emit opened(doc);
    if (active() == doc)
        emit activated(doc);
    return *doc;
}

frmEditor& EditorRegistry::show(const QString& path, bool missingIsEmpty) {
    frmEditor* doc = find(path);
    if (!doc)
        return open(path, missingIsEmpty);
    if (doc->subWindow())
        area_.setActiveSubWindow(doc->subWindow());
    return *doc;
}

void EditorRegistry::add(frmEditor& doc, qsizetype position) {
    docs_.insert(position >= 0 && position <= docs_.size() ? position : docs_.size(), &doc);
    frmEditor* d = &doc;
    connect(d, &frmEditor::unloading, this, [this, d] {
        if (docs_.removeOne(d))
            emit closed(d);
    });
    // A window destroyed without closing (a refused load, the frame going away) just leaves.
    connect(d, &QObject::destroyed, this, [this, d] { docs_.removeOne(d); });
    connect(d, &frmEditor::pathChanged, this, [this, d](const QString& oldTitle) { emit pathChanged(d, oldTitle); });
}

frmEditor* EditorRegistry::find(const QString& path) const {
    const QString wanted = canonical(path);
    for (frmEditor* doc : docs_)
        if (canonical(doc->View->document().PathName()) == wanted)
            return doc;
    return nullptr;
}

frmEditor* EditorRegistry::titled(const QString& title) const {
    for (frmEditor* doc : docs_)
        if (doc->Caption() == title)
            return doc;
    return nullptr;
}

frmEditor* EditorRegistry::active() const {
    const QMdiSubWindow* current = area_.currentSubWindow();
    if (!current)
        return nullptr;
    for (frmEditor* doc : docs_)
        if (doc->subWindow() == current)
            return doc;
    return nullptr;
}

void EditorRegistry::onSubWindowActivated(QMdiSubWindow* sub) {
    if (!sub)
        return;
    for (frmEditor* doc : docs_) {
        if (doc->subWindow() == sub) {
            doc->Form_Activate();
            if (doc != opening_)
                emit activated(doc);
            return;
        }
    }
}
