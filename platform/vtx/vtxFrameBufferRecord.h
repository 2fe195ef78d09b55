#pragma once

#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxTargetPool.h"

#include <memory>

/// Internal: a frame buffer; its storage comes from the renderer's pool at the first renderToTarget, and again when the
/// scale has changed.
class vtxFrameBufferRecord final : public vtxFrameBuffer {
public:
    vtxFrameBufferRecord(unsigned generation, osg::Vec2i const& size, int msaa, int mips);
    ~vtxFrameBufferRecord() override;

    // vtxFrameBuffer:
    osg::Vec2i getSize() const override { return size_; }
    int getMsaa() const override { return storage_->key.msaa; }
    int getMips() const override { return storage_->key.mips; }
    vtxTexture* getTexture() override { return &storage_->texture; }
    void renderToTarget(std::function<void()> const& function) override;

    vtxTargetStorage& getStorage() { return *storage_; }

private:
    unsigned generation_;
    osg::Vec2i size_;
    std::unique_ptr<vtxTargetStorage> storage_;
};
