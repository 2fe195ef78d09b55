// Hit detection, hover, focus and the events of Container.

#include "gui_lib/widget/Container.h"

#include "gui_lib/frame/GUI.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/widget/OriginScope.h"
#include "gui_lib/widget/WidgetHandler.h"

namespace gui {

namespace {

/// A widget that is hearing of its leave. What it does there, as moving its container, may update the hover again.
class LeaveScope {
public:
    explicit LeaveScope(WidgetHandler const* widget) : widget_(widget), outer_(current_) { current_ = this; }
    ~LeaveScope() { current_ = outer_; }
    LeaveScope(LeaveScope const&) = delete;
    LeaveScope& operator=(LeaveScope const&) = delete;

    static bool contains(WidgetHandler const* widget) { return find_(widget) != nullptr; }
    /// The widget is entered again, so that its next leave counts.
    static void forget(WidgetHandler const* widget) {
        if (LeaveScope* const scope = find_(widget))
            scope->widget_ = nullptr;
    }

private:
    static LeaveScope* find_(WidgetHandler const* widget) {
        LeaveScope* scope = current_;
        while (scope && scope->widget_ != widget)
            scope = scope->outer_;
        return scope;
    }

    static inline LeaveScope* current_ = nullptr;

    WidgetHandler const* widget_;
    LeaveScope* outer_;
};

/// All four edges count as inside.
bool contains(osg::Vec2i const& size, osg::Vec2i const& point) {
    return point.x() >= 0 && point.x() <= size.x() && point.y() >= 0 && point.y() <= size.y();
}

}  // namespace

// --- Hit detection: the last child lies on top ---

Widget* Container::getWidgetAtScreenPoint(osg::Vec2i const& point) {
    if (!Widget::getWidgetAtScreenPoint(point))
        return nullptr;
    OriginScope const origin(OriginScope::Screen, handler, widgetToScreen(osg::Vec2i(0, 0)));
    for (auto child = widgets.rbegin(); child != widgets.rend(); ++child) {
        Widget* const widget = WidgetHandler::get(*child);
        if (widget && widget->getVisible(false) && widget->getScreenPointInside(point))
            return widget;
    }
    return this;
}

Widget* Container::findWidgetAtScreenPoint(osg::Vec2i const& point) {
    if (!Widget::getWidgetAtScreenPoint(point))
        return nullptr;
    OriginScope const origin(OriginScope::Screen, handler, widgetToScreen(osg::Vec2i(0, 0)));
    for (auto child = widgets.rbegin(); child != widgets.rend(); ++child) {
        Widget* const widget = WidgetHandler::get(*child);
        if (Widget* const found = widget ? widget->findWidgetAtScreenPoint(point) : nullptr)
            return found;
    }
    return this;
}

bool Container::getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const {
    OriginScope const origin(OriginScope::Screen, handler, widgetToScreen(osg::Vec2i(0, 0)));
    for (auto child = widgets.rbegin(); child != widgets.rend(); ++child) {
        Widget const* const widget = WidgetHandler::get(*child);
        if (widget && widget->getVisible(false) && widget->getScreenPointInside(point))
            return widget->getHasMouseInputAtScreenPoint(point);
    }
    return Widget::getHasMouseInputAtScreenPoint(point);
}

Widget* Container::getTooltipWidget(osg::Vec2i const& point) {
    Widget* const found = getWidgetAtScreenPoint(point);
    return found && found != this ? found->getTooltipWidget(point) : found;
}

// --- Hover ---

void Container::updateHoveredWidget_(osg::Vec2i const& point) {
    Widget* const found = getWidgetAtScreenPoint(point);
    bool const takes = found && found != this && found->getVisible(false) && found->getEnabled();
    WidgetHandler* const newHovered = takes ? found->getHandler() : nullptr;
    if (newHovered != hoveredWidget)
        onHoveredWidgetChanged_(newHovered, point);
}

void Container::onHoveredWidgetChanged_(WidgetHandler* newHovered, osg::Vec2i const& point) {
    WidgetHandler* const oldHovered = hoveredWidget;
    Widget* const old = WidgetHandler::get(oldHovered);
    if (old && !LeaveScope::contains(oldHovered)) {
        AliveGuard const self(this);
        LeaveScope const leaving(oldHovered);
        old->onMouseLeave(point);
        // A leave callback may have moved the hover on by itself; its widget has had its enter.
        if (self.dead() || (hoveredWidget && hoveredWidget != oldHovered))
            return;
    }
    // The leave may have ended the new one or taken it out.
    Widget* const entered = WidgetHandler::get(newHovered);
    hoveredWidget = entered && entered->getParent() == handler ? newHovered : nullptr;
    if (hoveredWidget) {
        LeaveScope::forget(newHovered);
        entered->onMouseEnter(point);
    }
}

Widget* Container::getLiveHovered_() const {
    Widget* const hovered = WidgetHandler::get(hoveredWidget);
    return hovered && hovered->getEnabled() ? hovered : nullptr;
}

bool Container::getGenerateMouseMoveCallbacks(osg::Vec2i const&) { return true; }

bool Container::getGenerateMouseDownCallbacks(osg::Vec2i const&, MouseButton) { return true; }

bool Container::getGenerateMouseDoubleClickCallbacks(osg::Vec2i const&, MouseButton) { return true; }

bool Container::getGenerateMouseUpCallbacks(osg::Vec2i const&, MouseButton) { return true; }

// --- Mouse: each call below may end this ---

void Container::onMouseMove(osg::Vec2i const& point) {
    if (!getEnabled())
        return;
    AliveGuard const self(this);
    updateHoveredWidget_(point);
    if (self.dead())
        return;
    if (Widget* const child = getLiveHovered_())
        child->onMouseMove(point);
    if (self.alive() && getGenerateMouseMoveCallbacks(point) && self.alive())
        Widget::onMouseMove(point);
}

void Container::onMouseDown(osg::Vec2i const& point, MouseButton button) {
    if (!getEnabled())
        return;
    AliveGuard const self(this);
    updateHoveredWidget_(point);
    if (self.dead())
        return;
    WidgetHandler* const pressed = hoveredWidget;
    if (Widget* const child = getLiveHovered_())
        child->onMouseDown(point, button);
    if (self.dead())
        return;
    // The child may have moved or gone.
    updateHoveredWidget_(point);
    if (self.dead())
        return;
    if (pressed == hoveredWidget)
        setFocusedWidget_(pressed);
    if (self.alive() && getGenerateMouseDownCallbacks(point, button) && self.alive())
        Widget::onMouseDown(point, button);
}

void Container::onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) {
    if (!getEnabled())
        return;
    AliveGuard const self(this);
    setFocusedWidget_(hoveredWidget);
    if (self.dead())
        return;
    if (Widget* const child = getLiveHovered_())
        child->onMouseDoubleClick(point, button);
    if (self.dead())
        return;
    updateHoveredWidget_(point);
    if (self.alive() && getGenerateMouseDoubleClickCallbacks(point, button) && self.alive())
        Widget::onMouseDoubleClick(point, button);
}

void Container::onMouseUp(osg::Vec2i const& point, MouseButton button) {
    if (!getEnabled())
        return;
    AliveGuard const self(this);
    if (Widget* const child = getLiveHovered_())
        child->onMouseUp(point, button);
    if (self.dead())
        return;
    updateHoveredWidget_(point);
    if (self.alive() && getGenerateMouseUpCallbacks(point, button) && self.alive())
        Widget::onMouseUp(point, button);
}

bool Container::onMouseWheel(osg::Vec2i const& point, int delta) {
    AliveGuard const self(this);
    Widget* const child = getLiveHovered_();
    if (child && child->onMouseWheel(point, delta))
        return true;
    return self.alive() && Widget::onMouseWheel(point, delta);
}

void Container::onMouseEnter(osg::Vec2i const& point) {
    AliveGuard const self(this);
    updateHoveredWidget_(point);
    if (self.alive())
        Widget::onMouseEnter(point);
}

void Container::onMouseLeave(osg::Vec2i const& point) {
    AliveGuard const self(this);
    onHoveredWidgetChanged_(nullptr, point);
    if (self.alive())
        Widget::onMouseLeave(point);
}

void Container::onMouseCursorMove(osg::Vec2i const& point) {
    AliveGuard const self(this);
    updateHoveredWidget_(point);
    if (self.dead())
        return;
    if (Widget* const child = getLiveHovered_())
        child->onMouseCursorMove(point);
    if (self.alive())
        Widget::onMouseCursorMove(point);
}

void Container::hoverUnderRestingCursor_() {
    GUI const* const gui = GUI::get();
    if (!gui)
        return;
    Widget const* const up = getParentWidget_();
    bool const settled = MeasurePass::isOpen() && up && up->isSettled_() && hoversPlainly_();
    osg::Vec2i const point =
        gui->getMousePosition(settled ? getSettledRoot_()->getRootSurfaceId() : getRootSurfaceId());
    // Nobody hears of a cursor that was outside and still is.
    if (settled && !hoveredWidget && !contains(size, screenToSettledWidget_(point)))
        return;
    onMouseCursorMove(point);
}

void Container::onPositionChanged_(osg::Vec2i const& newPosition) {
    AliveGuard const self(this);
    Widget::onPositionChanged_(newPosition);
    if (self.alive())
        hoverUnderRestingCursor_();
}

void Container::onEnableChanged_(bool newEnabled) {
    AliveGuard const self(this);
    Widget::onEnableChanged_(newEnabled);
    if (self.alive() && getEnabled())
        hoverUnderRestingCursor_();
}

// --- Keys ---

template <class Forward>
bool Container::forwardKey_(Forward forward) {
    Widget* const child = WidgetHandler::get(getFocusedWidget_());
    return child && child->getEnabled() && forward(*child);
}

bool Container::onKeyDown(KeyboardButton key, int modifiers) {
    AliveGuard const self(this);
    if (forwardKey_([=](Widget& child) { return child.onKeyDown(key, modifiers); }))
        return true;
    // The own callbacks hear the key, but cannot keep it.
    if (self.alive())
        Widget::onKeyDown(key, modifiers);
    return false;
}

bool Container::onChar(KeyboardButton key, int modifiers) {
    AliveGuard const self(this);
    if (forwardKey_([=](Widget& child) { return child.onChar(key, modifiers); }))
        return true;
    if (self.alive())
        Widget::onChar(key, modifiers);
    return false;
}

bool Container::onKeyUp(KeyboardButton key, int modifiers) {
    AliveGuard const self(this);
    if (forwardKey_([=](Widget& child) { return child.onKeyUp(key, modifiers); }))
        return true;
    if (self.alive())
        Widget::onKeyUp(key, modifiers);
    return false;
}

// --- Focus ---

bool Container::getFocusable() const { return true; }

WidgetHandler* Container::getFocusedWidget_() const { return focusedWidget; }

Widget* Container::getFocusedWidget() { return WidgetHandler::get(getFocusedWidget_()); }

void Container::setFocusedWidget_(WidgetHandler* child) {
    if (child == focusedWidget)
        return;
    AliveGuard const self(this);
    WidgetHandler* const oldFocused = focusedWidget;
    if (Widget* const old = WidgetHandler::get(oldFocused)) {
        old->setFocused(false);
        if (self.dead())
            return;
    }
    // A callback of the old one may have focused a third child, which does not keep what was asked for here.
    Widget* const third = focusedWidget != oldFocused ? WidgetHandler::get(focusedWidget) : nullptr;
    if (third && focusedWidget != child) {
        third->setFocused(false);
        if (self.dead())
            return;
    }
    focusedWidget = nullptr;
    Widget* const widget = WidgetHandler::get(child);
    // The loss may have taken the new one out, too.
    if (!widget || widget->getParent() != handler || !widget->getFocusable())
        return;
    focusedWidget = child;
    widget->setFocused(true);
    if (self.alive())
        setFocused(true);
}

void Container::onFocusChanged_(bool newFocused) {
    AliveGuard const self(this);
    Widget::onFocusChanged_(newFocused);
    if (self.dead())
        return;
    if (Widget* const child = WidgetHandler::get(getFocusedWidget_()))
        child->setFocused(newFocused);
}

// --- Tab order ---

void Container::getTabOrderedWidgets(qor::vector<WidgetHandler*>& out) {
    Widget::getTabOrderedWidgets(out);
    if (!getVisible(false) || !getEnabled())
        return;
    for (WidgetHandler* const handle : widgets)
        if (Widget* const child = WidgetHandler::get(handle))
            child->getTabOrderedWidgets(out);
}

}  // namespace gui
