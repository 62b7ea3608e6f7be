#pragma once
// The compiler search: walks one of the platform's roots for the compilers' executables and hands the
// one the user picks to the compiler options behind it. Created at each opening, destroyed at closing.

#include <QDialog>
#include <QString>

class frmCompile;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;

class frmFindCompiler : public QDialog {
    Q_OBJECT
public:
    explicit frmFindCompiler(frmCompile& options);
    ~frmFindCompiler() override;

    QLabel* Label1 = nullptr;
    QComboBox* Drive1 = nullptr;
    QLabel* Label2 = nullptr;
    QPushButton* Command1 = nullptr;
    QListWidget* List1 = nullptr;
    QLabel* lbSearch = nullptr;
    QPushButton* CPBP = nullptr;
    QPushButton* CPBC = nullptr;

    void Command1_Click();
    void List1_Click();
    void CPBP_Click();
    void CPBC_Click();

    void done(int result) override;

private:
    // Sets the compiler in the options, then the path of the selected entry, and closes.
    void configureAs(int compilerIndex);

    frmCompile& options_;
    // Set when the dialog closes: a search still running ends at its next pass of window events.
    bool closed_ = false;
};
