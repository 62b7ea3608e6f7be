#pragma once
// Every tool of the frame, every menu and band with its members: the data the tool model is built from.

#include <vector>

enum class ToolKind { Button, StateButton, ComboBox, Label, Menu };

struct ToolDef {
    const char* id;
    ToolKind kind;
    // Each place starts with this caption; "&" marks the access key.
    const char* caption;
    const char* tooltip = "";
    // State buttons of one group behave as radio buttons.
    const char* group = "";
    bool enabled = true;
    bool visible = true;
    bool pressed = false;
    // Combo boxes and labels on a band, in pixels; 0 for the rest.
    int width = 0;
    // A freedesktop icon name and the bundled picture that stands in where the desktop has none.
    const char* themeIcon = nullptr;
    const char* fallbackIcon = nullptr;
};

inline constexpr const char* kSeparatorId = "separator";

// An ordered member list: of a menu tool (owner is its id) or of a band (owner is the band's name).
struct ListDef {
    const char* owner;
    bool isBand;
    std::vector<const char*> members;  // kSeparatorId for a separator line
};

const std::vector<ToolDef>& toolTable();
const std::vector<ListDef>& listTable();

inline constexpr const char* kMenuBarBand = "MenuBar";
inline constexpr const char* kStandardBand = "Standard";
