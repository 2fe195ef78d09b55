#include "platform/gl/vtxGLContext.h"

#include <dlfcn.h>
#include <epoxy/gl.h>

namespace {

/// Asks a library that the host has loaded already; one that is not loaded cannot have made a context.
bool hasCurrent(char const* library, char const* function) {
    void* handle = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    if (!handle)
        return false;
    using GetCurrent = void* (*)();
    auto getCurrent = reinterpret_cast<GetCurrent>(dlsym(handle, function));
    bool const current = getCurrent && getCurrent();
    dlclose(handle);
    return current;
}

int getInteger(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

}  // namespace

bool vtxGLContext::isAnyCurrent() {
    return hasCurrent("libEGL.so.1", "eglGetCurrentContext") || hasCurrent("libGLX.so.0", "glXGetCurrentContext") ||
           hasCurrent("libGL.so.1", "glXGetCurrentContext");
}

bool vtxGLContext::read(qor::string& error) {
    if (!isAnyCurrent()) {
        error =
            "no GL context is current on this thread; make one of OpenGL 3.3 core or OpenGL ES 3.0 and make it current "
            "before the renderer is created";
        return false;
    }
    es = !epoxy_is_desktop_gl();
    version = epoxy_gl_version();
    if (version < (es ? 30 : 33)) {
        error.format(
            "the GL context is %s %d.%d; ask for OpenGL 3.3 core or OpenGL ES 3.0 when making it, or update the "
            "driver",
            es ? "OpenGL ES" : "OpenGL", version / 10, version % 10);
        return false;
    }
    bool const khrDebug = version >= (es ? 32 : 43) || epoxy_has_gl_extension("GL_KHR_debug");
    // Before OpenGL ES 3.2 there are no flags; there the output is on from the start in a debug context and in no
    // other.
    if (khrDebug && es && version < 32)
        debug = glIsEnabled(GL_DEBUG_OUTPUT);
    else
        debug = khrDebug && (getInteger(GL_CONTEXT_FLAGS) & GL_CONTEXT_FLAG_DEBUG_BIT);
    clipControl = !es && (version >= 45 || epoxy_has_gl_extension("GL_ARB_clip_control"));
    srgbControl = !es || epoxy_has_gl_extension("GL_EXT_sRGB_write_control");
    indexedBlendEnable = !es;
    indexedBlendFunction = !es && version >= 40;
    multiBind = !es && (version >= 44 || epoxy_has_gl_extension("GL_ARB_multi_bind"));
    baseInstance = !es && (version >= 42 || epoxy_has_gl_extension("GL_ARB_base_instance"));
    drawBuffers = getInteger(GL_MAX_DRAW_BUFFERS);
    maxTextureSize = getInteger(GL_MAX_TEXTURE_SIZE);
    maxLayers = getInteger(GL_MAX_ARRAY_TEXTURE_LAYERS);
    maxSamples = getInteger(GL_MAX_SAMPLES);
    return true;
}
