#include "shell/EnableTools.h"

#include "platform/Failure.h"
#include "shell/ToolModel.h"

#include <QString>

namespace {

void setEnabled(ToolModel& tools, const char* id, bool enabled) {
    skipOnFailure([&] { tools.Tools().Item(QLatin1String(id)).setEnabled(enabled); });
}

}  // namespace

void EnableTools(ToolModel& tools, bool bEnabled, std::optional<UndoState> active) {
    skipOnFailure([&] { tools.setRedraw(false); });
    for (const char* id : {"ID_Close", "ID_Print", "ID_Save", "ID_SaveAs", "ID_Cut", "ID_Copy", "ID_Paste", "ID_Find",
                           "ID_FindNext", "ID_SelectAll", "ID_SelectLine", "ID_SelectWord", "ID_Replace",
                           "ID_BackgroundColor", "ID_Indent", "ID_Outdent"})
        setEnabled(tools, id, bEnabled);
    if (!bEnabled) {
        setEnabled(tools, "ID_Undo", false);
        setEnabled(tools, "ID_Redo", false);
    } else if (active) {
        setEnabled(tools, "ID_Undo", active->canUndo);
        setEnabled(tools, "ID_Redo", active->canRedo);
    }
    for (const char* id : {"ID_NoMargin", "ID_FixedMargin", "ID_ScrollingMargin", "ID_Compile", "ID_Device",
                           "ID_GotoLabel"})
        setEnabled(tools, id, bEnabled);
    skipOnFailure([&] { tools.setRedraw(true); });
}
