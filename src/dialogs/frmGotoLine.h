#pragma once
// The goto line dialog that stands in for the editing control's own: it takes a line number and answers
// that the feature is not available. It reads and moves nothing of the document.

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

class frmGotoLine : public QDialog {
    Q_OBJECT
public:
    // "Goto Line", fixed 5235 x 1065 twips, centred on its owner.
    explicit frmGotoLine(QWidget* owner);
    ~frmGotoLine() override;

    QLabel* Label1 = nullptr;
    QLineEdit* LineValue = nullptr;
    QPushButton* cmdGotoLine = nullptr;
    QPushButton* cmdCancel = nullptr;

    void cmdGotoLine_Click();
    void cmdCancel_Click();
    // Enter (13) goes to the line, Escape (27) closes; only the field has these keys.
    void LineValue_KeyDown(int keyCode, int shift);
    // Sets keyAscii to 0 for anything but a digit or backspace, which drops it.
    void LineValue_KeyPress(int& keyAscii);

    // Closing by any way leaves the loaded windows.
    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
};
