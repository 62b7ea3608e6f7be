#pragma once
// One document: a child window of the frame around its editing control.

#include <QString>
#include <QWidget>

class Frame;
class SourceView;
class QMdiSubWindow;

class frmEditor : public QWidget {
    Q_OBJECT
public:
    // Runs Form_Load: the window exists but isn't shown, and no file is loaded yet.
    explicit frmEditor(Frame& frame);
    ~frmEditor() override;

    SourceView* View = nullptr;
    // The id under which this window stands in the window menu.
    QString Tag;
    // Index of this document's device in the device combo.
    qint16 DeviceIndex = 0;

    QString Caption() const { return windowTitle(); }
    void setCaption(const QString& c) { setWindowTitle(c); }
    QMdiSubWindow* subWindow() const;
    Frame& frame() const { return frame_; }

    // True: the caller may go on. False: cancelled, or no name given.
    bool SaveModified();
    void InitPBPCodes();
    void LoadReservedWords();

    void Form_Activate();

signals:
    // The window is closing for good; what watches it (a running compile) stops now.
    void unloading();

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void Form_Load();
    // The closing steps after SaveModified gave true.
    void Form_Unload();

    Frame& frame_;
};
