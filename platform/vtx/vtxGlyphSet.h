#pragma once

#include "platform/qor/Containers.h"
#include "platform/vtx/vtxFontFace.h"
#include "platform/vtx/vtxGlyphPages.h"
#include "platform/vtx/vtxShaderQuads.h"

#include <array>
#include <cstdint>

class vtxFontChain;

/// The rasterised glyphs of one font at one size in pixels, sharp or softened. Whoever shows them holds the set, which
/// keeps them in their pages. For one thread at a time.
class vtxGlyphSet {
public:
    /// Above this size in pixels glyphs are rasterised smaller and stretched.
    static constexpr double maxSize = 256.0;
    /// Up to this size in pixels a glyph is rasterised for each quarter of a pixel on which its pen may stand.
    static constexpr double maxPhasedSize = 40.0;

    struct Glyph {
        vtxTexture const* page = nullptr;  ///< null: shows nothing
        /// Pixels from the whole pixel at or before the pen; the texture coordinates are those of the page.
        vtxShaderQuads::Quad quad = {};
        vtxGlyphPages::Page* owner = nullptr;
    };

    /// Pixels.
    vtxGlyphSet(vtxFontChain const& chain, double size, double blur);

    /// Glyphs stand on whole pixels if 1, on quarters if 4.
    int getPhaseCount() const { return phases_; }
    Glyph const& get(int face, unsigned glyph, int phase, vtxGlyphPages& pages) {
        if (face == 0 && glyph < phasesOf_.size())
            if (Glyph const* const known = common_[phasesOf_[glyph]][static_cast<std::size_t>(phase)])
                return *known;
        return find_(face, glyph, phase, pages);
    }
    /// Gives all glyphs back.
    void clear(vtxGlyphPages& pages);

    /// Counts the moments at which nobody held the set, for whoever owns it.
    unsigned idle = 0;

private:
    /// Glyphs of the first face with numbers below this are found without a search.
    static constexpr unsigned commonCount = 8192;
    using Phases = std::array<Glyph const*, vtxFontFace::phaseCount>;

    void noteCommon_(unsigned glyph, int phase, Glyph const& found);
    Glyph const& find_(int face, unsigned glyph, int phase, vtxGlyphPages& pages);
    Glyph make_(int face, unsigned glyph, int phase, vtxGlyphPages& pages) const;

    vtxFontChain const& chain_;
    double size_;
    double blur_;
    double stretch_;
    int phases_;
    qor::hash_map<std::uint64_t, Glyph> glyphs_;
    qor::vector<Phases> common_;           ///< into `glyphs_`; the first has none
    qor::vector<std::uint16_t> phasesOf_;  ///< place in `common_` by glyph number
};
