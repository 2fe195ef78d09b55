#pragma once

#include "platform/qor/Api.h"

class vtxShader;
class vtxTexture;

/// Up to nine quads of one texture, each with a colour set by index through vtxShader::setColors. A copyable value.
/// Coordinates: positions and sizes in GUI units, texture coordinates 0 to 1 of the picture file.
class VORLEX_API vtxShaderBkgQuads {
public:
    struct BkgQuad {
        float x, y, w, h;
        float uMin, vMin, uMax, vMax;
    };
    static constexpr int maxCount = 9;

    void setTexture(vtxTexture const* texture) { texture_ = texture; }
    vtxTexture const* getTexture() const { return texture_; }
    /// A tenth quad is dropped.
    void addQuad(BkgQuad const& quad);
    void draw(vtxShader* shader) const;

    BkgQuad const* getQuads() const { return quads_; }

    /// Number of quads; whoever rebuilds them sets it to 0 first.
    int count = 0;

private:
    vtxTexture const* texture_ = nullptr;
    BkgQuad quads_[maxCount] = {};
};
