#include "gui_lib/controls/scroll/ScrollBarThumb.h"

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/controls/scroll/ScrollBar.h"
#include "gui_lib/controls/scroll/ScrollBarSkin.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"

namespace gui {

ScrollBarThumb::ScrollBarThumb(ScrollBar& newBar, skin::ScrollBarThumbSkin* borrowedSkin)
    : bar(newBar.getHandler()), value(newBar.getValue()) {
    skin = borrowedSkin;
    if (borrowedSkin)
        borrowedSkin->setWidget(this);
}

ScrollBarThumb::~ScrollBarThumb() {
    beginDestruction_();
    returnSkin();
}

void ScrollBarThumb::returnSkin() {
    if (skin)
        skin->setWidget(nullptr);
    skin = nullptr;
}

ScrollBar* ScrollBarThumb::getScrollBar() const { return static_cast<ScrollBar*>(WidgetHandler::get(bar)); }

char const* ScrollBarThumb::getWidgetType() const { return "ScrollBarThumb"; }

skin::InteractiveState ScrollBarThumb::getInteractiveState() const {
    return pressed ? getInteractiveState_(true, true) : getInteractiveState_(hovered, false);
}

// --- Value ---

void ScrollBarThumb::setValue(double newValue) {
    if (newValue != value)
        onValueChanged_(newValue);
}

double ScrollBarThumb::getValue() const { return value; }

void ScrollBarThumb::onValueChanged_(double newValue) { value = newValue; }

// --- Mouse ---

void ScrollBarThumb::setHovered_(bool newHovered) {
    hovered = newHovered;
    setDirty(DirtySelf);
}

void ScrollBarThumb::onMouseEnter(osg::Vec2i const& point) {
    setHovered_(true);
    Widget::onMouseEnter(point);
}

void ScrollBarThumb::onMouseLeave(osg::Vec2i const& point) {
    setHovered_(false);
    Widget::onMouseLeave(point);
}

void ScrollBarThumb::onMouseDown(osg::Vec2i const& point, MouseButton button) {
    AliveGuard const self(this);
    Widget::onMouseDown(point, button);
    ScrollBar* const owner = self.alive() ? getScrollBar() : nullptr;
    if (!owner || button != MouseButtonMain)
        return;
    pressed = true;
    lastMouse = point;
    setValue(owner->getValue());
    owner->onThumbPressed_();
    if (self.dead())
        return;
    setDirty(DirtySelf);
    if (WindowsManager* const manager = WindowsManager::get(getRootSurfaceId()))
        manager->captureMouse(handler);
}

void ScrollBarThumb::onMouseMove(osg::Vec2i const& point) {
    AliveGuard const self(this);
    Widget::onMouseMove(point);
    if (self.dead() || !pressed)
        return;
    // While the mouse is captured no enter or leave arrives.
    bool const inside = getScreenPointInside(point);
    if (inside != hovered)
        setHovered_(inside);
    osg::Vec2i const delta = saturatingSubtract(point, lastMouse);
    lastMouse = point;
    if (ScrollBar* const owner = getScrollBar())
        owner->dragThumb_(delta);
}

void ScrollBarThumb::onMouseUp(osg::Vec2i const& point, MouseButton button) {
    AliveGuard const self(this);
    Widget::onMouseUp(point, button);
    if (self.dead() || button != MouseButtonMain)
        return;
    endDrag_();
    if (self.dead())
        return;
    if (WindowsManager* const manager = WindowsManager::get(getRootSurfaceId()))
        manager->releaseMouse(handler);
}

void ScrollBarThumb::onMouseReleased() {
    AliveGuard const self(this);
    Widget::onMouseReleased();
    if (self.alive() && pressed)
        endDrag_();
}

void ScrollBarThumb::endDrag_() {
    AliveGuard const self(this);
    pressed = false;
    if (ScrollBar* const owner = getScrollBar()) {
        AliveGuard const ownerGuard(owner);
        owner->updateThumbPosition_();
        if (ownerGuard.alive())
            owner->onThumbReleased_();
    }
    if (self.alive())
        setDirty(DirtySelf);
}

}  // namespace gui
