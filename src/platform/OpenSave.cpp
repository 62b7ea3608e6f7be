#include "platform/OpenSave.h"

#include "platform/Failure.h"
#include "platform/Prompts.h"

#include <QFileInfo>

void OpenSave::cancelled() {
    if (CancelError)
        throw cancelError();
    FileName.clear();
}

bool OpenSave::ShowOpen() {
    if (!prompts_)
        throw objectNotSet();
    if (auto f = prompts_->openFile(Filter, FileName)) {
        FileName = *f;
        return true;
    }
    cancelled();
    return false;
}

bool OpenSave::ShowSave() {
    if (!prompts_)
        throw objectNotSet();
    if (auto f = prompts_->saveFile(Filter, FileName)) {
        FileName = *f;
        if (!FileName.isEmpty() && !DefaultExt.isEmpty() && QFileInfo(FileName).suffix().isEmpty() &&
            !FileName.endsWith(QLatin1Char('.')))
            FileName += QLatin1Char('.') + DefaultExt;
        return true;
    }
    cancelled();
    return false;
}

bool OpenSave::ShowColor() {
    if (!prompts_)
        throw objectNotSet();
    if (auto c = prompts_->chooseColor(Color)) {
        Color = *c;
        return true;
    }
    if (CancelError)
        throw cancelError();
    return false;
}
