#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "gui_lib/base/Keyboard.h"
#include "platform/qor/Api.h"

/// Keys by their words and characters, as a person at an American keyboard would press them.
namespace testkit {

/// A key with what is held meanwhile.
struct Keys {
    /// Shift, Ctrl and Alt of either side, in the order in which they go down.
    std::vector<gui::KeyboardButton> held;
    /// KeyNone in a combination of nothing but held keys, and for a character that no key gives.
    gui::KeyboardButton key = gui::KeyNone;
    /// What the host reports as typed, a code point; 0 for a key that types nothing.
    int character = 0;
};

/// A combination such as "ctrl+shift+s", "tab", "f12", "a" or "alt++": words as `gui::getKeyboardButtonByName` knows
/// them, or a single character; "shift", "ctrl" and "alt" are the left ones, "esc", "del", "pageup", "pagedown" are
/// understood too. Nothing if a word is unknown.
VORLEX_API std::optional<Keys> parseKeys(std::string_view combination);

/// The keys that type a character; nothing for a control character without a key.
VORLEX_API std::optional<Keys> getKeysOfCharacter(int codePoint);

/// The bits that hosts report with a key while these are held.
VORLEX_API int getModifiers(std::vector<gui::KeyboardButton> const& held);

}  // namespace testkit
