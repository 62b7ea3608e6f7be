#include "compile/frmCompile.h"

#include "compile/CompileRules.h"
#include "compile/CompileScript.h"
#include "core/Frame.h"
#include "compile/frmFindCompiler.h"
#include "platform/Failure.h"
#include "platform/OpenSave.h"
#include "platform/Prompts.h"
#include "platform/QtFixedDialog.h"
#include "platform/Twips.h"
#include "core/Convert.h"
#include "core/Globals.h"
#include "core/Settings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

#include <algorithm>

namespace {
QString checkText(const QCheckBox* box) { return box->isChecked() ? QStringLiteral("1") : QStringLiteral("0"); }

// 1 sets the mark, 0 clears it; any other stored value is a failure of the step.
void setCheck(QCheckBox* box, const QString& stored) {
    const qint16 v = int16Of(stored);
    if (v != 0 && v != 1)
        throw invalidPropertyValue();
    box->setChecked(v == 1);
}
}  // namespace

frmCompile::frmCompile(Frame& frame) : QDialog(frame.frameWindow()), frame_(frame) {
    setupFixedDialog(*this, QStringLiteral("Compiler Options"), 7065, 2865);

    Compiler = new QComboBox(this);
    Compiler->addItem(QStringLiteral("PicBasic Pro Compiler"));
    Compiler->addItem(QStringLiteral("PicBasic Compiler"));
    Compiler->setToolTip(QStringLiteral("Select Desired Compiler"));
    placeInTwips(Compiler, 150, 240, 5385, 315);

    Label2 = new QLabel(QStringLiteral("Compiler Pathname:"), this);
    placeInTwips(Label2, 150, 720, 1815, 255);
    CompilerPath = new QLineEdit(this);
    CompilerPath->setToolTip(QStringLiteral("Compiler Pathname"));
    placeInTwips(CompilerPath, 150, 960, 5145, 285);
    Browse = new QPushButton(QStringLiteral("..."), this);
    Browse->setToolTip(QStringLiteral("Browse"));
    placeInTwips(Browse, 5265, 960, 255, 280);

    Label1 = new QLabel(QStringLiteral("Command Line Options:"), this);
    placeInTwips(Label1, 150, 1320, 1815, 255);
    CommandOptions = new QLineEdit(this);
    CommandOptions->setToolTip(QStringLiteral("Compiler Command Line Options"));
    placeInTwips(CommandOptions, 150, 1560, 5370, 285);

    AutoClose = new QCheckBox(QStringLiteral("Auto Close Compiler Output Screen in: 5 Secs"), this);
    placeInTwips(AutoClose, 150, 2025, 5190, 240);
    SecScroll = new QScrollBar(Qt::Vertical, this);
    SecScroll->setRange(1, 60);
    SecScroll->setValue(5);
    // The up arrow adds a second, as a spin box would.
    SecScroll->setInvertedAppearance(true);
    SecScroll->setInvertedControls(true);
    placeInTwips(SecScroll, 5310, 1980, 195, 330);
    cbDoswindow = new QCheckBox(QStringLiteral("Don't Display DOS Window"), this);
    placeInTwips(cbDoswindow, 150, 2475, 5370, 195);

    cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    placeInTwips(cmdOK, 5670, 225, 1215, 375);
    cmdOK->setDefault(true);
    cmdExit = new QPushButton(QStringLiteral("&Cancel"), this);
    placeInTwips(cmdExit, 5670, 720, 1215, 375);
    Command1 = new QPushButton(QStringLiteral("&Find Compiler"), this);
    placeInTwips(Command1, 5670, 1215, 1215, 375);

    Form_Load();

    // Connected after the load, which calls its handlers itself.
    connect(Compiler, &QComboBox::currentIndexChanged, this, [this] { Compiler_Click(); });
    connect(SecScroll, &QScrollBar::valueChanged, this, [this] { SecScroll_Change(); });
    connect(Browse, &QPushButton::clicked, this, [this] { Browse_Click(); });
    connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(cmdExit, &QPushButton::clicked, this, [this] { cmdExit_Click(); });

    globals().addWindow(this);
}

frmCompile::~frmCompile() { globals().removeWindow(this); }

void frmCompile::done(int result) {
    globals().removeWindow(this);
    QDialog::done(result);
}

void frmCompile::Form_Load() {
    skipOnFailure([&] {
        const qint16 index = int16Of(setting(Key::CompilerType));
        // Only this dialog writes the key, but the store can be edited by hand: a value that is no entry
        // of the list (none selected included) selects the first, so the dialog always shows a compiler.
        Compiler->setCurrentIndex(index == 1 ? 1 : 0);
    });
    skipOnFailure([&] { Compiler_Click(); });
    skipOnFailure([&] { setCheck(cbDoswindow, setting(Key::DosWindow)); });
    skipOnFailure([&] { setCheck(AutoClose, setting(Key::AutoCloseCW)); });
    skipOnFailure([&] { SecScroll->setValue(int16Of(setting(Key::AutoCloseCWTime))); });
    skipOnFailure([&] { SecScroll_Change(); });
}

void frmCompile::setCompilerIndex(int index) {
    {
        const QSignalBlocker quiet(Compiler);
        Compiler->setCurrentIndex(index);
    }
    Compiler_Click();
}

void frmCompile::Compiler_Click() {
    if (const auto kind = compilerKindAt(Compiler->currentIndex())) {
        CompilerPath->setText(setting(kind->pathKey));
        CommandOptions->setText(setting(kind->optionsKey));
    }
}

void frmCompile::SecScroll_Change() {
    AutoClose->setText(QStringLiteral("Auto Close Compiler Output Screen in: ") + QString::number(SecScroll->value()) +
                       QStringLiteral(" Secs"));
}

void frmCompile::Browse_Click() {
    Prompts* prompts = globals().prompts;
    try {
        OpenSave& dlg = frame_.openSave();
        // CancelError stays as the last command left it: with it off, Cancel comes back as an empty name.
        dlg.Filter = QStringLiteral("PicBasic Pro Compiler|PBP*.exe|PicBasic Compiler|PBC.exe|All Files (*.*)|*.*|");
        dlg.ShowOpen();
        if (!dlg.FileName.isEmpty())
            CompilerPath->setText(dlg.FileName);
        else if (prompts)
            prompts->message(QStringLiteral("No filename entered."), QStringLiteral("File Error"), Icon::None,
                             Buttons::Ok);
    } catch (const Failure& f) {
        if (f.number != kCancelError && prompts)
            prompts->message(f.description, QString(), Icon::None, Buttons::Ok);
    }
}

void frmCompile::Command1_Click() {
    frmFindCompiler find(*this);
    find.exec();
}

void frmCompile::cmdOK_Click() {
    skipOnFailure([&] { saveSetting(Key::CompilerType, QString::number(Compiler->currentIndex())); });
    skipOnFailure([&] { CommandOptions->setText(optionsWithOq(CommandOptions->text())); });
    skipOnFailure([&] {
        if (const auto kind = compilerKindAt(Compiler->currentIndex())) {
            saveSetting(kind->pathKey, CompilerPath->text());
            saveSetting(kind->optionsKey, CommandOptions->text());
        }
    });
    skipOnFailure([&] {
        saveSetting(Key::DosWindow, checkText(cbDoswindow));
        saveSetting(Key::AutoCloseCW, checkText(AutoClose));
        saveSetting(Key::AutoCloseCWTime, QString::number(SecScroll->value()));
    });
    skipOnFailure([&] {
        if (const auto kind = compilerKindAt(Compiler->currentIndex())) {
            globals().UsePBP = Compiler->currentIndex() == 0;
            frame_.setPanelText(3, kind->panelText);
        }
    });
    skipOnFailure([&] {
        const int device = frame_.deviceListIndex();
        frame_.GetDevices();
        // A shorter list leaves the combo without a selection; GoCompile repairs that.
        frame_.setDeviceListIndex(device);
    });
    done(Accepted);
}

void frmCompile::cmdExit_Click() { done(Rejected); }
