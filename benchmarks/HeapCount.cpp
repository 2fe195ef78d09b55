#include "benchmarks/HeapCount.h"

#include <malloc.h>
#include <cerrno>

// The C library looks these names up like any other, so that what the program defines takes their place. Counters are
// plain: the workloads run on one thread.

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* memory);
}

namespace {

HeapCount count;

void* noteNew(void* memory) {
    ++count.allocations;
    count.liveBytes += malloc_usable_size(memory);
    return memory;
}

void noteEnd(void* memory) { count.liveBytes -= malloc_usable_size(memory); }

}  // namespace

extern "C" {

void* malloc(size_t size) noexcept { return noteNew(__libc_malloc(size)); }

void* calloc(size_t number, size_t size) noexcept { return noteNew(__libc_calloc(number, size)); }

void* realloc(void* memory, size_t size) noexcept {
    noteEnd(memory);
    return noteNew(__libc_realloc(memory, size));
}

void* memalign(size_t alignment, size_t size) noexcept { return noteNew(__libc_memalign(alignment, size)); }

void* aligned_alloc(size_t alignment, size_t size) noexcept { return noteNew(__libc_memalign(alignment, size)); }

int posix_memalign(void** result, size_t alignment, size_t size) noexcept {
    *result = noteNew(__libc_memalign(alignment, size));
    return *result || size == 0 ? 0 : ENOMEM;
}

void free(void* memory) noexcept {
    noteEnd(memory);
    __libc_free(memory);
}
}

HeapCount HeapCount::now() { return count; }
