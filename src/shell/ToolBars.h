#pragma once
// The frame's tool bar and menu control: the tool model built into QActions, QMenus, the menu bar
// and the toolbar "Standard", kept in step with every write to the model.

#include "shell/ToolModel.h"

#include <QComboBox>
#include <QHash>
#include <QMenuBar>
#include <QObject>
#include <QPointer>
#include <QToolBar>

class QAction;
class QActionGroup;
class QLabel;
class QMainWindow;
class QMenu;
class QWidget;

// A combo box that says when its drop-down list has closed, after the user's pick has been applied.
class ToolComboBox : public QComboBox {
    Q_OBJECT
public:
    explicit ToolComboBox(QWidget* parent = nullptr);
    bool eventFilter(QObject* watched, QEvent* event) override;
signals:
    void closedUp();

protected:
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

class SSActiveToolBars : public QObject, public ToolModel, private ToolObserver {
    Q_OBJECT
public:
    explicit SSActiveToolBars(QObject* parent = nullptr);
    ~SSActiveToolBars() override;

    // Builds the menu bar and the toolbar "Standard" of the frame from the model as it stands. Once.
    void attach(QMainWindow& frame);

    // Opens a menu tool's menu at the mouse as a context menu; opening it counts as its click.
    void PopupMenu(const QString& menuId);

    // The Qt objects, for the frame and for tests.
    QAction* action(const Tool& place) const { return actions_.value(&place); }
    QMenu* menu(const QString& menuId) const;
    QMenuBar* menuBar() const { return menuBar_; }
    QToolBar* standardBar() const { return standard_; }
    // The widget of a combo box or label place on a band.
    QWidget* widget(const Tool& place) const { return widgets_.value(&place); }

signals:
    // A button, state button or menu item was clicked, or a menu opened (then the tool is the menu's own).
    void ToolClick(Tool& tool);
    // The user closed a combo box's drop-down list, with or without a new selection.
    void ComboCloseUp(Tool& tool);

private:
    void toolChanged(Tool& tool, Property property) override;
    void memberAdded(ToolList& list, int index) override;
    void memberRemoving(ToolList& list, int index) override;
    void redrawChanged(bool redraw) override;
    void comboChanged(ToolCombo& combo, ComboChange change) override;

    QWidget* containerOf(const ToolList& list) const;
    void buildPlace(ToolList& list, int index);
    QAction* makeAction(Tool& place, QWidget* container);
    QAction* makeWidgetAction(Tool& place, QToolBar& bar, QAction* before);
    void applyStates(Tool& place);

    QPointer<QMainWindow> frame_;
    QPointer<QMenuBar> menuBar_;
    QPointer<QToolBar> standard_;
    QStyle* bandStyle_ = nullptr;  // the band's, a child of it
    QHash<const Tool*, QPointer<QMenu>> menus_;              // by menu tool of the main collection
    QHash<const Tool*, QPointer<QAction>> actions_;          // by place
    QHash<const Tool*, QPointer<QWidget>> widgets_;          // combo box and label places
    QHash<QString, QPointer<QActionGroup>> groups_;          // by container and group name
};
