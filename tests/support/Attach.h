#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "gui_lib/widget/Widget.h"

namespace support {

/// Shared functions as the toolkit takes them, put on a widget for good.
inline void onMouse(gui::Widget& widget, gui::MouseCallbackType type, std::function<void()> action) {
    widget.addMouseCallback(type, std::make_shared<std::function<void(int, int, int)>>(
                                      [action = std::move(action)](int, int, int) { action(); }));
}

inline void onWheel(gui::Widget& widget, std::function<bool()> action) {
    widget.addMouseWheelCallback(std::make_shared<std::function<bool(int, int, int)>>(
        [action = std::move(action)](int, int, int) { return action(); }));
}

inline void onKey(gui::Widget& widget, gui::KeyboardCallbackType type, std::function<bool()> action) {
    widget.addKeyboardCallback(type, std::make_shared<std::function<bool(gui::KeyboardButton, int)>>(
                                         [action = std::move(action)](gui::KeyboardButton, int) { return action(); }));
}

/// `name` is a callback name such as Widget::changeCallbackName.
inline void onEvent(gui::Widget& widget, char const* name, std::function<void()> action) {
    widget.addWidgetCallback(gui::getWidgetCallbackType(name),
                             std::make_shared<std::function<void()>>(std::move(action)));
}

}  // namespace support
