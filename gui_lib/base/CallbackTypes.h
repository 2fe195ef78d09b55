#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/String.h"

namespace gui {

enum MouseCallbackType : int {
    MouseCallbackNone = 0,
    MouseCallbackMove = 1,
    MouseCallbackDown = 2,
    MouseCallbackDoubleDown = 3,
    MouseCallbackUp = 4,
    MouseCallbackReleased = 5,
    MouseCallbackEnter = 6,
    MouseCallbackLeave = 7
};

enum KeyboardCallbackType : int {
    KeyboardCallbackNone = 0,
    KeyboardCallbackDown = 1,
    KeyboardCallbackChar = 2,
    KeyboardCallbackUp = 3
};

enum GridRowCallbackType : int { GridRowCallbackNone = 0, GridRowCallbackSelected = 1, GridRowCallbackHovered = 2 };

// The words are compared exactly; any other word gives 0.
VORLEX_API MouseCallbackType getMouseCallbackType(qor::basic_string<char> const& word);
VORLEX_API KeyboardCallbackType getKeyboardCallbackType(qor::basic_string<char> const& word);
VORLEX_API GridRowCallbackType getGridRowCallbackType(qor::basic_string<char> const& word);

/// The id of a widget callback name, handed out in order of first use: go through the name, never keep an id across
/// runs.
VORLEX_API int getWidgetCallbackType(qor::basic_string<char> const& name);

}  // namespace gui
