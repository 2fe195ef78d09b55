#pragma once

#include "gui_lib/widget/Widget.h"

#include <cstddef>
#include <cstring>

namespace gui {

/// Whether a virtual member function, called on two objects, reaches the same function: neither overrides it, or both
/// inherit the override. Reads the tables of virtual functions as the Itanium C++ ABI lays them out; elsewhere, and
/// where in doubt, the answer is false.
template <class Result, class... Arguments>
bool callSameFunction(Result (Widget::*member)(Arguments...) const, Widget const& one, Widget const& other) {
#if defined(__GXX_ABI_VERSION) && defined(__x86_64__)
    struct {
        std::ptrdiff_t offsetPlusOne;
        std::ptrdiff_t adjustment;
    } parts;
    static_assert(sizeof(parts) == sizeof(member));
    std::memcpy(&parts, &member, sizeof(parts));
    if (parts.offsetPlusOne % 2 == 0 || parts.adjustment != 0)
        return false;
    auto const getTarget = [&parts](Widget const& object) {
        char const* table = nullptr;
        std::memcpy(&table, static_cast<void const*>(&object), sizeof(table));
        void const* target = nullptr;
        std::memcpy(&target, table + parts.offsetPlusOne - 1, sizeof(target));
        return target;
    };
    return getTarget(one) == getTarget(other);
#else
    static_cast<void>(member);
    return &one == &other;
#endif
}

}  // namespace gui
