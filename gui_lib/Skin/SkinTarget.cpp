#include "gui_lib/Skin/Skin.h"

#include <algorithm>
#include <utility>

#include "gui_lib/Skin/TargetWidgetScope.h"
#include "gui_lib/base/Align2.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/widget/Widget.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTexture.h"

namespace gui::skin {

void Skin::setTargetMsaa(int samples) {
    if (samples == targetMsaa)
        return;
    targetMsaa = samples;
    updateWidget(false);
}

void Skin::setTargetMips(int levels) {
    if (levels == targetMips)
        return;
    targetMips = levels;
    updateWidget(false);
}

void Skin::setTargetSize(osg::Vec2i const& newSize) {
    if (newSize == targetSize)
        return;
    targetSize = newSize;
    updateWidget(false);
}

osg::Vec2i Skin::getTargetSize() const { return target ? target->getSize() : targetSize; }

bool Skin::getTargetSizeSet_() const { return targetSize.x() >= 1 && targetSize.y() >= 1; }

osg::Vec2i Skin::getWantedTargetSize_() const { return getTargetSizeSet_() ? targetSize : getWidgetNonZoomedSize_(); }

void Skin::deleteTarget_() {
    // The picture goes first: it shows the target's texture.
    targetImage.reset();
    target.reset();
}

void Skin::updateTarget_() {
    if (!widget->getDrawToTarget()) {
        deleteTarget_();
        return;
    }
    // A target answers with the nearest values that exist, so settings below those must not make a new one each time.
    if (target && (target->getSize() != getWantedTargetSize_() || target->getMsaa() != std::max(targetMsaa, 0) ||
                   target->getMips() != std::max(targetMips, 1)))
        deleteTarget_();
    if (!target) {
        createTarget_();
    } else if (sizeChanged && !getTargetSizeSet_()) {
        // Zoom and size may change together, and the target fits still. One of a size of its own keeps what it shows.
        targetImage->setDirty(true);
        targetImage->redraw(widget->getSize());
    }
}

void Skin::createTarget_() {
    osg::Vec2i const size = getWidgetNonZoomedSize_();
    if (size.x() < 1 || size.y() < 1)
        return;
    target.reset(vtxRenderer::get()->createFrameBuffer(getWantedTargetSize_(), targetMsaa, targetMips));
    if (!target)
        return;
    vtxTexture* const texture = target->getTexture();
    texture->rect = {0.0f, 0.0f, static_cast<float>(size.x()), static_cast<float>(size.y())};
    targetImage = std::allocate_shared<Image>(qor::allocator<Image>());
    targetImage->setSize(size);
    targetImage->setTexture(texture, true);
    targetImage->setAlign(Align2(Align(Align::Stretch, 0), Align(Align::Stretch, 0)));
    targetImage->setUserTexSampler(0);
    targetImage->redraw(widget->getSize());
}

void Skin::doRedrawTarget_() {
    if (!target || !widget)
        return;
    // Laying children out runs callbacks, any of which may destroy the widget and this skin with it.
    AliveGuard const alive(widget);
    Widget* const owner = widget;
    TargetWidgetScope const scope(owner);
    float const zoom = owner->getZoom();
    osg::Vec2i const size = getWidgetNonZoomedSize_();
    if (zoom == 1.0f) {
        owner->doRedrawChildren();
        if (alive.alive())
            drawToTarget_(size);
        return;
    }
    // Zoom and size are put back below: that is no change that the owner would have to be redrawn for, frame after
    // frame.
    struct NoMarkScope {
        explicit NoMarkScope(Widget* widget)
            : alive(widget), dirty(&widget->dirty), marked(std::exchange(*dirty, true)) {}
        ~NoMarkScope() {
            if (alive.alive())
                *dirty = marked;
        }
        AliveGuard alive;
        bool* dirty;
        bool marked;
    };
    osg::Vec2i const zoomedSize = owner->getSize();
    {
        NoMarkScope const scopeOfSize(owner);
        owner->setZoom(1.0f);
        if (alive.alive())
            owner->setSize(size);
        if (alive.alive())
            owner->setZoom(zoom);
    }
    if (alive.alive())
        owner->redrawChildren();
    if (alive.alive())
        owner->doRedrawChildren();
    if (alive.alive())
        drawToTarget_(size);
    if (alive.alive()) {
        NoMarkScope const scopeOfSize(owner);
        owner->setSize(zoomedSize);
    }
}

void Skin::drawToTarget_(osg::Vec2i const& size) {
    if (!target)
        return;
    target->renderToTarget([this, size] {
        osg::Vec2i const targetUnits = target->getSize();
        vtxRenderer::ProjectionMatrixGuard projection;
        projection.makeOrtho2D(0.0f, static_cast<float>(targetUnits.x()), static_cast<float>(targetUnits.y()), 0.0f);
        vtxRenderer::ModelViewMatrixGuard modelView;
        modelView.setIdentity();
        vtxRenderer::ClipRectGuard const clip(osg::RectImpl<osg::Vec2i>(osg::Vec2i(), size));
        vtxRenderer::ShaderTechniqueGuard const technique(vtxRenderer::TechniqueTarget);
        vtxRenderer::get()->getShader()->turnOnDrawQuads();
        draw_();
    });
}

}  // namespace gui::skin
