#pragma once

#include <span>

namespace qor {

/// A view of consecutive elements, owned by someone else.
template <typename T>
using span = std::span<T>;

}  // namespace qor
