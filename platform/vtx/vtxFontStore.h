#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/Mutex.h"
#include "platform/vtx/vtxFont.h"
#include "platform/vtx/vtxFontCatalog.h"
#include "platform/vtx/vtxFontChain.h"
#include "platform/vtx/vtxGlyphPages.h"
#include "platform/vtx/vtxGlyphSet.h"

#include <memory>
#include <tuple>

class vtxTextureStore;

/// What all fonts share, and the one lock that guards it. It lives as long as a font does, so that text can be measured
/// after the renderer has gone; glyphs then no longer show.
class vtxFontStore {
public:
    explicit vtxFontStore(vtxTextureStore& textures) : pages(std::make_unique<vtxGlyphPages>(textures)) {}

    /// Everything below is used under it.
    qor::mutex mutex;
    vtxFontCatalog catalog;
    std::unique_ptr<vtxGlyphPages> pages;  ///< null once the renderer has gone

    /// The chain that begins with a face.
    vtxFontChain& getChain(vtxFontFace& face);
    /// `size` and `blur` in pixels. Null once the renderer has gone.
    std::shared_ptr<vtxGlyphSet> getGlyphs(vtxFontChain const& chain, double size, double blur);

    /// Ends glyphs that nobody has held for a while, and their pages. While nobody draws.
    void trim();
    /// Faces have been replaced: chains are made anew. Fonts that are held keep theirs.
    void retireChains();
    /// The renderer goes.
    void detach();

private:
    static constexpr unsigned idleTrims = 30;
    using SetKey = std::tuple<vtxFontChain const*, int, int>;

    qor::map<vtxFontFace*, std::unique_ptr<vtxFontChain>> chains_;
    qor::vector<std::unique_ptr<vtxFontChain>> retired_;
    qor::map<SetKey, std::shared_ptr<vtxGlyphSet>> sets_;  ///< sizes in 64ths of a pixel
};
