#include "gui_lib/graphics/commands/GraphicCommandDrawBkg.h"

#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"

namespace gui {

GraphicCommandDrawBkg* GraphicCommandDrawBkg::set(vtxShaderBkgQuads const& newQuads, float const* newColors) {
    quads = newQuads;
    for (osg::Vec4f& color : colors) {
        color.set(newColors[0], newColors[1], newColors[2], newColors[3]);
        newColors += 4;
    }
    recorded_.take();
    return this;
}

void GraphicCommandDrawBkg::draw() {
    if (quads.count <= 0 || !recorded_.isCurrent())
        return;
    vtxShader* const shader = vtxRenderer::get()->getShader();
    shader->turnOnDrawQuads();
    shader->setColors(colors[0].ptr(), quads.count);
    quads.draw(shader);
}

}  // namespace gui
