#include "gui_lib/graphics/commands/GraphicCommandProjectionMatrix.h"

#include <osg/Matrixf>

#include "platform/vtx/vtxRenderer.h"

namespace gui {

GraphicCommandProjectionMatrix* GraphicCommandProjectionMatrix::addOp(unsigned type, float left, float right,
                                                                      float bottom, float top) {
    ops.push_back(ProjectionOp{type, {left, right, bottom, top}});
    return this;
}

void GraphicCommandProjectionMatrix::draw() {
    vtxRenderer* const renderer = vtxRenderer::get();
    for (ProjectionOp const& op : ops) {
        switch (op.type) {
            case ProjectionOp::ProjOrtho2D: {
                float const scale = renderer->getScale();
                renderer->setProjectionMatrix(osg::Matrixf::ortho(
                    op.values[0] * scale, op.values[1] * scale, op.values[2] * scale, op.values[3] * scale, -1.0, 1.0));
                break;
            }
            case ProjectionOp::ProjPush:
                renderer->pushProjectionMatrix();
                break;
            case ProjectionOp::ProjPop:
                renderer->popProjectionMatrix();
                break;
            default:
                break;
        }
    }
}

void GraphicCommandProjectionMatrix::release() {
    SimpleGraphicCommand::release();
    ops.clear();
}

}  // namespace gui
