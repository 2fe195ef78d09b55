#pragma once

#include <cstddef>

#include <boost/container/small_vector.hpp>

#include "platform/qor/Memory.h"

namespace qor {

/// A vector whose first `Count` elements lie inside the object.
template <typename T, size_t Count>
using small_vector = boost::container::small_vector<T, Count, allocator<T>>;

}  // namespace qor
