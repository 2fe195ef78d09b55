#include "platform/vtx/vtxShaderBkgQuads.h"

#include "platform/vtx/vtxShader.h"

void vtxShaderBkgQuads::addQuad(BkgQuad const& quad) {
    if (count >= 0 && count < maxCount)
        quads_[count++] = quad;
}

void vtxShaderBkgQuads::draw(vtxShader* shader) const {
    if (shader)
        shader->drawBkgQuads(*this);
}
