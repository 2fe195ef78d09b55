#include "gui_lib/graphics/commands/GraphicCommandStates.h"

#include "platform/vtx/vtxShader.h"

namespace gui {

GraphicCommandSetTextureFiltering* GraphicCommandSetTextureFiltering::set(vtxRenderer::TextureSampler newSampler) {
    sampler = newSampler;
    return this;
}

void GraphicCommandSetTextureFiltering::draw() { vtxRenderer::get()->setTextureFiltering(sampler); }

float GraphicCommandSetOpacity::currentOpacity = 1.0f;

void GraphicCommandSetOpacity::draw() { vtxRenderer::get()->setOpacity(opacity); }

GraphicCommandShiftPosition* GraphicCommandShiftPosition::set(float newX, float newY, float newScale) {
    x = newX;
    y = newY;
    scale = newScale;
    return this;
}

void GraphicCommandShiftPosition::draw() { vtxRenderer::get()->getShader()->shiftPosition(x, y, scale); }

}  // namespace gui
