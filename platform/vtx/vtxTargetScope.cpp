#include "platform/vtx/vtxTargetScope.h"

#include "platform/qor/Log.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxFrameBufferRecord.h"

#include <algorithm>
#include <cmath>
#include <exception>

namespace {

/// Pixels that hold a length in GUI units; a hair above a whole number is that number.
int roundUp(int value, float scale) {
    return std::max(qor::truncateToInt(std::ceil(static_cast<double>(value) * scale - 1e-3)), 1);
}

float getUsedPart(int units, float scale, int pixels) {
    return static_cast<float>(std::min(static_cast<double>(units) * scale / pixels, 1.0));
}

}  // namespace

vtxTargetScope::vtxTargetScope(vtxRendererCore& core, vtxFrameBufferRecord& target)
    : core_(core),
      settings_(core.settings_),
      base_(core.base_),
      passStart_(core.passStart_),
      outer_(core.target_),
      storage_(target.getStorage()),
      exceptions_(std::uncaught_exceptions()) {
    core_.batcher_.flush();
    core_.enterDevice_();
    prepareStorage_(target.getSize());
    if (isReady())
        begin_();
}

vtxTargetScope::~vtxTargetScope() {
    if (isReady())
        end_();
    core_.leaveDevice_();
}

void vtxTargetScope::prepareStorage_(osg::Vec2i const& size) {
    float const scale = core_.getScale();
    int const most = core_.device_->getMaxTextureSize();
    vtxTargetKey key = storage_.key;
    key.size = osg::Vec2i(std::min(roundUp(size.x(), scale), most), std::min(roundUp(size.y(), scale), most));
    if (!storage_.target || !(key == storage_.key)) {
        core_.targets_.give(storage_.key, storage_.target);
        storage_.key = key;
        storage_.target = core_.targets_.take(key);
    }
    vtxTextureImage& image = storage_.image;
    image.alone = isReady() ? core_.device_->getTargetTexture(storage_.target) : 0;
    image.size = key.size;
    image.usedU = getUsedPart(size.x(), scale, key.size.x());
    image.usedV = getUsedPart(size.y(), scale, key.size.y());
    if (!isReady() && !image.aloneFailed)
        qor_logf("VTX", 64, "No room for a frame buffer of %d x %d pixels, msaa %d; what is drawn in it is not shown\n",
                 key.size.x(), key.size.y(), key.msaa);
    image.aloneFailed = !isReady();
}

void vtxTargetScope::begin_() {
    core_.device_->bindTarget(storage_.target);
    core_.device_->clearTarget();
    storage_.image.bound = true;
    ++core_.targetCount_;
    core_.target_ = &storage_;
    core_.settings_ = vtxDrawSettings();
    core_.settings_.projection = settings_.projection;
    core_.settings_.modelView = settings_.modelView;
    core_.settings_.modelViewTranslates = settings_.modelViewTranslates;
    core_.base_ = core_.getHeights_();
    core_.passes_.push_back(vtxRendererCore::Pass{});
    core_.stale_ |= vtxRendererCore::StaleView | vtxRendererCore::StaleTransform;
}

void vtxTargetScope::end_() {
    core_.batcher_.flush();
    vtxRendererCore::StackHeights heights = core_.base_;
    ++heights.passes;
    // A throwing function may leave anything behind; that is no misuse.
    bool const balanced = core_.getHeights_() == heights && !core_.isPassOpen_();
    if (!balanced && std::uncaught_exceptions() == exceptions_)
        core_.report(vtxMisuse::UnbalancedTarget, "renderToTarget");
    for (; core_.passes_.size() > core_.base_.passes; core_.passes_.pop_back()) {
        if (core_.passes_.back().open)
            core_.closePass_(core_.passes_.back());
    }
    core_.clips_.shrink(core_.base_.clips);
    core_.viewports_.resize(core_.base_.viewports);
    core_.projections_.resize(core_.base_.projections);
    core_.modelViews_.shrink(core_.base_.modelViews);
    core_.device_->finishTarget(storage_.target);
    core_.device_->bindTarget(outer_ ? outer_->target : 0);
    storage_.image.bound = false;
    core_.target_ = outer_;
    core_.settings_ = settings_;
    core_.base_ = base_;
    core_.passStart_ = passStart_;
    core_.stale_ |= vtxRendererCore::StaleView | vtxRendererCore::StaleTransform;
}
