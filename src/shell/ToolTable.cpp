#include "shell/ToolTable.h"

namespace {

using K = ToolKind;

#define ICON(file) .icon = ":/icons/" file ".png"
using Key = QKeySequence;

const std::vector<ToolDef> kTools = {
    // The menus of the menu bar and the two submenus.
    {.id = "ID_File", .kind = K::Menu, .caption = "&File"},
    {.id = "ID_Edit", .kind = K::Menu, .caption = "&Edit"},
    {.id = "ID_CMenu", .kind = K::Menu, .caption = "&Compile"},
    {.id = "ID_Programmer", .kind = K::Menu, .caption = "&Programmer"},
    {.id = "ID_Options", .kind = K::Menu, .caption = "&Options"},
    {.id = "ID_Window", .kind = K::Menu, .caption = "&Window"},
    {.id = "ID_Help", .kind = K::Menu, .caption = "&Help"},
    {.id = "ID_SelectionColor", .kind = K::Menu, .caption = "&Selection Color"},
    {.id = "ID_VelnorSystemsontheWeb", .kind = K::Menu, .caption = "Velnor Systems on the &Web"},

    // File
    {.id = "ID_New", .kind = K::Button, .caption = "&New", .tooltip = "New Project",
     ICON("document-new"), .standardKey = Key::New},
    {.id = "ID_Open", .kind = K::Button, .caption = "&Open", .tooltip = "Open Project",
     ICON("document-open"), .standardKey = Key::Open},
    {.id = "ID_Close", .kind = K::Button, .caption = "&Close", .enabled = false, .standardKey = Key::Close},
    {.id = "ID_Save", .kind = K::Button, .caption = "&Save", .tooltip = "Save Project", .enabled = false,
     ICON("document-save"), .standardKey = Key::Save},
    {.id = "ID_SaveAs", .kind = K::Button, .caption = "Save &As", .enabled = false},
    {.id = "ID_Print", .kind = K::Button, .caption = "&Print", .tooltip = "Print ", .enabled = false,
     ICON("document-print"), .standardKey = Key::Print},
    {.id = "ID_File1", .kind = K::Button, .caption = "&1", .visible = false},
    {.id = "ID_File2", .kind = K::Button, .caption = "&2", .visible = false},
    {.id = "ID_File3", .kind = K::Button, .caption = "&3", .visible = false},
    {.id = "ID_File4", .kind = K::Button, .caption = "&4", .visible = false},
    {.id = "ID_Exit", .kind = K::Button, .caption = "E&xit"},

    // Edit
    {.id = "ID_Undo", .kind = K::Button, .caption = "&Undo", .tooltip = "Undo", .enabled = false,
     ICON("edit-undo"), .standardKey = Key::Undo},
    {.id = "ID_Redo", .kind = K::Button, .caption = "&Redo", .tooltip = "Redo", .enabled = false,
     ICON("edit-redo"), .standardKey = Key::Redo},
    {.id = "ID_Cut", .kind = K::Button, .caption = "Cu&t", .tooltip = "Cut", .enabled = false,
     ICON("edit-cut"), .standardKey = Key::Cut},
    {.id = "ID_Copy", .kind = K::Button, .caption = "&Copy", .tooltip = "Copy", .enabled = false,
     ICON("edit-copy"), .standardKey = Key::Copy},
    {.id = "ID_Paste", .kind = K::Button, .caption = "&Paste", .tooltip = "Paste", .enabled = false,
     ICON("edit-paste"), .standardKey = Key::Paste},
    {.id = "ID_SelectAll", .kind = K::Button, .caption = "Select &All", .enabled = false},
    {.id = "ID_SelectLine", .kind = K::Button, .caption = "Select &Line", .enabled = false},
    {.id = "ID_SelectWord", .kind = K::Button, .caption = "Select &Word", .enabled = false},
    {.id = "ID_SelectionTextForegroundColor", .kind = K::Button, .caption = "Selection Text Foreground Color"},
    {.id = "ID_SelectionTextBackgroundColor", .kind = K::Button, .caption = "Selection Text Background Color"},
    {.id = "ID_BackgroundColor", .kind = K::Button, .caption = "&Background Color", .enabled = false},
    {.id = "ID_TokenColor", .kind = K::Button, .caption = "&Token Color", .enabled = false},
    {.id = "ID_Find", .kind = K::Button, .caption = "&Find", .tooltip = "Find Text", .enabled = false,
     ICON("edit-find"), .standardKey = Key::Find},
    {.id = "ID_FindNext", .kind = K::Button, .caption = "Find &Next", .tooltip = "Find Next", .enabled = false,
     ICON("edit-find-next"), .standardKey = Key::FindNext},
    {.id = "ID_Replace", .kind = K::Button, .caption = "R&eplace", .tooltip = "Replace Text", .enabled = false,
     .standardKey = Key::Replace},
    {.id = "ID_GotoLine", .kind = K::Button, .caption = "&Goto Line"},

    // Compile, Programmer
    {.id = "ID_Compile", .kind = K::Button, .caption = "&Compile", .tooltip = "Compile PicBasic Source Code",
     .enabled = false, ICON("compile"), .keys = "F9"},
    {.id = "ID_CompilerOptions", .kind = K::Button, .caption = "Compiler &Options"},
    {.id = "ID_Epic", .kind = K::Button, .caption = "&Launch Programmer", .tooltip = "Launch Programmer",
     ICON("programmer"), .keys = "F10"},
    {.id = "ID_ProgrammerOptions", .kind = K::Button, .caption = "&Programmer Options"},

    // Options: the margin styles, one of which is pressed.
    {.id = "ID_NoMargin", .kind = K::StateButton, .caption = "&No Margin", .group = "Options", .enabled = false},
    {.id = "ID_FixedMargin", .kind = K::StateButton, .caption = "&Fixed Margin", .group = "Options",
     .enabled = false, .pressed = true},
    {.id = "ID_ScrollingMargin", .kind = K::StateButton, .caption = "&Scrolling Margin", .group = "Options",
     .enabled = false},

    // Window
    {.id = "ID_TileH", .kind = K::Button, .caption = "Tile &Horizontally"},
    {.id = "ID_TileV", .kind = K::Button, .caption = "Tile &Vertically"},
    {.id = "ID_Cascade", .kind = K::Button, .caption = "&Cascade"},
    {.id = "ID_Arrange", .kind = K::Button, .caption = "&Arrange Icons"},

    // Help and the web links.
    {.id = "ID_Update", .kind = K::Button, .caption = "Check for &Update"},
    {.id = "ID_melabs", .kind = K::Button, .caption = "&microEngineering Labs, Inc."},
    {.id = "ID_About", .kind = K::Button, .caption = "&About Quillbay Lite"},
    {.id = "ID_OrderOnline", .kind = K::Button, .caption = "&Order Online"},
    {.id = "ID_ProductUpdates", .kind = K::Button, .caption = "Product &Updates"},
    {.id = "ID_BugReport", .kind = K::Button, .caption = "E-Mail &Bug Report"},
    {.id = "ID_QuillbayHomePage", .kind = K::Button, .caption = "&Quillbay Home Page"},
    {.id = "ID_VelnorSystemsHomePage", .kind = K::Button, .caption = "Velnor Systems &Home Page"},

    // On the toolbar only.
    {.id = "ID_Indent", .kind = K::Button, .caption = "Indent", .tooltip = "Indent",
     ICON("format-indent-more")},
    {.id = "ID_Outdent", .kind = K::Button, .caption = "Outdent", .tooltip = "Outdent",
     ICON("format-indent-less")},
    {.id = "ID_Device", .kind = K::ComboBox, .caption = "Micro", .tooltip = "Device", .enabled = false,
     .width = 139},
    {.id = "ID_OpenDocs", .kind = K::Label, .caption = "Files: 0", .width = 75},

    // In no list: never seen, though EnableTools still writes ID_GotoLabel.
    {.id = "ID_HelpTopics", .kind = K::Button, .caption = "&Help Topics"},
    {.id = "ID_WhatsNew", .kind = K::Button, .caption = "Whats &New"},
    {.id = "ID_Tool1", .kind = K::Button, .caption = "Tool1"},
    {.id = "ID_Tool2", .kind = K::Button, .caption = "Tool2"},
    {.id = "ID_GotoLabel", .kind = K::ComboBox, .caption = "GotoLabel", .tooltip = "Goto Label", .enabled = false,
     .width = 200},
};

#undef ICON

constexpr const char* kSep = kSeparatorId;

// Menus are listed after the menu that holds them, so a builder can go through the table in order.
const std::vector<ListDef> kLists = {
    {kMenuBarBand, true,
     {"ID_File", "ID_Edit", "ID_CMenu", "ID_Programmer", "ID_Options", "ID_Window", "ID_Help"}},
    {kStandardBand, true,
     {"ID_New", "ID_Open", "ID_Save", "ID_Print", kSep, "ID_Cut", "ID_Copy", "ID_Paste", kSep, "ID_Find",
      "ID_FindNext", kSep, "ID_Indent", "ID_Outdent", kSep, "ID_Undo", "ID_Redo", kSep, "ID_Compile", "ID_Epic",
      kSep, "ID_Device", kSep, "ID_OpenDocs"}},
    {"ID_File", false,
     {"ID_New", "ID_Open", "ID_Close", kSep, "ID_Save", "ID_SaveAs", kSep, "ID_Print", kSep, "ID_File1",
      "ID_File2", "ID_File3", "ID_File4", kSep, "ID_Exit"}},
    {"ID_Edit", false,
     {"ID_Undo", "ID_Redo", kSep, "ID_Cut", "ID_Copy", "ID_Paste", kSep, "ID_SelectAll", "ID_SelectLine",
      "ID_SelectWord", kSep, "ID_SelectionColor", "ID_BackgroundColor", "ID_TokenColor", kSep, "ID_Find",
      "ID_FindNext", "ID_Replace", "ID_GotoLine"}},
    {"ID_SelectionColor", false, {"ID_SelectionTextForegroundColor", "ID_SelectionTextBackgroundColor"}},
    {"ID_CMenu", false, {"ID_Compile", kSep, "ID_CompilerOptions"}},
    {"ID_Programmer", false, {"ID_Epic", "ID_ProgrammerOptions"}},
    {"ID_Options", false, {"ID_NoMargin", "ID_FixedMargin", "ID_ScrollingMargin"}},
    {"ID_Window", false, {"ID_TileH", "ID_TileV", "ID_Cascade", "ID_Arrange"}},
    {"ID_Help", false, {"ID_Update", "ID_VelnorSystemsontheWeb", "ID_melabs", kSep, "ID_About"}},
    {"ID_VelnorSystemsontheWeb", false,
     {"ID_OrderOnline", "ID_ProductUpdates", "ID_BugReport", "ID_QuillbayHomePage", "ID_VelnorSystemsHomePage"}},
};

}  // namespace

const std::vector<ToolDef>& toolTable() { return kTools; }
const std::vector<ListDef>& listTable() { return kLists; }
