#pragma once

#include "platform/qor/Containers.h"

namespace qor {

template <typename T>
[[gnu::noinline, gnu::cold]] void appendGrowing(vector<T>& list, T value) {
    list.push_back(value);
}

/// push_back for lists that have long grown to their size: what makes them grow stays out of the way.
template <typename T>
inline void append(vector<T>& list, T value) {
    if (list.size() != list.capacity()) [[likely]]
        list.push_back(value);
    else
        appendGrowing(list, value);
}

}  // namespace qor
