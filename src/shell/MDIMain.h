#pragma once
// The frame: one main window holding the document windows, the tools and the status bar.

#include "platform/OpenSave.h"
#include "shell/ToolBars.h"

#include <QMainWindow>
#include <QString>
#include <functional>
#include <optional>
#include <memory>

class QCoreApplication;
class QDialog;
class DeviceCombo;
class QMdiArea;
class cNoStatusBar;
class StatusPicture;
class QMdiSubWindow;
class frmEditor;
struct Failure;

class MDIMain : public QMainWindow {
    Q_OBJECT
public:
    // commandLine: empty, or as a whole the path of one file.
    explicit MDIMain(QString commandLine, QWidget* parent = nullptr);
    ~MDIMain() override;

    // The arguments after the program's name, joined by single blanks: a path with blanks needs no quotes.
    static QString commandLineFrom(const QCoreApplication& app);

    // Number of open documents.
    qint16 miDocCount = 0;
    // The menus and the toolbar.
    SSActiveToolBars SSActiveToolBars1;
    // The one status bar, painted on picStatus; null only if its creation failed.
    std::unique_ptr<cNoStatusBar> m_cSBar;
    StatusPicture* picStatus = nullptr;

    // Reports a caught failure: "Error( n): text", titled "File Error".
    void ShowError(const Failure& f);
    OpenSave& openSave() { return openSave_; }

    QMdiArea* mdiArea() const { return mdi_; }
    // The frame's active child, or null with no document.
    frmEditor* activeDocument() const;

    // Creates a document window for a path and shows it. With missingIsEmpty a path that doesn't exist
    // gives an empty document; any other load failure removes the window again and is thrown.
    frmEditor* createDocument(const QString& path, bool missingIsEmpty = true);

    // Every click on a tool, from a menu or the toolbar, and a menu opening.
    void SSActiveToolBars1_ToolClick(Tool& tool);
    // The user closed a combo box's list.
    void SSActiveToolBars1_ComboCloseUp(Tool& tool);

    // Tools, device list and window list: filled in by the tool model.
    void EnableTools(bool enabled);
    void setToolEnabled(const QString& id, bool enabled);
    void refreshPasteTool();
    void GetDevices();
    void GetDeviceData(bool reloadWords);
    int deviceListIndex();
    void setDeviceListIndex(int index);
    void AddWindowEntry(const QString& title);
    void removeWindowEntry(const QString& id);
    void setOpenDocsCaption(const QString& caption);
    // Text of a status bar panel, 1 to 3.
    void setPanelText(int panel, const QString& text);

    bool loaded() const { return loaded_; }

    // The device list of the tool ID_Device.
    DeviceCombo& deviceCombo();

    // The compiler's banner for the about box's PBPVersion label; kept here until that box exists.
    void setPBPVersion(const QString& text) { pbpVersion_ = text; }
    QString PBPVersion() const { return pbpVersion_; }

    // Shows a dialog modally. Tests put a hook here, so no dialog ever blocks them.
    std::function<int(QDialog&)> modalHook;
    int runModal(QDialog& dlg);

protected:
    void showEvent(QShowEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
    void moveEvent(QMoveEvent* e) override;

private:
    void MDIForm_Load();
    void picStatus_Paint();
    void picStatus_Resize();
    void MDIForm_Unload();
    void placeFrame();
    void onSubWindowActivated(QMdiSubWindow* sub);

    // Commands; false when the command ended early.
    bool runCommand(Tool& tool);
    frmEditor& active() const;
    QStringList loadedTitles(int from) const;
    bool alreadyOpen(const QString& path, bool raisedCount);
    bool newDocument();
    void createCountedDocument(const QString& path);
    bool openDocument();
    bool openRecentFile(int entry);
    bool saveAs();
    void arrange(int how);
    void OpenWebLink(const QString& link);
    void refreshUndoTools();
    void refreshSelectionTools();

    QString commandLine_;
    QMdiArea* mdi_ = nullptr;
    OpenSave openSave_;
    bool loaded_ = false;
    bool unloaded_ = false;
    QString pbpVersion_;
    // The stored outer size, until the window manager's frame is known and the client can be fitted.
    std::optional<QSize> pendingOuter_;
};
