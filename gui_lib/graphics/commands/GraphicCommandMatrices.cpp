#include "gui_lib/graphics/commands/GraphicCommandMatrices.h"

#include "platform/vtx/vtxRenderer.h"

namespace gui {

GraphicCommandSetModelViewMatrix* GraphicCommandSetModelViewMatrix::set(osg::Matrixf const& newMatrix) {
    matrix = newMatrix;
    return this;
}

void GraphicCommandSetModelViewMatrix::draw() { vtxRenderer::get()->setModelViewMatrix(matrix); }

GraphicCommandPreMultModelViewMatrix* GraphicCommandPreMultModelViewMatrix::set(osg::Matrixf const& newMatrix) {
    matrix = newMatrix;
    return this;
}

void GraphicCommandPreMultModelViewMatrix::draw() {
    vtxRenderer* const renderer = vtxRenderer::get();
    renderer->setModelViewMatrix(matrix * renderer->getModelViewMatrix());
}

}  // namespace gui
