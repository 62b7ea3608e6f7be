#pragma once
// The frame as the documents and dialogs know it: the state and operations that every part may use.
// MDIMain implements it; window tests can give a fake one.

#include "core/Editors.h"

#include <QString>
#include <QtGlobal>

class DeviceCombo;
class OpenSave;
class QDialog;
class QWidget;
struct Failure;

class Frame {
public:
    virtual ~Frame() = default;

    // Reports a caught failure: "Error( n): text", titled "File Error".
    virtual void ShowError(const Failure& f) = 0;
    // Works out again which tools are enabled: from the open documents, the active one's selection, undo
    // history and compile, the clipboard and the token last clicked.
    virtual void EnableTools() = 0;
    // Text of a status bar panel, 1 to 3.
    virtual void setPanelText(int panel, const QString& text) = 0;

    // The open documents.
    virtual Editors& editors() = 0;
    // Number of open documents, read from the registry.
    qint16 miDocCount() { return editors().count(); }

    // The device list of the tool ID_Device.
    virtual DeviceCombo& deviceCombo() = 0;
    virtual int deviceListIndex() = 0;
    // Throws Failure 380 for an index that isn't in the list.
    virtual void setDeviceListIndex(int index) = 0;
    virtual void GetDevices() = 0;
    // Reads the ports of the selected device; with reloadWords the active document reloads its words.
    virtual void GetDeviceData(bool reloadWords) = 0;

    // The one file and colour dialog.
    virtual OpenSave& openSave() = 0;
    // The compiler's banner for the about box's PBPVersion label, set whether or not the box is open.
    virtual void setPBPVersion(const QString& text) = 0;

    // Opens a menu tool's menu at the mouse as a context menu.
    virtual void popupMenu(const QString& menuId) = 0;

    // The goto line dialog, modal, over the active document.
    virtual void showGotoLine() = 0;
    // The set-up check, beside the frame: offered where a compile or a launch failed for want of something
    // on this machine.
    virtual void showSetupCheck() = 0;

    // Shows a dialog modally; tests put a hook behind it so that nothing blocks.
    virtual int runModal(QDialog& dlg) = 0;
    // The frame's own window, the owner of the system's top-level windows.
    virtual QWidget* frameWindow() = 0;
};
