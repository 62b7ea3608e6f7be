#pragma once
// Writes the tools' enabled states that the state decides, in one burst between Redraw false and true.

#include "core/ToolState.h"

class ToolModel;

// A missing tool is skipped.
void EnableTools(ToolModel& tools, const ToolState& state);
