#include "gui_lib/controls/small/TabGroupItem.h"

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/buttons/ParentGroups.h"
#include "gui_lib/widget/AliveGuard.h"

namespace gui {

namespace {

ParentGroups<TabGroupItem>& groups() {
    // Never destroyed: an item may outlive static destruction.
    static auto* const instance = new ParentGroups<TabGroupItem>;
    return *instance;
}

}  // namespace

TabGroupItem::TabGroupItem(bool newState) : state(newState) {
    groups().join(nullptr, this);
    skin = new skin::Skin(this, true);
    skin->load("tabGroupItemSkin");
}

TabGroupItem::~TabGroupItem() { groups().leave(getParent(), this); }

void TabGroupItem::copyParams(TabGroupItem* target) const {
    Widget::copyParams(target);
    target->setState(state);
}

Widget* TabGroupItem::clone() const {
    auto* const copy = new TabGroupItem(false);
    skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* TabGroupItem::getWidgetType() const { return "TabGroupItem"; }

skin::InteractiveState TabGroupItem::getInteractiveState() const { return getInteractiveState_(hovered, false); }

int TabGroupItem::getInnerState() const { return state ? 2 : 1; }

bool TabGroupItem::getHasMouseInputAtScreenPoint(osg::Vec2i const&) const { return true; }

// --- Mouse ---

void TabGroupItem::onMouseEnter(osg::Vec2i const& point) {
    hovered = true;
    setDirty(DirtySelf);
    Widget::onMouseEnter(point);
}

void TabGroupItem::onMouseLeave(osg::Vec2i const& point) {
    hovered = false;
    setDirty(DirtySelf);
    Widget::onMouseLeave(point);
}

void TabGroupItem::onMouseDown(osg::Vec2i const& point, MouseButton button) {
    AliveGuard const guard(this);
    if (button == MouseButtonMain && !state) {
        for (WidgetHandler* member : groups().getMembers(getParent())) {
            auto* const other = static_cast<TabGroupItem*>(WidgetHandler::get(member));
            if (!other || !other->state)
                continue;
            other->onHide_();
            break;
        }
        if (guard.dead())
            return;
        setState(true);
        if (guard.dead())
            return;
        setDirty(DirtySelf);
        onShow_();
        if (guard.dead())
            return;
    }
    Widget::onMouseDown(point, button);
}

// --- Selection ---

void TabGroupItem::setState(bool newState) {
    if (newState != state)
        onStateChanged_(newState);
}

bool TabGroupItem::getState() const { return state; }

void TabGroupItem::onStateChanged_(bool newState) {
    state = newState;
    setDirty(DirtySelf);
    if (newState)
        deselectOthers_();
}

void TabGroupItem::deselectOthers_() {
    for (WidgetHandler* member : groups().getMembers(getParent())) {
        auto* const other = static_cast<TabGroupItem*>(WidgetHandler::get(member));
        if (other && other != this)
            other->setState(false);
    }
}

void TabGroupItem::onShow_() {
    static int const type = getWidgetCallbackType(showCallbackName);
    callWidgetCallbacks_(type);
}

void TabGroupItem::onHide_() {
    static int const type = getWidgetCallbackType(hideCallbackName);
    callWidgetCallbacks_(type);
}

// --- Group ---

void TabGroupItem::resetParent() {
    groups().leave(getParent(), this);
    Widget::resetParent();
}

void TabGroupItem::onParentChanged_(WidgetHandler* newParent) {
    groups().leave(getParent(), this);
    Widget::onParentChanged_(newParent);
    AliveGuard const guard(this);
    if (state)
        deselectOthers_();
    if (guard.alive())
        groups().join(getParent(), this);
}

}  // namespace gui
