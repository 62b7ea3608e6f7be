#include "document/FindDialog.h"

#include "document/SourceView.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

FindDialog::FindDialog(SourceView& view) : QDialog(&view), view_(view) {
    setModal(false);
    findWhat = new QLineEdit;
    replaceWith = new QLineEdit;
    matchCase = new QCheckBox(tr("Match &case"));
    wholeWord = new QCheckBox(tr("Find &whole words only"));
    up = new QRadioButton(tr("&Up"));
    down = new QRadioButton(tr("&Down"));
    down->setChecked(true);
    findNextButton = new QPushButton(tr("&Find Next"));
    replaceButton = new QPushButton(tr("&Replace"));
    replaceAllButton = new QPushButton(tr("Replace &All"));
    cancelButton = new QPushButton(tr("Cancel"));
    status = new QLabel;
    findNextButton->setDefault(true);

    auto* findLabel = new QLabel(tr("Fi&nd what:"));
    findLabel->setBuddy(findWhat);
    replaceLabel_ = new QLabel(tr("Re&place with:"));
    replaceLabel_->setBuddy(replaceWith);

    direction_ = new QGroupBox(tr("Direction"));
    auto* dirLayout = new QHBoxLayout(direction_);
    dirLayout->addWidget(up);
    dirLayout->addWidget(down);

    auto* fields = new QGridLayout;
    fields->addWidget(findLabel, 0, 0);
    fields->addWidget(findWhat, 0, 1);
    fields->addWidget(replaceLabel_, 1, 0);
    fields->addWidget(replaceWith, 1, 1);
    fields->addWidget(matchCase, 2, 0, 1, 2);
    fields->addWidget(wholeWord, 3, 0, 1, 2);
    fields->addWidget(direction_, 4, 0, 1, 2);
    fields->addWidget(status, 5, 0, 1, 2);

    auto* buttons = new QVBoxLayout;
    buttons->addWidget(findNextButton);
    buttons->addWidget(replaceButton);
    buttons->addWidget(replaceAllButton);
    buttons->addWidget(cancelButton);
    buttons->addStretch();

    auto* layout = new QHBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(buttons);

    connect(findNextButton, &QPushButton::clicked, this, &FindDialog::findNextClicked);
    connect(replaceButton, &QPushButton::clicked, this, &FindDialog::replaceClicked);
    connect(replaceAllButton, &QPushButton::clicked, this, &FindDialog::replaceAllClicked);
    connect(cancelButton, &QPushButton::clicked, this, &QDialog::hide);
    connect(findWhat, &QLineEdit::textChanged, this, [this](const QString& t) {
        findNextButton->setEnabled(!t.isEmpty());
        replaceButton->setEnabled(!t.isEmpty());
        replaceAllButton->setEnabled(!t.isEmpty());
    });
    findNextButton->setEnabled(false);
    replaceButton->setEnabled(false);
    replaceAllButton->setEnabled(false);
}

void FindDialog::setReplaceMode(bool replace) {
    setWindowTitle(replace ? tr("Replace") : tr("Find"));
    replaceLabel_->setVisible(replace);
    replaceWith->setVisible(replace);
    replaceButton->setVisible(replace);
    replaceAllButton->setVisible(replace);
    // Replacing goes forward only.
    direction_->setVisible(!replace);
    if (replace)
        down->setChecked(true);
}

void FindDialog::showFor(bool replace) {
    setReplaceMode(replace);
    const QString selected = view_.selectedText();
    if (!selected.isEmpty() && !selected.contains(u'\n') && !selected.contains(u'\r'))
        findWhat->setText(selected);
    status->clear();
    show();
    raise();
    activateWindow();
    findWhat->setFocus();
    findWhat->selectAll();
}

void FindDialog::reportFound(bool found) {
    status->setText(found ? QString() : tr("Cannot find \"%1\".").arg(findWhat->text()));
}

void FindDialog::findNextClicked() {
    reportFound(view_.findText(findWhat->text(), matchCase->isChecked(), wholeWord->isChecked(), !up->isChecked()));
}

// When the selection is the text searched for it is replaced; either way the next one is found, so the
// first click finds and each one after it replaces what the user sees selected.
void FindDialog::replaceClicked() {
    reportFound(view_.replaceAndFindNext(findWhat->text(), replaceWith->text(), matchCase->isChecked(),
                                         wholeWord->isChecked()));
}

void FindDialog::replaceAllClicked() {
    const int n = view_.replaceAll(findWhat->text(), replaceWith->text(), matchCase->isChecked(), wholeWord->isChecked());
    status->setText(n == 0 ? tr("Cannot find \"%1\".").arg(findWhat->text()) : tr("%n occurrence(s) replaced.", "", n));
}
