#pragma once
// A frame without menus, toolbar or document area, for the windows that only need the frame's interface.

#include "core/Frame.h"
#include "platform/OpenSave.h"
#include "support/FakeDeviceCombo.h"

#include <QMap>
#include <QStringList>
#include <QWidget>
#include <array>
#include <functional>

class FakeFrame : public Frame {
public:
    FakeFrame();
    ~FakeFrame() override;

    QWidget window;  // the owner of the windows made for this frame
    FakeDeviceCombo combo;
    OpenSave dialog;
    std::array<QString, 4> panels;       // 1..3
    QMap<QString, bool> tools;           // last enabled state by upper-case id
    std::vector<bool> enableToolsCalls;  // every EnableTools in order
    qint16 docCount = 0;
    QString pbpVersion;
    QStringList modals;                  // titles of dialogs shown modally
    QStringList removedEntries;
    QStringList popups;                  // menu ids opened as context menus
    QString openDocsCaption;
    int getDevicesCalls = 0;
    std::vector<bool> getDeviceDataCalls;
    // What a modal dialog does while "open"; returns the dialog's result.
    std::function<int(QDialog&)> onModal;

    void ShowError(const Failure& f) override;
    void EnableTools(bool enabled) override;
    void setToolEnabled(const QString& id, bool enabled) override { tools[id.toUpper()] = enabled; }
    void refreshPasteTool() override { tools[QStringLiteral("ID_PASTE")] = true; }
    void setPanelText(int panel, const QString& text) override { panels.at(panel) = text; }
    qint16 miDocCount() const override { return docCount; }
    void setMiDocCount(qint16 count) override { docCount = count; }
    DeviceCombo& deviceCombo() override { return combo; }
    int deviceListIndex() override { return combo.ListIndex(); }
    void setDeviceListIndex(int index) override;
    void GetDevices() override { ++getDevicesCalls; }
    void GetDeviceData(bool reloadWords) override { getDeviceDataCalls.push_back(reloadWords); }
    OpenSave& openSave() override { return dialog; }
    void removeWindowEntry(const QString& id) override { removedEntries << id; }
    void setOpenDocsCaption(const QString& caption) override { openDocsCaption = caption; }
    void setPBPVersion(const QString& text) override { pbpVersion = text; }
    void popupMenu(const QString& menuId) override { popups << menuId; }
    void showGotoLine() override { modals << QStringLiteral("Goto Line"); }
    int runModal(QDialog& dlg) override;
    QWidget* frameWindow() override { return &window; }
};
