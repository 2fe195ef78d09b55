#pragma once

#include <cstdint>
#include <limits>

namespace gui {

/// The nearest int to a wider number.
inline int saturate(std::int64_t value) {
    if (value > std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    if (value < std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

/// Sums and differences of sizes that may come from files: what does not fit gives the nearest int.
inline int saturatingAdd(int a, int b) { return saturate(std::int64_t(a) + b); }
inline int saturatingSubtract(int a, int b) { return saturate(std::int64_t(a) - b); }
inline int saturatingMultiply(int a, int b) { return saturate(std::int64_t(a) * b); }

}  // namespace gui
