#include "platform/vtx/vtxShaderBkgQuads.h"

#include "platform/vtx/vtxShader.h"

#include <cstring>

void vtxShaderBkgQuads::setTexture(vtxTexture const* texture) {
    if (texture_ == texture)
        return;
    texture_ = texture;
    key_.renew();
}

void vtxShaderBkgQuads::addQuad(BkgQuad const& quad) {
    if (count < 0 || count >= maxCount)
        return;
    // Built anew, it is mostly what it was.
    if (!key_.content || std::memcmp(&quads_[count], &quad, sizeof(quad)) != 0) {
        quads_[count] = quad;
        key_.renew();
    }
    ++count;
}

void vtxShaderBkgQuads::draw(vtxShader* shader) const {
    if (shader)
        shader->drawBkgQuads(*this);
}
