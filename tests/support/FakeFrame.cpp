#include "support/FakeFrame.h"

#include "core/Globals.h"
#include "platform/Failure.h"
#include "platform/Prompts.h"

#include <QDialog>

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
