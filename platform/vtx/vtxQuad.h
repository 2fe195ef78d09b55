#pragma once

#include <cstdint>

#include "platform/qor/Api.h"

/// A quad of a picture. Positions and sizes in GUI units, texture coordinates 0 to 1 of the picture file.
struct vtxQuad {
    float x, y, w, h;
    float uMin, vMin, uMax, vMax;
};

/// Tells the renderer that a block of quads is the one that it has drawn before. Copied with the quads: copies of
/// equal content have equal keys.
struct vtxQuadKey {
    /// Never given twice; 0 while the content may still change.
    std::uint64_t content = 0;
    /// Whose content it is, so that new content is known to replace the old; 0 for nobody's.
    std::uint32_t owner = 0;

    /// The content is another one. From any thread.
    VORLEX_API void renew();
};

/// How the content of a block came from content that it had before.
struct vtxQuadChange {
    static constexpr int mostQuads = 64;
    /// The content before; 0 if nothing is known.
    std::uint64_t from = 0;
    /// By bits the quads that differ, of `mostQuads` at most; their number is the same.
    std::uint64_t quads = 0;
    /// Those of them that differ in nothing but their place.
    std::uint64_t moved = 0;
};
