#include "platform/qor/BlockPool.h"

#include <algorithm>

#include "platform/qor/Log.h"

namespace qor {

BlockPool::BlockPool(size_t blockSize, size_t blocksPerChunk, char const* name, size_t alignment)
    : blocksPerChunk_(std::max<size_t>(blocksPerChunk, 1)),
      alignment_(std::max(alignment, alignof(FreeBlock))),
      name_(name ? name : "") {
    size_t const atLeast = std::max(blockSize, sizeof(FreeBlock));
    blockSize_ = (atLeast + alignment_ - 1) / alignment_ * alignment_;
}

BlockPool::~BlockPool() {
    if (used_ > 0)
        qor_logf("VORLEX", 8, "Block pool %s ends while %zu of its blocks are in use", name_, used_);
    for (void* chunk : chunks_)
        qor_free(chunk);
}

void* BlockPool::alloc() {
    if (!free_)
        addChunk_();
    FreeBlock* const block = free_;
    free_ = block->next;
    ++used_;
    return block;
}

void BlockPool::free(void* block) {
    if (!block)
        return;
    free_ = new (block) FreeBlock{free_};
    --used_;
}

void BlockPool::addChunk_() {
    if (blockSize_ > std::numeric_limits<size_t>::max() / blocksPerChunk_)
        fatal_out_of_memory("qor_malloc", std::numeric_limits<size_t>::max());
    auto* const chunk = static_cast<char*>(qor_aligned_malloc(blockSize_ * blocksPerChunk_, alignment_));
    chunks_.push_back(chunk);
    // Backwards, so that the blocks come out in the order of their addresses.
    for (size_t i = blocksPerChunk_; i-- > 0;)
        free_ = new (chunk + i * blockSize_) FreeBlock{free_};
}

}  // namespace qor
