#include "platform/vtx/vtxGlyphSet.h"

#include "platform/vtx/vtxTextureStore.h"

#include <algorithm>

namespace {

/// Pixels; the rasteriser knows no smaller size.
constexpr double leastSize = 1.0 / 64.0;

}  // namespace

vtxGlyphSet::vtxGlyphSet(vtxFontChain const& chain, double size, double blur)
    : chain_(chain),
      size_(std::min(size, maxSize)),
      blur_(blur * size_ / size),
      stretch_(size / size_),
      phases_(size <= maxPhasedSize && blur < 2.0 ? vtxFontFace::phaseCount : 1),
      plain_(vtxFontChain::plainCount * vtxFontFace::phaseCount) {}

vtxGlyphSet::Glyph const& vtxGlyphSet::get(vtxPlacedGlyph const& placed, int phase, vtxGlyphPages& pages) {
    std::uint64_t const key = (std::uint64_t(static_cast<unsigned>(placed.face)) << 40) |
                              (std::uint64_t(static_cast<unsigned>(phase)) << 32) | placed.glyph;
    auto const known = glyphs_.find(key);
    if (known != glyphs_.end())
        return known->second;
    return glyphs_.emplace(key, make_(placed.face, placed.glyph, phase, pages)).first->second;
}

vtxGlyphSet::Glyph const& vtxGlyphSet::findPlain(unsigned index, vtxGlyphPages& pages) {
    constexpr unsigned phases = vtxFontFace::phaseCount;
    Glyph const& glyph = get(chain_.getPlain(index / phases), static_cast<int>(index % phases), pages);
    plain_[index] = &glyph;
    return glyph;
}

vtxGlyphSet::Glyph vtxGlyphSet::make_(int face, unsigned glyph, int phase, vtxGlyphPages& pages) const {
    Glyph made;
    vtxGlyphBitmap bitmap;
    double size = size_, stretch = stretch_;
    if (!chain_.getFace(face).rasterise(glyph, size, phase, blur_, bitmap))
        return made;
    // A glyph that is larger than a page is halved until one holds it.
    while (!vtxGlyphPages::fits(bitmap) && size > leastSize) {
        size *= 0.5;
        stretch *= 2.0;
        if (!chain_.getFace(face).rasterise(glyph, size, 0, blur_ * size / size_, bitmap))
            return made;
    }
    if (!vtxGlyphPages::fits(bitmap))
        return made;
    vtxGlyphPages::Place const place = pages.add(bitmap);
    if (!place.page)
        return made;
    constexpr float texel = 1.0f / vtxTextureStore::glyphPageSide;
    made.page = &place.page->record;
    made.owner = place.page;
    made.quad = {static_cast<float>((bitmap.left - vtxGlyphPages::border) * stretch),
                 static_cast<float>((bitmap.top - vtxGlyphPages::border) * stretch),
                 static_cast<float>(place.width * stretch),
                 static_cast<float>(place.height * stretch),
                 static_cast<float>(place.x) * texel,
                 static_cast<float>(place.y) * texel,
                 static_cast<float>(place.x + place.width) * texel,
                 static_cast<float>(place.y + place.height) * texel};
    return made;
}

void vtxGlyphSet::clear(vtxGlyphPages& pages) {
    for (auto const& [key, glyph] : glyphs_)
        pages.giveBack(glyph.owner);
    glyphs_.clear();
    plain_.assign(plain_.size(), nullptr);
}
