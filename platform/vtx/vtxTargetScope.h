#pragma once

#include "platform/vtx/vtxRendererCore.h"

class vtxFrameBufferRecord;

/// Internal: the time from binding a target to putting everything back. Inside, the target has settings and stacks of
/// its own, which begin empty but for the caller's matrices; afterwards all is as before, also when an exception ends
/// it.
class vtxTargetScope {
public:
    vtxTargetScope(vtxRendererCore& core, vtxFrameBufferRecord& target);
    ~vtxTargetScope();
    vtxTargetScope(vtxTargetScope const&) = delete;
    vtxTargetScope& operator=(vtxTargetScope const&) = delete;

    /// False if the device has no storage for it (logged); then nothing is bound and nothing may be drawn.
    bool isReady() const { return storage_.target != 0; }

private:
    void prepareStorage_(osg::Vec2i const& size);
    void begin_();
    void end_();

    vtxRendererCore& core_;
    vtxDrawSettings const settings_;
    vtxRendererCore::StackHeights const base_;
    vtxRendererCore::StackHeights const passStart_;
    vtxTargetStorage* const outer_;
    /// Outlives the frame buffer, which may be ended while it is drawn into.
    vtxTargetStorage& storage_;
    int const exceptions_;
};
