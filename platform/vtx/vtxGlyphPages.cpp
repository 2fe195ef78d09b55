#include "platform/vtx/vtxGlyphPages.h"

#include "platform/qor/Log.h"
#include "platform/vtx/vtxLog.h"
#include "platform/vtx/vtxTextureStore.h"

#include <algorithm>

namespace {

constexpr int side = vtxTextureStore::glyphPageSide;

}  // namespace

vtxGlyphPages::Page::Page(int pageLayer) : packer(side), image(std::make_unique<vtxTextureImage>()), record(*image) {
    image->place = vtxImagePlace::GlyphPage;
    image->layer = pageLayer;
    image->size.set(side, side);
    record.rect = {0.0f, 0.0f, static_cast<float>(side), static_cast<float>(side)};
    record.width = record.height = side;
}

vtxGlyphPages::~vtxGlyphPages() {
    for (auto const& page : pages_)
        end_(*page);
}

bool vtxGlyphPages::fits(vtxGlyphBitmap const& bitmap) {
    return bitmap.width + 2 * border <= side && bitmap.height + 2 * border <= side;
}

vtxGlyphPages::Place vtxGlyphPages::add(vtxGlyphBitmap const& bitmap) {
    Place place;
    place.width = bitmap.width + 2 * border;
    place.height = bitmap.height + 2 * border;
    auto const found = std::find_if(pages_.begin(), pages_.end(), [&place](auto const& page) {
        return page->packer.add(place.width, place.height, place.x, place.y);
    });
    if (found == pages_.end()) {
        int const layer = store_.addPage(vtxTextureStore::Pages::Glyph);
        if (layer < 0) {
            if (!full_)
                qor_logf(vtxLogTag, vtxLogProblem,
                         "There is no room for more glyphs: too many sizes of text are in use at once");
            full_ = true;
            return {};
        }
        pages_.push_back(std::make_unique<Page>(layer));
        store_.addTexture(pages_.back()->record);
        pages_.back()->packer.add(place.width, place.height, place.x, place.y);
        place.page = pages_.back().get();
    } else {
        place.page = found->get();
    }
    ++place.page->glyphs;
    padded_.assign(size_t(place.width) * size_t(place.height), 0);
    for (int row = 0; row < bitmap.height; ++row)
        std::copy_n(&bitmap.coverage[size_t(row) * size_t(bitmap.width)], bitmap.width,
                    &padded_[size_t(row + border) * size_t(place.width) + border]);
    store_.queueUpload(vtxTextureStore::Pages::Glyph, place.page->image->layer,
                       osg::RectImpl<osg::Vec2i>(place.x, place.y, place.x + place.width, place.y + place.height),
                       padded_.data());
    return place;
}

void vtxGlyphPages::giveBack(Page* page) {
    if (page)
        --page->glyphs;
}

void vtxGlyphPages::flush() {
    std::erase_if(pages_, [this](auto const& page) {
        if (page->glyphs)
            return false;
        end_(*page);
        full_ = false;
        return true;
    });
}

void vtxGlyphPages::end_(Page& page) {
    store_.removeTexture(page.record);
    store_.removePage(vtxTextureStore::Pages::Glyph, page.image->layer);
    store_.retireImage(std::move(page.image));
}
