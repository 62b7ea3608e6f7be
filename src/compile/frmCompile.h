#pragma once
// The compiler options: which compiler, its path and options, and how a compile shows itself.
// Created at each opening and destroyed at each closing; OK writes the settings, Cancel writes nothing.

#include <QDialog>
#include <QString>

class Frame;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;

class frmCompile : public QDialog {
    Q_OBJECT
public:
    // Builds the controls and runs Form_Load; nothing is shown.
    explicit frmCompile(Frame& frame);
    ~frmCompile() override;

    QComboBox* Compiler = nullptr;
    QLabel* Label2 = nullptr;
    QLineEdit* CompilerPath = nullptr;
    QPushButton* Browse = nullptr;
    QLabel* Label1 = nullptr;
    QLineEdit* CommandOptions = nullptr;
    QCheckBox* AutoClose = nullptr;
    QScrollBar* SecScroll = nullptr;
    QCheckBox* cbDoswindow = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdExit = nullptr;
    QPushButton* Command1 = nullptr;

    // Selects a compiler as frmFindCompiler does: Compiler_Click runs even when the index stays the same,
    // so the fields are always refilled from the settings.
    void setCompilerIndex(int index);

    void Form_Load();
    void Compiler_Click();
    void SecScroll_Change();
    void Browse_Click();
    void Command1_Click();
    void cmdOK_Click();
    void cmdExit_Click();

    // Closing by any way leaves the loaded windows.
    void done(int result) override;

private:
    Frame& frame_;
};
