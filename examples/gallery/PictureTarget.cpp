#include "examples/gallery/PictureTarget.h"

#include <cmath>
#include <utility>

#include "platform/gl/vtxGLDevice.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxRenderer.h"

namespace {

/// What lies in the scene is seen from afar and from the side.
constexpr int mipLevels = 4;

}  // namespace

PictureTarget::PictureTarget(osg::Vec2i const& size) : size_(size) {}

PictureTarget::~PictureTarget() = default;

void PictureTarget::render(std::function<void(osg::Vec2i const&, osg::Vec2f const&)> const& draw) {
    vtxRenderer& renderer = *vtxRenderer::get();
    float const scale = renderer.getScale();
    retired_.reset();
    if (!target_ || targetScale_ != scale) {
        targetScale_ = scale;
        // Whoever shows the old picture draws it once more in this frame.
        retired_ = std::move(target_);
        target_.reset(renderer.createFrameBuffer(size_, 0, mipLevels));
    }
    osg::Vec2i const pixels(qor::truncateToInt(std::ceil(static_cast<float>(size_.x()) * scale)),
                            qor::truncateToInt(std::ceil(static_cast<float>(size_.y()) * scale)));
    target_->renderToTarget([&draw, &pixels, scale] { draw(pixels, {scale, scale}); });
}

vtxTexture* PictureTarget::getTexture() const { return target_ ? target_->getTexture() : nullptr; }

unsigned PictureTarget::getTextureName() const {
    auto* const device = dynamic_cast<vtxGLDevice*>(&vtxRenderer::get()->getDevice());
    return device && target_ ? device->getTextureName(vtxRenderer::get()->getDeviceTexture(*target_)) : 0;
}
