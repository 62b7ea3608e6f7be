#include "compile/frmFindCompiler.h"

#include "compile/CompilerSearch.h"
#include "compile/frmCompile.h"
#include "platform/Failure.h"
#include "platform/Paths.h"
#include "platform/QtFixedDialog.h"
#include "platform/Twips.h"
#include "core/Globals.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QAbstractItemView>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>

#include <algorithm>

frmFindCompiler::frmFindCompiler(frmCompile& options) : QDialog(&options), options_(options) {
    setupFixedDialog(*this, QStringLiteral("Compiler Search"), 7800, 2385);

    Label1 = new QLabel(QStringLiteral("Search drive:"), this);
    placeInTwips(Label1, 90, 135, 1230, 330);
    Drive1 = new QComboBox(this);
    if (Paths* paths = globals().paths)
        Drive1->addItems(paths->searchRoots());
    Drive1->setCurrentIndex(Drive1->count() > 0 ? 0 : -1);
    placeInTwips(Drive1, 1395, 90, 960, 315);
    Label2 = new QLabel(QStringLiteral("for PicBasic and PicBasic Pro Compilers."), this);
    placeInTwips(Label2, 2430, 135, 3705, 285);
    Command1 = new QPushButton(QStringLiteral("&Start Search"), this);
    placeInTwips(Command1, 6255, 90, 1455, 330);
    List1 = new QListWidget(this);
    placeInTwips(List1, 45, 540, 7665, 1035);
    lbSearch = new QLabel(this);
    placeInTwips(lbSearch, 90, 1620, 7575, 240);
    CPBP = new QPushButton(QStringLiteral("Configure as PicBasic Pro Compiler"), this);
    CPBP->setEnabled(false);
    placeInTwips(CPBP, 90, 1935, 2850, 330);
    CPBC = new QPushButton(QStringLiteral("Configure as PicBasic Compiler"), this);
    CPBC->setEnabled(false);
    placeInTwips(CPBC, 3195, 1935, 2850, 330);
    // This font's captions are wider than the twips allow: each button grows to its text, the second
    // staying behind the first. The places, long paths here, show whole in the list that drops down.
    const int gap = CPBC->x() - CPBP->geometry().right();
    CPBP->resize(std::max(CPBP->width(), CPBP->sizeHint().width()), CPBP->height());
    CPBC->move(std::max(CPBC->x(), CPBP->geometry().right() + gap), CPBC->y());
    CPBC->resize(std::max(CPBC->width(), CPBC->sizeHint().width()), CPBC->height());
    Drive1->view()->setMinimumWidth(Drive1->view()->sizeHintForColumn(0));
    Drive1->setToolTip(Drive1->currentText());
    connect(Drive1, &QComboBox::currentTextChanged, Drive1, &QWidget::setToolTip);

    connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    // A click or an arrow key selects an entry; tabbing into the list only makes a row current, which
    // is no click.
    connect(List1, &QListWidget::itemSelectionChanged, this, [this] {
        if (!List1->selectedItems().isEmpty())
            List1_Click();
    });
    connect(CPBP, &QPushButton::clicked, this, [this] { CPBP_Click(); });
    connect(CPBC, &QPushButton::clicked, this, [this] { CPBC_Click(); });

    globals().addWindow(this);
}

frmFindCompiler::~frmFindCompiler() { globals().removeWindow(this); }

void frmFindCompiler::done(int result) {
    closed_ = true;
    globals().removeWindow(this);
    QDialog::done(result);
}

void frmFindCompiler::Command1_Click() {
    const QString drive = Drive1->currentText();
    // Window events run inside the walk; the dialog may be closed, or even destroyed, meanwhile.
    QPointer<frmFindCompiler> self(this);
    CompilerSearchHooks hooks;
    hooks.found = [self](const QString& path) {
        if (self)
            self->List1->addItem(path);
    };
    hooks.progress = [self](const QString& text) {
        if (self)
            self->lbSearch->setText(text);
    };
    hooks.processEvents = [self] {
        QCoreApplication::processEvents();
        return self && !self->closed_;
    };
    FindCompilerFiles(drive, hooks);
    if (!self)
        return;
    if (List1->count() == 0)
        lbSearch->setText(QStringLiteral("No Compilers Found on drive ") + drive);
    else
        lbSearch->setText(QString::number(List1->count()) + QStringLiteral(" files found on drive ") + drive);
}

void frmFindCompiler::List1_Click() {
    CPBC->setEnabled(true);
    CPBP->setEnabled(true);
}

void frmFindCompiler::CPBP_Click() { configureAs(0); }

void frmFindCompiler::CPBC_Click() { configureAs(1); }

void frmFindCompiler::configureAs(int compilerIndex) {
    // The index first: it refills the path from the settings, which the found path then overwrites.
    skipOnFailure([&] { options_.setCompilerIndex(compilerIndex); });
    skipOnFailure([&] {
        const QListWidgetItem* item = List1->currentItem();
        options_.CompilerPath->setText(item ? item->text() : QString());
    });
    done(Accepted);
}
