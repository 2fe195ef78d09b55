#pragma once

#include <epoxy/gl.h>

#include "platform/gl/vtxGLContext.h"

/// Internal to the GL back end: takes over the context's debug output for the time of a pass, counts and logs errors.
class vtxGLDebug {
public:
    vtxGLDebug(vtxGLContext const& context, bool wanted) : active_(wanted && context.debug) {}

    void enter();
    void leave();
    unsigned getErrorCount() const { return errorCount_; }
    void addMessage(GLenum type, char const* text);

private:
    bool active_;
    unsigned errorCount_ = 0;
    GLboolean hostOutput_ = GL_FALSE;
    GLboolean hostSynchronous_ = GL_FALSE;
    void* hostCallback_ = nullptr;
    void* hostUser_ = nullptr;
};
