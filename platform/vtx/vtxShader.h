#pragma once

#include "platform/qor/Api.h"
#include "platform/vtx/vtxRenderer.h"

#include <osg/Vec4f>

class vtxRendererCore;
class vtxShaderBkgQuads;
class vtxShaderQuads;
class vtxTexture;
class vtxTextureArray;

/// The 2D shader: colours, bindings and the switch between batched quads and geometry. One object for the life of the
/// renderer. All state it holds applies to what is drawn next.
class VORLEX_API vtxShader {
public:
    void setColor(osg::Vec4f const& color);
    /// One RGBA colour a quad for vtxShaderBkgQuads; copied.
    void setColors(float const* colors, int count);
    void setTexture(vtxTexture const* texture);
    void setTextureArray(vtxTextureArray const* textures);
    void turnOnDrawQuads();
    void turnOffDrawQuads();
    /// Adds (x k, y k) pixels to quad positions before the model-view, k = scale, or the renderer's scale if not above
    /// 0.
    void shiftPosition(float x, float y, float scale);
    void resetPositionShift();
    void setGamma(float gamma);
    void setIntensity(float intensity);
    void setUserTextureFiltering(vtxRenderer::TextureSampler sampler);
    void resetTextureSampler();

    /// Called by the quads' own draw operations.
    void drawQuads(vtxShaderQuads const& quads, int batch);
    void drawBkgQuads(vtxShaderBkgQuads const& quads);

private:
    friend class vtxRendererCore;
    explicit vtxShader(vtxRendererCore& core) : core_(core) {}
    vtxRendererCore& core_;
};
