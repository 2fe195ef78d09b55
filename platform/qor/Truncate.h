#pragma once

#include <limits>

namespace qor {

/// The one way from a number to an int: cuts towards 0, NaN gives 0, what does not fit gives the nearest int.
inline int truncateToInt(double value) {
    if (value != value)
        return 0;
    if (value >= 2147483647.0)
        return std::numeric_limits<int>::max();
    if (value <= -2147483648.0)
        return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

}  // namespace qor
