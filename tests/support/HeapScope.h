#pragma once

#include <cstddef>

namespace support {

/// Counts what its thread allocates during its life, by `new` and by the toolkit's allocator alike.
class HeapScope {
public:
    HeapScope();
    /// Calls of operator new and of qor_malloc.
    size_t getAllocations() const;

private:
    size_t newCount_;
    size_t qorCount_;
};

}  // namespace support
