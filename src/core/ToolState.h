#pragma once
// Which tools are enabled, worked out from the state of the documents in one place.

#include <optional>
#include <utility>
#include <vector>

struct ToolState {
    // At least one document is open (miDocCount above 0).
    bool documents = false;
    // Facts of the active document. Unknown facts leave the undo tools as they are, and put the cut,
    // copy and paste tools on with the other document tools.
    std::optional<bool> canUndo, canRedo;
    std::optional<bool> selection;
    std::optional<bool> clipboardText;
    // The token last clicked has a colour of its own; unknown leaves its tool as it is.
    std::optional<bool> tokenColor;
    // The active document's compile still runs: two compilers must not write one hex file at once.
    bool compiling = false;
    // An output screen shows messages to step through.
    bool messages = false;

    bool operator==(const ToolState&) const = default;
};

// Every tool the state decides, with its enabled state, in the order they are written.
std::vector<std::pair<const char*, bool>> toolStates(const ToolState& state);
