#pragma once

#include "platform/vtx/vtxDevice.h"

/// A back end that takes every run of instances and geometry and draws nothing, so that what is measured is the
/// toolkit and the front half of the renderer. Handles are numbers that nobody looks up.
class NullDevice final : public vtxDevice {
public:
    explicit NullDevice(osg::Vec2i const& hostSize) : hostSize_(hostSize) {}

    // vtxDevice:
    void openPass() override {}
    void closePass() override {}
    int getMaxTextureSize() override { return 16384; }
    vtxDeviceHandle createTexture(vtxTextureDescription const&) override { return ++last_; }
    void resizeTextureArray(vtxDeviceHandle, int) override {}
    void uploadTexture(vtxDeviceHandle, int, osg::RectImpl<osg::Vec2i> const&, unsigned char const*) override {}
    void destroyTexture(vtxDeviceHandle) override {}
    vtxDeviceHandle createTarget(osg::Vec2i const&, int, int) override { return ++last_; }
    vtxDeviceHandle getTargetTexture(vtxDeviceHandle target) override { return target; }
    void destroyTarget(vtxDeviceHandle) override {}
    void bindTarget(vtxDeviceHandle) override {}
    void clearTarget() override {}
    void finishTarget(vtxDeviceHandle) override {}
    void readPixels(vtxDeviceHandle, osg::RectImpl<osg::Vec2i> const&, unsigned char*) override {}
    osg::Vec2i getHostSize() override { return hostSize_; }
    void drawQuads(vtxQuadRun const&) override {}
    vtxDeviceHandle createGeometry() override { return ++last_; }
    void updateGeometry(vtxDeviceHandle, qor::vector<vtxVertex> const&, qor::vector<int> const*) override {}
    void destroyGeometry(vtxDeviceHandle) override {}
    void drawGeometry(vtxGeometryDraw const&) override {}
    vtxDeviceHandle createEffect(char const*, qor::basic_string<char>&) override { return ++last_; }
    int getEffectParameter(vtxDeviceHandle, char const*) override { return 0; }
    void drawEffect(vtxEffectDraw const&) override {}

private:
    osg::Vec2i hostSize_;
    vtxDeviceHandle last_ = 0;
};
