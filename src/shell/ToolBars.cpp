#include "shell/ToolBars.h"

#include <QAbstractItemView>
#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QFile>
#include <QIcon>
#include <QIconEngine>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPixmap>
#include <QProxyStyle>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleFactory>
#include <QToolBar>
#include <QToolButton>

namespace {

// The standard band's look: no spacing or margin around its tools, separators 5 pixels wide, and buttons
// their picture and 7 pixels. Everything else is the application style's. Set on the band and on its buttons
// and separators only; a style sheet gave the same look, but restyling each of the band's children cost
// every start a millisecond and a half.
class BandStyle : public QProxyStyle {
public:
    BandStyle() : QProxyStyle(QStyleFactory::create(QApplication::style()->name())) {}
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        switch (metric) {
        case PM_ToolBarItemSpacing:
        case PM_ToolBarItemMargin:
        case PM_ToolBarFrameWidth:
            return 0;
        case PM_ToolBarSeparatorExtent:
            return 5;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        if (type == CT_ToolButton)
            return size + QSize(7, 7);
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    }
};

// The bundled picture: 16 px, and 32 px for dense screens. Each file is read when a size it serves is first
// asked for: a start on an ordinary screen reads half the files, and a tool shown only in a menu none.
class ToolIconEngine : public QIconEngine {
public:
    ToolIconEngine(QString normal, QString dense) : normal_(std::move(normal)), dense_(std::move(dense)) {}

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return icon(size).pixmap(size, 1.0, mode, state);
    }
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatio() : 1.0;
        QPixmap picture = pixmap(rect.size() * ratio, mode, state);
        picture.setDevicePixelRatio(ratio);
        const QSize shown = picture.deviceIndependentSize().toSize();
        painter->drawPixmap(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, shown, rect), picture);
    }
    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override {
        QSize best = wantsDense(size) ? QSize(32, 32) : QSize(16, 16);
        if (best.width() > size.width() || best.height() > size.height())
            best.scale(size, Qt::KeepAspectRatio);
        return best;
    }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        return hasDense() ? QList<QSize>{{16, 16}, {32, 32}} : QList<QSize>{{16, 16}};
    }
    bool isNull() override { return false; }
    QIconEngine* clone() const override { return new ToolIconEngine(*this); }
    QString key() const override { return QStringLiteral("ToolIconEngine"); }

private:
    bool hasDense() {
        if (!denseKnown_) {
            denseKnown_ = true;
            denseThere_ = QFile::exists(dense_);
        }
        return denseThere_;
    }
    bool wantsDense(const QSize& size) { return (size.width() > 16 || size.height() > 16) && hasDense(); }
    QIcon& icon(const QSize& size) {
        if (!normalRead_) {
            normalRead_ = true;
            // Named as PNG: left to guess, the reader tries every image plugin on the file.
            icon_.addPixmap(QPixmap(normal_, "PNG"));
        }
        if (!denseRead_ && wantsDense(size)) {
            denseRead_ = true;
            // The reader takes "@2x" in the name for a ratio; here the size alone picks the file.
            QPixmap big(dense_, "PNG");
            big.setDevicePixelRatio(1);
            icon_.addPixmap(big);
        }
        return icon_;
    }

    QString normal_, dense_;
    QIcon icon_;
    bool normalRead_ = false, denseRead_ = false, denseKnown_ = false, denseThere_ = false;
};

QIcon toolIcon(const Tool& tool) {
    const QString file = tool.icon();
    if (file.isEmpty())
        return {};
    QString dense = file;
    dense.insert(dense.lastIndexOf(QLatin1Char('.')), QLatin1String("@2x"));
    return QIcon(new ToolIconEngine(file, dense));
}

bool isWidgetKind(ToolKind k) { return k == ToolKind::ComboBox || k == ToolKind::Label; }

}  // namespace

// --- ToolComboBox ------------------------------------------------------------------------------

ToolComboBox::ToolComboBox(QWidget* parent) : QComboBox(parent) {
    // The list can close by a pick, Escape or a click elsewhere; all of them hide its window.
    view()->parentWidget()->installEventFilter(this);
}

bool ToolComboBox::eventFilter(QObject* watched, QEvent* event) {
    // Queued: a pick is applied only after the list has been hidden.
    if (event->type() == QEvent::Hide && watched == view()->parentWidget())
        QMetaObject::invokeMethod(this, &ToolComboBox::closedUp, Qt::QueuedConnection);
    return QComboBox::eventFilter(watched, event);
}

void ToolComboBox::wheelEvent(QWheelEvent* event) {
    // A selection changes only through the open list, so that every change ends in a close-up.
    event->ignore();
}

void ToolComboBox::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        showPopup();
        return;
    default:
        // Typing would search the closed list and so pick without a close-up: open it instead.
        if (!event->text().isEmpty() && event->text().at(0).isPrint() && event->modifiers() == Qt::NoModifier) {
            showPopup();
            return;
        }
        QComboBox::keyPressEvent(event);
    }
}

// --- SSActiveToolBars --------------------------------------------------------------------------

SSActiveToolBars::SSActiveToolBars(QObject* parent) : QObject(parent) {
    addObserver(this);
}

SSActiveToolBars::~SSActiveToolBars() {
    removeObserver(this);
    // The frame may outlive the control: its widgets must not call into a model that is gone.
    for (const auto& a : std::as_const(actions_))
        if (a)
            a->disconnect(this);
    for (const auto& w : std::as_const(widgets_))
        if (w)
            w->disconnect(this);
    for (const auto& m : std::as_const(menus_))
        if (m)
            m->disconnect(this);
}

void SSActiveToolBars::attach(QMainWindow& frame) {
    if (frame_)
        return;
    frame_ = &frame;
    for (const auto& t : Tools()) {
        if (t->kind() != ToolKind::Menu)
            continue;
        Tool* menuTool = t.get();
        auto* m = new QMenu(t->Caption(), &frame);
        m->setObjectName(t->ID());
        connect(m, &QMenu::aboutToShow, this, [this, menuTool] { emit ToolClick(*menuTool); });
        menus_.insert(menuTool, m);
    }

    menuBar_ = frame.menuBar();
    standard_ = new QToolBar(QLatin1String(kStandardBand), &frame);
    standard_->setObjectName(QLatin1String(kStandardBand));
    standard_->setIconSize(QSize(16, 16));
    standard_->setToolButtonStyle(Qt::ToolButtonIconOnly);
    // Tight spacing, as bands of 16-pixel icons have: the whole band, "Files:" label included, fits the
    // frame's first-start width.
    bandStyle_ = new BandStyle;
    bandStyle_->setParent(standard_);
    standard_->setStyle(bandStyle_);
    // No band layout is kept, so the user gets no way to move or hide it.
    standard_->setMovable(false);
    standard_->toggleViewAction()->setVisible(false);
    frame.addToolBar(Qt::TopToolBarArea, standard_);

    for (const auto& b : bands())
        for (int i = 0; i < b->Tools().Count(); ++i)
            buildPlace(b->Tools(), i);
    for (const auto& t : Tools())
        if (t->kind() == ToolKind::Menu)
            for (int i = 0; i < t->Menu().Tools().Count(); ++i)
                buildPlace(t->Menu().Tools(), i);
    redrawChanged(Redraw());
}

void SSActiveToolBars::PopupMenu(const QString& menuId) {
    Tool& t = Tools().Item(menuId);
    t.Menu();  // a failure for anything but a menu
    if (QMenu* m = menus_.value(&t.base()))
        m->popup(QCursor::pos());
}

QMenu* SSActiveToolBars::menu(const QString& menuId) const {
    Tool* t = const_cast<SSActiveToolBars*>(this)->Tools().find(menuId);
    return t ? menus_.value(&t->base()).data() : nullptr;
}

QWidget* SSActiveToolBars::containerOf(const ToolList& list) const {
    if (list.menuTool())
        return menus_.value(list.menuTool());
    if (list.isBand()) {
        if (list.owner().compare(QLatin1String(kMenuBarBand), Qt::CaseInsensitive) == 0)
            return menuBar_;
        if (list.owner().compare(QLatin1String(kStandardBand), Qt::CaseInsensitive) == 0)
            return standard_;
    }
    return nullptr;
}

void SSActiveToolBars::buildPlace(ToolList& list, int index) {
    QWidget* container = containerOf(list);
    if (!container)
        return;
    Tool& place = list.at(index);
    QAction* before = index + 1 < list.Count() ? actions_.value(&list.at(index + 1)).data() : nullptr;
    auto* bar = qobject_cast<QToolBar*>(container);
    QAction* a = nullptr;
    if (bar && !place.isSeparator() && isWidgetKind(place.kind())) {
        a = makeWidgetAction(place, *bar, before);
    } else {
        a = makeAction(place, container);
        container->insertAction(before, a);
    }
    actions_.insert(&place, a);
    if (bar && bar == standard_) {
        QWidget* shown = bar->widgetForAction(a);
        if (qobject_cast<QToolButton*>(shown) || (shown && shown->inherits("QToolBarSeparator")))
            shown->setStyle(bandStyle_);
    }
    applyStates(place);
}

QAction* SSActiveToolBars::makeAction(Tool& place, QWidget* container) {
    auto* a = new QAction(container);
    if (place.isSeparator()) {
        a->setSeparator(true);
        return a;
    }
    Tool& tool = place.base();
    a->setText(place.Caption());
    if (!tool.ToolTip().isEmpty())
        a->setToolTip(tool.ToolTip());
    a->setIcon(toolIcon(tool));
    // The keys go on the menu entry alone: two actions with one key would make the key ambiguous, and
    // the menu shows them. Where the editing control takes a key itself (copy, undo ...), the control's
    // handling wins and the entry's key doesn't fire a second time.
    if (qobject_cast<QMenu*>(container) && !tool.shortcuts().isEmpty())
        a->setShortcuts(tool.shortcuts());
    if (tool.kind() == ToolKind::Menu) {
        a->setMenu(menus_.value(&tool).data());
        return a;
    }
    if (tool.kind() == ToolKind::Label)
        return a;
    if (tool.kind() == ToolKind::StateButton) {
        a->setCheckable(true);
        if (!tool.Group().isEmpty()) {
            const QString key = QString::number(reinterpret_cast<quintptr>(container)) + QLatin1Char('/') +
                                tool.Group().toLower();
            QPointer<QActionGroup>& g = groups_[key];
            if (!g)
                g = new QActionGroup(container);
            g->addAction(a);
        }
    }
    connect(a, &QAction::triggered, this, [this, &place, a] {
        if (a->isCheckable())
            place.setPressed(a->isChecked());
        emit ToolClick(place);
    });
    return a;
}

QAction* SSActiveToolBars::makeWidgetAction(Tool& place, QToolBar& bar, QAction* before) {
    Tool& tool = place.base();
    QWidget* w = nullptr;
    if (tool.kind() == ToolKind::ComboBox) {
        auto* combo = new ToolComboBox(&bar);
        ToolCombo& list = tool.ComboBox();
        for (int i = 0; i < list.ListCount(); ++i)
            combo->addItem(list.List(i));
        combo->setCurrentIndex(list.ListIndex());
        connect(combo, &QComboBox::currentIndexChanged, this, [&tool](int i) { tool.ComboBox().userSelected(i); });
        connect(combo, &ToolComboBox::closedUp, this, [this, &place] { emit ComboCloseUp(place); });
        w = combo;
    } else {
        auto* label = new QLabel(place.Caption(), &bar);
        label->setIndent(4);
        w = label;
    }
    w->setObjectName(tool.ID());
    if (place.Width() > 0)
        w->setFixedWidth(place.Width());
    if (!tool.ToolTip().isEmpty())
        w->setToolTip(tool.ToolTip());
    widgets_.insert(&place, w);
    return bar.insertWidget(before, w);
}

void SSActiveToolBars::applyStates(Tool& place) {
    const Tool& tool = place.base();
    if (QAction* a = actions_.value(&place)) {
        a->setEnabled(tool.Enabled());
        a->setVisible(tool.Visible());
        if (a->isCheckable())
            a->setChecked(tool.Pressed());
    }
    if (QWidget* w = widgets_.value(&place))
        w->setEnabled(tool.Enabled());
}

void SSActiveToolBars::toolChanged(Tool& tool, Property property) {
    if (property == Property::Caption) {
        if (QAction* a = actions_.value(&tool))
            a->setText(tool.Caption());
        if (auto* label = qobject_cast<QLabel*>(widgets_.value(&tool).data()))
            label->setText(tool.Caption());
        return;
    }
    for (Tool* p : tool.places())
        applyStates(*p);
}

void SSActiveToolBars::memberAdded(ToolList& list, int index) { buildPlace(list, index); }

void SSActiveToolBars::memberRemoving(ToolList& list, int index) {
    Tool& member = list.at(index);
    if (list.isMain()) {
        delete menus_.take(&member).data();
        return;
    }
    QPointer<QWidget> w = widgets_.take(&member);
    delete actions_.take(&member).data();
    delete w.data();
}

void SSActiveToolBars::redrawChanged(bool redraw) {
    if (menuBar_)
        menuBar_->setUpdatesEnabled(redraw);
    if (standard_)
        standard_->setUpdatesEnabled(redraw);
}

void SSActiveToolBars::comboChanged(ToolCombo& combo, ComboChange change) {
    for (Tool* p : combo.tool().places()) {
        auto* box = qobject_cast<QComboBox*>(widgets_.value(p).data());
        if (!box)
            continue;
        const QSignalBlocker block(box);
        switch (change) {
        case ComboChange::Cleared:
            box->clear();
            break;
        case ComboChange::ItemAdded: {
            QStringList added;
            for (int i = box->count(); i < combo.ListCount(); ++i)
                added.append(combo.List(i));
            box->addItems(added);
            // The widget selects a first entry by itself; the list's own index stands.
            box->setCurrentIndex(combo.ListIndex());
            break;
        }
        case ComboChange::IndexSet:
            box->setCurrentIndex(combo.ListIndex());
            break;
        }
    }
}
