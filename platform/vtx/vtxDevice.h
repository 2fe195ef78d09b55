#pragma once

#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxGeometry.h"

#include <osg/Matrixf>
#include <osg/Vec2i>

#include <cstddef>
#include <cstdint>

/// Names a device object; 0 is none.
using vtxDeviceHandle = std::uint32_t;

/// One quad as the device draws it. Positions are pixels in the space that the run's projection maps, already
/// transformed and clipped; the colour is straight (not premultiplied) and already multiplied by the opacity.
struct vtxQuadInstance {
    float x, y;                    ///< corner
    float ux, uy;                  ///< edge from the corner along the texture's u
    float vx, vy;                  ///< edge from the corner along the texture's v
    float uMin, vMin, uMax, vMax;  ///< texture rectangle of this (clipped) quad, 0 to 1 of the bound layer
    float clampUMin, clampVMin, clampUMax,
        clampVMax;  ///< samples stay inside: the unclipped rectangle less half a texel
    float r, g, b, a;
    std::uint32_t source;  ///< vtxQuadSource, or vtxQuadSource::Lone + slot
    std::uint32_t layer;   ///< layer of the array texture
};

namespace vtxQuadSource {
inline constexpr std::uint32_t Plain = 0;           ///< colour only
inline constexpr std::uint32_t PictureLinear = 1;   ///< picture pages, linear
inline constexpr std::uint32_t PictureNearest = 2;  ///< picture pages, nearest
inline constexpr std::uint32_t Glyph = 3;           ///< glyph pages: red channel is coverage
inline constexpr std::uint32_t Lone = 4;            ///< + slot 0 to 7
inline constexpr int LoneCount = 8;
}  // namespace vtxQuadSource

/// What every draw of the device shares.
struct vtxDrawState {
    osg::Matrixf projection;             ///< pixels to clip space, y up, as for a screen whose row 0 is at the top
    osg::RectImpl<osg::Vec2i> viewport;  ///< pixels from the top left of the target
    osg::RectImpl<osg::Vec2i> scissor;   ///< pixels from the top left of the target; used if `scissorEnabled`
    bool scissorEnabled = false;
    int technique = 1;
    float gamma = 1.0f;
    float intensity = 1.0f;
};

struct vtxQuadRun {
    struct LoneTexture {
        vtxDeviceHandle texture = 0;
        int sampler = 0;
    };
    vtxDrawState state;
    vtxQuadInstance const* instances = nullptr;
    std::size_t count = 0;
    vtxDeviceHandle picturePages = 0;  ///< array texture, RGBA, premultiplied
    vtxDeviceHandle glyphPages = 0;    ///< array texture, one channel
    LoneTexture lone[vtxQuadSource::LoneCount];
    int loneCount = 0;
};

struct vtxGeometryDraw {
    vtxDrawState state;
    osg::Matrixf modelView;  ///< geometry positions (GUI units times `positionScale`) to pixels
    float positionScale = 1.0f;
    float opacity = 1.0f;
    vtxDeviceHandle geometry = 0;
    vtxDeviceHandle texture = 0;
    int sampler = 0;
    vtxGeometry::PrimitiveType primitive = vtxGeometry::PrimitiveTriangles;
    int count = 0;  ///< primitives
    int first = 0;  ///< first index
    /// Texture coordinates are multiplied by it: a target whose size times scale is no whole number fills only this
    /// part of its texture.
    float textureScaleU = 1.0f;
    float textureScaleV = 1.0f;
};

struct vtxEffectDraw {
    struct Parameter {
        int handle;
        float const* values;
        std::size_t count;
    };
    vtxGeometryDraw geometry;
    vtxDeviceHandle effect = 0;
    Parameter const* parameters = nullptr;
    std::size_t parameterCount = 0;
};

struct vtxTextureDescription {
    int width = 0;
    int height = 0;
    int layers = 0;  ///< 0: a plain texture; above: an array texture
    bool singleChannel = false;
    bool mips = false;
};

/// A back end. The front half has checked everything it passes; all calls come on the drawing thread with the context
/// current. Pixel rows go from top to bottom; row 0 of every texture is its top.
class VORLEX_API vtxDevice {
public:
    virtual ~vtxDevice();

    // --- Passes: between open and close the device may change the host's state, and puts it back ---
    /// The front half never nests passes: what draws inside one (a target, say) joins it. The host's framebuffer is
    /// bound after it. Every other call but getMaxTextureSize, getTargetTexture, getTraceSwitch, traceOperation and
    /// reportMisuse comes in a pass.
    virtual void openPass() = 0;
    virtual void closePass() = 0;

    // --- Textures ---
    /// Largest side of a texture in pixels.
    virtual int getMaxTextureSize() = 0;
    virtual vtxDeviceHandle createTexture(vtxTextureDescription const& description) = 0;
    /// Grows an array texture; its layers are kept.
    virtual void resizeTextureArray(vtxDeviceHandle texture, int layers) = 0;
    /// Premultiplied RGBA, or one byte a pixel; tightly packed rows. Mips, if any, are made again.
    virtual void uploadTexture(vtxDeviceHandle texture, int layer, osg::RectImpl<osg::Vec2i> const& rect,
                               unsigned char const* pixels) = 0;
    virtual void destroyTexture(vtxDeviceHandle texture) = 0;

    // --- Targets ---
    /// Pixels; `msaa` samples (0 none), `mips` levels (1 only the first).
    virtual vtxDeviceHandle createTarget(osg::Vec2i const& size, int msaa, int mips) = 0;
    virtual vtxDeviceHandle getTargetTexture(vtxDeviceHandle target) = 0;
    virtual void destroyTarget(vtxDeviceHandle target) = 0;
    /// 0 is the framebuffer that the host had bound when the pass was opened.
    virtual void bindTarget(vtxDeviceHandle target) = 0;
    /// Transparent black.
    virtual void clearTarget() = 0;
    /// Resolves msaa and makes mips.
    virtual void finishTarget(vtxDeviceHandle target) = 0;
    /// RGBA rows from the top of a target (0: the host's framebuffer).
    virtual void readPixels(vtxDeviceHandle target, osg::RectImpl<osg::Vec2i> const& rect, unsigned char* pixels) = 0;
    /// Size of the host's framebuffer viewport in pixels, as found when the pass was opened.
    virtual osg::Vec2i getHostSize() = 0;

    // --- Drawing ---
    virtual void drawQuads(vtxQuadRun const& run) = 0;
    virtual vtxDeviceHandle createGeometry() = 0;
    virtual void updateGeometry(vtxDeviceHandle geometry, qor::vector<vtxVertex> const& vertices,
                                qor::vector<int> const* indices) = 0;
    virtual void destroyGeometry(vtxDeviceHandle geometry) = 0;
    virtual void drawGeometry(vtxGeometryDraw const& draw) = 0;

    // --- Effects: they live as long as the device ---
    /// 0 on failure, with the cause in `error`. Files are read through vtxEffectFile, the same for every back end.
    virtual vtxDeviceHandle createEffect(char const* path, qor::basic_string<char>& error) = 0;
    virtual int getEffectParameter(vtxDeviceHandle effect, char const* name) = 0;
    virtual void drawEffect(vtxEffectDraw const& draw) = 0;

    // --- Trace: operations of the contract as they are called, for back ends that record; others ignore them ---
    virtual void traceOperation(char const* operation, char const* arguments);
    /// Where it stands whether `traceOperation` wants to be called; null: never. Asked for once and read at every
    /// operation, so it lives as long as the device.
    virtual bool const* getTraceSwitch() const { return nullptr; }
    /// Misuse of the contract found by the front half (already logged).
    virtual void reportMisuse(char const* text);
};
