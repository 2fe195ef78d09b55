#pragma once

#include "platform/qor/Containers.h"

#include <functional>

namespace gui {

class WindowBase;

/// Tells the host's callback which window with a cursor came, changed its cursor, or left a surface.
class CursorHolder {
public:
    void setCallback(std::function<void(bool, int, WindowBase*)> newCallback);
    void onArrived(WindowBase* window);
    void onLeft(WindowBase* window);
    void onChanged(WindowBase* window);
    /// Drops a dying window without a call.
    void forget(WindowBase* window) { shownWindows.erase(window); }

private:
    std::function<void(bool, int, WindowBase*)> callback;
    qor::hash_set<WindowBase*> shownWindows;
};

}  // namespace gui
