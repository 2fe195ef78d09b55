#include "gui_lib/graphics/commands/GraphicCommandModelViewMatrix.h"

#include <osg/Matrixf>

#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTranslation.h"

namespace gui {

namespace {

void rotate(osg::Matrixf& matrix, float const* values) {
    matrix.postMult(osg::Matrixf::rotate(values[3], values[0], values[1], values[2]));
}

}  // namespace

void GraphicCommandModelViewMatrix::draw() {
    vtxRenderer& renderer = *vtxRenderer::get();
    // A step on the stack mostly stands alone, and then needs no matrix.
    unsigned const onlyStep = ops.size() == 1 ? ops.front().type : 0;
    if (onlyStep == ModelViewOp::MvPush)
        renderer.pushModelViewMatrix();
    else if (onlyStep == ModelViewOp::MvPop)
        renderer.popModelViewMatrix();
    else
        compose_(renderer);
}

void GraphicCommandModelViewMatrix::compose_(vtxRenderer& renderer) const {
    float const scale = renderer.getScale();
    osg::Matrixf matrix = renderer.getModelViewMatrix();
    for (ModelViewOp const& op : ops) {
        switch (op.type) {
            case ModelViewOp::MvSetIdentity:
            case ModelViewOp::MvMakeIdentity:
                matrix.makeIdentity();
                break;
            case ModelViewOp::MvSetTranslate:
            case ModelViewOp::MvMakeTranslate:
                vtxTranslation::postMultTranslate(matrix,
                                                  {op.values[0] * scale, op.values[1] * scale, op.values[2] * scale});
                break;
            case ModelViewOp::MvSetRotate:
            case ModelViewOp::MvMakeRotate:
                rotate(matrix, op.values);
                break;
            case ModelViewOp::MvPush:
                renderer.pushModelViewMatrix();
                break;
            case ModelViewOp::MvPop:
                renderer.popModelViewMatrix();
                break;
            default:
                break;
        }
        if (op.type == ModelViewOp::MvSetIdentity || op.type == ModelViewOp::MvSetTranslate ||
            op.type == ModelViewOp::MvSetRotate)
            renderer.setModelViewMatrix(matrix);
    }
}

void GraphicCommandModelViewMatrix::addFurtherOp_(ModelViewOp const& op) { ops.push_back(op); }

}  // namespace gui
