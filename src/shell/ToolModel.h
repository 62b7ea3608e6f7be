#pragma once
// The tools of the frame as data: every tool once in the main collection, and its places in the
// ordered member lists of the menus and bands. No widgets here; the tool bar control builds them.
//
// A tool of the main collection owns the states that hold in all places (enabled, visible, pressed);
// a place owns its caption and width. Separators and entries added at run time under an id that
// names no tool exist only in their list and are their own tool.

#include "core/DeviceCombo.h"
#include "shell/ToolTable.h"

#include <QString>
#include <QKeySequence>
#include <QList>
#include <QStringList>

#include <memory>
#include <vector>

class Tool;
class ToolList;
class ToolMenu;
class ToolCombo;
class Band;
class ToolModel;

// What a view of the model hears. Every write is reported, also one that changes nothing.
class ToolObserver {
public:
    enum class Property { Caption, Enabled, Visible, Pressed };
    // ItemAdded: one or more entries came at the end.
    enum class ComboChange { Cleared, ItemAdded, IndexSet };
    virtual ~ToolObserver() = default;
    // Caption: tool is the place (or main tool) whose caption was written. Others: the tool that holds the state.
    virtual void toolChanged(Tool& tool, Property property) = 0;
    virtual void memberAdded(ToolList& list, int index) = 0;     // index from 0
    virtual void memberRemoving(ToolList& list, int index) = 0;  // still in the list
    virtual void redrawChanged(bool redraw) = 0;
    virtual void comboChanged(ToolCombo& combo, ComboChange change) = 0;
};

// The drop-down list of a combo box tool. Code's writes never raise ComboCloseUp.
class ToolCombo : public DeviceCombo {
public:
    void Clear() override;
    void AddItem(const QString& item) override;
    void AddItems(const QStringList& items) override;
    int ListCount() const override;
    // The entry at index from 0; empty outside the list.
    QString List(int index) const override;
    // Selected index from 0, -1 for none.
    int ListIndex() const override;
    // An index outside the list leaves no selection.
    void SetListIndex(int index) override;

    Tool& tool() const { return *tool_; }
    // The user picked an entry in the widget: nothing is reported back.
    void userSelected(int index);

private:
    friend class Tool;
    friend class ToolModel;
    ToolCombo(ToolModel& model, Tool& tool) : model_(&model), tool_(&tool) {}
    ToolModel* model_;
    Tool* tool_;
    QStringList items_;
    int index_ = -1;
};

// An ordered list of tools: the main collection, the members of a menu, or those of a band.
class ToolList {
public:
    // By id in any letter case; an unknown id is a failure.
    Tool& Item(const QString& id);
    // The same without the failure: null when no member has the id.
    Tool* find(const QString& id) const;
    // Members, separators included.
    int Count() const { return static_cast<int>(members_.size()); }
    // Inserts at position from 1 (up to Count() + 1); the members behind move up. "separator" gives a
    // separator; the id of a tool of the main collection a place of that tool; any other id a button
    // whose caption is the id. An id already in the list is a failure.
    Tool& Add(const QString& id, int position);
    Tool& Add(const QString& id) { return Add(id, Count() + 1); }
    // Takes out the first member with the id; an unknown id is a failure.
    void Remove(const QString& id);

    // The member at an index from 0.
    Tool& at(int index) const { return *members_.at(static_cast<size_t>(index)); }
    int indexOf(const Tool& member) const;

    bool isMain() const { return kind_ == Kind::Main; }
    bool isBand() const { return kind_ == Kind::Band; }
    // The menu tool whose members these are; null for a band and the main collection.
    Tool* menuTool() const { return menuTool_; }
    // The band's name or the menu tool's id.
    QString owner() const;

    auto begin() const { return members_.begin(); }
    auto end() const { return members_.end(); }

private:
    friend class ToolModel;
    friend class Tool;
    friend class ToolMenu;
    friend class Band;
    enum class Kind { Main, Menu, Band };
    ToolList(ToolModel& model, Kind kind, QString name, Tool* menuTool)
        : model_(&model), kind_(kind), name_(std::move(name)), menuTool_(menuTool) {}
    std::unique_ptr<Tool> makeMember(const QString& id);
    void removeAt(int index);

    ToolModel* model_;
    Kind kind_;
    QString name_;
    Tool* menuTool_;
    std::vector<std::unique_ptr<Tool>> members_;
};

class ToolMenu {
public:
    ToolList& Tools() { return list_; }
    Tool& tool() const { return *list_.menuTool(); }

private:
    friend class Tool;
    friend class ToolModel;
    ToolMenu(ToolModel& model, Tool& tool);
    ToolList list_;
};

class Band {
public:
    const QString& Name() const { return name_; }
    ToolList& Tools() { return list_; }

private:
    friend class ToolModel;
    Band(ToolModel& model, const QString& name);
    QString name_;
    ToolList list_;
};

class Tool {
public:
    ~Tool();
    Tool(const Tool&) = delete;
    Tool& operator=(const Tool&) = delete;

    const QString& ID() const { return id_; }
    ToolKind kind() const { return base_->kind_; }
    bool isSeparator() const { return separator_; }

    // The caption of this place; written on a tool of the main collection it goes to all its places.
    const QString& Caption() const { return caption_; }
    void setCaption(const QString& caption);
    // States of the tool, the same in all places.
    bool Enabled() const { return base_->enabled_; }
    void setEnabled(bool enabled);
    bool Visible() const { return base_->visible_; }
    void setVisible(bool visible);
    // State buttons: pressing one of a group releases the others of that group.
    bool Pressed() const { return base_->pressed_; }
    void setPressed(bool pressed);

    const QString& ToolTip() const { return base_->tooltip_; }
    const QString& Group() const { return base_->group_; }
    int Width() const { return width_; }
    // The bundled picture's resource path; empty for a tool without one.
    const QString& icon() const { return base_->icon_; }
    // The keys of the tool's menu entry; empty for none.
    const QList<QKeySequence>& shortcuts() const { return base_->shortcuts_; }

    // Of a menu tool: its member list. Anything else is a failure.
    ToolMenu& Menu();
    // Of a combo box tool: its list. Anything else is a failure.
    ToolCombo& ComboBox();

    // The tool of the main collection this place shows; itself for a main tool or a list-only member.
    Tool& base() const { return *base_; }
    // The list this place stands in; null for a tool of the main collection.
    ToolList* list() const { return list_; }
    // Every place that shows this tool's states.
    std::vector<Tool*> places() const;

private:
    friend class ToolList;
    friend class ToolModel;
    Tool(ToolModel& model, const QString& id) : model_(&model), id_(id) {}

    ToolModel* model_;
    Tool* base_ = this;
    ToolList* list_ = nullptr;
    QString id_;
    QString caption_;
    int width_ = 0;
    bool separator_ = false;
    // Held by the base only.
    ToolKind kind_ = ToolKind::Button;
    bool enabled_ = true;
    bool visible_ = true;
    bool pressed_ = false;
    QString tooltip_, group_, icon_;
    QList<QKeySequence> shortcuts_;
    std::vector<Tool*> placesOfBase_;
    std::unique_ptr<ToolMenu> menu_;
    std::unique_ptr<ToolCombo> combo_;
};

class ToolModel {
public:
    // Every tool, menu and band in its initial state.
    ToolModel();
    virtual ~ToolModel();
    ToolModel(const ToolModel&) = delete;
    ToolModel& operator=(const ToolModel&) = delete;

    // The main collection of all tools.
    ToolList& Tools() { return tools_; }
    // The band of a name in any letter case; an unknown name is a failure.
    Band& Bands(const QString& name);
    const std::vector<std::unique_ptr<Band>>& bands() const { return bands_; }

    bool Redraw() const { return redraw_; }
    // False holds repainting back, true shows all changes at once.
    void setRedraw(bool redraw);

    void addObserver(ToolObserver* observer);
    void removeObserver(ToolObserver* observer);

private:
    friend class Tool;
    friend class ToolList;
    friend class ToolCombo;
    template <class F>
    void notify(F&& f) {
        for (ToolObserver* o : observers_)
            f(*o);
    }

    ToolList tools_;
    std::vector<std::unique_ptr<Band>> bands_;
    std::vector<ToolObserver*> observers_;
    bool redraw_ = true;
    bool dying_ = false;
};

// The failure a list gives for an id it doesn't hold.
inline constexpr long kToolNotFound = 35601;
