#include "testkit/Keys.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>

namespace testkit {

namespace {

/// Each character with what the same key gives under Shift.
constexpr std::string_view shifted = "`~1!2@3#4$5%6^7&8*9(0)-_=+[{]}\\|;:'\",<.>/?";
/// From KeyKeypad0 on; Enter lies between plus and equals and types nothing.
constexpr std::string_view keypad("0123456789./*-+\0=", 17);
constexpr std::pair<std::string_view, std::string_view> aliases[] = {
    {"shift", "left shift"}, {"ctrl", "left ctrl"}, {"alt", "left alt"},      {"esc", "escape"},
    {"del", "delete"},       {"pageup", "page up"}, {"pagedown", "page down"}};
constexpr std::pair<gui::KeyboardButton, int> modifierBits[] = {{gui::KeyLeftShift, 0x1}, {gui::KeyRightShift, 0x2},
                                                                {gui::KeyLeftCtrl, 0x40}, {gui::KeyRightCtrl, 0x80},
                                                                {gui::KeyLeftAlt, 0x100}, {gui::KeyRightAlt, 0x200}};

gui::KeyboardButton getKey(std::string_view word) {
    std::string name(word);
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    if (name.size() == 1 && name[0] > 32)
        return static_cast<gui::KeyboardButton>(name[0]);
    for (auto const& [alias, full] : aliases)
        if (name == alias)
            name = full;
    return gui::getKeyboardButtonByName(name.c_str());
}

/// What a key types by itself or under Shift; 0 for none.
int getCharacter(int key, bool shift) {
    if (key >= gui::KeyKeypad0 && key < gui::KeyKeypad0 + static_cast<int>(keypad.size()))
        return keypad[static_cast<std::size_t>(key - gui::KeyKeypad0)];
    if (key < 32 || key == gui::KeyDelete || key > 255)
        return 0;
    if (shift && key >= 'a' && key <= 'z')
        return key - 32;
    std::size_t const place = shift && key < 128 ? shifted.find(static_cast<char>(key)) : std::string_view::npos;
    return place == std::string_view::npos || place % 2 != 0 ? key : shifted[place + 1];
}

}  // namespace

std::optional<Keys> parseKeys(std::string_view combination) {
    Keys keys;
    for (std::size_t from = 0; from < combination.size();) {
        // A plus at the place of a word is the key itself.
        std::size_t const to = std::min(combination.find('+', from + 1), combination.size());
        gui::KeyboardButton const key = getKey(combination.substr(from, to - from));
        bool const last = to == combination.size();
        bool const modifier = getModifiers({key}) != 0;
        if (key == gui::KeyNone || (!last && !modifier) || to + 1 == combination.size())
            return std::nullopt;
        if (modifier)
            keys.held.push_back(key);
        else
            keys.key = key;
        from = to + 1;
    }
    int const modifiers = getModifiers(keys.held);
    bool const control = (modifiers & 0xc0) != 0;
    bool const alt = (modifiers & 0x300) != 0;
    if (control && !alt && keys.key > 32 && keys.key < 127)
        keys.character = keys.key & 31;
    else if (!control && !alt)
        keys.character = getCharacter(keys.key, (modifiers & 3) != 0);
    return combination.empty() ? std::nullopt : std::optional<Keys>(keys);
}

std::optional<Keys> getKeysOfCharacter(int codePoint) {
    if (codePoint == '\n')
        return Keys{{}, gui::KeyReturn, 0};
    if (codePoint < 32 || codePoint == 127)
        return codePoint == '\t' || codePoint == '\b'
                   ? std::optional<Keys>(Keys{{}, static_cast<gui::KeyboardButton>(codePoint), 0})
                   : std::nullopt;
    std::size_t const place = codePoint < 128 ? shifted.find(static_cast<char>(codePoint)) : std::string_view::npos;
    bool const capital =
        (codePoint >= 'A' && codePoint <= 'Z') || (codePoint >= 0xc0 && codePoint <= 0xde && codePoint != 0xd7);
    Keys keys;
    keys.character = codePoint;
    if (capital)
        keys.key = static_cast<gui::KeyboardButton>(codePoint + 32);
    else if (place != std::string_view::npos && place % 2 != 0)
        keys.key = static_cast<gui::KeyboardButton>(shifted[place - 1]);
    else if (codePoint < 127 || (codePoint >= 160 && codePoint <= 255))
        return Keys{{}, static_cast<gui::KeyboardButton>(codePoint), codePoint};
    else
        return keys;
    keys.held = {gui::KeyLeftShift};
    return keys;
}

int getModifiers(std::vector<gui::KeyboardButton> const& held) {
    int bits = 0;
    for (auto const& [key, bit] : modifierBits)
        if (std::find(held.begin(), held.end(), key) != held.end())
            bits |= bit;
    return bits;
}

}  // namespace testkit
