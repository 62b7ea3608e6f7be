#include "shell/ToolModel.h"

#include "platform/Failure.h"

#include <algorithm>

namespace {

const QString kSource = QStringLiteral("ToolBars");

// The numbers a collection of the platform's common controls gives.
constexpr long kIndexOutOfBounds = 35600;
constexpr long kKeyNotUnique = 35602;
constexpr long kNotSupported = 438;

bool sameId(const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

bool isSeparatorId(const QString& id) { return sameId(id, QLatin1String(kSeparatorId)); }

}  // namespace

// --- ToolCombo ---------------------------------------------------------------------------------

void ToolCombo::Clear() {
    items_.clear();
    index_ = -1;
    model_->notify([&](ToolObserver& o) { o.comboChanged(*this, ToolObserver::ComboChange::Cleared); });
}

void ToolCombo::AddItem(const QString& item) {
    items_.append(item);
    model_->notify([&](ToolObserver& o) { o.comboChanged(*this, ToolObserver::ComboChange::ItemAdded); });
}

void ToolCombo::AddItems(const QStringList& items) {
    if (items.isEmpty())
        return;
    items_.append(items);
    model_->notify([&](ToolObserver& o) { o.comboChanged(*this, ToolObserver::ComboChange::ItemAdded); });
}

int ToolCombo::ListCount() const { return static_cast<int>(items_.size()); }

QString ToolCombo::List(int index) const { return items_.value(index); }

int ToolCombo::ListIndex() const { return index_; }

void ToolCombo::SetListIndex(int index) {
    index_ = index >= 0 && index < ListCount() ? index : -1;
    model_->notify([&](ToolObserver& o) { o.comboChanged(*this, ToolObserver::ComboChange::IndexSet); });
}

void ToolCombo::userSelected(int index) {
    if (index >= -1 && index < ListCount())
        index_ = index;
}

// --- ToolList ----------------------------------------------------------------------------------

Tool* ToolList::find(const QString& id) const {
    for (const auto& m : members_)
        if (sameId(m->ID(), id))
            return m.get();
    return nullptr;
}

Tool& ToolList::Item(const QString& id) {
    if (Tool* t = find(id))
        return *t;
    throw Failure(kToolNotFound, QStringLiteral("Element not found: ") + id, kSource);
}

int ToolList::indexOf(const Tool& member) const {
    for (int i = 0; i < Count(); ++i)
        if (members_[static_cast<size_t>(i)].get() == &member)
            return i;
    return -1;
}

QString ToolList::owner() const { return menuTool_ ? menuTool_->ID() : name_; }

std::unique_ptr<Tool> ToolList::makeMember(const QString& id) {
    std::unique_ptr<Tool> t(new Tool(*model_, id));
    if (isMain()) {
        t->caption_ = id;
        return t;
    }
    t->list_ = this;
    if (isSeparatorId(id)) {
        t->id_ = QLatin1String(kSeparatorId);
        t->separator_ = true;
        return t;
    }
    if (Tool* base = model_->tools_.find(id)) {
        t->id_ = base->id_;
        t->base_ = base;
        t->caption_ = base->caption_;
        t->width_ = base->width_;
        base->placesOfBase_.push_back(t.get());
        return t;
    }
    t->caption_ = id;
    return t;
}

Tool& ToolList::Add(const QString& id, int position) {
    if (position < 1 || position > Count() + 1)
        throw Failure(kIndexOutOfBounds, QStringLiteral("Index out of bounds"), kSource);
    if (isMain() && isSeparatorId(id))
        throw Failure(kNotSupported, QStringLiteral("A separator stands only in a menu or band"), kSource);
    if (!isSeparatorId(id) && find(id))
        throw Failure(kKeyNotUnique, QStringLiteral("Key is not unique in collection: ") + id, kSource);
    const int index = position - 1;
    Tool& added = **members_.insert(members_.begin() + index, makeMember(id));
    model_->notify([&](ToolObserver& o) { o.memberAdded(*this, index); });
    return added;
}

void ToolList::removeAt(int index) {
    Tool& member = at(index);
    if (isMain()) {
        // A tool leaves its places first, and a menu its members.
        if (member.menu_) {
            ToolList& items = member.menu_->Tools();
            while (items.Count() > 0)
                items.removeAt(items.Count() - 1);
        }
        const std::vector<Tool*> places = member.placesOfBase_;
        for (Tool* p : places)
            p->list_->removeAt(p->list_->indexOf(*p));
    }
    model_->notify([&](ToolObserver& o) { o.memberRemoving(*this, index); });
    members_.erase(members_.begin() + index);
}

void ToolList::Remove(const QString& id) {
    Tool& member = Item(id);
    removeAt(indexOf(member));
}

// --- ToolMenu, Band ----------------------------------------------------------------------------

ToolMenu::ToolMenu(ToolModel& model, Tool& tool) : list_(model, ToolList::Kind::Menu, {}, &tool) {}

Band::Band(ToolModel& model, const QString& name) : name_(name), list_(model, ToolList::Kind::Band, name, nullptr) {}

// --- Tool --------------------------------------------------------------------------------------

Tool::~Tool() {
    if (base_ != this && !model_->dying_)
        std::erase(base_->placesOfBase_, this);
}

std::vector<Tool*> Tool::places() const {
    if (list_)
        return {const_cast<Tool*>(this)};
    return placesOfBase_;
}

void Tool::setCaption(const QString& caption) {
    caption_ = caption;
    model_->notify([&](ToolObserver& o) { o.toolChanged(*this, ToolObserver::Property::Caption); });
    if (!list_) {
        for (Tool* p : placesOfBase_) {
            p->caption_ = caption;
            model_->notify([&](ToolObserver& o) { o.toolChanged(*p, ToolObserver::Property::Caption); });
        }
    }
}

void Tool::setEnabled(bool enabled) {
    base_->enabled_ = enabled;
    model_->notify([&](ToolObserver& o) { o.toolChanged(*base_, ToolObserver::Property::Enabled); });
}

void Tool::setVisible(bool visible) {
    base_->visible_ = visible;
    model_->notify([&](ToolObserver& o) { o.toolChanged(*base_, ToolObserver::Property::Visible); });
}

void Tool::setPressed(bool pressed) {
    Tool& self = *base_;
    if (pressed && !self.group_.isEmpty()) {
        for (const auto& other : model_->tools_) {
            if (other.get() != &self && other->pressed_ && sameId(other->group_, self.group_)) {
                other->pressed_ = false;
                model_->notify([&](ToolObserver& o) { o.toolChanged(*other, ToolObserver::Property::Pressed); });
            }
        }
    }
    self.pressed_ = pressed;
    model_->notify([&](ToolObserver& o) { o.toolChanged(self, ToolObserver::Property::Pressed); });
}

ToolMenu& Tool::Menu() {
    if (!base_->menu_)
        throw Failure(kNotSupported, id_ + QStringLiteral(" is not a menu"), kSource);
    return *base_->menu_;
}

ToolCombo& Tool::ComboBox() {
    if (!base_->combo_)
        throw Failure(kNotSupported, id_ + QStringLiteral(" is not a combo box"), kSource);
    return *base_->combo_;
}

// --- ToolModel ---------------------------------------------------------------------------------

ToolModel::ToolModel() : tools_(*this, ToolList::Kind::Main, {}, nullptr) {
    for (const ToolDef& d : toolTable()) {
        Tool& t = tools_.Add(QLatin1String(d.id));
        t.kind_ = d.kind;
        t.caption_ = QString::fromUtf8(d.caption);
        t.tooltip_ = QString::fromUtf8(d.tooltip);
        t.group_ = QString::fromUtf8(d.group);
        t.enabled_ = d.enabled;
        t.visible_ = d.visible;
        t.pressed_ = d.pressed;
        t.width_ = d.width;
        t.icon_ = QString::fromUtf8(d.icon ? d.icon : "");
        t.shortcuts_ = toolShortcuts(d, &QKeySequence::keyBindings);
        if (d.kind == ToolKind::Menu)
            t.menu_.reset(new ToolMenu(*this, t));
        if (d.kind == ToolKind::ComboBox)
            t.combo_.reset(new ToolCombo(*this, t));
    }
    for (const ListDef& l : listTable()) {
        ToolList* list = nullptr;
        if (l.isBand) {
            bands_.push_back(std::unique_ptr<Band>(new Band(*this, QLatin1String(l.owner))));
            list = &bands_.back()->Tools();
        } else {
            list = &tools_.Item(QLatin1String(l.owner)).Menu().Tools();
        }
        for (const char* id : l.members)
            list->Add(QLatin1String(id));
    }
}

ToolModel::~ToolModel() { dying_ = true; }

Band& ToolModel::Bands(const QString& name) {
    for (const auto& b : bands_)
        if (sameId(b->Name(), name))
            return *b;
    throw Failure(kToolNotFound, QStringLiteral("Element not found: ") + name, kSource);
}

void ToolModel::setRedraw(bool redraw) {
    redraw_ = redraw;
    notify([&](ToolObserver& o) { o.redrawChanged(redraw); });
}

void ToolModel::addObserver(ToolObserver* observer) {
    if (std::find(observers_.begin(), observers_.end(), observer) == observers_.end())
        observers_.push_back(observer);
}

void ToolModel::removeObserver(ToolObserver* observer) { std::erase(observers_, observer); }
