#pragma once
// A frame without menus, toolbar or document area, for the windows that only need the frame's interface.

#include "core/Editors.h"
#include "core/Frame.h"
#include "platform/OpenSave.h"
#include "support/FakeDeviceCombo.h"

#include <QMap>
#include <QStringList>
#include <QWidget>
#include <array>

// The documents a test put in, in that order; the active one is the last unless one is chosen.
class FakeEditors : public Editors {
public:
    // Counted until it closes or is destroyed.
    void add(frmEditor& doc);
    frmEditor* chosen = nullptr;

    // An open document becomes the chosen one; any other path is a file that can't be read.
    frmEditor& show(const QString& path, bool missingIsEmpty) override;
    frmEditor* find(const QString& path) const override;
    frmEditor* titled(const QString& title) const override;
    frmEditor* active() const override;
    QList<frmEditor*> all() const override { return docs_; }

private:
    QList<frmEditor*> docs_;
};

class FakeFrame : public Frame {
public:
    FakeFrame();
    ~FakeFrame() override;

    QWidget window;  // the owner of the windows made for this frame
    FakeDeviceCombo combo;
    OpenSave dialog;
    std::array<QString, 4> panels;  // 1..3
    QMap<QString, bool> tools;      // last enabled state by upper-case id
    FakeEditors docs;
    QStringList modals;             // titles of dialogs shown modally, each rejected
    QStringList popups;             // menu ids opened as context menus

    void ShowError(const Failure& f) override;
    // As the frame works them out, with text on the clipboard.
    void EnableTools() override;
    void setPanelText(int panel, const QString& text) override { panels.at(panel) = text; }
    Editors& editors() override { return docs; }
    DeviceCombo& deviceCombo() override { return combo; }
    int deviceListIndex() override { return combo.ListIndex(); }
    void setDeviceListIndex(int index) override;
    void GetDevices() override {}
    void GetDeviceData(bool) override {}
    OpenSave& openSave() override { return dialog; }
    void setPBPVersion(const QString&) override {}
    void popupMenu(const QString& menuId) override { popups << menuId; }
    void showGotoLine() override { modals << QStringLiteral("Goto Line"); }
    int setupChecks = 0;  // times the set-up check was asked for
    void showSetupCheck() override { ++setupChecks; }
    int runModal(QDialog& dlg) override;
    QWidget* frameWindow() override { return &window; }
};
