#include "shell/EnableTools.h"

#include "platform/Failure.h"
#include "shell/ToolModel.h"

#include <QString>

#include <algorithm>

void EnableTools(ToolModel& tools, const ToolState& state, const ToolState* before) {
    auto writes = toolStates(state);
    if (before) {
        // Holding the redraw back repaints the whole toolbar afterwards: a compile's start changes one tool.
        const auto old = toolStates(*before);
        std::erase_if(writes, [&](const auto& w) { return std::find(old.begin(), old.end(), w) != old.end(); });
    }
    const bool hold = writes.size() > 1;
    if (hold)
        skipOnFailure([&] { tools.setRedraw(false); });
    for (const auto& [id, enabled] : writes)
        skipOnFailure([&] { tools.Tools().Item(QLatin1String(id)).setEnabled(enabled); });
    if (hold)
        skipOnFailure([&] { tools.setRedraw(true); });
}
