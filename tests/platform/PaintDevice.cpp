#include "tests/platform/PaintDevice.h"

#include <spng.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
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

bool PaintCanvas::findInk(osg::RectImpl<osg::Vec2i> const& area, osg::RectImpl<osg::Vec2i>& ink) const {
    ink = {};
    for (int y = area.y1; y < area.y2; ++y) {
        for (int x = area.x1; x < area.x2; ++x) {
            if (std::memcmp(at(x, y), at(0, 0), 4))
                ink = ink.united({x, y, x + 1, y + 1});
        }
    }
    return !ink.isEmpty();
}

void PaintCanvas::writePng(std::string const& path) const {
    spng_ctx* const context = spng_ctx_new(SPNG_CTX_ENCODER);
    spng_ihdr header{
        static_cast<unsigned>(size.x()), static_cast<unsigned>(size.y()), 8, SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, 0, 0, 0};
    FILE* const file = std::fopen(path.c_str(), "wb");
    spng_set_png_file(context, file);
    spng_set_ihdr(context, &header);
    spng_encode_image(context, pixels.data(), pixels.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE);
    spng_ctx_free(context);
    std::fclose(file);
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
    int const x = std::clamp(static_cast<int>(std::floor(u * static_cast<float>(texture.width))), 0, texture.width - 1);
    int const y =
        std::clamp(static_cast<int>(std::floor(v * static_cast<float>(texture.height))), 0, texture.height - 1);
    size_t const at = ((size_t(layer) * size_t(texture.height) + size_t(y)) * size_t(texture.width) + size_t(x));
    unsigned char const* const pixel = &texture.pixels[at * size_t(texture.channels)];
    auto const get = [pixel](int i) { return static_cast<float>(pixel[i]) / 255.0f; };
    if (texture.channels == 1)
        return {get(0), get(0), get(0), get(0)};
    return {get(0), get(1), get(2), get(3)};
}

void PaintDevice::paint_(vtxQuadRun const& run, vtxQuadInstance const& quad) {
    vtxDeviceHandle const texture = quad.source == vtxQuadSource::Plain   ? 0
                                    : quad.source == vtxQuadSource::Glyph ? run.glyphPages
                                    : quad.source >= vtxQuadSource::Lone
                                        ? run.lone[quad.source - vtxQuadSource::Lone].texture
                                        : run.picturePages;
    int const left = std::max(static_cast<int>(std::ceil(quad.x - 0.5f)), 0);
    int const top = std::max(static_cast<int>(std::ceil(quad.y - 0.5f)), 0);
    for (int y = top; y < canvas_.size.y() && static_cast<float>(y) + 0.5f < quad.y + quad.vy; ++y) {
        for (int x = left; x < canvas_.size.x() && static_cast<float>(x) + 0.5f < quad.x + quad.ux; ++x) {
            float const s = (static_cast<float>(x) + 0.5f - quad.x) / quad.ux;
            float const t = (static_cast<float>(y) + 0.5f - quad.y) / quad.vy;
            Texel texel{1.0f, 1.0f, 1.0f, 1.0f};
            if (texture)
                texel = sample_(textures_[texture - 1], static_cast<int>(quad.layer),
                                std::clamp(quad.uMin + s * (quad.uMax - quad.uMin), quad.clampUMin, quad.clampUMax),
                                std::clamp(quad.vMin + t * (quad.vMax - quad.vMin), quad.clampVMin, quad.clampVMax));
            unsigned char* const pixel = &canvas_.pixels[(size_t(y) * size_t(canvas_.size.x()) + size_t(x)) * 4];
            float const source[] = {texel.r * quad.r * quad.a, texel.g * quad.g * quad.a, texel.b * quad.b * quad.a};
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<unsigned char>(std::lround(
                    std::min(source[channel] * 255.0f + static_cast<float>(pixel[channel]) * (1.0f - texel.a * quad.a),
                             255.0f)));
        }
    }
}

void PaintDevice::drawQuads(vtxQuadRun const& run) {
    for (size_t i = 0; i < run.count; ++i) {
        canvas_.quads.push_back(run.instances[i]);
        paint_(run, run.instances[i]);
    }
}
