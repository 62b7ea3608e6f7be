#pragma once
// Every tool of the frame, every menu and band with its members: the data the tool model is built from.

#include <QKeySequence>
#include <QList>
#include <functional>
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
    // The bundled picture. The desktop's icon theme isn't asked: looking a name up in every theme
    // directory costs thousands of file lookups at each start on a machine with many of them.
    const char* icon = nullptr;
    // The keyboard shortcut of the menu entry: one of the platform's standard keys, or a key of our own.
    QKeySequence::StandardKey standardKey = QKeySequence::UnknownKey;
    const char* keys = nullptr;
};

inline constexpr const char* kSeparatorId = "separator";

// An ordered member list: of a menu tool (owner is its id) or of a band (owner is the band's name).
struct ListDef {
    const char* owner;
    bool isBand;
    std::vector<const char*> members;  // kSeparatorId for a separator line
};

const std::vector<ToolDef>& toolTable();

// A desktop key scheme: the keys of a standard key (QKeySequence::keyBindings for the running desktop).
using KeyBindings = std::function<QList<QKeySequence>(QKeySequence::StandardKey)>;
// The menu keys of a tool of the table: its own keys, or its standard key's under the scheme less every key
// that a tool of the table has as its own, so that no scheme gives one key to two tools (GNOME's Ctrl+G
// for Find Next stays Goto Line's).
QList<QKeySequence> toolShortcuts(const ToolDef& tool, const KeyBindings& bindings);
const std::vector<ListDef>& listTable();

inline constexpr const char* kMenuBarBand = "MenuBar";
inline constexpr const char* kStandardBand = "Standard";
