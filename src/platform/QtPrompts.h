#pragma once
#include "platform/Prompts.h"

#include <QFileDialog>

class QWidget;

// Message boxes and dialogs as Qt widgets, parented to the frame when there is one.
class QtPrompts : public Prompts {
public:
    explicit QtPrompts(QWidget* parent = nullptr) : parent_(parent) {}
    void setParent(QWidget* parent) { parent_ = parent; }
    Answer message(const QString& text, const QString& title, Icon icon, Buttons buttons) override;
    bool messageOffering(const QString& text, const QString& title, Icon icon, const QString& extra) override;
    std::optional<QString> openFile(const QString& filter, const QString& fileName) override;
    std::optional<QString> saveFile(const QString& filter, const QString& fileName, int& filterIndex) override;
    std::optional<qint32> chooseColor(qint32 initial) override;

private:
    QWidget* parent_;
};

// "desc|pat;pat|desc|pat|" as Qt name filters, "desc (pat pat)".
QStringList qtNameFilters(const QString& filter);

// A file dialog as the system's common dialog opens it: filters with the one shown first (from 0), the
// start name in its own folder, and no question of Qt's own.
void setupFileDialog(QFileDialog& dlg, QFileDialog::AcceptMode mode, const QString& filter, const QString& fileName,
                     int filterIndex = 0);
