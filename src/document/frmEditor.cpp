#include "document/frmEditor.h"

#include "document/Document.h"
#include "document/EditorColors.h"
#include "document/Language.h"
#include "document/SourceView.h"
#include "platform/Failure.h"
#include "platform/OpenSave.h"
#include "platform/Prompts.h"
#include "core/Frame.h"
#include "core/Globals.h"
#include "core/Settings.h"

#include <QCloseEvent>
#include <QMdiSubWindow>
#include <QVBoxLayout>

frmEditor::frmEditor(Frame& frame) : frame_(frame) {
    setAttribute(Qt::WA_DeleteOnClose, false);  // the sub-window owns and deletes us
    View = new SourceView(this);
    // The view fills the whole client area; no margin, toolbar or splitter stands beside it.
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(View);
    globals().addWindow(this);
    Form_Load();
}

frmEditor::~frmEditor() { globals().removeWindow(this); }

QMdiSubWindow* frmEditor::subWindow() const { return qobject_cast<QMdiSubWindow*>(parentWidget()); }

void frmEditor::Form_Load() {
    Document& doc = View->document();
    skipOnFailure([&] { doc.setLanguageMode(3); });
    skipOnFailure([&] {
        Language& lang = doc.language();
        lang.setSLCommentStart(QStringLiteral("'"));
        lang.setSLCommentStart2(QStringLiteral(";"));
        lang.setStringDelimiter(QStringLiteral("\""));
        lang.setLanguageFlags(112);
    });
    // The reserved words are read from the table just filled.
    skipOnFailure([&] { InitPBPCodes(); });
    skipOnFailure([&] { LoadReservedWords(); });
    skipOnFailure([&] { applyViewSettings(*View); });
    skipOnFailure([&] { frame_.refreshPasteTool(); });
    globals().ClickedTokenClass = 0;
}

void frmEditor::InitPBPCodes() {
    // The statement table comes with the language tables; until then the word sets stay empty.
}

void frmEditor::LoadReservedWords() {
    skipOnFailure([&] { DeviceIndex = frame_.deviceListIndex(); });
}

bool frmEditor::SaveModified() {
    Document& doc = View->document();
    if (!doc.Modified())
        return true;
    Prompts* prompts = globals().prompts;
    const Answer a = prompts->message(QStringLiteral("Save Changes to ") + doc.PathName(), QString(), Icon::Question,
                                      Buttons::YesNoCancel);
    if (a == Answer::No)
        return true;
    if (a != Answer::Yes)
        return false;
    try {
        OpenSave& dlg = frame_.openSave();
        dlg.FileName = doc.PathName();
        // A cancel is its own outcome, whatever CancelError says: no message.
        if (!dlg.ShowSave())
            return false;
        if (dlg.FileName.isEmpty()) {
            prompts->message(QStringLiteral("No file name entered."), QStringLiteral("File Error"), Icon::None,
                             Buttons::Ok);
            return false;
        }
        doc.SaveFile(dlg.FileName);
        doc.setPathName(dlg.FileName);
        return true;
    } catch (const Failure& f) {
        if (f.number != kCancelError)
            frame_.ShowError(f);
        return false;
    }
}

void frmEditor::Form_Activate() {
    Document& doc = View->document();
    skipOnFailure([&] { frame_.setToolEnabled(QStringLiteral("ID_REDO"), doc.CanRedo()); });
    skipOnFailure([&] { frame_.setToolEnabled(QStringLiteral("ID_UNDO"), doc.CanUndo()); });
    skipOnFailure([&] { frame_.setDeviceListIndex(DeviceIndex); });
    skipOnFailure([&] { frame_.GetDeviceData(false); });
    skipOnFailure([&] { frame_.EnableTools(true); });
}

void frmEditor::closeEvent(QCloseEvent* e) {
    if (!SaveModified()) {
        e->ignore();
        return;
    }
    Form_Unload();
    globals().removeWindow(this);
    e->accept();
}

void frmEditor::Form_Unload() {
    emit unloading();
    skipOnFailure([&] {
        frame_.setMiDocCount(qint16(frame_.miDocCount() - 1));
        if (frame_.miDocCount() == 0)
            frame_.EnableTools(false);
    });
    skipOnFailure([&] { frame_.setOpenDocsCaption(QStringLiteral("Files: ") + QString::number(frame_.miDocCount())); });
    skipOnFailure([&] { frame_.removeWindowEntry(Tag); });
    skipOnFailure([&] { saveViewColors(*View); });
    skipOnFailure([&] { saveSetting(Key::LastFile, View->document().PathName()); });
}
