#pragma once

#include "platform/qor/Containers.h"
#include "platform/vtx/vtxFontChain.h"
#include "platform/vtx/vtxGlyphPages.h"
#include "platform/vtx/vtxShaderQuads.h"

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
    Glyph const& get(vtxPlacedGlyph const& placed, int phase, vtxGlyphPages& pages);
    /// Glyphs of plain characters by `getPlainIndex`, null where not known yet. Stays where it is.
    Glyph const* const* getPlain() const { return plain_.data(); }
    static unsigned getPlainIndex(wchar_t character, int phase) {
        return static_cast<unsigned>(character) * vtxFontFace::phaseCount + static_cast<unsigned>(phase);
    }
    /// Finds one that the chain has laid out.
    Glyph const& findPlain(unsigned index, vtxGlyphPages& pages);
    /// Gives all glyphs back.
    void clear(vtxGlyphPages& pages);

    /// Counts the moments at which nobody held the set, for whoever owns it.
    unsigned idle = 0;

private:
    Glyph make_(int face, unsigned glyph, int phase, vtxGlyphPages& pages) const;

    vtxFontChain const& chain_;
    double size_;
    double blur_;
    double stretch_;
    int phases_;
    qor::hash_map<std::uint64_t, Glyph> glyphs_;
    qor::vector<Glyph const*> plain_;  ///< into `glyphs_`, by plain character and phase
};
