#include "gui_lib/graphics/commands/GraphicCommandDrawShapes.h"

#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"

namespace gui {

GraphicCommandDrawCircle* GraphicCommandDrawCircle::set(osg::Vec4f const& newColor, float newRadius,
                                                        unsigned int newSegments) {
    color = newColor;
    radius = newRadius;
    segments = newSegments;
    return this;
}

void GraphicCommandDrawCircle::draw() {
    vtxRenderer* const renderer = vtxRenderer::get();
    renderer->getShader()->turnOffDrawQuads();
    renderer->drawCircle(color, radius, segments);
}

GraphicCommandDrawLifeBar* GraphicCommandDrawLifeBar::set(osg::Vec4f const& newColor, osg::Vec2f const& newSize,
                                                          float newValue) {
    color = newColor;
    size = newSize;
    value = newValue;
    return this;
}

void GraphicCommandDrawLifeBar::draw() {
    vtxRenderer* const renderer = vtxRenderer::get();
    renderer->getShader()->turnOffDrawQuads();
    renderer->drawLifeBar(color, size, value);
}

}  // namespace gui
