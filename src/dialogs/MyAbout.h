#pragma once
// The about box: product, version, the last compiler's banner and a column of grey binary digits that
// moves upward. One instance, loaded when first used (a compile's banner loads it without showing it)
// and unloaded by OK, so the banner goes back to its start text at the next use.

#include "dialogs/AboutRows.h"

#include <QDialog>
#include <QTimer>
#include <array>

class QLabel;
class QPushButton;

class MyAbout : public QDialog {
    Q_OBJECT
public:
    // The loaded instance, or a new one, not shown, owned by owner.
    static MyAbout& instance(QWidget* owner);
    // The loaded instance, or null; one that was unloaded is gone at once, though Qt may delete it later.
    static MyAbout* find();

    // White, captionless, fixed 5415 x 3345 twips, centred on the screen; runs Form_Load.
    explicit MyAbout(QWidget* owner = nullptr);
    ~MyAbout() override;

    QLabel* Image1 = nullptr;
    QLabel* lbEdition = nullptr;
    QLabel* Label2 = nullptr;
    QLabel* PBPVersion = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdSysInfo = nullptr;
    std::array<QLabel*, kBinScrollRows> BinScroll{};
    // 50 ms, running while the box is loaded, shown or not.
    QTimer Timer1;

    // The compiler's banner, set whether or not the box is on the screen.
    void setPBPVersion(const QString& text);

    void Form_Load();
    void Timer1_Timer();
    void cmdOK_Click();
    void cmdSysInfo_Click();

    // OK is the cancel button as well: Escape and a close from outside unload like OK.
    void reject() override;
    void done(int result) override;

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void unload();
    bool unloaded_ = false;
};
