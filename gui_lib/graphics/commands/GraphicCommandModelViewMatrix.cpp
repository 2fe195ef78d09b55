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
    // A step mostly stands alone, and these then need no matrix here.
    ModelViewOp const& first = ops.data()[0];
    unsigned const onlyStep = ops.size() == 1 ? first.type : 0;
    if (onlyStep == ModelViewOp::MvPush)
        renderer.pushModelViewMatrix();
    else if (onlyStep == ModelViewOp::MvPop)
        renderer.popModelViewMatrix();
    else if (onlyStep == ModelViewOp::MvSetTranslate)
        renderer.translateModelView(first.values[0], first.values[1], first.values[2]);
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
