#include "gui_lib/frame/CursorHolder.h"

#include "gui_lib/windows/WindowBase.h"

#include <utility>

namespace gui {

namespace {

constexpr int noCursor = -1;

}  // namespace

void CursorHolder::setCallback(std::function<void(bool, int, WindowBase*)> newCallback) {
    callback = std::move(newCallback);
}

void CursorHolder::onArrived(WindowBase* window) {
    if (callback && window->getHasCursor() && shownWindows.insert(window).second)
        callback(true, window->getMouseCursor(), window);
}

void CursorHolder::onLeft(WindowBase* window) {
    if (callback && window->getHasCursor() && shownWindows.erase(window) != 0)
        callback(false, noCursor, window);
}

void CursorHolder::onChanged(WindowBase* window) {
    if (!callback)
        return;
    bool const hasCursor = window->getHasCursor();
    callback(hasCursor, hasCursor ? window->getMouseCursor() : noCursor, window);
}

}  // namespace gui
