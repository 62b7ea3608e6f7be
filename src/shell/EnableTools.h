#pragma once
// Writes the tools' enabled states that the state decides, in one burst between Redraw false and true.

#include "core/ToolState.h"

class ToolModel;

// A missing tool is skipped. With before, only the tools whose state differs from it are written.
void EnableTools(ToolModel& tools, const ToolState& state, const ToolState* before = nullptr);
