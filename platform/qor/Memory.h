#pragma once

#include <cstddef>
#include <limits>
#include <new>

#include "platform/qor/Api.h"

/// Counted allocation, which every container of the toolkit goes through.
///
/// Memory is never refused to the caller: a failed allocation ends the program by `qor::fatal_out_of_memory`.
/// The counters may be read and the functions be called from any thread.

/// Aligned for any fundamental type. A size of 0 gives a unique pointer. Never null.
VORLEX_API void* qor_malloc(size_t size);
/// As qor_malloc, aligned to a power of two; freed by qor_free too.
VORLEX_API void* qor_aligned_malloc(size_t size, size_t alignment);
/// Null is allowed.
VORLEX_API void qor_free(void* memory);

namespace qor {

/// Logs who ran out of memory and for how many bytes, then ends the program.
[[noreturn]] VORLEX_API void fatal_out_of_memory(char const* where, size_t size);

struct AllocationCounts {
    size_t allocations = 0;  ///< calls of qor_malloc since the program began
    size_t frees = 0;        ///< calls of qor_free with a pointer that is not null
    size_t forbidden = 0;    ///< allocations that happened in a ForbidAllocations scope
};

VORLEX_API AllocationCounts getAllocationCounts();

/// While one lives, each allocation of its thread counts as forbidden and gives a log line; it is served all the same.
class VORLEX_API ForbidAllocations {
public:
    ForbidAllocations();
    ~ForbidAllocations();
    ForbidAllocations(ForbidAllocations const&) = delete;
    ForbidAllocations& operator=(ForbidAllocations const&) = delete;
};

/// While one lives, its thread's allocations are allowed again inside a ForbidAllocations scope.
class VORLEX_API AllowAllocations {
public:
    AllowAllocations();
    ~AllowAllocations();
    AllowAllocations(AllowAllocations const&) = delete;
    AllowAllocations& operator=(AllowAllocations const&) = delete;

private:
    int depth_;
};

/// Tells how many allocations of its own thread fell into its life.
class VORLEX_API AllocationScope {
public:
    AllocationScope();
    size_t getCount() const;

private:
    size_t start_;
};

/// The standard allocator over qor_malloc. All instances are equal.
template <typename T>
class allocator {
public:
    using value_type = T;

    allocator() noexcept = default;
    template <typename U>
    allocator(allocator<U> const&) noexcept {}

    T* allocate(size_t count) {
        if (count > std::numeric_limits<size_t>::max() / sizeof(T))
            fatal_out_of_memory("qor_malloc", std::numeric_limits<size_t>::max());
        if constexpr (alignof(T) > alignof(std::max_align_t))
            return static_cast<T*>(qor_aligned_malloc(count * sizeof(T), alignof(T)));
        else
            return static_cast<T*>(qor_malloc(count * sizeof(T)));
    }
    void deallocate(T* memory, size_t) noexcept { qor_free(memory); }

    template <typename U>
    bool operator==(allocator<U> const&) const noexcept {
        return true;
    }
};

}  // namespace qor
