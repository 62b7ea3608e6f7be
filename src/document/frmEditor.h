#pragma once
// One document: a child window of the frame around its editing control.

#include "platform/TaggedTimer.h"

#include <QString>
#include <QWidget>

class MDIMain;
class SourceView;
class QMdiSubWindow;

// The compiler's banner as the about box shows it, in upper case; empty without one.
QString compilerVersionText(const QString& output);

class frmEditor : public QWidget {
    Q_OBJECT
public:
    // Runs Form_Load: the window exists but isn't shown, and no file is loaded yet.
    explicit frmEditor(MDIMain& frame);
    ~frmEditor() override;

    SourceView* View = nullptr;
    // The id under which this window stands in the window menu.
    QString Tag;
    // Index of this document's device in the device combo.
    qint16 DeviceIndex = 0;
    // Watches a running compile once a second; its Tag holds the wait count.
    TaggedTimer CheckFile;

    QString Caption() const { return windowTitle(); }
    void setCaption(const QString& c) { setWindowTitle(c); }
    QMdiSubWindow* subWindow() const;

    // True: the caller may go on. False: cancelled, or no name given.
    bool SaveModified();
    void InitPBPCodes();
    void LoadReservedWords();

    void Form_Activate();

    // Saves nothing: writes the compile script, starts it and shows the output screen; returns at once.
    void GoCompile();
    // One tick of CheckFile.
    void CheckFile_Timer();
    // The form of a path the compile script can use, or empty after its own message.
    QString GetDosPath(const QString& path);
    void DeleteFileQuietly(const QString& path);

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void Form_Load();
    // The closing steps after SaveModified gave true.
    void Form_Unload();

    MDIMain& frame_;
};
