// Mouse cursors, resizing, hot keys and the tab chain of WindowBase.

#include "gui_lib/windows/WindowBase.h"

#include "gui_lib/base/Application.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/windows/WindowView.h"
#include "platform/qor/SmallVector.h"

#include <algorithm>
#include <utility>

namespace gui {

namespace {

int countModifiers(HotKey const& key) { return int{key.altPressed} + int{key.ctrlPressed} + int{key.shiftPressed}; }

}  // namespace

// --- Mouse cursor ---

void WindowBase::tellCursorChanged_() {
    if (WindowsManager* const manager = WindowsManager::get(getRootSurfaceId()))
        manager->onWindowCursorChanged(this);
}

void WindowBase::setHasCursor(bool newHasCursor) {
    if (newHasCursor != hasCursor)
        onHasCursorChanged_(newHasCursor);
}

void WindowBase::onHasCursorChanged_(bool newHasCursor) {
    hasCursor = newHasCursor;
    tellCursorChanged_();
}

bool WindowBase::getHasCursor() const { return hasCursor; }

void WindowBase::pushMouseCursor(int cursor) {
    // A resize cursor gives way to whatever is pushed over it.
    if (resizeCursorPushed && !cursors.empty())
        cursors.pop_back();
    resizeCursorPushed = false;
    cursors.push_back(cursor);
    tellCursorChanged_();
}

void WindowBase::popMouseCursor() {
    if (!cursors.empty())
        cursors.pop_back();
    tellCursorChanged_();
}

int WindowBase::getMouseCursor() const {
    if (!hasCursor)
        return CursorNone;
    return cursors.empty() ? CursorDefault : cursors.back();
}

// --- Resizing by the border ---

int WindowBase::getResizeMask_(osg::Vec2i const& point) const {
    if (!resizable)
        return 0;
    osg::Vec2i const from = getPosition();
    osg::Vec2i const to = saturatingAdd(from, getSize());
    int mask = 0;
    if (point.x() >= from.x() && point.x() <= saturatingAdd(from.x(), resizeBorder))
        mask |= ResizeLeft;
    else if (point.x() >= saturatingSubtract(to.x(), resizeBorder) && point.x() <= to.x())
        mask |= ResizeRight;
    if (point.y() >= from.y() && point.y() <= saturatingAdd(from.y(), resizeBorder))
        mask |= ResizeTop;
    else if (point.y() >= saturatingSubtract(to.y(), resizeBorder) && point.y() <= to.y())
        mask |= ResizeBottom;
    return mask;
}

int WindowBase::getResizeCursor_(int mask) const {
    bool const left = mask & ResizeLeft;
    bool const right = mask & ResizeRight;
    bool const top = mask & ResizeTop;
    bool const bottom = mask & ResizeBottom;
    if ((left && top) || (right && bottom))
        return CursorResizeFalling;
    if ((left && bottom) || (right && top))
        return CursorResizeRising;
    if (left || right)
        return CursorResizeHorz;
    return top || bottom ? CursorResizeVert : CursorDefault;
}

void WindowBase::pushResizeCursor_(int mask) {
    int const cursor = getResizeCursor_(mask);
    if (cursor == CursorDefault)
        return;
    AliveGuard const self(this);
    pushMouseCursor(cursor);
    if (self.alive())
        resizeCursorPushed = true;
}

void WindowBase::resizeTo_(osg::Vec2i const& point) {
    osg::Vec2i delta = saturatingSubtract(point, dragMousePosition);
    Application const* const application = Application::get();
    if (clipResizeCursor && application) {
        osg::Vec2i cursor;
        application->getCursorScreenPosition(cursor);
        if (cursor.x() < 0 || cursor.x() > application->getWidth())
            delta.x() = 0;
        if (cursor.y() < 0 || cursor.y() > application->getHeight())
            delta.y() = 0;
    }
    dragMousePosition = point;
    osg::Vec2i newPosition = getPosition();
    osg::Vec2i newSize = getSize();
    if (resizeMask & ResizeLeft) {
        newPosition.x() = saturatingAdd(newPosition.x(), delta.x());
        newSize.x() = saturatingSubtract(newSize.x(), delta.x());
    }
    if (resizeMask & ResizeTop) {
        newPosition.y() = saturatingAdd(newPosition.y(), delta.y());
        newSize.y() = saturatingSubtract(newSize.y(), delta.y());
    }
    if (resizeMask & ResizeRight)
        newSize.x() = saturatingAdd(newSize.x(), delta.x());
    if (resizeMask & ResizeBottom)
        newSize.y() = saturatingAdd(newSize.y(), delta.y());
    AliveGuard const self(this);
    setPosition(newPosition);
    if (self.alive())
        setSize(newSize);
}

// --- Mouse ---

void WindowBase::onMouseEnter(osg::Vec2i const& point) {
    AliveGuard const self(this);
    if (hasCursor && !resizeCursorPushed)
        pushResizeCursor_(getResizeMask_(point));
    if (self.alive())
        Container::onMouseEnter(point);
}

void WindowBase::onMouseLeave(osg::Vec2i const& point) {
    AliveGuard const self(this);
    Container::onMouseLeave(point);
    if (self.dead() || !resizeCursorPushed)
        return;
    resizeCursorPushed = false;
    popMouseCursor();
}

void WindowBase::onMouseDown(osg::Vec2i const& point, MouseButton button) {
    if (button == MouseButtonMain)
        resizeMask = getResizeMask_(point);
    if (resizeMask == 0) {
        Container::onMouseDown(point, button);
        return;
    }
    dragMousePosition = point;
    if (WindowsManager* const manager = WindowsManager::get(getRootSurfaceId()))
        manager->captureMouse(handler);
}

void WindowBase::onMouseMove(osg::Vec2i const& point) {
    if (resizeMask != 0) {
        resizeTo_(point);
        return;
    }
    int const mask = getResizeMask_(point);
    if (mask != 0) {
        pushResizeCursor_(mask);
        return;
    }
    AliveGuard const self(this);
    if (resizeCursorPushed) {
        resizeCursorPushed = false;
        popMouseCursor();
    }
    if (self.alive())
        Container::onMouseMove(point);
}

void WindowBase::onMouseUp(osg::Vec2i const& point, MouseButton button) {
    if (resizeMask == 0 || button != MouseButtonMain) {
        Container::onMouseUp(point, button);
        return;
    }
    resizeMask = 0;
    if (WindowsManager* const manager = WindowsManager::get(getRootSurfaceId()))
        manager->releaseMouse(handler);
}

void WindowBase::onMouseReleased() {
    // Whoever took the mouse away has ended the resize.
    resizeMask = 0;
    Container::onMouseReleased();
}

// --- Keys: a window without focus hears none ---

bool WindowBase::onKeyDown(KeyboardButton key, int modifiers) {
    return getFocused() && Container::onKeyDown(key, modifiers);
}

bool WindowBase::onChar(KeyboardButton key, int modifiers) { return getFocused() && Container::onChar(key, modifiers); }

bool WindowBase::onKeyUp(KeyboardButton key, int modifiers) {
    return getFocused() && Container::onKeyUp(key, modifiers);
}

// --- Hot keys ---

void WindowBase::addHotKeyCallback(HotKey const& key, HotKeyCallback callback) {
    if (!callback)
        return;
    auto const place =
        std::upper_bound(hotKeys.begin(), hotKeys.end(), countModifiers(key),
                         [](int count, auto const& entry) { return count > countModifiers(entry.first); });
    hotKeys.emplace(place, key, std::move(callback));
}

bool WindowBase::removeHotKeyCallback(HotKey const& key, HotKeyCallback const& callback) {
    auto const found = std::find(hotKeys.begin(), hotKeys.end(), std::pair<HotKey, HotKeyCallback>(key, callback));
    if (found == hotKeys.end())
        return false;
    hotKeys.erase(found);
    return true;
}

bool WindowBase::onHotKey(HotKey const& key) {
    AliveGuard const self(this);
    qor::small_vector<std::pair<HotKey, HotKeyCallback>, 8> const copy(hotKeys.begin(), hotKeys.end());
    bool ran = false;
    for (auto const& entry : copy) {
        if (self.dead())
            break;
        // An earlier callback may have removed it.
        if (!(entry.first == key) || std::find(hotKeys.begin(), hotKeys.end(), entry) == hotKeys.end())
            continue;
        (*entry.second)();
        ran = true;
    }
    return ran;
}

// --- Tab chain ---

void WindowBase::getSortedTabOrderedWidgets_(qor::vector<WidgetHandler*>& out) {
    if (!view)
        return;
    view->getTabOrderedWidgets(out);
    std::stable_sort(out.begin(), out.end(), [](WidgetHandler const* a, WidgetHandler const* b) {
        return WidgetHandler::get(a)->getTabOrder() < WidgetHandler::get(b)->getTabOrder();
    });
}

void WindowBase::setNextWidgetFocused() { moveTabFocus_(true); }

void WindowBase::setPrevWidgetFocused() { moveTabFocus_(false); }

void WindowBase::moveTabFocus_(bool forwards) {
    if (!view)
        return;
    qor::vector<WidgetHandler*> chain;
    getSortedTabOrderedWidgets_(chain);
    if (chain.empty())
        return;
    if (!forwards)
        std::reverse(chain.begin(), chain.end());
    auto const focusedPlace = std::find_if(chain.begin(), chain.end(), [](WidgetHandler const* handle) {
        return WidgetHandler::get(handle)->getFocused();
    });
    WidgetHandler* const current = focusedPlace == chain.end() ? nullptr : *focusedPlace;
    bool const wrap = !current || focusedPlace + 1 == chain.end();
    WidgetHandler* const next = wrap ? chain.front() : *(focusedPlace + 1);
    if (next == current)
        return;

    AliveGuard const self(this);
    if (Widget* const old = WidgetHandler::get(current))
        old->setFocused(false);
    if (self.dead() || !view)
        return;
    // Callbacks of the old one may have taken the next one out of the chain.
    chain.clear();
    view->getTabOrderedWidgets(chain);
    Widget* const widget = WidgetHandler::get(next);
    if (widget && std::find(chain.begin(), chain.end(), next) != chain.end())
        widget->setTabFocused();
}

}  // namespace gui
