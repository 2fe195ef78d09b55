#include "gui_lib/graphics/commands/GraphicCommandTechniques.h"

namespace gui {

GraphicCommandPushShaderTechnique* GraphicCommandPushShaderTechnique::set(vtxRenderer::TechniqueType newTechnique) {
    technique = newTechnique;
    return this;
}

void GraphicCommandPushShaderTechnique::draw() { vtxRenderer::get()->pushTechnique(technique); }

void GraphicCommandPopShaderTechnique::draw() { vtxRenderer::get()->popTechnique(); }

GraphicCommandSetShaderTechnique* GraphicCommandSetShaderTechnique::set(vtxRenderer::TechniqueType newTechnique) {
    technique = newTechnique;
    return this;
}

void GraphicCommandSetShaderTechnique::draw() {
    vtxRenderer* const renderer = vtxRenderer::get();
    if (renderer->getTechnique() != vtxRenderer::TechniqueNone)
        renderer->endDraw();
    if (technique != vtxRenderer::TechniqueNone)
        renderer->beginDraw(technique);
}

}  // namespace gui
