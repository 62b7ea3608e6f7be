#pragma once
// A frame without menus, toolbar or document area, for the windows that only need the frame's interface.

#include "core/Frame.h"
#include "platform/OpenSave.h"
#include "support/FakeDeviceCombo.h"

#include <QMap>
#include <QStringList>
#include <QWidget>
#include <array>

class FakeFrame : public Frame {
public:
    FakeFrame();
    ~FakeFrame() override;

    QWidget window;  // the owner of the windows made for this frame
    FakeDeviceCombo combo;
    OpenSave dialog;
    std::array<QString, 4> panels;  // 1..3
    QMap<QString, bool> tools;      // last enabled state by upper-case id
    qint16 docCount = 0;
    QStringList modals;             // titles of dialogs shown modally, each rejected
    QStringList popups;             // menu ids opened as context menus

    void ShowError(const Failure& f) override;
    void EnableTools(bool) override {}
    void setToolEnabled(const QString& id, bool enabled) override { tools[id.toUpper()] = enabled; }
    void refreshPasteTool() override { tools[QStringLiteral("ID_PASTE")] = true; }
    void setPanelText(int panel, const QString& text) override { panels.at(panel) = text; }
    qint16 miDocCount() const override { return docCount; }
    void setMiDocCount(qint16 count) override { docCount = count; }
    DeviceCombo& deviceCombo() override { return combo; }
    int deviceListIndex() override { return combo.ListIndex(); }
    void setDeviceListIndex(int index) override;
    void GetDevices() override {}
    void GetDeviceData(bool) override {}
    OpenSave& openSave() override { return dialog; }
    void removeWindowEntry(const QString&) override {}
    void setOpenDocsCaption(const QString&) override {}
    void setPBPVersion(const QString&) override {}
    void popupMenu(const QString& menuId) override { popups << menuId; }
    void showGotoLine() override { modals << QStringLiteral("Goto Line"); }
    int runModal(QDialog& dlg) override;
    QWidget* frameWindow() override { return &window; }
};
