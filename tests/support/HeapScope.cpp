#include "tests/support/HeapScope.h"

#include <cstdlib>
#include <new>

#include "platform/qor/Memory.h"

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
// This sanitizer brings operators of its own, which cannot be replaced; operator new is then not counted.
#define VORLEX_KEEP_OPERATOR_NEW
#endif
#endif

namespace {

thread_local size_t threadNews = 0;

// The scope's own start is taken from the toolkit's counter through a scope that never ends.
size_t getQorCount() {
    static thread_local qor::AllocationScope const sinceThreadBegan;
    return sinceThreadBegan.getCount();
}

#ifndef VORLEX_KEEP_OPERATOR_NEW
void* tryAllocate(size_t size, size_t alignment) {
    ++threadNews;
    if (size == 0)
        size = 1;
    return alignment > alignof(std::max_align_t)
               ? std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment)
               : std::malloc(size);
}

void* allocate(size_t size, size_t alignment) {
    void* const memory = tryAllocate(size, alignment);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}
#endif

}  // namespace

#ifndef VORLEX_KEEP_OPERATOR_NEW
void* operator new(size_t size) { return allocate(size, 1); }
void* operator new[](size_t size) { return allocate(size, 1); }
void* operator new(size_t size, std::align_val_t alignment) { return allocate(size, size_t(alignment)); }
void* operator new[](size_t size, std::align_val_t alignment) { return allocate(size, size_t(alignment)); }
// Libraries use these too (LLVM in the GL driver), and what they give goes to the operators below.
void* operator new(size_t size, std::nothrow_t const&) noexcept { return tryAllocate(size, 1); }
void* operator new[](size_t size, std::nothrow_t const&) noexcept { return tryAllocate(size, 1); }
void* operator new(size_t size, std::align_val_t alignment, std::nothrow_t const&) noexcept {
    return tryAllocate(size, size_t(alignment));
}
void* operator new[](size_t size, std::align_val_t alignment, std::nothrow_t const&) noexcept {
    return tryAllocate(size, size_t(alignment));
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, size_t, std::align_val_t) noexcept { std::free(memory); }
#endif

namespace support {

HeapScope::HeapScope() : newCount_(threadNews), qorCount_(getQorCount()) {}

size_t HeapScope::getAllocations() const { return threadNews - newCount_ + getQorCount() - qorCount_; }

}  // namespace support
