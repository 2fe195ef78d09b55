#pragma once

#include "gui_lib/widget/Widget.h"

#include <cstddef>
#include <cstring>

namespace gui {

/// The table of virtual functions that an object has at the moment: that of its class or, within a constructor, that
/// of the class that is being constructed. Null where tables cannot be read, which is everywhere but under the Itanium
/// C++ ABI on x86-64. `Object` has virtual functions and its table comes first in it.
template <class Object>
char const* getVirtualTable(Object const& object) {
    char const* table = nullptr;
#if defined(__GXX_ABI_VERSION) && defined(__x86_64__)
    std::memcpy(&table, static_cast<void const*>(&object), sizeof(table));
#else
    static_cast<void>(object);
#endif
    return table;
}

/// The function that a virtual member function reaches through a table; null where in doubt.
template <class Member>
void const* findVirtualTarget(char const* table, Member member) {
    struct {
        std::ptrdiff_t offsetPlusOne;
        std::ptrdiff_t adjustment;
    } parts;
    if (!table || sizeof(parts) != sizeof(member))
        return nullptr;
    std::memcpy(&parts, &member, sizeof(parts));
    if (parts.offsetPlusOne % 2 == 0 || parts.adjustment != 0)
        return nullptr;
    void const* target = nullptr;
    std::memcpy(&target, table + parts.offsetPlusOne - 1, sizeof(target));
    return target;
}

/// Whether each of the virtual member functions reaches the same function through both tables: neither class overrides
/// it, or both inherit the override. Where in doubt, the answer is false.
template <class... Members>
bool haveSameFunctions(char const* one, char const* other, Members... members) {
    auto const isSame = [one, other](auto member) {
        void const* const target = findVirtualTarget(one, member);
        return target && target == findVirtualTarget(other, member);
    };
    return (isSame(members) && ...);
}

/// As `haveSameFunctions` for a member function that is called on two widgets.
template <class Result, class... Arguments>
bool callSameFunction(Result (Widget::*member)(Arguments...) const, Widget const& one, Widget const& other) {
    return haveSameFunctions(getVirtualTable(one), getVirtualTable(other), member);
}

}  // namespace gui
