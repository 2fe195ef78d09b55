#pragma once

#include "platform/qor/Containers.h"
#include "platform/vtx/vtxDevice.h"

#include <osg/Vec2i>

#include <array>
#include <cstddef>
#include <vector>

/// What a PaintDevice has drawn; it outlives the device.
struct PaintCanvas {
    osg::Vec2i size{640, 400};
    std::vector<unsigned char> pixels;  ///< RGBA, top row first
    std::vector<vtxQuadInstance> quads;
    int uploads = 0;
    int misuses = 0;

    void clear(unsigned char red, unsigned char green, unsigned char blue);
    unsigned char const* at(int x, int y) const { return &pixels[(size_t(y) * size_t(size.x()) + size_t(x)) * 4]; }
    /// Where pixels differ from the top left one.
    osg::RectImpl<osg::Vec2i> findInk() const;
};

/// A back end that paints upright quads into memory, one sample a pixel, so that tests see pixels without a driver.
class PaintDevice final : public vtxDevice {
public:
    explicit PaintDevice(PaintCanvas& canvas);

    // vtxDevice:
    void openPass() override {}
    void closePass() override {}
    int getMaxTextureSize() override { return 8192; }
    vtxDeviceHandle createTexture(vtxTextureDescription const& description) override;
    void resizeTextureArray(vtxDeviceHandle texture, int layers) override;
    void uploadTexture(vtxDeviceHandle texture, int layer, osg::RectImpl<osg::Vec2i> const& rect,
                       unsigned char const* pixels) override;
    void destroyTexture(vtxDeviceHandle texture) override;
    vtxDeviceHandle createTarget(osg::Vec2i const&, int, int) override { return 0; }
    vtxDeviceHandle getTargetTexture(vtxDeviceHandle) override { return 0; }
    void destroyTarget(vtxDeviceHandle) override {}
    void bindTarget(vtxDeviceHandle) override {}
    void clearTarget() override {}
    void finishTarget(vtxDeviceHandle) override {}
    void readPixels(vtxDeviceHandle, osg::RectImpl<osg::Vec2i> const&, unsigned char*) override {}
    osg::Vec2i getHostSize() override { return canvas_.size; }
    void drawQuads(vtxQuadRun const& run) override;
    vtxDeviceHandle createGeometry() override { return 0; }
    void updateGeometry(vtxDeviceHandle, qor::vector<vtxVertex> const&, qor::vector<int> const*) override {}
    void destroyGeometry(vtxDeviceHandle) override {}
    void drawGeometry(vtxGeometryDraw const&) override {}
    vtxDeviceHandle createEffect(char const*, qor::basic_string<char>&) override { return 0; }
    int getEffectParameter(vtxDeviceHandle, char const*) override { return -1; }
    void drawEffect(vtxEffectDraw const&) override {}
    void reportMisuse(char const*) override { ++canvas_.misuses; }

private:
    struct Texture {
        int width = 0, height = 0, channels = 4;
        std::vector<unsigned char> pixels;  ///< layer after layer
    };
    using Texel = std::array<float, 4>;

    Texel sample_(Texture const& texture, int layer, float u, float v) const;
    void paint_(vtxQuadRun const& run, vtxQuadInstance const& quad);

    PaintCanvas& canvas_;
    std::vector<Texture> textures_;
};
