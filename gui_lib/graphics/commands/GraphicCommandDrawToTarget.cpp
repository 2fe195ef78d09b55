#include "gui_lib/graphics/commands/GraphicCommandDrawToTarget.h"

#include <utility>

#include "platform/osg/RectImpl.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"

namespace gui {

GraphicCommandDrawToTarget* GraphicCommandDrawToTarget::set(std::shared_ptr<vtxFrameBuffer> newTarget,
                                                            osg::Vec2i const& newSize,
                                                            qor::vector<GraphicCommand*> const& newCommands) {
    target = std::move(newTarget);
    size = newSize;
    commands = newCommands;
    return this;
}

void GraphicCommandDrawToTarget::doRedraw() {
    if (!target)
        return;
    doRedrawAll(commands);
    osg::Vec2i const targetSize = target->getSize();
    target->renderToTarget([this, targetSize] { drawInner_(targetSize); });
}

void GraphicCommandDrawToTarget::drawInner_(osg::Vec2i const& targetSize) {
    vtxRenderer::ProjectionMatrixGuard projection;
    projection.makeOrtho2D(0.0f, static_cast<float>(targetSize.x()), static_cast<float>(targetSize.y()), 0.0f);
    vtxRenderer::ModelViewMatrixGuard modelView;
    modelView.setIdentity();
    vtxRenderer::ClipRectGuard const clip(osg::RectImpl<osg::Vec2i>(0, 0, size.x(), size.y()));
    vtxRenderer::ShaderTechniqueGuard const technique(vtxRenderer::TechniqueTarget);
    vtxRenderer::get()->getShader()->turnOnDrawQuads();
    drawAll(commands);
}

void GraphicCommandDrawToTarget::release() {
    SimpleGraphicCommand::release();
    releaseAll(commands);
    commands.clear();
    target.reset();
}

}  // namespace gui
