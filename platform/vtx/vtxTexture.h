#pragma once

#include "platform/qor/Api.h"

/// A picture, or a part of one, that quads and geometry can show.
/// `rect` is the picture's rectangle inside the image and `width`, `height` the image's size, all in picture units
/// (those of the 1x file, or GUI units for the texture of a frame buffer). They never describe the page that the front
/// half may have packed the picture into. Lifetime: owned by the texture manager, or by the frame buffer that it
/// belongs to.
class VORLEX_API vtxTexture {
public:
    struct Rect {
        float x1 = 0.0f;
        float y1 = 0.0f;
        float x2 = 0.0f;
        float y2 = 0.0f;
    };

    vtxTexture() = default;
    virtual ~vtxTexture();
    vtxTexture(vtxTexture const&) = delete;
    vtxTexture& operator=(vtxTexture const&) = delete;

    Rect rect;
    int width = 0;
    int height = 0;
};

/// An array of textures for geometry drawing. The toolkit only ever passes null.
class vtxTextureArray;
