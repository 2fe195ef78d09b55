#pragma once

namespace qor {

template <typename List>
[[gnu::noinline, gnu::cold]] void appendGrowing(List& list, typename List::value_type value) {
    list.push_back(value);
}

/// push_back for vectors that have long grown to their size: what makes them grow stays out of the way.
template <typename List>
inline void append(List& list, typename List::value_type value) {
    if (list.size() != list.capacity()) [[likely]]
        list.push_back(value);
    else
        appendGrowing(list, value);
}

}  // namespace qor
