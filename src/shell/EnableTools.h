#pragma once
// The tools that follow the mere existence of a document.

#include <optional>

class ToolModel;

// The active document's undo history, when there is an active document.
struct UndoState {
    bool canUndo = false;
    bool canRedo = false;
};

// Enables or disables the document tools in one burst between Redraw false and true. With bEnabled
// true the undo tools take the active document's state and stay as they are without one; with false
// they go off. A missing tool is skipped.
void EnableTools(ToolModel& tools, bool bEnabled, std::optional<UndoState> active = std::nullopt);
