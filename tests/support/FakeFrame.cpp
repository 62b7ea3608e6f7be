#include "support/FakeFrame.h"

#include "core/Globals.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/Prompts.h"

#include <QDialog>

#include <cerrno>

FakeFrame::FakeFrame() : dialog(globals().prompts) {
    // The frame is the first loaded window, the owner of the output screen.
    globals().loadedWindows.insert(globals().loadedWindows.begin(), &window);
}

FakeFrame::~FakeFrame() { globals().removeWindow(&window); }

void FakeFrame::ShowError(const Failure& f) {
    globals().prompts->message(errorBoxText(f), QStringLiteral("File Error"), Icon::None, Buttons::Ok);
}

void FakeFrame::setDeviceListIndex(int index) {
    combo.SetListIndex(index);
    if (combo.ListIndex() != index)
        throw invalidPropertyValue();
}

int FakeFrame::runModal(QDialog& dlg) {
    modals << dlg.windowTitle();
    return QDialog::Rejected;
}

void FakeFrame::EnableTools() {
    ToolState state = documentToolState(docs);
    state.clipboardText = true;
    for (const auto& [id, enabled] : toolStates(state))
        tools[QString::fromLatin1(id).toUpper()] = enabled;
}

void FakeEditors::add(frmEditor& doc) {
    docs_.append(&doc);
    frmEditor* d = &doc;
    connect(d, &frmEditor::unloading, this, [this, d] {
        if (docs_.removeOne(d))
            emit closed(d);
    });
    connect(d, &QObject::destroyed, this, [this, d] {
        docs_.removeOne(d);
        if (chosen == d)
            chosen = nullptr;
    });
}

frmEditor* FakeEditors::find(const QString& path) const {
    for (frmEditor* d : docs_)
        if (d->View->document().PathName() == path)
            return d;
    return nullptr;
}

frmEditor* FakeEditors::titled(const QString& title) const {
    for (frmEditor* d : docs_)
        if (d->Caption() == title)
            return d;
    return nullptr;
}

frmEditor* FakeEditors::active() const { return chosen ? chosen : docs_.isEmpty() ? nullptr : docs_.last(); }

frmEditor& FakeEditors::show(const QString& path, bool) {
    frmEditor* doc = find(path);
    if (!doc)
        throw osFailure(ENOENT, path);
    chosen = doc;
    return *doc;
}
