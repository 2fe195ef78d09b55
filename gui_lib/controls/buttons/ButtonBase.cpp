#include "gui_lib/controls/buttons/ButtonBase.h"

#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"

namespace gui {

namespace {

bool isPressKey(KeyboardButton key) { return key == KeySpace || key == KeyReturn; }

}  // namespace

ButtonBase::ButtonBase() = default;
ButtonBase::~ButtonBase() = default;

skin::InteractiveState ButtonBase::getInteractiveState() const {
    return getInteractiveState_(hovered || keyPressed, mousePressed || keyPressed);
}

bool ButtonBase::getFocusable() const { return true; }

bool ButtonBase::getHasMouseInputAtScreenPoint(osg::Vec2i const&) const { return true; }

// --- Mouse ---

void ButtonBase::onMouseMove(osg::Vec2i const& point) {
    if (mousePressed) {
        // While the mouse is captured no enter or leave arrives.
        bool const inside = getScreenPointInside(point);
        if (inside != hovered) {
            hovered = inside;
            setDirty(DirtySelf);
        }
    }
    Widget::onMouseMove(point);
}

void ButtonBase::onMouseEnter(osg::Vec2i const& point) {
    hovered = true;
    setDirty(DirtySelf);
    Widget::onMouseEnter(point);
}

void ButtonBase::onMouseLeave(osg::Vec2i const& point) {
    hovered = false;
    setDirty(DirtySelf);
    Widget::onMouseLeave(point);
}

void ButtonBase::onMouseDown(osg::Vec2i const& point, MouseButton button) {
    if (button == MouseButtonMain) {
        mousePressed = true;
        setDirty(DirtySelf);
        if (WindowsManager* const manager = WindowsManager::get(getRootSurfaceId())) {
            // The capture before may call out as it ends.
            AliveGuard const guard(this);
            manager->captureMouse(getHandler());
            if (guard.dead())
                return;
        }
    }
    Widget::onMouseDown(point, button);
}

void ButtonBase::onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) { onMouseDown(point, button); }

void ButtonBase::onMouseUp(osg::Vec2i const& point, MouseButton button) {
    if (button == MouseButtonMain) {
        AliveGuard const guard(this);
        bool const click = mousePressed && hovered;
        mousePressed = false;
        setDirty(DirtySelf);
        if (WindowsManager* const manager = WindowsManager::get(getRootSurfaceId()))
            manager->releaseMouse(getHandler());
        if (guard.dead())
            return;
        if (click)
            changeState_();
        if (guard.dead())
            return;
    }
    Widget::onMouseUp(point, button);
}

void ButtonBase::onMouseReleased() {
    AliveGuard const guard(this);
    Widget::onMouseReleased();
    if (guard.dead())
        return;
    mousePressed = false;
    setDirty(DirtySelf);
}

// --- Keys ---

bool ButtonBase::onKeyDown(KeyboardButton key, int modifiers) {
    bool const press = isPressKey(key);
    if (press) {
        keyPressed = true;
        setDirty(DirtySelf);
    }
    Widget::onKeyDown(key, modifiers);
    return press;
}

bool ButtonBase::onKeyUp(KeyboardButton key, int modifiers) {
    bool const click = isPressKey(key) && keyPressed;
    if (click) {
        AliveGuard const guard(this);
        keyPressed = false;
        setDirty(DirtySelf);
        changeState_();
        if (guard.dead())
            return true;
    }
    Widget::onKeyUp(key, modifiers);
    return click;
}

void ButtonBase::onFocusChanged_(bool newFocused) {
    // The state before the change counts: a key held while the focus goes stays pressed until the focus comes back.
    if (!getFocused())
        keyPressed = false;
    Widget::onFocusChanged_(newFocused);
}

void ButtonBase::changeState_() { onChange_(); }

}  // namespace gui
