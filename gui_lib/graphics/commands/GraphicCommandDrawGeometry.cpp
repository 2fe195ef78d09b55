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
    vtxRenderer* const renderer = vtxRenderer::get();
    recordGeneration_ = renderer ? renderer->getGeneration() : 0;
    return this;
}

void GraphicCommandDrawGeometry::doRedraw() {
    vtxRenderer* const renderer = vtxRenderer::get();
    unsigned const generation = renderer->getGeneration();
    if (recordGeneration_ != generation)
        return;
    if (geometry && geometryGeneration_ != generation) {
        delete geometry;
        geometry = nullptr;
    }
    if (geometry) {
        geometry->update(vertices, &indices);
    } else {
        geometry = renderer->createGeometry(vertices, indices);
        geometryGeneration_ = generation;
    }
}

void GraphicCommandDrawGeometry::draw() {
    vtxRenderer* const renderer = vtxRenderer::get();
    if (recordGeneration_ != renderer->getGeneration() || (geometry && geometryGeneration_ != recordGeneration_))
        return;
    vtxShader* const shader = renderer->getShader();
    shader->turnOffDrawQuads();
    shader->setTexture(texture);
    shader->setTextureArray(nullptr);
    renderer->setGeometry(geometry);
    renderer->drawPrimitives(type, count, 0);
}

}  // namespace gui
