#include "platform/vtx/vtxSizedFont.h"

#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxShaderQuads.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <utility>

namespace {

/// GUI units by which the blurs soften.
constexpr double blurRadius[] = {0.0, 1.0, 3.0};

constexpr int phaseCountBits = 2;
static_assert(vtxFontFace::phaseCount == 1 << phaseCountBits);

double toPixels(vtxEm length, double size) { return static_cast<double>(length) * size / vtxEmUnit; }

/// As std::floor, for what fits into 64 bits.
std::int64_t floorToInt(double value) {
    auto const whole = static_cast<std::int64_t>(value);
    return value >= 0.0 ? whole : whole - (static_cast<double>(whole) > value);
}

/// Away from the baseline, so that no row of a glyph is cut off at any scale; not for a mere rounding error.
int roundAway(double length) {
    return qor::truncateToInt(length < 0.0 ? std::floor(length + 0.001) : std::ceil(length - 0.001));
}

}  // namespace

vtxSizedFont::vtxSizedFont(std::shared_ptr<vtxFontStore> store, vtxFontChain& chain, int size, Blur blur)
    : store_(std::move(store)), chain_(chain), size_(size), blur_(blur) {
    vtxFontFace const& face = chain.getFace(0);
    ascender_ = roundAway(toPixels(face.getAscender(), size));
    descender_ = roundAway(toPixels(face.getDescender(), size));
    lineHeight_ = qor::truncateToInt(
        std::max(toPixels(face.getLineHeight(), size) + 0.5, static_cast<double>(ascender_) - descender_));
}

double vtxSizedFont::getXHeight() const { return toPixels(chain_.getFace(0).getXHeight(), size_); }

int vtxSizedFont::getTextWidth(std::basic_string_view<wchar_t> text, float) const {
    if (text.empty())
        return 0;
    std::lock_guard const lock(store_->mutex);
    return qor::truncateToInt(std::floor(toPixels(chain_.measure(text), size_) + 0.5));
}

// --- Glyphs ---

vtxGlyphSet* vtxSizedFont::getGlyphs_(Line const& line, std::shared_ptr<void const>& hold) {
    Kept& kept = kept_[line.softened];
    if (!kept.glyphs || kept.scale != line.scale || !store_->pages) {
        double const scale = line.scale;
        kept.glyphs = store_->getGlyphs(chain_, size_ * scale, line.softened ? blurRadius[blur_] * scale : 0.0);
        kept.scale = line.scale;
    }
    if (hold != kept.glyphs)
        hold = kept.glyphs;
    return kept.glyphs.get();
}

void vtxSizedFont::forgetGlyphs() {
    for (Kept& kept : kept_)
        kept = Kept();
}

void vtxSizedFont::addGlyphs(Line const& line, vtxShaderQuads& quads, std::shared_ptr<void const>& hold) {
    std::lock_guard const lock(store_->mutex);
    vtxGlyphSet* const glyphs = getGlyphs_(line, hold);
    if (!glyphs)
        return;
    double const size = size_ * static_cast<double>(line.scale);
    int const phaseBits = glyphs->getPhaseCount() == 1 ? 0 : phaseCountBits;
    double const stepsPerEm = size * glyphs->getPhaseCount();
    float const pixel = 1.0f / line.scale;
    osg::Vec2d const pen = line.pen;
    vtxGlyphPages& pages = *store_->pages;
    vtxTexture const* page = nullptr;
    // Inline, since it is most of what the loops over the text do.
    chain_.layOut(
        line.text, [&](vtxPlacedGlyph const& placed, char32_t plain) __attribute__((always_inline)) {
            std::int64_t const step = floorToInt(toPixels(placed.x, stepsPerEm) + 0.5);
            std::int64_t const x = step >> phaseBits;
            vtxGlyphSet::Glyph const& glyph =
                glyphs->get(placed, plain, static_cast<int>(step - (x << phaseBits)), pages);
            if (!glyph.page)
                return;
            if (glyph.page != page) {
                if (page)
                    quads.endBatch();
                page = glyph.page;
                quads.beginBatch(page, static_cast<int>(line.text.size()));
            }
            // Only marks leave the baseline.
            double const y = placed.y == 0 ? 0.0 : static_cast<double>(floorToInt(toPixels(placed.y, size) + 0.5));
            vtxShaderQuads::Quad quad = glyph.quad;
            quad.x = static_cast<float>(pen.x() + (static_cast<double>(x) + quad.x) * pixel);
            quad.y = static_cast<float>(pen.y() + (y + quad.y) * pixel);
            quad.w *= pixel;
            quad.h *= pixel;
            quads.addBatchQuad(quad);
        });
    if (page)
        quads.endBatch();
}
