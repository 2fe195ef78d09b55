#pragma once

#include "platform/gl/vtxGLDebug.h"
#include "platform/gl/vtxGLDevice.h"
#include "platform/gl/vtxGLEffect.h"
#include "platform/gl/vtxGLGeometry.h"
#include "platform/gl/vtxGLHostState.h"
#include "platform/gl/vtxGLRegion.h"
#include "platform/gl/vtxGLStream.h"
#include "platform/gl/vtxGLTextures.h"
#include "platform/gl/vtxGLTransfer.h"

/// Internal to the GL back end: the device itself.
///
/// Every operation that touches GL's state opens a pass of its own where none is open, so the host's state also
/// survives calls between passes.
class vtxGLBackend final : public vtxGLDevice {
public:
    vtxGLBackend(vtxGLContext const& context, vtxGLOptions const& options);
    ~vtxGLBackend() override;

    /// Makes programs and buffers. False, with the cause in `error`, if the driver refuses.
    bool create(qor::string& error);

    // vtxGLDevice:
    unsigned getErrorCount() const override { return debug_.getErrorCount(); }
    unsigned getTextureName(vtxDeviceHandle texture) override;
    bool getIsES() const override { return context_.es; }

    // vtxDevice:
    void openPass() override;
    void closePass() override;
    int getMaxTextureSize() override { return context_.maxTextureSize; }
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
    osg::Vec2i getHostSize() override;
    void drawQuads(vtxQuadRun const& run) override;
    vtxDeviceHandle createGeometry() override;
    void updateGeometry(vtxDeviceHandle geometry, qor::vector<vtxVertex> const& vertices,
                        qor::vector<int> const* indices) override;
    void destroyGeometry(vtxDeviceHandle geometry) override;
    void drawGeometry(vtxGeometryDraw const& draw) override;
    vtxDeviceHandle createEffect(char const* path, qor::basic_string<char>& error) override;
    int getEffectParameter(vtxDeviceHandle effect, char const* name) override;
    void drawEffect(vtxEffectDraw const& draw) override;

private:
    /// A pass around one operation, at no cost inside an open one.
    class Scope {
    public:
        explicit Scope(vtxGLBackend& backend) : backend_(backend) { backend_.openPass(); }
        ~Scope() { backend_.closePass(); }
        Scope(Scope const&) = delete;
        Scope& operator=(Scope const&) = delete;

    private:
        vtxGLBackend& backend_;
    };
    using Box = vtxGLRegion::Box;

    bool createQuads_(qor::string& error);
    void rebindFramebuffer_();
    Box toBox_(osg::RectImpl<osg::Vec2i> const& rect) const;
    void applyRegion_(vtxDrawState const& state);
    void bindRunTextures_(vtxQuadRun const& run);
    /// Program, vertex array and stream, unless they are bound.
    void bindQuads_();
    void setQuadUniforms_(vtxDrawState const& state);
    /// Where the instances begin in the stream, bytes.
    void setQuadPointers_(ptrdiff_t begin);
    void drawInstances_(vtxQuadInstance const* instances, size_t count);
    vtxGLGeometry* getGeometry_(vtxDeviceHandle handle);
    void drawWith_(vtxGLEffect& effect, vtxGeometryDraw const& draw, vtxEffectDraw::Parameter const* parameters,
                   size_t count);
    void readHost_(Box const& box, unsigned char* pixels);
    void readFramebuffer_(GLuint framebuffer, Box const& box, unsigned char* pixels);

    vtxGLContext context_;
    vtxGLOptions options_;
    vtxGLRegion region_;
    vtxGLTransfer transfer_;
    vtxGLHostState hostState_;
    vtxGLUnits units_;
    vtxGLDebug debug_;
    vtxGLTextures textures_;
    vtxGLStream stream_;
    vtxGLProgram quadProgram_;
    GLint quadProjection_ = -1;
    GLint quadTone_ = -1;
    GLuint quadVertexArray_ = 0;
    /// What the program's uniforms hold; they stay from pass to pass.
    osg::Matrixf sentProjection_;
    osg::Vec2f sentTone_;
    /// Nothing else has been bound since in this pass.
    bool quadsBound_ = false;
    vtxGLEffect geometryEffect_;
    qor::vector<vtxGLGeometry> geometries_;
    qor::vector<std::unique_ptr<vtxGLEffect>> effects_;
    qor::vector<float> scratch_;
    int depth_ = 0;
    vtxDeviceHandle target_ = 0;
};
