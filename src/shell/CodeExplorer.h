#pragma once
// The Code Explorer: a dock beside the documents that lists what the active program declares, grouped by
// kind, in the order of the text or by name. A row takes the caret to its line; an INCLUDE's row opens the
// file. It follows the registry: the active document, its typing (after a short pause, no save needed),
// its close. While the dock is hidden nothing is scanned.

#include "language/ProgramScanner.h"

#include <QDockWidget>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <vector>

class Frame;
class frmEditor;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

class CodeExplorer : public QDockWidget {
    Q_OBJECT
public:
    CodeExplorer(Frame& frame, QWidget* parent = nullptr);

    // The document listed; null with none.
    frmEditor* document() const;
    QTreeWidget* tree() const { return tree_; }
    bool byName() const;
    void setByName(bool byName);
    // Lists the active document now; the typing pause does it otherwise.
    void refresh();
    // How often the list was made anew (a test sees what an unchanged program costs).
    int rebuilds() const { return rebuilds_; }
    // The caret to the row's line and the focus to the document; an INCLUDE's file opens.
    void go(QTreeWidgetItem* item);
    // The pause after typing before the list follows.
    static constexpr int kTypingPauseMs = 250;

protected:
    void showEvent(QShowEvent* e) override;

private:
    void Editors_Activated(frmEditor* doc);
    void Editors_TextChanged(frmEditor* doc);
    void Editors_Closed(frmEditor* doc);
    void rebuild();
    void fitColumns(const std::vector<ProgramSymbol>& symbols);
    void openInclude(const QString& included);

    Frame& frame_;
    QTreeWidget* tree_ = nullptr;
    QToolButton* byLine_ = nullptr;
    QToolButton* byName_ = nullptr;
    QTimer typing_;
    QPointer<frmEditor> doc_;
    // What the list shows, to leave it alone when a scan finds the same.
    std::vector<ProgramSymbol> shown_;
    bool shownByName_ = false;
    bool stale_ = true;
    QSet<int> collapsed_;  // kinds the user folded away
    int rebuilds_ = 0;
};
