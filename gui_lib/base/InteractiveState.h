#pragma once

namespace gui::skin {

/// What the user does to a widget, as far as its look goes. The numbers are those of the skin tables.
enum InteractiveState : int {
    InteractiveStateReleased = 0,
    InteractiveStateHover = 1,
    InteractiveStatePressed = 2,
    InteractiveStateDisabled = 3
};

inline constexpr int interactiveStateCount = 4;

}  // namespace gui::skin
