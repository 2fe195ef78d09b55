#pragma once

#include "platform/vtx/vtxFont.h"
#include "platform/vtx/vtxFontStore.h"
#include "platform/vtx/vtxQuad.h"

#include <osg/Vec2d>

#include <memory>
#include <string_view>

class vtxQuadsRewriter;

/// The font that the font manager hands out: a chain of faces at a size and blur. May be called from any thread.
class vtxSizedFont final : public vtxFont {
public:
    vtxSizedFont(std::shared_ptr<vtxFontStore> store, vtxFontChain& chain, int size, Blur blur);

    /// A line of text to be built for a scale. `pen` is the start of the baseline, GUI units.
    struct Line {
        std::wstring_view text;
        osg::Vec2d pen;
        float scale;
        bool softened;  ///< by the font's blur
    };
    /// Appends quads in GUI units that stand on whole pixels from the pen, a batch for each page. `hold` keeps the
    /// glyphs.
    void addGlyphs(Line const& line, vtxQuadsRewriter& quads, std::shared_ptr<void const>& hold);
    /// Lets the glyphs of an earlier scale go; the store's lock is held.
    void forgetGlyphs();

    Blur getBlur() const { return blur_; }
    /// GUI units.
    double getXHeight() const;

    // vtxFont:
    int getAscender() const override { return ascender_; }
    int getDescender() const override { return descender_; }
    int getLineHeight() const override { return lineHeight_; }
    int getTextWidth(std::basic_string_view<wchar_t> text, float scale) const override;

private:
    struct Kept {
        float scale = 0.0f;
        std::shared_ptr<vtxGlyphSet> glyphs;
    };

    vtxGlyphSet* getGlyphs_(Line const& line, std::shared_ptr<void const>& hold);

    std::shared_ptr<vtxFontStore> store_;
    vtxFontChain& chain_;
    int size_;
    Blur blur_;
    int ascender_, descender_, lineHeight_;
    Kept kept_[2];               ///< sharp and softened
    qor::vector<vtxQuad> made_;  ///< scratch of addGlyphs
};
