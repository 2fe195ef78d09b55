#include "platform/vtx/vtxQuad.h"

#include <atomic>

void vtxQuadKey::renew() {
    static std::atomic<std::uint64_t> lastContent{0};
    static std::atomic<std::uint32_t> lastOwner{0};
    content = lastContent.fetch_add(1, std::memory_order_relaxed) + 1;
    if (!owner)
        owner = lastOwner.fetch_add(1, std::memory_order_relaxed) + 1;
}
