#pragma once

#include "platform/qor/Api.h"
#include "platform/vtx/vtxQuad.h"

class vtxShader;
class vtxTexture;

/// Up to nine quads of one texture, each with a colour set by index through vtxShader::setColors. A copyable value.
/// Coordinates: positions and sizes in GUI units, texture coordinates 0 to 1 of the picture file.
class VORLEX_API vtxShaderBkgQuads {
public:
    using BkgQuad = vtxQuad;
    static constexpr int maxCount = 9;

    void setTexture(vtxTexture const* texture);
    vtxTexture const* getTexture() const { return texture_; }
    /// A tenth quad is dropped.
    void addQuad(BkgQuad const& quad);
    void draw(vtxShader* shader) const;

    BkgQuad const* getQuads() const { return quads_; }
    vtxQuadKey const& getKey() const { return key_; }
    /// Certain that they are the same; false where that is not known.
    bool isCopyOf(vtxShaderBkgQuads const& other) const {
        return key_.content && key_.content == other.key_.content && count == other.count;
    }

    /// Number of quads; whoever rebuilds them sets it to 0 first.
    int count = 0;

private:
    vtxTexture const* texture_ = nullptr;
    vtxQuadKey key_;
    BkgQuad quads_[maxCount] = {};
};
