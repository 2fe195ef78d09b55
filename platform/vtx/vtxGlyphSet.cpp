#include "platform/vtx/vtxGlyphSet.h"

#include "platform/vtx/vtxFontChain.h"
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
      phases_(size <= maxPhasedSize && blur < 2.0 ? vtxFontFace::phaseCount : 1) {}

vtxGlyphSet::Glyph const& vtxGlyphSet::find_(int face, unsigned glyph, int phase, vtxGlyphPages& pages) {
    std::uint64_t const key = (std::uint64_t(static_cast<unsigned>(face)) << 40) |
                              (std::uint64_t(static_cast<unsigned>(phase)) << 32) | glyph;
    auto known = glyphs_.find(key);
    if (known == glyphs_.end())
        known = glyphs_.emplace(key, make_(face, glyph, phase, pages)).first;
    if (face == 0 && glyph < commonCount)
        noteCommon_(glyph, phase, known->second);
    return known->second;
}

void vtxGlyphSet::noteCommon_(unsigned glyph, int phase, Glyph const& found) {
    if (common_.empty())
        common_.push_back(Phases());
    if (glyph >= phasesOf_.size())
        phasesOf_.resize(glyph + 1);
    if (phasesOf_[glyph] == 0) {
        phasesOf_[glyph] = static_cast<std::uint16_t>(common_.size());
        common_.push_back(Phases());
    }
    common_[phasesOf_[glyph]][static_cast<std::size_t>(phase)] = &found;
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
    common_.clear();
    phasesOf_.clear();
}
