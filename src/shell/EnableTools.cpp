#include "shell/EnableTools.h"

#include "platform/Failure.h"
#include "shell/ToolModel.h"

#include <QString>

void EnableTools(ToolModel& tools, const ToolState& state) {
    skipOnFailure([&] { tools.setRedraw(false); });
    for (const auto& [id, enabled] : toolStates(state))
        skipOnFailure([&] { tools.Tools().Item(QLatin1String(id)).setEnabled(enabled); });
    skipOnFailure([&] { tools.setRedraw(true); });
}
