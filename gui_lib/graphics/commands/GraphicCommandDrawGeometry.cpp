#include "gui_lib/graphics/commands/GraphicCommandDrawGeometry.h"

#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"

namespace gui {

GraphicCommandDrawGeometry::~GraphicCommandDrawGeometry() { delete geometry; }

GraphicCommandDrawGeometry* GraphicCommandDrawGeometry::set(qor::vector<vtxVertex> const& newVertices,
                                                            qor::vector<int> const& newIndices,
                                                            vtxGeometry::PrimitiveType newType, int newCount,
                                                            vtxTexture* newTexture) {
    vertices = newVertices;
    indices = newIndices;
    type = newType;
    count = newCount;
    texture = newTexture;
    recorded_.take();
    return this;
}

void GraphicCommandDrawGeometry::doRedraw() {
    if (!recorded_.isCurrent())
        return;
    if (geometry && !made_.isCurrent()) {
        delete geometry;
        geometry = nullptr;
    }
    if (geometry) {
        geometry->update(vertices, &indices);
    } else {
        geometry = vtxRenderer::get()->createGeometry(vertices, indices);
        made_.take();
    }
}

void GraphicCommandDrawGeometry::draw() {
    if (!recorded_.isCurrent() || (geometry && !made_.isCurrent()))
        return;
    vtxRenderer* const renderer = vtxRenderer::get();
    vtxShader* const shader = renderer->getShader();
    shader->turnOffDrawQuads();
    shader->setTexture(texture);
    shader->setTextureArray(nullptr);
    renderer->setGeometry(geometry);
    renderer->drawPrimitives(type, count, 0);
}

}  // namespace gui
