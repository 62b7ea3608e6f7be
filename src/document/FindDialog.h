#pragma once
// The editing control's own find and replace dialog: non-modal, one per view, kept between uses.

#include <QDialog>

class SourceView;
class QLineEdit;
class QCheckBox;
class QRadioButton;
class QPushButton;
class QLabel;
class QGroupBox;

class FindDialog : public QDialog {
    Q_OBJECT
public:
    explicit FindDialog(SourceView& view);

    // Shows the dialog for finding, or for replacing too; starts from the selected text, if any.
    void showFor(bool replace);

    void findNextClicked();
    void replaceClicked();
    void replaceAllClicked();

    QLineEdit* findWhat;
    QLineEdit* replaceWith;
    QCheckBox* matchCase;
    QCheckBox* wholeWord;
    QRadioButton* up;
    QRadioButton* down;
    QPushButton* findNextButton;
    QPushButton* replaceButton;
    QPushButton* replaceAllButton;
    QPushButton* cancelButton;
    QLabel* status;  // "not found" and the replace count, in the dialog rather than in a box of its own

private:
    void setReplaceMode(bool replace);
    void reportFound(bool found);

    SourceView& view_;
    QLabel* replaceLabel_;
    QGroupBox* direction_;
};
