#pragma once

#include <epoxy/gl.h>

#include "platform/gl/vtxGLContext.h"
#include "platform/gl/vtxGLDevice.h"
#include "platform/gl/vtxGLRegion.h"

/// Internal to the GL back end: the host's GL state, but for the texture units (vtxGLUnits) and what only the sending
/// of pixels needs (vtxGLTransfer).
///
/// Order: `enter` reads what a pass touches and sets what all drawing of the back end needs; `leave` puts it back, or
/// sets GL's defaults where nothing was read. What is as it should be is not set.
class vtxGLHostState {
public:
    vtxGLHostState(vtxGLContext const& context, vtxGLOptions const& options, vtxGLRegion& region)
        : context_(context), options_(options), region_(region) {}

    void enter();
    /// Before triangles, lines and points are drawn: what only these need.
    void prepareGeometry();
    void leave();
    vtxGLHostFramebuffer const& getFramebuffer() const { return framebuffer_; }

    static constexpr int maxSwitches = 32;
    static constexpr int maxDrawBuffers = 8;

private:
    struct BufferState {
        GLboolean blend = GL_FALSE;
        GLboolean mask[4] = {GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE};
        GLint functions[4] = {GL_ONE, GL_ZERO, GL_ONE, GL_ZERO};  ///< source and destination colour, then alpha
        GLint equations[2] = {GL_FUNC_ADD, GL_FUNC_ADD};
        bool operator==(BufferState const&) const = default;
    };

    int getBufferCount_() const;
    void findFramebuffer_();
    /// Reads and sets the switches of all drawing, or those of geometry.
    void takeSwitches_(bool geometry);
    void save_();
    void saveBuffers_();
    void applyOwn_();
    void restoreBuffers_();
    void restoreAllBuffers_(BufferState const& buffer);
    void restoreBlending_(BufferState const& buffer);

    vtxGLContext const& context_;
    vtxGLOptions const& options_;
    vtxGLRegion& region_;
    vtxGLHostFramebuffer framebuffer_;

    // --- As found, or GL's defaults ---
    bool geometryPrepared_ = false;
    GLboolean switches_[maxSwitches] = {};
    BufferState buffers_[maxDrawBuffers];
    GLint program_ = 0;
    GLint vertexArray_ = 0;
    GLint arrayBuffer_ = 0;
    GLint drawFramebuffer_ = 0;
    GLint readFramebuffer_ = 0;
    GLint polygonMode_[2] = {GL_FILL, GL_FILL};
    GLfloat lineWidth_ = 1.0f;
    GLint clipOrigin_ = 0;
    GLint clipDepth_ = 0;
};
