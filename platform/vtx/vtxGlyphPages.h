#pragma once

#include "platform/qor/Containers.h"
#include "platform/vtx/vtxFontFace.h"
#include "platform/vtx/vtxSkylinePacker.h"
#include "platform/vtx/vtxTextureRecord.h"

#include <memory>

class vtxTextureStore;

/// The pages that hold rasterised glyphs, each a texture that quads may show. A glyph never moves; a page goes when all
/// its glyphs have been given back. For one thread at a time.
class vtxGlyphPages {
public:
    /// Empty pixels around a glyph, inside its rectangle: they keep its edges soft where it is turned or stretched.
    static constexpr int border = 1;

    struct Page {
        explicit Page(int pageLayer);
        vtxSkylinePacker packer;
        int glyphs = 0;
        std::unique_ptr<vtxTextureImage> image;
        vtxTextureRecord record;
    };
    /// Pixels of the page, the border included.
    struct Place {
        Page* page = nullptr;
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
    };

    explicit vtxGlyphPages(vtxTextureStore& store) : store_(store) {}
    ~vtxGlyphPages();
    vtxGlyphPages(vtxGlyphPages const&) = delete;
    vtxGlyphPages& operator=(vtxGlyphPages const&) = delete;

    static bool fits(vtxGlyphBitmap const& bitmap);
    /// A place without page if the device has no room for more.
    Place add(vtxGlyphBitmap const& bitmap);
    void giveBack(Page* page);
    /// Ends pages without glyphs. While nobody draws.
    void flush();

    int getPageCount() const { return static_cast<int>(pages_.size()); }

private:
    void end_(Page& page);

    vtxTextureStore& store_;
    qor::vector<std::unique_ptr<Page>> pages_;
    qor::vector<unsigned char> padded_;
    bool full_ = false;
};
