#pragma once

#include <cstddef>

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"

namespace qor {

/// Memory blocks of one size, carved from chunks that are kept until the pool ends. For one thread at a time.
///
/// Lifetime: blocks still out when the pool ends are logged with the pool's name and freed with it.
class VORLEX_API BlockPool {
public:
    /// Sizes in bytes; `alignment` is a power of two. `name` is for messages and must outlive the pool.
    BlockPool(size_t blockSize, size_t blocksPerChunk, char const* name, size_t alignment);
    ~BlockPool();
    BlockPool(BlockPool const&) = delete;
    BlockPool& operator=(BlockPool const&) = delete;

    /// Never null. The block freed last comes out first.
    void* alloc();
    /// Takes a block that alloc gave; null is allowed.
    void free(void* block);

    size_t getUsedCount() const { return used_; }
    size_t getChunkCount() const { return chunks_.size(); }
    char const* getName() const { return name_; }

private:
    struct FreeBlock {
        FreeBlock* next;
    };

    void addChunk_();

    size_t blockSize_;
    size_t blocksPerChunk_;
    size_t alignment_;
    char const* name_;
    FreeBlock* free_ = nullptr;
    size_t used_ = 0;
    vector<void*> chunks_;
};

}  // namespace qor
