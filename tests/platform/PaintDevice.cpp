#include "tests/platform/PaintDevice.h"

#include <algorithm>
#include <cmath>
#include <cstring>

// --- Canvas ---

void PaintCanvas::clear(unsigned char red, unsigned char green, unsigned char blue) {
    pixels.resize(size_t(size.x()) * size_t(size.y()) * 4);
    for (size_t i = 0; i < pixels.size(); i += 4) {
        pixels[i] = red;
        pixels[i + 1] = green;
        pixels[i + 2] = blue;
        pixels[i + 3] = 255;
    }
    quads.clear();
}

osg::RectImpl<osg::Vec2i> PaintCanvas::findInk() const {
    osg::RectImpl<osg::Vec2i> ink;
    for (int y = 0; y < size.y(); ++y) {
        for (int x = 0; x < size.x(); ++x) {
            if (std::memcmp(at(x, y), at(0, 0), 4))
                ink = ink.united({x, y, x + 1, y + 1});
        }
    }
    return ink;
}

// --- Textures ---

PaintDevice::PaintDevice(PaintCanvas& canvas) : canvas_(canvas) {
    if (canvas_.pixels.empty())
        canvas_.clear(255, 255, 255);
}

vtxDeviceHandle PaintDevice::createTexture(vtxTextureDescription const& description) {
    Texture& texture = textures_.emplace_back();
    texture.width = description.width;
    texture.height = description.height;
    texture.channels = description.singleChannel ? 1 : 4;
    auto const handle = static_cast<vtxDeviceHandle>(textures_.size());
    resizeTextureArray(handle, std::max(description.layers, 1));
    return handle;
}

void PaintDevice::resizeTextureArray(vtxDeviceHandle texture, int layers) {
    Texture& resized = textures_[texture - 1];
    resized.pixels.resize(size_t(resized.width) * size_t(resized.height) * size_t(resized.channels * layers));
}

void PaintDevice::uploadTexture(vtxDeviceHandle texture, int layer, osg::RectImpl<osg::Vec2i> const& rect,
                                unsigned char const* pixels) {
    ++canvas_.uploads;
    Texture& target = textures_[texture - 1];
    size_t const row = size_t(rect.width()) * size_t(target.channels);
    for (int y = rect.y1; y < rect.y2; ++y, pixels += row) {
        size_t const at =
            ((size_t(layer) * size_t(target.height) + size_t(y)) * size_t(target.width) + size_t(rect.x1));
        std::copy_n(pixels, row, &target.pixels[at * size_t(target.channels)]);
    }
}

void PaintDevice::destroyTexture(vtxDeviceHandle texture) { textures_[texture - 1] = Texture(); }

// --- Painting ---

PaintDevice::Texel PaintDevice::sample_(Texture const& texture, int layer, float u, float v) const {
    int const x = std::clamp(int(std::floor(u * float(texture.width))), 0, texture.width - 1);
    int const y = std::clamp(int(std::floor(v * float(texture.height))), 0, texture.height - 1);
    size_t const at = (size_t(layer) * size_t(texture.height) + size_t(y)) * size_t(texture.width) + size_t(x);
    unsigned char const* const pixel = &texture.pixels[at * size_t(texture.channels)];
    Texel texel;
    for (int i = 0; i < 4; ++i)
        texel[size_t(i)] = float(pixel[texture.channels == 1 ? 0 : i]) / 255.0f;
    return texel;
}

void PaintDevice::paint_(vtxQuadRun const& run, vtxQuadInstance const& quad) {
    vtxDeviceHandle const texture = quad.source == vtxQuadSource::Plain   ? 0
                                    : quad.source == vtxQuadSource::Glyph ? run.glyphPages
                                    : quad.source >= vtxQuadSource::Lone
                                        ? run.lone[quad.source - vtxQuadSource::Lone].texture
                                        : run.picturePages;
    float const color[] = {quad.r, quad.g, quad.b};
    int const left = std::max(int(std::ceil(quad.x - 0.5f)), 0), top = std::max(int(std::ceil(quad.y - 0.5f)), 0);
    for (int y = top; y < canvas_.size.y() && float(y) + 0.5f < quad.y + quad.vy; ++y) {
        for (int x = left; x < canvas_.size.x() && float(x) + 0.5f < quad.x + quad.ux; ++x) {
            float const s = (float(x) + 0.5f - quad.x) / quad.ux, t = (float(y) + 0.5f - quad.y) / quad.vy;
            Texel texel{1.0f, 1.0f, 1.0f, 1.0f};
            if (texture)
                texel = sample_(textures_[texture - 1], int(quad.layer),
                                std::clamp(quad.uMin + s * (quad.uMax - quad.uMin), quad.clampUMin, quad.clampUMax),
                                std::clamp(quad.vMin + t * (quad.vMax - quad.vMin), quad.clampVMin, quad.clampVMax));
            unsigned char* const pixel = &canvas_.pixels[(size_t(y) * size_t(canvas_.size.x()) + size_t(x)) * 4];
            for (size_t i = 0; i < 3; ++i) {
                float const below = float(pixel[i]) * (1.0f - texel[3] * quad.a);
                float const shown = texel[i] * color[i] * quad.a * 255.0f + below;
                pixel[i] = static_cast<unsigned char>(std::lround(std::min(shown, 255.0f)));
            }
        }
    }
}

void PaintDevice::drawQuads(vtxQuadRun const& run) {
    for (size_t i = 0; i < run.count; ++i) {
        canvas_.quads.push_back(run.instances[i]);
        paint_(run, run.instances[i]);
    }
}
