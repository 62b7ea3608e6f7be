#include "shell/CodeExplorer.h"

#include "core/Editors.h"
#include "core/Frame.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QFontMetrics>
#include <QHeaderView>
#include <QStyle>
#include <QStyleOptionHeader>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <array>

namespace {

enum Role { LineRole = Qt::UserRole, KindRole, NameRole };

struct KindCaption {
    SymbolKind kind;
    const char* caption;
};
// The groups in the order they are listed: what a program takes in and names first, its code last.
constexpr std::array<KindCaption, 8> kGroups = {{
    {SymbolKind::Include, "Includes"},
    {SymbolKind::Define, "Defines"},
    {SymbolKind::Constant, "Constants"},
    {SymbolKind::Variable, "Variables"},
    {SymbolKind::Alias, "Aliases"},
    {SymbolKind::Symbol, "Symbols"},
    {SymbolKind::Label, "Labels"},
    {SymbolKind::Subroutine, "Subroutines"},
}};

QToolButton* orderButton(const QString& text, const QString& tip, QWidget* parent) {
    auto* b = new QToolButton(parent);
    b->setText(text);
    b->setToolTip(tip);
    b->setCheckable(true);
    b->setAutoRaise(true);
    return b;
}

}  // namespace

CodeExplorer::CodeExplorer(Frame& frame, QWidget* parent)
    : QDockWidget(QStringLiteral("Code Explorer"), parent), frame_(frame) {
    setObjectName(QStringLiteral("CodeExplorer"));
    auto* body = new QWidget(this);
    auto* layout = new QVBoxLayout(body);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    auto* order = new QHBoxLayout;
    order->setSpacing(0);
    byLine_ = orderButton(QStringLiteral("By Line"), QStringLiteral("In the order of the program"), body);
    byName_ = orderButton(QStringLiteral("By Name"), QStringLiteral("In the order of the names"), body);
    byLine_->setChecked(true);
    auto* group = new QButtonGroup(this);
    group->addButton(byLine_);
    group->addButton(byName_);
    order->addWidget(byLine_);
    order->addWidget(byName_);
    order->addStretch(1);
    layout->addLayout(order);
    tree_ = new QTreeWidget(body);
    tree_->setColumnCount(3);
    tree_->setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Detail"), QStringLiteral("Line")});
    // Left to itself, the header measures its labels in the bold face: a second font loaded at start for
    // three short words. The regular face gives the same height.
    QStyleOptionHeader label;
    label.initFrom(tree_->header());
    for (int c = 0; c < tree_->columnCount(); ++c) {
        label.text = tree_->headerItem()->text(c);
        tree_->headerItem()->setSizeHint(
            c, tree_->style()->sizeFromContents(QStyle::CT_HeaderSection, &label, QSize(), tree_->header()));
    }
    tree_->setRootIsDecorated(true);
    tree_->setIndentation(14);
    tree_->setUniformRowHeights(true);
    tree_->setAlternatingRowColors(true);
    tree_->header()->setStretchLastSection(false);
    tree_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    // Sized from the longest texts at each rebuild: sizing to contents measured every row of a long list
    // at each switch of document (30 ms for 1,000 variables).
    tree_->header()->setSectionResizeMode(1, QHeaderView::Interactive);
    tree_->header()->setSectionResizeMode(2, QHeaderView::Interactive);
    layout->addWidget(tree_, 1);
    setWidget(body);

    typing_.setSingleShot(true);
    typing_.setInterval(kTypingPauseMs);
    connect(&typing_, &QTimer::timeout, this, &CodeExplorer::refresh);
    connect(byName_, &QToolButton::toggled, this, [this] { rebuild(); });
    // A click or Enter on a row; a click on a group only opens or closes it.
    connect(tree_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { go(item); });
    connect(tree_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) { go(item); });
    connect(tree_, &QTreeWidget::itemCollapsed, this,
            [this](QTreeWidgetItem* item) { collapsed_.insert(item->data(0, KindRole).toInt()); });
    connect(tree_, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem* item) { collapsed_.remove(item->data(0, KindRole).toInt()); });

    Editors& editors = frame_.editors();
    connect(&editors, &Editors::activated, this, &CodeExplorer::Editors_Activated);
    connect(&editors, &Editors::textChanged, this, &CodeExplorer::Editors_TextChanged);
    connect(&editors, &Editors::closed, this, &CodeExplorer::Editors_Closed);
}

frmEditor* CodeExplorer::document() const { return doc_; }

bool CodeExplorer::byName() const { return byName_->isChecked(); }

void CodeExplorer::setByName(bool byName) { (byName ? byName_ : byLine_)->setChecked(true); }

void CodeExplorer::Editors_Activated(frmEditor* doc) {
    if (doc == doc_)
        return;
    doc_ = doc;
    typing_.stop();
    refresh();
}

void CodeExplorer::Editors_TextChanged(frmEditor* doc) {
    if (doc == doc_ || !doc_)
        typing_.start();
}

void CodeExplorer::Editors_Closed(frmEditor* doc) {
    if (doc != doc_)
        return;
    // The next active document, if any, comes with its own activation.
    doc_ = nullptr;
    typing_.stop();
    refresh();
}

void CodeExplorer::showEvent(QShowEvent* e) {
    QDockWidget::showEvent(e);
    if (stale_)
        refresh();
}

void CodeExplorer::refresh() {
    typing_.stop();
    if (!doc_)
        doc_ = frame_.editors().active();
    // Hidden, it costs nothing: the list is made when it is shown.
    if (!isVisible()) {
        stale_ = true;
        return;
    }
    stale_ = false;
    std::vector<ProgramSymbol> symbols;
    skipOnFailure([&] {
        if (doc_)
            symbols = doc_->programSymbols();
    });
    if (rebuilds_ > 0 && symbols == shown_ && shownByName_ == byName())
        return;
    shown_ = std::move(symbols);
    rebuild();
}

void CodeExplorer::rebuild() {
    ++rebuilds_;
    shownByName_ = byName();
    std::vector<ProgramSymbol> symbols = shown_;
    if (shownByName_)
        sortByName(symbols);
    const int scroll = tree_->verticalScrollBar()->value();
    tree_->setUpdatesEnabled(false);
    tree_->clear();
    for (const KindCaption& g : kGroups) {
        QList<QTreeWidgetItem*> rows;
        for (const ProgramSymbol& s : symbols) {
            if (s.kind != g.kind)
                continue;
            auto* row = new QTreeWidgetItem({s.name, symbolDetail(s), QString::number(s.line + 1)});
            row->setData(0, LineRole, s.line);
            row->setData(0, KindRole, int(s.kind));
            row->setData(0, NameRole, s.name);
            row->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
            rows << row;
        }
        if (rows.isEmpty())
            continue;
        auto* group = new QTreeWidgetItem({QStringLiteral("%1 (%2)").arg(QLatin1String(g.caption)).arg(rows.size())});
        group->setData(0, KindRole, int(g.kind));
        group->setData(0, LineRole, -1);
        QFont bold = group->font(0);
        bold.setBold(true);
        group->setFont(0, bold);
        group->addChildren(rows);
        tree_->addTopLevelItem(group);
        group->setFirstColumnSpanned(true);  // only once it is in the tree
        group->setExpanded(!collapsed_.contains(int(g.kind)));
    }
    fitColumns(symbols);
    tree_->setUpdatesEnabled(true);
    tree_->verticalScrollBar()->setValue(scroll);
}

void CodeExplorer::fitColumns(const std::vector<ProgramSymbol>& symbols) {
    QString detail = tree_->headerItem()->text(1), line = tree_->headerItem()->text(2);
    for (const ProgramSymbol& s : symbols) {
        if (const QString d = symbolDetail(s); d.size() > detail.size())
            detail = d;
        if (const QString n = QString::number(s.line + 1); n.size() > line.size())
            line = n;
    }
    const QFontMetrics fm(tree_->font());
    const int pad = 2 * tree_->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, tree_) + 12;
    tree_->header()->resizeSection(1, fm.horizontalAdvance(detail) + pad);
    tree_->header()->resizeSection(2, fm.horizontalAdvance(line) + pad);
}

void CodeExplorer::go(QTreeWidgetItem* item) {
    if (!item || !doc_ || item->data(0, LineRole).toInt() < 0)
        return;
    if (SymbolKind(item->data(0, KindRole).toInt()) == SymbolKind::Include) {
        // After the click is done: the new document takes over this list.
        const QString included = item->data(0, NameRole).toString();
        QTimer::singleShot(0, this, [this, included] { openInclude(included); });
        return;
    }
    const int line = item->data(0, LineRole).toInt();
    frmEditor* doc = doc_;
    skipOnFailure([&] {
        doc->View->showLine(line);
        doc->View->setFocus();
    });
}

void CodeExplorer::openInclude(const QString& included) {
    if (!doc_)
        return;
    try {
        const QString compiler = setting(globals().UsePBP ? Key::CompilerPathName : Key::CompilerPathName1);
        const QString path = includedFile(included, doc_->View->document().PathName(), compiler);
        if (path.isEmpty())
            throw fileNotFound(QStringLiteral("File not found: ") + included);
        frmEditor& opened = frame_.editors().show(path, false);
        opened.View->setFocus();
    } catch (const Failure& f) {
        frame_.ShowError(f);
    }
}
