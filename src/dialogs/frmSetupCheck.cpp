#include "dialogs/frmSetupCheck.h"

#include "core/Globals.h"
#include "platform/Twips.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QScreen>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTextLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

QTableWidgetItem* cell(const QString& text) {
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    item->setToolTip(text);
    return item;
}

// Qt sizes a wrapped cell for the column's whole width and for breaks between words only, but draws it inside
// the text margins and breaks a path that doesn't fit anywhere: a fix naming a long folder came out a line
// short, its end cut off. The height asked for here is the one the text is drawn in.
class WrappedTextDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        QStyleOptionViewItem o(option);
        initStyleOption(&o, index);
        if (!(o.features & QStyleOptionViewItem::WrapText) || o.text.isEmpty())
            return size;
        const QStyle* style = o.widget ? o.widget->style() : QApplication::style();
        const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &o, o.widget) + 1;
        const qreal drawn = textHeight(o, o.rect.width() - 2 * margin, QTextOption::WrapAtWordBoundaryOrAnywhere);
        const qreal sized = textHeight(o, o.rect.width(), QTextOption::WordWrap);
        size.rheight() += std::max(0, qCeil(drawn) - qCeil(sized));
        return size;
    }

private:
    static qreal textHeight(const QStyleOptionViewItem& o, int width, QTextOption::WrapMode wrap) {
        QTextLayout layout(o.text, o.font);
        QTextOption option;
        option.setWrapMode(wrap);
        layout.setTextOption(option);
        qreal height = 0;
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(std::max(1, width));
            height += line.height();
        }
        layout.endLayout();
        return height;
    }
};

}  // namespace

frmSetupCheck* frmSetupCheck::find() {
    for (QWidget* w : globals().loadedWindows)
        if (auto* dlg = qobject_cast<frmSetupCheck*>(w))
            return dlg;
    return nullptr;
}

frmSetupCheck& frmSetupCheck::showBeside(QWidget* owner, InputsFn inputs, SystemProbe& probe) {
    frmSetupCheck* dlg = find();
    if (dlg)
        dlg->cmdAgain_Click();
    else {
        dlg = new frmSetupCheck(owner, std::move(inputs), probe);
        dlg->setAttribute(Qt::WA_DeleteOnClose);
    }
    dlg->show();
    dlg->raise();
    dlg->activateWindow();
    return *dlg;
}

frmSetupCheck::frmSetupCheck(QWidget* owner, InputsFn inputs, SystemProbe& probe)
    : QDialog(owner), inputs_(std::move(inputs)), probe_(probe) {
    setWindowTitle(QStringLiteral("Check Set-up"));
    setModal(false);

    Summary = new QLabel(this);
    Summary->setWordWrap(true);
    Rows = new QTableWidget(0, 4, this);
    Rows->setHorizontalHeaderLabels(
        {QStringLiteral("Needed"), QStringLiteral("State"), QStringLiteral("Found"), QStringLiteral("Fix")});
    Rows->verticalHeader()->hide();
    Rows->setWordWrap(true);
    Rows->setSelectionBehavior(QAbstractItemView::SelectRows);
    Rows->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    Rows->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    Rows->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    Rows->horizontalHeader()->setSectionResizeMode(3, QHeaderView::Stretch);
    Rows->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    Rows->setItemDelegate(new WrappedTextDelegate(Rows));

    cmdAgain = new QPushButton(QStringLiteral("Check &Again"), this);
    cmdCopy = new QPushButton(QStringLiteral("Co&py Report"), this);
    cmdCopy->setToolTip(QStringLiteral("Copy every row, with its fix, as text"));
    cmdClose = new QPushButton(QStringLiteral("&Close"), this);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdAgain);
    buttons->addWidget(cmdCopy);
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Summary);
    layout->addWidget(Rows, 1);
    layout->addLayout(buttons);

    connect(cmdAgain, &QPushButton::clicked, this, [this] { cmdAgain_Click(); });
    connect(cmdCopy, &QPushButton::clicked, this, [this] { cmdCopy_Click(); });
    connect(cmdClose, &QPushButton::clicked, this, [this] { done(Rejected); });

    resize(twipsToPixelsX(14400), twipsToPixelsY(6000));
    cmdAgain_Click();
    globals().addWindow(this);
}

frmSetupCheck::~frmSetupCheck() { globals().removeWindow(this); }

void frmSetupCheck::showEvent(QShowEvent* e) {
    QDialog::showEvent(e);
    if (std::exchange(grown_, true))
        return;
    // Shown first, it grows to show every row, as far as the screen lets it.
    int rows = Rows->horizontalHeader()->height() + 2 * Rows->frameWidth();
    for (int i = 0; i < Rows->rowCount(); ++i)
        rows += Rows->rowHeight(i);
    const int more = rows - Rows->height();
    if (more <= 0)
        return;
    const QScreen* s = screen();
    const int room = s ? s->availableGeometry().height() - frameGeometry().height() : more;
    resize(width(), height() + std::clamp(more, 0, std::max(0, room)));
}

void frmSetupCheck::done(int result) {
    globals().removeWindow(this);
    QDialog::done(result);
}

void frmSetupCheck::cmdAgain_Click() {
    rows_ = checkSetup(inputs_(), probe_);
    Rows->setRowCount(int(rows_.size()));
    int missing = 0;
    for (int i = 0; i < rows_.size(); ++i) {
        const SetupRow& r = rows_[i];
        QTableWidgetItem* state = nullptr;
        switch (r.state) {
        case SetupState::Ok:
            state = cell(QStringLiteral("ok"));
            state->setForeground(QColor(0x00, 0x80, 0x00));
            break;
        case SetupState::Missing:
            ++missing;
            state = cell(QStringLiteral("missing"));
            state->setForeground(QColor(0xB0, 0x00, 0x00));
            break;
        case SetupState::NotNeeded:
            state = cell(QStringLiteral("not needed"));
            state->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
            break;
        }
        QFont bold = state->font();
        bold.setBold(r.state == SetupState::Missing);
        state->setFont(bold);
        Rows->setItem(i, 0, cell(r.what));
        Rows->setItem(i, 1, state);
        Rows->setItem(i, 2, cell(r.detail));
        Rows->setItem(i, 3, cell(r.fix));
    }
    Summary->setText(missing == 0 ? QStringLiteral("Everything a compile and a launch need is here.")
                     : missing == 1
                         ? QStringLiteral("1 thing is missing. Its row says how to fix it; Check Again after the fix.")
                         : QStringLiteral("%1 things are missing. Each row says how to fix it; Check Again after "
                                          "the fix.")
                               .arg(missing));
}

void frmSetupCheck::cmdCopy_Click() { QApplication::clipboard()->setText(setupReportText(rows_)); }
