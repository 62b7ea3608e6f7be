#include "core/ToolState.h"

#include "core/ToolIds.h"

std::vector<std::pair<const char*, bool>> toolStates(const ToolState& s) {
    const bool on = s.documents;
    std::vector<std::pair<const char*, bool>> out;
    out.reserve(28);
    for (const char* id : {ToolId::Close, ToolId::Print, ToolId::Save, ToolId::SaveAs})
        out.emplace_back(id, on);
    out.emplace_back(ToolId::Cut, on && s.selection.value_or(true));
    out.emplace_back(ToolId::Copy, on && s.selection.value_or(true));
    out.emplace_back(ToolId::Paste, on && s.clipboardText.value_or(true));
    for (const char* id : {ToolId::Find, ToolId::FindNext, ToolId::SelectAll, ToolId::SelectLine, ToolId::SelectWord,
                           ToolId::Replace, ToolId::BackgroundColor, ToolId::Indent, ToolId::Outdent})
        out.emplace_back(id, on);
    if (!on || s.canUndo)
        out.emplace_back(ToolId::Undo, on && *s.canUndo);
    if (!on || s.canRedo)
        out.emplace_back(ToolId::Redo, on && *s.canRedo);
    for (const char* id : {ToolId::NoMargin, ToolId::FixedMargin, ToolId::ScrollingMargin})
        out.emplace_back(id, on);
    out.emplace_back(ToolId::Compile, on && !s.compiling);
    out.emplace_back(ToolId::CompileAndProgram, on && !s.compiling);
    out.emplace_back(ToolId::NextMessage, s.messages);
    out.emplace_back(ToolId::PreviousMessage, s.messages);
    for (const char* id : {ToolId::Device, ToolId::GotoLabel})
        out.emplace_back(id, on);
    if (s.tokenColor)
        out.emplace_back(ToolId::TokenColor, on && *s.tokenColor);
    return out;
}
