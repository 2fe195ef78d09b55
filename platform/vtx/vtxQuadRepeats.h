#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "platform/qor/Containers.h"
#include "platform/vtx/vtxDevice.h"
#include "platform/vtx/vtxPair.h"
#include "platform/vtx/vtxQuad.h"

struct vtxTextureImage;

/// Internal: what was last made of quads that can be moved. A glyph, or a cell of a background, comes again and again
/// at other places, and then differs in its corner alone.
class vtxQuadRepeats {
public:
    /// What instances depend on besides their quads and their place.
    struct Space {
        vtxTextureImage const* image = nullptr;
        std::uint32_t view = 0;
        std::uint32_t pageChanges = 0;
    };
    struct Entry {
        Space space;
        float size[2];  ///< of the quad, with its coordinates
        float coordinates[4];
        vtxPair length;  ///< target pixels
        vtxQuadInstance instance;
    };

    vtxQuadRepeats() : entries_(count) {}

    /// Null if the quad was not made in this space, or others have taken its place since.
    Entry const* find(Space const& space, vtxQuad const& quad) const {
        std::size_t const slot = getSlot_(quad);
        for (Entry const* const entry : {&entries_[slot], &entries_[slot ^ 1]}) {
            if (vtxPairs::isSameBits(entry->space, space) &&
                vtxPairs::isSame(vtxPairs::load(entry->coordinates), vtxPairs::load(&quad.uMin)) &&
                std::memcmp(entry->size, &quad.w, sizeof(entry->size)) == 0)
                return entry;
        }
        return nullptr;
    }
    void remember(Space const& space, vtxQuad const& quad, vtxQuadInstance const& instance, vtxPair length) {
        std::size_t const slot = getSlot_(quad);
        Entry& entry = entries_[slot];
        entries_[slot ^ 1] = entry;
        entry.space = space;
        std::memcpy(entry.size, &quad.w, sizeof(entry.size));
        std::memcpy(entry.coordinates, &quad.uMin, sizeof(entry.coordinates));
        entry.length = length;
        entry.instance = instance;
    }

private:
    static constexpr std::size_t count = 512;

    static std::size_t getSlot_(vtxQuad const& quad) {
        std::uint64_t corner = 0, size = 0;
        std::memcpy(&corner, &quad.uMin, sizeof(corner));
        std::memcpy(&size, &quad.w, sizeof(size));
        // Fibonacci hashing: the golden ratio of 2 to the 64th spreads neighbours.
        constexpr std::uint64_t golden = 0x9E3779B97F4A7C15;
        return static_cast<std::size_t>(((size * golden) ^ corner) * golden >> (64 - std::bit_width(count - 1)));
    }

    qor::vector<Entry> entries_;
};
