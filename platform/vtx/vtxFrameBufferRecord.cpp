#include "platform/vtx/vtxFrameBufferRecord.h"

#include "platform/vtx/vtxRendererCore.h"

#include <algorithm>

vtxFrameBuffer::~vtxFrameBuffer() = default;

vtxFrameBufferRecord::vtxFrameBufferRecord(unsigned generation, osg::Vec2i const& size, int msaa, int mips)
    : generation_(generation), size_(size), storage_(std::make_unique<vtxTargetStorage>()) {
    storage_->key.msaa = std::max(msaa, 0);
    storage_->key.mips = std::max(mips, 1);
    storage_->image.target = true;
    vtxTextureRecord& texture = storage_->texture;
    texture.width = size.x();
    texture.height = size.y();
    texture.rect = vtxTexture::Rect{0.0f, 0.0f, static_cast<float>(size.x()), static_cast<float>(size.y())};
}

vtxFrameBufferRecord::~vtxFrameBufferRecord() {
    vtxRendererCore* core = vtxRendererCore::getCore();
    if (core && core->getGeneration() == generation_)
        core->retireTarget(*this, std::move(storage_));
}

void vtxFrameBufferRecord::renderToTarget(std::function<void()> const& function) {
    vtxRendererCore* core = vtxRendererCore::getCore();
    if (core && core->getGeneration() == generation_)
        core->renderToTarget(*this, function);
}
