#include "host/headless/EglContext.h"

#include <algorithm>
#include <cstring>

#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include "platform/qor/Log.h"

namespace {

constexpr char const* tag = "HOST";
constexpr int errorLevel = 64;

/// Opened once and never closed: closing would unload the driver, and with it what leak checkers need to name its
/// blocks.
EGLDisplay openDisplay(qor::string& error) {
    static EGLDisplay display = EGL_NO_DISPLAY;
    if (display != EGL_NO_DISPLAY)
        return display;
    if (!epoxy_has_egl()) {
        error = "there is no EGL library; install libegl1 and a driver (libgl1-mesa-dri)";
        return EGL_NO_DISPLAY;
    }
    if (!epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_MESA_platform_surfaceless")) {
        error = "the EGL library cannot draw without a window system; install libegl-mesa0 and libgl1-mesa-dri";
        return EGL_NO_DISPLAY;
    }
    EGLDisplay candidate = eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    EGLint major = 0, minor = 0;
    if (candidate == EGL_NO_DISPLAY || !eglInitialize(candidate, &major, &minor)) {
        error = "EGL finds no driver; install libgl1-mesa-dri, or set LIBGL_ALWAYS_SOFTWARE=1";
        return EGL_NO_DISPLAY;
    }
    return display = candidate;
}

EGLContext createContext(EGLDisplay display, EglContext::Api api) {
    bool const es = api == EglContext::Api::ES30;
    eglBindAPI(es ? EGL_OPENGL_ES_API : EGL_OPENGL_API);
    EGLint const configAttributes[] = {EGL_RENDERABLE_TYPE, es ? EGL_OPENGL_ES3_BIT : EGL_OPENGL_BIT, EGL_SURFACE_TYPE,
                                       0, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(display, configAttributes, &config, 1, &count) || count < 1)
        return EGL_NO_CONTEXT;
    EGLint const major = api == EglContext::Api::GL45 ? 4 : 3;
    EGLint const minor = es ? 0 : api == EglContext::Api::GL45 ? 5 : 3;
    qor::vector<EGLint> attributes = {EGL_CONTEXT_MAJOR_VERSION, major,   EGL_CONTEXT_MINOR_VERSION, minor,
                                      EGL_CONTEXT_OPENGL_DEBUG,  EGL_TRUE};
    if (!es)
        attributes.insert(attributes.end(), {EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT});
    attributes.push_back(EGL_NONE);
    return eglCreateContext(display, config, EGL_NO_CONTEXT, attributes.data());
}

void GLAPIENTRY onMessage(GLenum, GLenum type, GLuint, GLenum, GLsizei, GLchar const* text, void const* user) {
    if (type != GL_DEBUG_TYPE_ERROR)
        return;
    ++*static_cast<unsigned*>(const_cast<void*>(user));
    qor_logf(tag, errorLevel, "GL reports: %s", text);
}

}  // namespace

struct EglContext::Impl {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
    EGLenum api = EGL_OPENGL_API;
    osg::Vec2i size;
    GLuint framebuffer = 0;
    GLuint colour = 0;
    GLuint depth = 0;
    unsigned errorCount = 0;
};

std::unique_ptr<EglContext> EglContext::create(Api api, osg::Vec2i const& size, qor::string& error) {
    auto impl = std::make_unique<Impl>();
    impl->display = openDisplay(error);
    if (impl->display == EGL_NO_DISPLAY)
        return nullptr;
    impl->api = api == Api::ES30 ? EGL_OPENGL_ES_API : EGL_OPENGL_API;
    impl->context = createContext(impl->display, api);
    if (impl->context == EGL_NO_CONTEXT) {
        error.format(
            "the driver gives no context of %s (EGL error 0x%x); install libgl1-mesa-dri, or set "
            "LIBGL_ALWAYS_SOFTWARE=1",
            api == Api::ES30   ? "OpenGL ES 3.0"
            : api == Api::GL45 ? "OpenGL 4.5 core"
                               : "OpenGL 3.3 core",
            unsigned(eglGetError()));
        return nullptr;
    }
    std::unique_ptr<EglContext> context(new EglContext(std::move(impl)));
    context->makeCurrent();
    if (epoxy_has_gl_extension("GL_KHR_debug")) {
        glEnable(GL_DEBUG_OUTPUT);
        glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
        glDebugMessageCallback(onMessage, &context->impl_->errorCount);
    }
    context->resize(size);
    return context;
}

EglContext::EglContext(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

EglContext::~EglContext() {
    EGLenum const api = eglQueryAPI();
    EGLContext const current = eglGetCurrentContext();
    makeCurrent();
    glDeleteFramebuffers(1, &impl_->framebuffer);
    glDeleteRenderbuffers(1, &impl_->colour);
    glDeleteRenderbuffers(1, &impl_->depth);
    eglMakeCurrent(impl_->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(impl_->display, impl_->context);
    // Another context that was current goes on being so.
    eglBindAPI(api);
    if (current != EGL_NO_CONTEXT && current != impl_->context)
        eglMakeCurrent(impl_->display, EGL_NO_SURFACE, EGL_NO_SURFACE, current);
}

void EglContext::makeCurrent() {
    eglBindAPI(impl_->api);
    if (!eglMakeCurrent(impl_->display, EGL_NO_SURFACE, EGL_NO_SURFACE, impl_->context))
        qor_logf(tag, errorLevel,
                 "the GL context cannot be made current (EGL error 0x%x); is it current on another thread?",
                 unsigned(eglGetError()));
}

void EglContext::bindFramebuffer() {
    glBindFramebuffer(GL_FRAMEBUFFER, impl_->framebuffer);
    glViewport(0, 0, impl_->size.x(), impl_->size.y());
}

void EglContext::resize(osg::Vec2i const& size) {
    impl_->size = osg::Vec2i(std::max(size.x(), 1), std::max(size.y(), 1));
    if (!impl_->framebuffer) {
        glGenFramebuffers(1, &impl_->framebuffer);
        glGenRenderbuffers(1, &impl_->colour);
        glGenRenderbuffers(1, &impl_->depth);
    }
    bindFramebuffer();
    glBindRenderbuffer(GL_RENDERBUFFER, impl_->colour);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, impl_->size.x(), impl_->size.y());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, impl_->colour);
    glBindRenderbuffer(GL_RENDERBUFFER, impl_->depth);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, impl_->size.x(), impl_->size.y());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, impl_->depth);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    clear(0.0f, 0.0f, 0.0f, 0.0f);
}

osg::Vec2i EglContext::getSize() const { return impl_->size; }
unsigned EglContext::getFramebuffer() const { return impl_->framebuffer; }

void EglContext::clear(float r, float g, float b, float a) {
    bindFramebuffer();
    glClearColor(r, g, b, a);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

qor::vector<unsigned char> EglContext::readPixels() {
    size_t const row = size_t(impl_->size.x()) * 4;
    qor::vector<unsigned char> pixels(row * size_t(impl_->size.y()));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, impl_->framebuffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, impl_->size.x(), impl_->size.y(), GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    // GL's rows go upwards.
    for (int top = 0, bottom = impl_->size.y() - 1; top < bottom; ++top, --bottom)
        std::swap_ranges(pixels.data() + row * size_t(top), pixels.data() + row * size_t(top + 1),
                         pixels.data() + row * size_t(bottom));
    return pixels;
}

unsigned EglContext::getErrorCount() const { return impl_->errorCount; }

qor::string EglContext::describe() const {
    auto text = [](GLenum name) {
        auto value = reinterpret_cast<char const*>(glGetString(name));
        return value ? value : "?";
    };
    qor::string words;
    return words.format("%s, %s", text(GL_VERSION), text(GL_RENDERER));
}
