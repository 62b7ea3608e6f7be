#pragma once
// Help > Check Set-up: one row for each thing a compile and a launch need of this machine, ok or missing,
// and for a missing one the command or the setting that fixes it. A window beside the frame, one at a
// time; Check Again reads the settings and the machine anew.

#include "dialogs/SetupCheck.h"

#include <QDialog>
#include <functional>

class QLabel;
class QPushButton;
class QTableWidget;
class SystemProbe;

class frmSetupCheck : public QDialog {
    Q_OBJECT
public:
    using InputsFn = std::function<SetupInputs()>;

    // The open one, or null.
    static frmSetupCheck* find();
    // Checks again and brings the open one forward, or opens one beside owner.
    static frmSetupCheck& showBeside(QWidget* owner, InputsFn inputs, SystemProbe& probe);

    frmSetupCheck(QWidget* owner, InputsFn inputs, SystemProbe& probe);
    ~frmSetupCheck() override;

    QLabel* Summary = nullptr;
    QTableWidget* Rows = nullptr;
    QPushButton* cmdAgain = nullptr;
    QPushButton* cmdCopy = nullptr;
    QPushButton* cmdClose = nullptr;

    // The rows last worked out.
    const QList<SetupRow>& rows() const { return rows_; }

    void cmdAgain_Click();
    void cmdCopy_Click();

    void done(int result) override;

protected:
    void showEvent(QShowEvent* e) override;

private:
    bool grown_ = false;
    InputsFn inputs_;
    SystemProbe& probe_;
    QList<SetupRow> rows_;
};
