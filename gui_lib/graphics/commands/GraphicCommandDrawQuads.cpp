#include "gui_lib/graphics/commands/GraphicCommandDrawQuads.h"

#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"

namespace gui {

GraphicCommandDrawQuads* GraphicCommandDrawQuads::set(vtxShaderQuads const& newQuads, osg::Vec4f const& newColor,
                                                      int newSampler, int newBatch) {
    if (!newQuads.isCopyOf(quads))
        quads = newQuads;
    color = newColor;
    sampler = newSampler;
    batch = newBatch;
    recorded_.take();
    return this;
}

void GraphicCommandDrawQuads::draw() {
    vtxRenderer* const renderer = vtxRenderer::get();
    if (!recorded_.isOf(renderer))
        return;
    vtxShader* const shader = renderer->getShader();
    shader->setColor(color);
    shader->turnOnDrawQuads();
    if (sampler >= vtxRenderer::SamplerLinear && sampler <= vtxRenderer::SamplerRepeat)
        shader->setUserTextureFiltering(static_cast<vtxRenderer::TextureSampler>(sampler));
    if (batch != -1)
        quads.drawBatch(shader, batch);
    else
        quads.draw(shader);
    // Sampler 0 stays set: what follows is drawn with it.
    if (sampler > 0)
        shader->resetTextureSampler();
}

}  // namespace gui
