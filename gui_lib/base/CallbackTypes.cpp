#include "gui_lib/base/CallbackTypes.h"

#include "platform/qor/Containers.h"

#include <cstddef>

namespace gui {

namespace {

template <class Type, std::size_t count>
Type findWord(char const* const (&words)[count], qor::basic_string<char> const& word) {
    for (std::size_t i = 0; i < count; ++i)
        if (word == words[i])
            return static_cast<Type>(i + 1);
    return static_cast<Type>(0);
}

}  // namespace

MouseCallbackType getMouseCallbackType(qor::basic_string<char> const& word) {
    static constexpr char const* words[] = {"move", "down", "double down", "up", "released", "enter", "leave"};
    return findWord<MouseCallbackType>(words, word);
}

KeyboardCallbackType getKeyboardCallbackType(qor::basic_string<char> const& word) {
    static constexpr char const* words[] = {"down", "char", "up"};
    return findWord<KeyboardCallbackType>(words, word);
}

GridRowCallbackType getGridRowCallbackType(qor::basic_string<char> const& word) {
    static constexpr char const* words[] = {"grid row selected", "grid row hovered"};
    return findWord<GridRowCallbackType>(words, word);
}

int getWidgetCallbackType(qor::basic_string<char> const& name) {
    static qor::hash_map<qor::basic_string<char>, int> ids;
    static int counter = 0;
    auto [entry, added] = ids.emplace(name, counter);
    if (added)
        ++counter;
    return entry->second;
}

}  // namespace gui
