#include "platform/qor/Memory.h"

#include <atomic>
#include <cstdlib>

#include "platform/qor/Log.h"

namespace {

std::atomic<size_t> allocationCount{0};
std::atomic<size_t> freeCount{0};
std::atomic<size_t> forbiddenCount{0};
thread_local size_t threadAllocations = 0;
thread_local int forbidDepth = 0;

void count(size_t size) {
    allocationCount.fetch_add(1, std::memory_order_relaxed);
    ++threadAllocations;
    if (forbidDepth > 0) {
        forbiddenCount.fetch_add(1, std::memory_order_relaxed);
        qor::AllowAllocations const allow;
        qor_logf("VORLEX", 64, "%zu bytes were allocated where allocation is forbidden", size);
    }
}

}  // namespace

void* qor_malloc(size_t size) {
    count(size);
    void* const memory = std::malloc(size ? size : 1);
    if (!memory)
        qor::fatal_out_of_memory("qor_malloc", size);
    return memory;
}

void* qor_aligned_malloc(size_t size, size_t alignment) {
    count(size);
    void* memory = nullptr;
    if (posix_memalign(&memory, alignment < sizeof(void*) ? sizeof(void*) : alignment, size ? size : 1) != 0)
        qor::fatal_out_of_memory("qor_malloc", size);
    return memory;
}

void qor_free(void* memory) {
    if (!memory)
        return;
    freeCount.fetch_add(1, std::memory_order_relaxed);
    std::free(memory);
}

namespace qor {

void fatal_out_of_memory(char const* where, size_t size) {
    forbidDepth = 0;
    qor_logf("VORLEX", 64, "Out of memory in %s: %zu bytes. The program ends.", where, size);
    std::abort();
}

AllocationCounts getAllocationCounts() {
    return {allocationCount.load(std::memory_order_relaxed), freeCount.load(std::memory_order_relaxed),
            forbiddenCount.load(std::memory_order_relaxed)};
}

ForbidAllocations::ForbidAllocations() { ++forbidDepth; }
ForbidAllocations::~ForbidAllocations() { --forbidDepth; }

AllowAllocations::AllowAllocations() : depth_(forbidDepth) { forbidDepth = 0; }
AllowAllocations::~AllowAllocations() { forbidDepth = depth_; }

AllocationScope::AllocationScope() : start_(threadAllocations) {}
size_t AllocationScope::getCount() const { return threadAllocations - start_; }

}  // namespace qor
