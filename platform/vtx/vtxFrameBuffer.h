#pragma once

#include "platform/qor/Api.h"

#include <osg/Vec2i>

#include <functional>

class vtxTexture;

/// A render target with a texture. Sizes are GUI units; storage is size times the renderer's scale, rounded up, in
/// pixels. Lifetime: owned by the caller of vtxRenderer::createFrameBuffer; storage is recycled.
class VORLEX_API vtxFrameBuffer {
public:
    virtual ~vtxFrameBuffer();

    virtual osg::Vec2i getSize() const = 0;
    virtual int getMsaa() const = 0;
    virtual int getMips() const = 0;
    /// Owned by the frame buffer.
    virtual vtxTexture* getTexture() = 0;
    /// Draws what is queued, binds the target, clears it to transparent black, runs the function with a clean state
    /// (viewport the whole target, opacity 1, no shift, no clip, no pass) and puts everything back, also on an
    /// exception.
    virtual void renderToTarget(std::function<void()> const& function) = 0;
};
