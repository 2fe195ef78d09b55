#pragma once

#include "gui_lib/base/Keyboard.h"

namespace gui {

/// A key with the modifiers that must be held with it.
struct HotKey {
    KeyboardButton button = KeyNone;
    bool altPressed = false;
    bool ctrlPressed = false;
    bool shiftPressed = false;

    bool operator==(HotKey const&) const = default;
};

}  // namespace gui
