#pragma once

#include "platform/qor/Containers.h"
#include "platform/vtx/vtxDevice.h"
#include "platform/vtx/vtxTexture.h"

#include <osg/Vec2i>

#include <cstdint>

/// Internal to the front half: what stands behind a vtxTexture.
/// An image is the pixels of one picture file, of one glyph page or of a target; several textures (rectangles of one
/// file) may share it. Whoever makes an image owns it, fills it before the first texture shows it and does not change
/// it after.

/// Where the pixels of an image are drawn from.
enum class vtxImagePlace : std::uint8_t {
    Alone,        ///< a texture of its own
    PicturePage,  ///< part of a layer of the picture pages
    GlyphPage     ///< a whole layer of the glyph pages; its red channel is coverage
};

struct vtxTextureImage {
    vtxImagePlace place = vtxImagePlace::Alone;
    /// Layer of the page array; used for pages.
    int layer = 0;
    /// First pixel of the image in its page (inside whatever margin the owner left around it).
    osg::Vec2i origin{0, 0};
    /// Pixels of the image, which for an "@2x" file are twice its units; the side of the page for a glyph page.
    osg::Vec2i size{0, 0};
    /// Premultiplied RGBA, top row first, `size.x * size.y * 4` bytes, for the texture of the picture alone, which is
    /// made on the first draw that cannot use the page (coordinates outside 0 to 1, samplers 2 and 3, geometry,
    /// effects). Images with place Alone lose them once they are uploaded. Empty for glyph pages and targets.
    qor::vector<unsigned char> pixels;

    // --- Written by the front half on the drawing thread ---
    /// The texture of the picture alone, or of a target.
    vtxDeviceHandle alone = 0;
    /// The device could not make it; logged once.
    bool aloneFailed = false;
    /// How much of the storage shows the image: below 1 for targets whose size times scale is no whole number.
    float usedU = 1.0f;
    float usedV = 1.0f;
    /// Set while the target behind it is being drawn into.
    bool bound = false;
    /// A target's texture; pixels and storage match one to one where nothing turns or stretches it.
    bool target = false;
};

/// The vtxTexture that the managers and targets hand out. It counts as alive between vtxTextureStore::addTexture and
/// removeTexture; drawing with another is reported as misuse and draws nothing.
class vtxTextureRecord final : public vtxTexture {
public:
    explicit vtxTextureRecord(vtxTextureImage& textureImage) : image(&textureImage) {}

    /// May be pointed at another image (the same picture for another scale) while nobody draws; the queued quads keep
    /// the old one, so it is retired and not freed at once.
    vtxTextureImage* image;
};
