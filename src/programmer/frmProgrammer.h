#pragma once
// The programmer options: which programmer kind, its path and its command line template.
// Made anew at each opening, so it starts from what is stored; OK stores the selected kind only. One is
// open at a time: asking for it again brings the open one forward.

#include <QDialog>

class Frame;
class QComboBox;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QPushButton;
class SystemProbe;

class frmProgrammer : public QDialog {
    Q_OBJECT
public:
    // The options dialog that is open, or null: there is one at a time.
    static frmProgrammer* find();
    // Brings the open dialog forward, or opens one: modal when asked for (the menu's), else beside the
    // frame without blocking (after a failed launch).
    static void open(Frame& frame, bool modal);

    // Builds the controls and runs Form_Load; nothing is shown.
    explicit frmProgrammer(Frame& frame);
    ~frmProgrammer() override;

    QComboBox* Programmer = nullptr;
    QLabel* Label2 = nullptr;
    QLineEdit* ProgrammerPath = nullptr;
    QPushButton* Browse = nullptr;
    QLabel* Label1 = nullptr;
    QLineEdit* CommandOptions = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdExit = nullptr;
    // Below the system's own controls: the Linux programmers' presets, and where the chosen one's path
    // came from.
    QLabel* Label3 = nullptr;
    QComboBox* Preset = nullptr;
    QLabel* PresetNote = nullptr;
    // Where a preset looks for its program: this machine, or a test's double.
    SystemProbe* probe = nullptr;

    void Form_Load();
    void Programmer_Click();
    void Browse_Click();
    void cmdOK_Click();
    void cmdExit_Click();
    // Fills the "Other" kind's fields from the chosen preset; the first entry chooses none.
    void Preset_Click();

    // Closing by any way leaves the loaded windows.
    void done(int result) override;

protected:
    // Neither button is a default or a cancel button: Enter and Esc close nothing.
    void keyPressEvent(QKeyEvent* e) override;

private:
    Frame& frame_;
};
