#include "gui_lib/graphics/commands/GraphicCommandModelViewMatrix.h"

#include <osg/Matrixf>

#include "platform/vtx/vtxRenderer.h"

namespace gui {

namespace {

void translate(osg::Matrixf& matrix, float const* values, float scale) {
    matrix.postMult(osg::Matrixf::translate(values[0] * scale, values[1] * scale, values[2] * scale));
}

void rotate(osg::Matrixf& matrix, float const* values) {
    matrix.postMult(osg::Matrixf::rotate(values[3], values[0], values[1], values[2]));
}

}  // namespace

void GraphicCommandModelViewMatrix::draw() {
    vtxRenderer* const renderer = vtxRenderer::get();
    float const scale = renderer->getScale();
    osg::Matrixf matrix = renderer->getModelViewMatrix();
    for (ModelViewOp const& op : ops) {
        switch (op.type) {
            case ModelViewOp::MvSetIdentity:
            case ModelViewOp::MvMakeIdentity:
                matrix.makeIdentity();
                break;
            case ModelViewOp::MvSetTranslate:
            case ModelViewOp::MvMakeTranslate:
                translate(matrix, op.values, scale);
                break;
            case ModelViewOp::MvSetRotate:
            case ModelViewOp::MvMakeRotate:
                rotate(matrix, op.values);
                break;
            case ModelViewOp::MvPush:
                renderer->pushModelViewMatrix();
                break;
            case ModelViewOp::MvPop:
                renderer->popModelViewMatrix();
                break;
            default:
                break;
        }
        if (op.type == ModelViewOp::MvSetIdentity || op.type == ModelViewOp::MvSetTranslate ||
            op.type == ModelViewOp::MvSetRotate)
            renderer->setModelViewMatrix(matrix);
    }
}

void GraphicCommandModelViewMatrix::release() {
    SimpleGraphicCommand::release();
    ops.clear();
}

}  // namespace gui
