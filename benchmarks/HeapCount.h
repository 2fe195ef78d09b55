#pragma once

#include <cstddef>

/// What the whole program has allocated, whoever asked for it: malloc and its like are counted.
struct HeapCount {
    static HeapCount now();

    std::size_t allocations = 0;  ///< since the program began
    std::size_t liveBytes = 0;    ///< usable bytes of what is allocated now
};
