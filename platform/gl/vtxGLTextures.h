#pragma once

#include <epoxy/gl.h>

#include "platform/gl/vtxGLContext.h"
#include "platform/gl/vtxGLRegion.h"
#include "platform/gl/vtxGLTransfer.h"
#include "platform/gl/vtxGLUnits.h"
#include "platform/vtx/vtxDevice.h"

/// Internal to the GL back end: textures and render targets. All functions are called inside a pass, whose
/// switches they rely on; those that need a framebuffer bind their own and leave it bound, and say so.
class vtxGLTextures {
public:
    struct Texture {
        GLuint name = 0;
        GLenum target = GL_TEXTURE_2D;
        vtxTextureDescription description;
        int levels = 1;
        bool mipsStale = false;
    };
    struct Target {
        bool used = false;
        osg::Vec2i size;
        int samples = 0;
        vtxDeviceHandle texture = 0;
        GLuint framebuffer = 0;      ///< of the texture
        GLuint msaaFramebuffer = 0;  ///< drawn to instead if there are samples
        GLuint msaaRenderbuffer = 0;
        bool resolveNeeded = false;
    };

    vtxGLTextures(vtxGLContext const& context, vtxGLUnits& units, vtxGLTransfer& transfer, vtxGLRegion& region)
        : context_(context), units_(units), transfer_(transfer), region_(region) {}

    /// Makes what all textures share; in the first pass.
    void create();
    /// Deletes every GL object; with the context current.
    void destroy();

    // --- Textures ---
    vtxDeviceHandle createTexture(vtxTextureDescription const& description, int levels);
    /// Binds framebuffers.
    void resizeArray(vtxDeviceHandle handle, int layers);
    void upload(vtxDeviceHandle handle, int layer, osg::RectImpl<osg::Vec2i> const& rect, unsigned char const* pixels);
    void destroyTexture(vtxDeviceHandle handle);
    /// Null if there is none of that handle.
    Texture* getTexture(vtxDeviceHandle handle);
    /// Binds it for drawing, with its mips made; a white one of the same kind for handle 0. `sampler` as the contract
    /// numbers them.
    void bind(int unit, vtxDeviceHandle handle, bool array, int sampler);

    // --- Targets ---
    /// Binds framebuffers.
    vtxDeviceHandle createTarget(osg::Vec2i const& size, int msaa, int mips);
    void destroyTarget(vtxDeviceHandle handle);
    Target* getTarget(vtxDeviceHandle handle);
    /// The framebuffer to draw to; marks what then must be resolved.
    GLuint getDrawFramebuffer(Target& target);
    /// Resolves the samples. Binds framebuffers.
    void resolve(Target& target);
    void makeMips(Target& target);

private:
    void allocate_(Texture& texture);
    /// Binds framebuffers.
    void clearLayers_(Texture const& texture, int first, int count);
    vtxDeviceHandle addTexture_(Texture const& texture);
    bool isComplete_(Target const& target);

    vtxGLContext const& context_;
    vtxGLUnits& units_;
    vtxGLTransfer& transfer_;
    vtxGLRegion& region_;
    qor::vector<Texture> textures_;
    qor::vector<Target> targets_;
    GLuint samplers_[4] = {};
    GLuint white_ = 0;
    GLuint whiteArray_ = 0;
    GLuint copyFramebuffer_ = 0;
};
