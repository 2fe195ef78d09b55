#include "gui_lib/graphics/commands/GraphicCommandDrawBkg.h"

#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"

namespace gui {

void GraphicCommandDrawBkg::draw() {
    vtxRenderer* const renderer = vtxRenderer::get();
    if (quads.count <= 0 || !recorded_.isOf(renderer))
        return;
    vtxShader* const shader = renderer->getShader();
    shader->turnOnDrawQuads();
    shader->setColors(colors[0].ptr(), quads.count);
    quads.draw(shader);
}

}  // namespace gui
