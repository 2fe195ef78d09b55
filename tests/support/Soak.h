#pragma once

#include <cstdlib>

namespace support {

/// How many times more than usual a random test should do: 1, or 50 in `./test --soak`.
inline int getSoakFactor() { return std::getenv("VORLEX_SOAK") ? 50 : 1; }

}  // namespace support
