#include "platform/vtx/vtxSizedFont.h"

#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxPair.h"
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

/// Makes the quads of a line from the places of its glyphs.
class LineMaker {
public:
    /// `scratch` is where a batch grows until it is whole.
    LineMaker(vtxSizedFont::Line const& line, double size, vtxGlyphSet& glyphs, vtxGlyphPages& pages,
              qor::vector<vtxQuad>& scratch, vtxQuadsRewriter& quads)
        : glyphs_(glyphs), pages_(pages), scratch_(scratch), quads_(quads), pixelsPerUnit_(toPixels(1, size)) {
        float const pixel = 1.0f / line.scale;
        grid_.pen = vtxPair{line.pen.x(), line.pen.y()};
        grid_.pixels = vtxPairs::both(pixel);
        grid_.sizes = vtxFloats{pixel, pixel, pixel, pixel};
        grid_.stepsPerUnit = toPixels(1, size * glyphs.getPhaseCount());
        grid_.phaseBits = glyphs.getPhaseCount() == 1 ? 0 : phaseCountBits;
    }
    ~LineMaker() { endBatch_(); }

    void addPlain(std::wstring_view text, vtxEm const* pens) {
        reserve_(text.size());
        // What stays the same is not looked up again behind each quad that is written.
        Grid const grid = grid_;
        vtxGlyphSet::Glyph const* const* const known = glyphs_.getPlain();
        vtxTexture const* page = page_;
        vtxQuad* quad = scratch_.data() + count_;
        wchar_t const* const end = text.data() + text.size();
        for (wchar_t const* letter = text.data(); letter != end; ++letter, ++pens) {
            std::int64_t const step = grid.findStep(*pens);
            unsigned const place = vtxGlyphSet::getPlainIndex(*letter, grid.getPhase(step));
            vtxGlyphSet::Glyph const* const glyph = known[place] ? known[place] : findPlain_(place);
            if (glyph->page != page) {
                if (!glyph->page)
                    continue;
                page = glyph->page;
                quad = beginBatch_(page, quad);
            }
            grid.place(glyph->quad, step, 0.0, *quad++);
        }
        count_ = static_cast<std::size_t>(quad - scratch_.data());
    }

    void add(vtxPlacedGlyph const& placed) {
        std::int64_t const step = grid_.findStep(placed.x);
        vtxGlyphSet::Glyph const& glyph = glyphs_.get(placed, grid_.getPhase(step), pages_);
        if (!glyph.page)
            return;
        if (glyph.page != page_)
            beginBatch_(glyph.page, scratch_.data() + count_);
        reserve_(1);
        // Only marks leave the baseline.
        auto const y = static_cast<double>(floorToInt(static_cast<double>(placed.y) * pixelsPerUnit_ + 0.5));
        grid_.place(glyph.quad, step, y, scratch_[count_++]);
    }

private:
    /// Where glyphs may stand, from a pen at the start of the baseline.
    struct Grid {
        vtxPair pen, pixels;  ///< GUI units
        vtxFloats sizes;      ///< of a pixel
        double stepsPerUnit;
        int phaseBits;

        std::int64_t findStep(vtxEm x) const { return floorToInt(static_cast<double>(x) * stepsPerUnit + 0.5); }
        int getPhase(std::int64_t step) const { return static_cast<int>(step & ((1 << phaseBits) - 1)); }
        void place(vtxQuad const& glyph, std::int64_t step, double y, vtxQuad& quad) const {
            vtxFloats const place = vtxPairs::load(&glyph.x);
            vtxPair const corner{static_cast<double>(step >> phaseBits), y};
            vtxPair const from = pen + (corner + vtxPairs::first(place)) * pixels;
            vtxPairs::store(&quad.x, vtxPairs::joinFirst(from, place * sizes));
            vtxPairs::store(&quad.uMin, vtxPairs::load(&glyph.uMin));
        }
    };

    void reserve_(std::size_t more) {
        if (scratch_.size() < count_ + more)
            scratch_.resize(std::max(count_ + more, 2 * scratch_.size()));
    }
    // Rare ones are kept out of the loop.
    __attribute__((noinline)) vtxGlyphSet::Glyph const* findPlain_(unsigned place) {
        return &glyphs_.findPlain(place, pages_);
    }
    /// Ends the batch before at `end` and tells where the next quad goes.
    __attribute__((noinline)) vtxQuad* beginBatch_(vtxTexture const* page, vtxQuad const* end) {
        count_ = static_cast<std::size_t>(end - scratch_.data());
        endBatch_();
        page_ = page;
        return scratch_.data();
    }
    void endBatch_() {
        if (page_)
            quads_.addBatch(page_, scratch_.data(), static_cast<int>(count_));
        count_ = 0;
    }

    vtxGlyphSet& glyphs_;
    vtxGlyphPages& pages_;
    qor::vector<vtxQuad>& scratch_;
    vtxQuadsRewriter& quads_;
    Grid grid_;
    double pixelsPerUnit_;
    vtxTexture const* page_ = nullptr;  ///< of the batch that grows
    std::size_t count_ = 0;             ///< quads in the batch that grows
};

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

void vtxSizedFont::addGlyphs(Line const& line, vtxQuadsRewriter& quads, std::shared_ptr<void const>& hold) {
    std::lock_guard const lock(store_->mutex);
    vtxGlyphSet* const glyphs = getGlyphs_(line, hold);
    if (!glyphs)
        return;
    LineMaker maker(line, size_ * static_cast<double>(line.scale), *glyphs, *store_->pages, made_, quads);
    chain_.layOut(
        line.text, [&](std::wstring_view plain, vtxEm const* pens) { maker.addPlain(plain, pens); },
        [&](vtxPlacedGlyph const& placed) { maker.add(placed); });
}
