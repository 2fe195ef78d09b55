#include "gui_lib/graphics/commands/GraphicCommandRects.h"

#include "platform/vtx/vtxRenderer.h"

namespace gui {

void GraphicCommandPushClipRect::draw() { vtxRenderer::get()->pushClipRect(rect); }

void GraphicCommandPopClipRect::draw() { vtxRenderer::get()->popClipRect(); }

GraphicCommandPushViewport* GraphicCommandPushViewport::set(osg::RectImpl<osg::Vec2i> const& newRect) {
    rect = newRect;
    return this;
}

void GraphicCommandPushViewport::draw() { vtxRenderer::get()->pushViewport(rect); }

void GraphicCommandPopViewport::draw() { vtxRenderer::get()->popViewport(); }

}  // namespace gui
