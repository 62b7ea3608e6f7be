#include "platform/QtPrompts.h"

#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>

QStringList qtNameFilters(const QString& filter) {
    QStringList out;
    const QStringList parts = filter.split(QLatin1Char('|'));
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        const QString desc = parts[i].trimmed();
        QString pats = parts[i + 1].trimmed();
        if (desc.isEmpty() && pats.isEmpty())
            continue;
        pats.replace(QLatin1Char(';'), QLatin1Char(' '));
        // Qt reads the patterns from the last parentheses; a description that already shows them keeps
        // its text, the real patterns still have to follow.
        if (desc.endsWith(QLatin1Char(')')) && desc.contains(QStringLiteral("(") + pats + QStringLiteral(")")))
            out << desc;
        else
            out << desc + QStringLiteral(" (") + pats + QStringLiteral(")");
    }
    return out;
}

namespace {

void setupBox(QMessageBox& box, const QString& text, const QString& title, Icon icon) {
    box.setWindowTitle(title.isEmpty() ? applicationTitle() : title);
    // Plain text: a path with "<" or "&" in it is shown as it is.
    box.setTextFormat(Qt::PlainText);
    box.setText(displayedMessageText(text));
    switch (icon) {
    case Icon::None: box.setIcon(QMessageBox::NoIcon); break;
    case Icon::Critical: box.setIcon(QMessageBox::Critical); break;
    case Icon::Question: box.setIcon(QMessageBox::Question); break;
    case Icon::Exclamation: box.setIcon(QMessageBox::Warning); break;
    case Icon::Information: box.setIcon(QMessageBox::Information); break;
    }
}

}  // namespace

bool QtPrompts::messageOffering(const QString& text, const QString& title, Icon icon, const QString& extra) {
    QMessageBox box(parent_);
    setupBox(box, text, title, icon);
    box.setStandardButtons(QMessageBox::Ok);
    QPushButton* on = box.addButton(extra, QMessageBox::ActionRole);
    box.setDefaultButton(QMessageBox::Ok);
    box.exec();
    return box.clickedButton() == on;
}

Answer QtPrompts::message(const QString& text, const QString& title, Icon icon, Buttons buttons) {
    QMessageBox box(parent_);
    setupBox(box, text, title, icon);
    switch (buttons) {
    case Buttons::Ok: box.setStandardButtons(QMessageBox::Ok); break;
    case Buttons::OkCancel: box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
    case Buttons::YesNo: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
    case Buttons::YesNoDefaultNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::No);
        break;
    case Buttons::YesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    }
    switch (box.exec()) {
    case QMessageBox::Yes: return Answer::Yes;
    case QMessageBox::No: return Answer::No;
    case QMessageBox::Ok: return Answer::Ok;
    default: return Answer::Cancel;
    }
}

void setupFileDialog(QFileDialog& dlg, QFileDialog::AcceptMode mode, const QString& filter, const QString& fileName,
                     int filterIndex) {
    dlg.setAcceptMode(mode);
    // The system asks its own questions after a save dialog (or none): Qt's "replace?" would be one too many.
    dlg.setOption(QFileDialog::DontConfirmOverwrite);
    dlg.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    const QStringList filters = qtNameFilters(filter);
    if (!filters.isEmpty())
        dlg.setNameFilters(filters);
    if (filterIndex >= 0 && filterIndex < filters.size())
        dlg.selectNameFilter(filters[filterIndex]);
    if (fileName.isEmpty())
        return;
    // The document's own folder, also when the file isn't written yet and for a desktop's own dialog.
    const QFileInfo info(fileName);
    if (info.isAbsolute() && info.absoluteDir().exists())
        dlg.setDirectory(info.absolutePath());
    dlg.selectFile(info.isAbsolute() ? info.fileName() : fileName);
}

static std::optional<QString> runFileDialog(QWidget* parent, QFileDialog::AcceptMode mode, const QString& filter,
                                            const QString& fileName, int& filterIndex) {
    QFileDialog dlg(parent);
    setupFileDialog(dlg, mode, filter, fileName, filterIndex);
    if (dlg.exec() != QDialog::Accepted)
        return std::nullopt;
    filterIndex = int(qtNameFilters(filter).indexOf(dlg.selectedNameFilter()));
    const QStringList files = dlg.selectedFiles();
    return files.isEmpty() ? QString() : files.first();
}

std::optional<QString> QtPrompts::openFile(const QString& filter, const QString& fileName) {
    int index = 0;
    return runFileDialog(parent_, QFileDialog::AcceptOpen, filter, fileName, index);
}

std::optional<QString> QtPrompts::saveFile(const QString& filter, const QString& fileName, int& filterIndex) {
    return runFileDialog(parent_, QFileDialog::AcceptSave, filter, fileName, filterIndex);
}

std::optional<qint32> QtPrompts::chooseColor(qint32 initial) {
    const QColor start(initial & 0xFF, (initial >> 8) & 0xFF, (initial >> 16) & 0xFF);
    const QColor c = QColorDialog::getColor(start, parent_);
    if (!c.isValid())
        return std::nullopt;
    return qint32(c.red() | (c.green() << 8) | (c.blue() << 16));
}
