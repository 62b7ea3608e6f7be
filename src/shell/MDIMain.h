#pragma once
// The frame: one main window holding the document windows, the tools and the status bar.

#include "core/Frame.h"
#include "core/ToolState.h"
#include "platform/OpenSave.h"
#include "shell/Arrange.h"
#include "shell/ToolBars.h"

#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>
#include <QString>
#include <QStringList>
#include <deque>
#include <functional>
#include <optional>
#include <memory>
#include <utility>

class QCoreApplication;
class QDialog;
class DeviceCombo;
class QMdiArea;
class CodeExplorer;
class cNoStatusBar;
class StatusPicture;
class QMdiSubWindow;
class frmEditor;
class EditorRegistry;
class SingleInstance;
struct Failure;
struct Session;

class MDIMain : public QMainWindow, public Frame {
    Q_OBJECT
public:
    // commandLine: empty, or as a whole the path of one file.
    explicit MDIMain(QString commandLine, QWidget* parent = nullptr);
    ~MDIMain() override;

    // The arguments after the program's name, joined by single blanks: a path with blanks needs no quotes.
    static QString commandLineFrom(const QCoreApplication& app);
    // A relative path taken against the working directory of this moment; an absolute one as it is.
    static QString absolutePath(const QString& path);

    // The frame as the other parts know it.
    void ShowError(const Failure& f) override;
    void EnableTools() override;
    void setPanelText(int panel, const QString& text) override;
    Editors& editors() override;
    DeviceCombo& deviceCombo() override;
    int deviceListIndex() override;
    void setDeviceListIndex(int index) override;
    void GetDevices() override;
    void GetDeviceData(bool reloadWords) override;
    OpenSave& openSave() override { return openSave_; }
    void setPBPVersion(const QString& text) override;
    void showGotoLine() override;
    void showSetupCheck() override;
    void popupMenu(const QString& menuId) override;
    int runModal(QDialog& dlg) override;
    QWidget* frameWindow() override { return this; }

    // The menus and the toolbar.
    SSActiveToolBars& toolBars() { return SSActiveToolBars1; }
    // The one status bar, painted on picStatus; null only if its creation failed.
    cNoStatusBar* statusBar() const { return m_cSBar.get(); }
    StatusPicture* statusPicture() const { return picStatus; }
    QMdiArea* mdiArea() const { return mdi_; }
    // The dock that lists the active program's names.
    CodeExplorer* codeExplorer() const { return explorer_; }
    // View > Code Explorer: the dock shown or hidden, the menu entry checked with it.
    void showCodeExplorer(bool shown);
    // The frame's active child, or null with no document.
    frmEditor* activeDocument() const;
    EditorRegistry& registry() { return *editors_; }
    bool loaded() const { return loaded_; }
    // Documents of the last session are still coming back.
    bool restoring() const { return !restoring_.empty(); }
    // Brings back the rest of the session now.
    void finishRestoring();
    // The about box's compiler banner; empty while the box isn't loaded.
    QString PBPVersion() const;

    // Creates a document window for a path (taken against the working directory) and shows it. With
    // missingIsEmpty a path that doesn't exist gives an empty document; any other load failure removes
    // the window again and is thrown.
    frmEditor* createDocument(const QString& path, bool missingIsEmpty = true);

    // A later start's files: each opens, or comes forward when it is open already; then the frame comes to
    // the front, also with no file.
    void takeHandOver(const QStringList& files);
    // From now on later starts hand their files to this frame through the channel; before the frame is
    // shown too, so that a start at the same moment finds it.
    bool answerLaterStarts(SingleInstance& channel);

    // Every click on a tool, from a menu or the toolbar, and a menu opening.
    void SSActiveToolBars1_ToolClick(Tool& tool);
    // The user closed a combo box's list.
    void SSActiveToolBars1_ComboCloseUp(Tool& tool);
    void AddWindowEntry(const QString& title);

    // Shows a dialog modally. Tests put a hook here, so no dialog ever blocks them.
    std::function<int(QDialog&)> modalHook;

protected:
    void showEvent(QShowEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
    void moveEvent(QMoveEvent* e) override;

private:
    void MDIForm_Load();
    void picStatus_Paint();
    void picStatus_Resize();
    void picStatus_Painting();
    void MDIForm_Unload();
    void placeFrame();
    // The documents of the last normal close, as they were; false when none of them could be opened.
    bool restoreSession();
    // One document of the session in its place among the others; null when it is gone or open already.
    struct Restoring {
        QString path;
        int line = 0;
        int rank = 0;  // its place in the session
    };
    frmEditor* restoreOne(const Restoring& r, bool behind = false);
    void restoreNext();
    void comeForward();
    // The Window menu and the files label follow the registry.
    void Editors_Opened(frmEditor* doc);
    void Editors_Closed(frmEditor* doc);
    void Editors_PathChanged(frmEditor* doc, const QString& oldTitle);
    void showDocumentCount();
    bool clipboardHasText() const;

    // Commands; false when the command ended early.
    using Command = std::function<bool(MDIMain&)>;
    static const QHash<QString, Command>& commands();
    bool runCommand(Tool& tool);
    frmEditor& active() const;
    QStringList documentTitles() const;
    bool alreadyOpen(const QString& path);
    bool newDocument();
    // Creates a document. A refused creation leaves the count as it was, puts the tools out when no
    // document is left, rewrites the files label and reports the refusal once: false then.
    bool createCountedDocument(const QString& path, bool missingIsEmpty);
    // The same for any making of a document: a refusal is reported once, false then.
    bool makeCounted(const std::function<void()>& making);
    // A window for a document recovered after a crash; null when none could be made.
    frmEditor* openRecovered(const QString& path);
    bool openDocument();
    bool openRecentFile(int entry);
    bool saveAs();
    void arrange(ArrangeMode mode);
    void OpenWebLink(const QString& link);

    SSActiveToolBars SSActiveToolBars1;
    std::unique_ptr<cNoStatusBar> m_cSBar;
    StatusPicture* picStatus = nullptr;
    QString commandLine_;
    QMdiArea* mdi_ = nullptr;
    CodeExplorer* explorer_ = nullptr;
    OpenSave openSave_;
    bool loaded_ = false;
    bool loading_ = false;
    bool unloaded_ = false;
    // Files handed over before the load ended.
    QStringList handedOverEarly_;
    // The session's documents still to come back, one per turn of the event loop, and the places of those
    // back already.
    std::deque<Restoring> restoring_;
    QHash<const frmEditor*, int> restoredRank_;
    QTimer restoreTimer_;
    // The stored outer size, until the window manager's frame is known and the client can be fitted.
    std::optional<QSize> pendingOuter_;
    std::unique_ptr<EditorRegistry> editors_;
    // The documents as the close found them, written with the rest at unload.
    std::unique_ptr<Session> closingSession_;
    // The state the tools were last set from: an unchanged state writes nothing.
    std::optional<ToolState> toolState_;
};
