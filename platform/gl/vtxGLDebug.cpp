#include "platform/gl/vtxGLDebug.h"

#include "platform/qor/Log.h"

namespace {

void GLAPIENTRY onMessage(GLenum source, GLenum type, GLuint, GLenum, GLsizei, GLchar const* text, void const* user) {
    // Whoever compiles reports what the compiler said, with the place in the file.
    if (source != GL_DEBUG_SOURCE_SHADER_COMPILER)
        static_cast<vtxGLDebug*>(const_cast<void*>(user))->addMessage(type, text);
}

void setSwitch(GLenum name, bool on) {
    if (on)
        glEnable(name);
    else
        glDisable(name);
}

}  // namespace

void vtxGLDebug::enter() {
    if (!active_)
        return;
    hostOutput_ = glIsEnabled(GL_DEBUG_OUTPUT);
    hostSynchronous_ = glIsEnabled(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, &hostCallback_);
    glGetPointerv(GL_DEBUG_CALLBACK_USER_PARAM, &hostUser_);
    glDebugMessageCallback(onMessage, this);
    glEnable(GL_DEBUG_OUTPUT);
    glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
}

void vtxGLDebug::leave() {
    if (!active_)
        return;
    glDebugMessageCallback(reinterpret_cast<GLDEBUGPROC>(hostCallback_), hostUser_);
    setSwitch(GL_DEBUG_OUTPUT_SYNCHRONOUS, hostSynchronous_);
    setSwitch(GL_DEBUG_OUTPUT, hostOutput_);
}

void vtxGLDebug::addMessage(GLenum type, char const* text) {
    if (type != GL_DEBUG_TYPE_ERROR)
        return;
    ++errorCount_;
    qor_logf(vtxGLTag, vtxGLErrorLevel, "GL reports: %s", text);
}
