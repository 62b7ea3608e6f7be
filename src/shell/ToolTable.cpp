#include "shell/ToolTable.h"

#include "core/ToolIds.h"

namespace {

using K = ToolKind;

#define ICON(file) .icon = ":/icons/" file ".png"
using Key = QKeySequence;

const std::vector<ToolDef> kTools = {
    // The menus of the menu bar and the two submenus.
    {.id = ToolId::File, .kind = K::Menu, .caption = "&File"},
    {.id = ToolId::Edit, .kind = K::Menu, .caption = "&Edit"},
    {.id = ToolId::ViewMenu, .kind = K::Menu, .caption = "&View"},
    {.id = ToolId::CMenu, .kind = K::Menu, .caption = "&Compile"},
    {.id = ToolId::Programmer, .kind = K::Menu, .caption = "&Programmer"},
    {.id = ToolId::Options, .kind = K::Menu, .caption = "&Options"},
    {.id = ToolId::Window, .kind = K::Menu, .caption = "&Window"},
    {.id = ToolId::Help, .kind = K::Menu, .caption = "&Help"},
    {.id = ToolId::SelectionColor, .kind = K::Menu, .caption = "&Selection Color"},
    {.id = ToolId::VelnorSystemsontheWeb, .kind = K::Menu, .caption = "Velnor Systems on the &Web"},

    // File
    {.id = ToolId::New, .kind = K::Button, .caption = "&New", .tooltip = "New Project",
     ICON("document-new"), .standardKey = Key::New},
    {.id = ToolId::Open, .kind = K::Button, .caption = "&Open", .tooltip = "Open Project",
     ICON("document-open"), .standardKey = Key::Open},
    {.id = ToolId::Close, .kind = K::Button, .caption = "&Close", .enabled = false, .standardKey = Key::Close},
    {.id = ToolId::Save, .kind = K::Button, .caption = "&Save", .tooltip = "Save Project", .enabled = false,
     ICON("document-save"), .standardKey = Key::Save},
    {.id = ToolId::SaveAs, .kind = K::Button, .caption = "Save &As", .enabled = false},
    {.id = ToolId::ReopenWithEncoding, .kind = K::Button, .caption = "&Reopen with Encoding"},
    {.id = ToolId::Print, .kind = K::Button, .caption = "&Print", .tooltip = "Print ", .enabled = false,
     ICON("document-print"), .standardKey = Key::Print},
    {.id = ToolId::File1, .kind = K::Button, .caption = "&1", .visible = false},
    {.id = ToolId::File2, .kind = K::Button, .caption = "&2", .visible = false},
    {.id = ToolId::File3, .kind = K::Button, .caption = "&3", .visible = false},
    {.id = ToolId::File4, .kind = K::Button, .caption = "&4", .visible = false},
    {.id = ToolId::Exit, .kind = K::Button, .caption = "E&xit"},

    // Edit
    {.id = ToolId::Undo, .kind = K::Button, .caption = "&Undo", .tooltip = "Undo", .enabled = false,
     ICON("edit-undo"), .standardKey = Key::Undo},
    {.id = ToolId::Redo, .kind = K::Button, .caption = "&Redo", .tooltip = "Redo", .enabled = false,
     ICON("edit-redo"), .standardKey = Key::Redo},
    {.id = ToolId::Cut, .kind = K::Button, .caption = "Cu&t", .tooltip = "Cut", .enabled = false,
     ICON("edit-cut"), .standardKey = Key::Cut},
    {.id = ToolId::Copy, .kind = K::Button, .caption = "&Copy", .tooltip = "Copy", .enabled = false,
     ICON("edit-copy"), .standardKey = Key::Copy},
    {.id = ToolId::Paste, .kind = K::Button, .caption = "&Paste", .tooltip = "Paste", .enabled = false,
     ICON("edit-paste"), .standardKey = Key::Paste},
    {.id = ToolId::SelectAll, .kind = K::Button, .caption = "Select &All", .enabled = false},
    {.id = ToolId::SelectLine, .kind = K::Button, .caption = "Select &Line", .enabled = false},
    {.id = ToolId::SelectWord, .kind = K::Button, .caption = "Select &Word", .enabled = false},
    {.id = ToolId::SelectionTextForegroundColor, .kind = K::Button, .caption = "Selection Text Foreground Color"},
    {.id = ToolId::SelectionTextBackgroundColor, .kind = K::Button, .caption = "Selection Text Background Color"},
    {.id = ToolId::BackgroundColor, .kind = K::Button, .caption = "&Background Color", .enabled = false},
    {.id = ToolId::TokenColor, .kind = K::Button, .caption = "&Token Color", .enabled = false},
    {.id = ToolId::Find, .kind = K::Button, .caption = "&Find", .tooltip = "Find Text", .enabled = false,
     ICON("edit-find"), .standardKey = Key::Find},
    {.id = ToolId::FindNext, .kind = K::Button, .caption = "Find &Next", .tooltip = "Find Next", .enabled = false,
     ICON("edit-find-next"), .keys = "F3"},
    {.id = ToolId::Replace, .kind = K::Button, .caption = "R&eplace", .tooltip = "Replace Text", .enabled = false,
     .standardKey = Key::Replace},
    {.id = ToolId::GotoLine, .kind = K::Button, .caption = "&Goto Line", .keys = "Ctrl+G"},

    // View
    {.id = ToolId::CodeExplorer, .kind = K::StateButton, .caption = "&Code Explorer",
     .tooltip = "The program's labels, variables and defines beside the code", .pressed = true},
    {.id = ToolId::SerialTerminal, .kind = K::Button, .caption = "Serial &Terminal",
     .tooltip = "Talk to the board through a serial port"},

    // Compile, Programmer
    {.id = ToolId::Compile, .kind = K::Button, .caption = "&Compile", .tooltip = "Compile PicBasic Source Code",
     .enabled = false, ICON("compile"), .keys = "F9"},
    {.id = ToolId::CompileAndProgram, .kind = K::Button, .caption = "Compile &and Program", .enabled = false,
     .keys = "Ctrl+F10"},
    {.id = ToolId::NextMessage, .kind = K::Button, .caption = "&Next Message", .enabled = false, .keys = "F4"},
    {.id = ToolId::PreviousMessage, .kind = K::Button, .caption = "&Previous Message", .enabled = false,
     .keys = "Shift+F4"},
    {.id = ToolId::CompilerOptions, .kind = K::Button, .caption = "Compiler &Options"},
    {.id = ToolId::Epic, .kind = K::Button, .caption = "&Launch Programmer", .tooltip = "Launch Programmer",
     ICON("programmer"), .keys = "F10"},
    {.id = ToolId::ProgrammerOptions, .kind = K::Button, .caption = "&Programmer Options"},

    // Options: the margin styles, one of which is pressed.
    {.id = ToolId::NoMargin, .kind = K::StateButton, .caption = "&No Margin", .group = "Options", .enabled = false},
    {.id = ToolId::FixedMargin, .kind = K::StateButton, .caption = "&Fixed Margin", .group = "Options",
     .enabled = false, .pressed = true},
    {.id = ToolId::ScrollingMargin, .kind = K::StateButton, .caption = "&Scrolling Margin", .group = "Options",
     .enabled = false},
    {.id = ToolId::AutoComplete, .kind = K::StateButton, .caption = "&Complete Words as You Type", .pressed = true},

    // Window
    {.id = ToolId::TileH, .kind = K::Button, .caption = "Tile &Horizontally"},
    {.id = ToolId::TileV, .kind = K::Button, .caption = "Tile &Vertically"},
    {.id = ToolId::Cascade, .kind = K::Button, .caption = "&Cascade"},
    {.id = ToolId::Arrange, .kind = K::Button, .caption = "&Arrange Icons"},

    // Help and the web links.
    {.id = ToolId::Update, .kind = K::Button, .caption = "Check for &Update"},
    {.id = ToolId::melabs, .kind = K::Button, .caption = "&microEngineering Labs, Inc."},
    {.id = ToolId::About, .kind = K::Button, .caption = "&About Quillbay Lite"},
    {.id = ToolId::CheckSetup, .kind = K::Button, .caption = "Check &Set-up...",
     .tooltip = "What a compile and a launch need of this machine, and what is missing"},
    {.id = ToolId::OrderOnline, .kind = K::Button, .caption = "&Order Online"},
    {.id = ToolId::ProductUpdates, .kind = K::Button, .caption = "Product &Updates"},
    {.id = ToolId::BugReport, .kind = K::Button, .caption = "E-Mail &Bug Report"},
    {.id = ToolId::QuillbayHomePage, .kind = K::Button, .caption = "&Quillbay Home Page"},
    {.id = ToolId::VelnorSystemsHomePage, .kind = K::Button, .caption = "Velnor Systems &Home Page"},

    // On the toolbar only.
    {.id = ToolId::Indent, .kind = K::Button, .caption = "Indent", .tooltip = "Indent",
     ICON("format-indent-more")},
    {.id = ToolId::Outdent, .kind = K::Button, .caption = "Outdent", .tooltip = "Outdent",
     ICON("format-indent-less")},
    {.id = ToolId::Device, .kind = K::ComboBox, .caption = "Micro", .tooltip = "Device", .enabled = false,
     .width = 139},
    {.id = ToolId::OpenDocs, .kind = K::Label, .caption = "Files: 0", .width = 75},

    // In no list: never seen, though EnableTools still writes ID_GotoLabel.
    {.id = ToolId::HelpTopics, .kind = K::Button, .caption = "&Help Topics"},
    {.id = ToolId::WhatsNew, .kind = K::Button, .caption = "Whats &New"},
    {.id = ToolId::Tool1, .kind = K::Button, .caption = "Tool1"},
    {.id = ToolId::Tool2, .kind = K::Button, .caption = "Tool2"},
    {.id = ToolId::GotoLabel, .kind = K::ComboBox, .caption = "GotoLabel", .tooltip = "Goto Label", .enabled = false,
     .width = 200},
};

#undef ICON

constexpr const char* kSep = kSeparatorId;

// Menus are listed after the menu that holds them, so a builder can go through the table in order.
const std::vector<ListDef> kLists = {
    {kMenuBarBand, true,
     {ToolId::File, ToolId::Edit, ToolId::ViewMenu, ToolId::CMenu, ToolId::Programmer, ToolId::Options, ToolId::Window,
      ToolId::Help}},
    {kStandardBand, true,
     {ToolId::New, ToolId::Open, ToolId::Save, ToolId::Print, kSep, ToolId::Cut, ToolId::Copy, ToolId::Paste, kSep, ToolId::Find,
      ToolId::FindNext, kSep, ToolId::Indent, ToolId::Outdent, kSep, ToolId::Undo, ToolId::Redo, kSep, ToolId::Compile, ToolId::Epic,
      kSep, ToolId::Device, kSep, ToolId::OpenDocs}},
    {ToolId::File, false,
     {ToolId::New, ToolId::Open, ToolId::Close, kSep, ToolId::Save, ToolId::SaveAs, kSep, ToolId::ReopenWithEncoding, kSep, ToolId::Print, kSep, ToolId::File1,
      ToolId::File2, ToolId::File3, ToolId::File4, kSep, ToolId::Exit}},
    {ToolId::Edit, false,
     {ToolId::Undo, ToolId::Redo, kSep, ToolId::Cut, ToolId::Copy, ToolId::Paste, kSep, ToolId::SelectAll, ToolId::SelectLine,
      ToolId::SelectWord, kSep, ToolId::SelectionColor, ToolId::BackgroundColor, ToolId::TokenColor, kSep, ToolId::Find,
      ToolId::FindNext, ToolId::Replace, ToolId::GotoLine}},
    {ToolId::SelectionColor, false, {ToolId::SelectionTextForegroundColor, ToolId::SelectionTextBackgroundColor}},
    {ToolId::ViewMenu, false, {ToolId::CodeExplorer, ToolId::SerialTerminal}},
    {ToolId::CMenu, false,
     {ToolId::Compile, ToolId::CompileAndProgram, kSep, ToolId::NextMessage, ToolId::PreviousMessage, kSep,
      ToolId::CompilerOptions}},
    {ToolId::Programmer, false, {ToolId::Epic, ToolId::ProgrammerOptions}},
    {ToolId::Options, false, {ToolId::NoMargin, ToolId::FixedMargin, ToolId::ScrollingMargin, kSep, ToolId::AutoComplete}},
    {ToolId::Window, false, {ToolId::TileH, ToolId::TileV, ToolId::Cascade, ToolId::Arrange}},
    {ToolId::Help, false,
     {ToolId::Update, ToolId::VelnorSystemsontheWeb, ToolId::melabs, kSep, ToolId::CheckSetup, kSep, ToolId::About}},
    {ToolId::VelnorSystemsontheWeb, false,
     {ToolId::OrderOnline, ToolId::ProductUpdates, ToolId::BugReport, ToolId::QuillbayHomePage, ToolId::VelnorSystemsHomePage}},
};

}  // namespace

const std::vector<ToolDef>& toolTable() { return kTools; }
const std::vector<ListDef>& listTable() { return kLists; }

QList<QKeySequence> toolShortcuts(const ToolDef& tool, const KeyBindings& bindings) {
    if (tool.keys)
        return {QKeySequence(QString::fromLatin1(tool.keys))};
    if (tool.standardKey == QKeySequence::UnknownKey)
        return {};
    QList<QKeySequence> keys = bindings(tool.standardKey);
    for (const ToolDef& other : kTools)
        if (other.keys)
            keys.removeAll(QKeySequence(QString::fromLatin1(other.keys)));
    return keys;
}
