#include "document/frmEditorEncoding.h"

#include "document/Document.h"
#include "document/SourceView.h"
#include "document/TextFormat.h"
#include "document/frmEditor.h"
#include "core/Frame.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "platform/Failure.h"
#include "platform/Prompts.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QString kTitle = QStringLiteral("Reopen with Encoding");

// The list, with a page the file or the user's setting is in that the list lacks put at its end.
std::vector<EncodingChoice> choicesWith(const QByteArray& current) {
    std::vector<EncodingChoice> out = encodingChoices();
    for (const QByteArray& name : {current, setting(Key::LegacyEncoding).toLatin1()}) {
        const QByteArray page = name == kUtf8Name ? name : CodePage::named(name).name();
        const bool listed = std::any_of(out.begin(), out.end(), [&](const EncodingChoice& c) {
            return c.name.compare(page, Qt::CaseInsensitive) == 0;
        });
        if (!listed && !page.isEmpty())
            out.push_back({page, QString::fromLatin1(page)});
    }
    return out;
}

}  // namespace

frmEditorEncoding::frmEditorEncoding(const QString& path, const QByteArray& current, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(kTitle);
    auto* layout = new QVBoxLayout(this);
    lblFile = new QLabel(QStringLiteral("Read %1 again as:").arg(QFileInfo(path).fileName()), this);
    lblFile->setTextFormat(Qt::PlainText);
    layout->addWidget(lblFile);
    lstEncoding = new QListWidget(this);
    for (const EncodingChoice& c : choicesWith(current)) {
        const bool now = c.name.compare(current, Qt::CaseInsensitive) == 0;
        auto* item = new QListWidgetItem(now ? c.label + QStringLiteral("  (now)") : c.label, lstEncoding);
        item->setData(Qt::UserRole, c.name);
        if (now)
            lstEncoding->setCurrentItem(item);
    }
    layout->addWidget(lstEncoding);
    auto* buttons = new QDialogButtonBox(this);
    cmdOK = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    cmdCancel = buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    cmdOK->setDefault(true);
    layout->addWidget(buttons);
    connect(cmdOK, &QPushButton::clicked, this, &frmEditorEncoding::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmEditorEncoding::cmdCancel_Click);
    connect(lstEncoding, &QListWidget::itemDoubleClicked, this, &frmEditorEncoding::cmdOK_Click);
}

QByteArray frmEditorEncoding::chosen() const {
    const QListWidgetItem* item = lstEncoding->currentItem();
    return item ? item->data(Qt::UserRole).toByteArray() : QByteArray();
}

void frmEditorEncoding::cmdOK_Click() {
    if (!chosen().isEmpty())
        accept();
}

void frmEditorEncoding::cmdCancel_Click() { reject(); }

void reopenWithEncoding(frmEditor& doc) {
    const Document& d = doc.View->document();
    frmEditorEncoding dlg(d.PathName(), d.encoding(), doc.frame().frameWindow());
    if (doc.frame().runModal(dlg) == QDialog::Accepted)
        reopenIn(doc, dlg.chosen());
}

bool reopenIn(frmEditor& doc, const QByteArray& encoding) {
    Document& d = doc.View->document();
    Prompts* prompts = globals().prompts;
    const QString path = QDir::toNativeSeparators(d.PathName());
    if (d.Modified()) {
        const QString question =
            QStringLiteral("Reopen %1 as %2?\r\rThe changes made here are lost.").arg(path, QString::fromLatin1(encoding));
        if (!prompts || prompts->message(question, kTitle, Icon::Question, Buttons::YesNoDefaultNo) != Answer::Yes)
            return false;
    }
    try {
        d.ReloadFile(encoding);
    } catch (const Failure& f) {
        if (prompts)
            prompts->message(f.description + QStringLiteral("\r\rThe text stays as it was."), kTitle, Icon::Exclamation,
                             Buttons::Ok);
        return false;
    }
    skipOnFailure([&] { doc.frame().EnableTools(); });
    return true;
}
