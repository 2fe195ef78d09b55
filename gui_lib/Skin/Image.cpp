#include "gui_lib/Skin/Image.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "platform/qor/Log.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTexture.h"
#include "platform/vtx/vtxTextureManager.h"

namespace gui {

namespace {

constexpr std::int64_t maxTileCount = 1'000'000;

/// The tiles along one axis.
struct TileRange {
    /// Steps back from `position` until not above `limit`, then forward while before `end`.
    TileRange(std::int64_t position, std::int64_t limit, std::int64_t backStep, std::int64_t newStep, std::int64_t end)
        : start(position), step(newStep) {
        if (position > limit)
            start -= (position - limit + backStep - 1) / backStep * backStep;
        if (start < end)
            count = (end - start + step - 1) / step;
    }

    /// One tile at `position`.
    explicit TileRange(std::int64_t position) : start(position), step(1), count(1) {}

    std::int64_t start;
    std::int64_t step;
    std::int64_t count = 0;
};

void releaseTexture(vtxTexture* texture) {
    if (vtxRenderer* renderer = vtxRenderer::get())
        renderer->getTextureManager()->releaseTexture(texture);
}

bool isStretched(Align const& align) { return align.type == Align::Stretch; }

}  // namespace

/// The quads of one picture: all of one size, with the same texture coordinates.
struct Image::Tiles {
    void addQuad(std::int64_t x, std::int64_t y) const {
        quads.addBatchQuad(static_cast<float>(x), static_cast<float>(y), static_cast<float>(width),
                           static_cast<float>(height), -1.0f);
        quads.addBatchTexCoords(uMin, vMin, uMax, vMax);
    }

    void addGrid(TileRange const& columns, TileRange const& rows) const {
        for (std::int64_t row = 0; row < rows.count; ++row) {
            for (std::int64_t column = 0; column < columns.count; ++column)
                addQuad(columns.start + column * columns.step, rows.start + row * rows.step);
        }
    }

    vtxShaderQuads& quads;
    int width;
    int height;
    float uMin = 0.0f, vMin = 0.0f, uMax = 0.0f, vMax = 0.0f;
};

Image::Image() = default;

Image::~Image() {
    if (!ownsTexture)
        return;
    releaseTexture(texture);
    for (vtxTexture* pending : pendingReleases)
        releaseTexture(pending);
}

// --- Description ---

void Image::set(Info const& newInfo) {
    info = newInfo;
    geometryDirty = true;
}

void Image::setTexture(qor::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect) {
    vtxTexture* const newTexture = vtxRenderer::get()->getTextureManager()->getTexture(file, rect, texture);
    if (newTexture == texture)
        return;
    setTexture(newTexture, true);
}

void Image::setTexture(vtxTexture* newTexture, bool owned) {
    ownsTexture = owned;
    if (newTexture == texture)
        return;
    if (owned && texture)
        pendingReleases.push_back(texture);
    texture = newTexture;
    geometryDirty = true;
    // Nothing keeps a texture alive that is not owned, and what is hidden or recorded is laid out much later.
    if (!owned)
        quads.setTexture(newTexture);
}

// --- Layout ---

void Image::setSize(osg::Vec2i const& size) {
    if (info.size == size)
        return;
    info.size = size;
    geometryDirty = true;
}

osg::Vec2i Image::getSize() const {
    if (!texture)
        return osg::Vec2i(0, 0);
    if (info.size != osg::Vec2i(0, 0))
        return info.size;
    vtxTexture::Rect const& rect = texture->rect;
    return osg::Vec2i(saturatingSubtract(qor::truncateToInt(rect.x2), qor::truncateToInt(rect.x1)),
                      saturatingSubtract(qor::truncateToInt(rect.y2), qor::truncateToInt(rect.y1)));
}

void Image::setInsets(Insets const& newInsets) {
    if (insets == newInsets)
        return;
    insets = newInsets;
    geometryDirty = true;
}

void Image::setAlign(Align2 const& align) {
    if (info.align == align)
        return;
    info.align = align;
    geometryDirty = true;
}

Align2 Image::getAlign() const { return info.align; }

void Image::setResizeToFill(bool resize) {
    if (info.resizeToFill == resize)
        return;
    info.resizeToFill = resize;
    geometryDirty = true;
}

void Image::setTileHorizontally(bool tile) {
    if (info.tileHorizontally == tile)
        return;
    info.tileHorizontally = tile;
    geometryDirty = true;
}

void Image::setTileVertically(bool tile) {
    if (info.tileVertically == tile)
        return;
    info.tileVertically = tile;
    geometryDirty = true;
}

osg::Vec2i Image::getAvailableSize_() const {
    return osg::Vec2i(saturatingSubtract(saturatingSubtract(boundsSize.x(), insets.right), insets.left),
                      saturatingSubtract(saturatingSubtract(boundsSize.y(), insets.bottom), insets.top));
}

osg::RectImpl<osg::Vec2i> Image::place_() {
    osg::Vec2i picture = getSize();
    osg::Vec2i const available = getAvailableSize_();
    bool const larger = available.x() > picture.x() || available.y() > picture.y();
    if (info.resizeToFill && larger && picture.x() != 0 && picture.y() != 0) {
        double const k = std::max(static_cast<double>(available.y()) / picture.y(),
                                  static_cast<double>(available.x()) / picture.x());
        picture.x() = std::max(available.x(), qor::truncateToInt(std::ceil(picture.x() * k)));
        picture.y() = std::max(available.y(), qor::truncateToInt(std::ceil(picture.y() * k)));
    }
    osg::RectImpl<osg::Vec2i> const rect = info.align.calc(picture, available);
    position.set(saturatingAdd(rect.x1, insets.left), saturatingAdd(rect.y1, insets.top));
    return rect;
}

// --- Drawing ---

void Image::redraw(osg::Vec2i const& newBoundsSize) {
    if (!geometryDirty)
        return;
    if (texture && info.color.a() > 0.0f) {
        boundsSize = newBoundsSize;
        place_();
    }
    geometryDirty = false;
    quadsDirty = true;
}

void Image::doRedraw() {
    if (!quadsDirty)
        return;
    quads.reset();
    if (texture && info.color.a() > 0.0f) {
        osg::RectImpl<osg::Vec2i> const rect = place_();
        Tiles tiles{quads, saturatingSubtract(rect.x2, rect.x1), saturatingSubtract(rect.y2, rect.y1)};
        if (texture->width != 0 && texture->height != 0) {
            float const width = static_cast<float>(texture->width);
            float const height = static_cast<float>(texture->height);
            tiles.uMin = texture->rect.x1 / width;
            tiles.vMin = texture->rect.y1 / height;
            tiles.uMax = texture->rect.x2 / width;
            tiles.vMax = texture->rect.y2 / height;
        }
        quads.beginBatch(texture, 0);
        addQuads_(tiles);
        quads.endBatch();
    }
    quadsDirty = false;
    while (!pendingReleases.empty()) {
        releaseTexture(pendingReleases.back());
        pendingReleases.pop_back();
    }
}

void Image::addQuads_(Tiles const& tiles) {
    Align const& horz = info.align.getHorzAlign();
    Align const& vert = info.align.getVertAlign();
    bool const both = info.tileHorizontally && info.tileVertically;
    bool const tiled =
        both ? !(isStretched(horz) && isStretched(vert))
             : (info.tileHorizontally && !isStretched(horz)) || (info.tileVertically && !isStretched(vert));
    if (!tiled || tiles.width < 1 || tiles.height < 1) {
        tiles.addQuad(position.x(), position.y());
        return;
    }

    osg::Vec2i const available = getAvailableSize_();
    TileRange const row(position.x(), insets.left, tiles.width, tiles.width, available.x());
    TileRange const column(position.y(), insets.top, tiles.height, tiles.height, available.y());
    TileRange const columns(position.x(), std::int64_t(horz.offset) + insets.left, tiles.width, tiles.width,
                            available.x());
    // The grid's start steps up by the width of a tile, its rows by the height.
    TileRange const rows(position.y(), std::int64_t(vert.offset) + insets.top, tiles.width, tiles.height,
                         available.y());
    bool const addRow = info.tileHorizontally && (!both || isStretched(horz));
    bool const addColumn = info.tileVertically && !addRow && (!both || isStretched(vert));
    std::int64_t const limit = maxTileCount;
    std::int64_t const count = (both ? std::min(columns.count, limit + 1) * std::min(rows.count, limit + 1) : 0) +
                               (addRow ? row.count : 0) + (addColumn ? column.count : 0);
    if (count > limit) {
        qor_logf("VORLEX", 16, "A picture of %d by %d would be tiled more than a million times; it is drawn once.",
                 tiles.width, tiles.height);
        tiles.addQuad(position.x(), position.y());
        return;
    }

    if (both)
        tiles.addGrid(columns, rows);
    // One more row, column or picture lies over the grid.
    if (addRow)
        tiles.addGrid(row, TileRange(position.y()));
    else if (addColumn)
        tiles.addGrid(TileRange(position.x()), column);
    else
        tiles.addQuad(position.x(), position.y());
}

void Image::draw() const { draw(info.color); }

void Image::draw(osg::Vec4f const& color) const {
    if (!texture || !(color.a() > 0.0f))
        return;
    vtxShader* const shader = vtxRenderer::get()->getShader();
    shader->setColor(color);
    auto sampler = vtxRenderer::SamplerLinear;
    if (info.userTexSampler == vtxRenderer::SamplerNearest || info.userTexSampler == vtxRenderer::SamplerMips)
        sampler = static_cast<vtxRenderer::TextureSampler>(info.userTexSampler);
    shader->setUserTextureFiltering(sampler);
    quads.draw(shader);
    if (info.userTexSampler > 0)
        shader->resetTextureSampler();
}

void Image::make(GraphicCommands* commands) const { make(commands, info.color); }

void Image::make(GraphicCommands* commands, osg::Vec4f const& color) const {
    if (texture && color.a() > 0.0f)
        commands->drawQuads(quads, color, info.userTexSampler, -1);
}

}  // namespace gui
