// The events of Widget and the callbacks that they reach.

#include "gui_lib/widget/Widget.h"

#include "gui_lib/widget/CallbackTables.h"

#include <utility>

namespace gui {

namespace {

CallbackTables& makeTables(std::unique_ptr<CallbackTables>& tables) {
    if (!tables)
        tables = std::make_unique<CallbackTables>();
    return *tables;
}

}  // namespace

// --- Adding and removing ---

void Widget::addMouseCallback(MouseCallbackType type, MouseCallback callback) {
    makeTables(callbacks).mouseCallbacks.add(type, std::move(callback));
}

void Widget::removeMouseCallback(MouseCallbackType type, MouseCallback const& callback) {
    if (callbacks)
        callbacks->mouseCallbacks.remove(type, callback);
}

void Widget::addMouseWheelCallback(MouseWheelCallback callback) {
    makeTables(callbacks).mouseWheelCallbacks.add(0, std::move(callback));
}

void Widget::removeMouseWheelCallback(MouseWheelCallback const& callback) {
    if (callbacks)
        callbacks->mouseWheelCallbacks.remove(0, callback);
}

void Widget::addKeyboardCallback(KeyboardCallbackType type, KeyboardCallback callback) {
    makeTables(callbacks).keyboardCallbacks.add(type, std::move(callback));
}

void Widget::removeKeyboardCallback(KeyboardCallbackType type, KeyboardCallback const& callback) {
    if (callbacks)
        callbacks->keyboardCallbacks.remove(type, callback);
}

void Widget::addWidgetCallback(int type, WidgetCallback callback) {
    makeTables(callbacks).widgetCallbacks.add(type, std::move(callback));
}

void Widget::removeWidgetCallback(int type, WidgetCallback const& callback) {
    if (callbacks)
        callbacks->widgetCallbacks.remove(type, callback);
}

// --- Calling ---

void Widget::callMouseCallbacks_(MouseCallbackType type, int x, int y, int button) {
    if (!callbacks)
        return;
    walkCallbacks(this, callbacks->mouseCallbacks, type, [=](std::function<void(int, int, int)> const& callback) {
        callback(x, y, button);
        return true;
    });
}

bool Widget::callKeyboardCallbacks_(KeyboardCallbackType type, KeyboardButton key, int modifiers) {
    bool result = false;
    if (!callbacks)
        return result;
    walkCallbacks(this, callbacks->keyboardCallbacks, type,
                  [=, &result](std::function<bool(KeyboardButton, int)> const& callback) {
                      if (callback(key, modifiers))
                          result = true;
                      return true;
                  });
    return result;
}

void Widget::callWidgetCallbacks_(int type) {
    if (!callbacks)
        return;
    walkCallbacks(this, callbacks->widgetCallbacks, type, [](std::function<void()> const& callback) {
        callback();
        return true;
    });
}

void Widget::onChange_() {
    static int const type = getWidgetCallbackType(changeCallbackName);
    callWidgetCallbacks_(type);
}

// --- Mouse ---

void Widget::onMouseMove(osg::Vec2i const& point) { callMouseCallbacks_(MouseCallbackMove, point.x(), point.y(), 0); }

void Widget::onMouseEnter(osg::Vec2i const& point) { callMouseCallbacks_(MouseCallbackEnter, point.x(), point.y(), 0); }

void Widget::onMouseLeave(osg::Vec2i const& point) { callMouseCallbacks_(MouseCallbackLeave, point.x(), point.y(), 0); }

void Widget::onMouseDown(osg::Vec2i const& point, MouseButton button) {
    callMouseCallbacks_(MouseCallbackDown, point.x(), point.y(), button);
}

void Widget::onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) {
    callMouseCallbacks_(MouseCallbackDoubleDown, point.x(), point.y(), button);
}

void Widget::onMouseUp(osg::Vec2i const& point, MouseButton button) {
    callMouseCallbacks_(MouseCallbackUp, point.x(), point.y(), button);
}

bool Widget::onMouseWheel(osg::Vec2i const& point, int delta) {
    bool used = false;
    if (!callbacks)
        return used;
    walkCallbacks(this, callbacks->mouseWheelCallbacks, 0, [&](std::function<bool(int, int, int)> const& callback) {
        used = callback(point.x(), point.y(), delta);
        return !used;
    });
    return used;
}

void Widget::onMouseCursorMove(osg::Vec2i const&) {}

void Widget::onMouseReleased() { callMouseCallbacks_(MouseCallbackReleased, 0, 0, 0); }

// --- Keys ---

bool Widget::onKeyDown(KeyboardButton key, int modifiers) {
    return callKeyboardCallbacks_(KeyboardCallbackDown, key, modifiers);
}

bool Widget::onChar(KeyboardButton key, int modifiers) {
    return callKeyboardCallbacks_(KeyboardCallbackChar, key, modifiers);
}

bool Widget::onKeyUp(KeyboardButton key, int modifiers) {
    return callKeyboardCallbacks_(KeyboardCallbackUp, key, modifiers);
}

}  // namespace gui
