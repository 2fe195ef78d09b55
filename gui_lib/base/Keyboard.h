#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/String.h"

namespace gui {

/// A key by number: ASCII for printable keys, numbers above for the others (docs/integrate.md lists them). 0 means no
/// key.
enum KeyboardButton : int {
    KeyNone = 0,
    KeyBackspace = 8,
    KeyTab = 9,
    KeyReturn = 13,
    KeyEscape = 27,
    KeySpace = 32,
    KeyDelete = 127,
    KeyKeypad0 = 256,
    KeyEnter = 271,
    KeyUp = 273,
    KeyDown = 274,
    KeyRight = 275,
    KeyLeft = 276,
    KeyInsert = 277,
    KeyHome = 278,
    KeyEnd = 279,
    KeyPageUp = 280,
    KeyPageDown = 281,
    KeyF1 = 282,
    KeyRightShift = 303,
    KeyLeftShift = 304,
    KeyRightCtrl = 305,
    KeyLeftCtrl = 306,
    KeyRightAlt = 307,
    KeyLeftAlt = 308,
    KeyPrintScreen = 316
};

/// A mouse button by number; 1 is the main one, 2 the middle, 3 the secondary.
enum MouseButton : int { MouseButtonNone = 0, MouseButtonMain = 1, MouseButtonMiddle = 2, MouseButtonSecondary = 3 };

/// Fills the name tables. May run more than once, with the same result.
VORLEX_API void registerKeyboardButtonsNames();

/// The key of a name such as "page up" (case matters); 0 if unknown.
VORLEX_API KeyboardButton getKeyboardButtonByName(qor::basic_string<char> const& name);

/// The name of a key; "unknown" if it has none.
VORLEX_API char const* getKeyboardButtonName(KeyboardButton button);

}  // namespace gui
