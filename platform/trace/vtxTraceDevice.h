#pragma once

#include "platform/trace/vtxTraceLog.h"
#include "platform/vtx/vtxDevice.h"

#include <osg/Vec2i>

#include <memory>

/// A back end without pixels: it writes what it is asked for into a log and checks that handles are alive and that
/// calls come in a pass. Reading pixels gives zeros.
class VORLEX_API vtxTraceDevice final : public vtxDevice {
public:
    /// Size of the framebuffer that the host is taken to have bound, in pixels.
    explicit vtxTraceDevice(osg::Vec2i const& hostSize = osg::Vec2i(800, 600));
    ~vtxTraceDevice() override;

    std::shared_ptr<vtxTraceLog> getLog() const { return log_; }
    void setHostSize(osg::Vec2i const& size) { hostSize_ = size; }

    // vtxDevice:
    void openPass() override;
    void closePass() override;
    int getMaxTextureSize() override { return 8192; }
    vtxDeviceHandle createTexture(vtxTextureDescription const& description) override;
    void resizeTextureArray(vtxDeviceHandle texture, int layers) override;
    void uploadTexture(vtxDeviceHandle texture, int layer, osg::RectImpl<osg::Vec2i> const& rect,
                       unsigned char const* pixels) override;
    void destroyTexture(vtxDeviceHandle texture) override;
    vtxDeviceHandle createTarget(osg::Vec2i const& size, int msaa, int mips) override;
    vtxDeviceHandle getTargetTexture(vtxDeviceHandle target) override;
    void destroyTarget(vtxDeviceHandle target) override;
    void bindTarget(vtxDeviceHandle target) override;
    void clearTarget() override;
    void finishTarget(vtxDeviceHandle target) override;
    void readPixels(vtxDeviceHandle target, osg::RectImpl<osg::Vec2i> const& rect, unsigned char* pixels) override;
    osg::Vec2i getHostSize() override { return hostSize_; }
    void drawQuads(vtxQuadRun const& run) override;
    vtxDeviceHandle createGeometry() override;
    void updateGeometry(vtxDeviceHandle geometry, qor::vector<vtxVertex> const& vertices,
                        qor::vector<int> const* indices) override;
    void destroyGeometry(vtxDeviceHandle geometry) override;
    void drawGeometry(vtxGeometryDraw const& draw) override;
    vtxDeviceHandle createEffect(char const* path, qor::basic_string<char>& error) override;
    int getEffectParameter(vtxDeviceHandle effect, char const* name) override;
    void drawEffect(vtxEffectDraw const& draw) override;
    void traceOperation(char const* operation, char const* arguments) override;
    bool const* getTraceSwitch() const override { return log_->getContractSwitch_(); }
    void reportMisuse(char const* text) override;

private:
    enum class Kind : char { Texture = 'T', Target = 'R', Geometry = 'G', Effect = 'E' };
    struct Object {
        Kind kind = Kind::Texture;
        vtxDeviceHandle texture = 0;     ///< of a target
        int layers = 0;                  ///< of a texture; 0: no array
        osg::Vec2i size{0, 0};           ///< of a texture
        int pixelBytes = 4;              ///< of a texture
        qor::vector<qor::string> names;  ///< parameters of an effect
    };

    vtxDeviceHandle create_(Kind kind);
    void destroy_(vtxDeviceHandle handle, Kind kind);
    /// Null, with a report, unless the handle is alive and of the kind.
    Object* find_(vtxDeviceHandle handle, Kind kind, char const* operation);
    void requirePass_(char const* operation);
    void writeState_(vtxDrawState const& state);
    void writeQuad_(vtxQuadInstance const& quad);
    void writeGeometry_(vtxGeometryDraw const& draw);

    std::shared_ptr<vtxTraceLog> log_;
    osg::Vec2i hostSize_;
    bool passOpen_ = false;
    vtxDeviceHandle boundTarget_ = 0;
    vtxDeviceHandle lastHandle_ = 0;                  ///< handles are never used again, so that a dead one is known
    qor::hash_map<vtxDeviceHandle, Object> objects_;  ///< the living ones
};
