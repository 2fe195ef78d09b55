#include "tests/speed/GLCalls.h"

#include <epoxy/gl.h>

namespace speed_test {
namespace {

std::map<std::string, int>* counts = nullptr;

/// Stands in the place of libepoxy's pointer to a function.
template <auto Slot>
class Counter;

template <class Result, class... Arguments, Result (**Slot)(Arguments...)>
class Counter<Slot> {
public:
    static void install(char const* name) {
        name_ = name;
        real_ = *Slot;
        *Slot = call_;
    }
    static void remove() { *Slot = real_; }

private:
    using Function = Result (*)(Arguments...);

    /// Puts this back after a call: the first call of a function makes libepoxy look it up and replace the pointer.
    struct Stay {
        ~Stay() {
            if (*Slot != call_) {
                real_ = *Slot;
                *Slot = call_;
            }
        }
    };

    static Result call_(Arguments... arguments) {
        Stay const stay;
        ++(*counts)[name_];
        return real_(arguments...);
    }

    inline static char const* name_ = nullptr;
    inline static Function real_ = nullptr;
};

struct Entry {
    char const* name;
    void (*install)(char const* name);
    void (*remove)();
};

template <auto Slot>
constexpr Entry entryOf(char const* name) {
    return {name, Counter<Slot>::install, Counter<Slot>::remove};
}

constexpr Entry entries[] = {
    entryOf<&glActiveTexture>("glActiveTexture"),
    entryOf<&glAttachShader>("glAttachShader"),
    entryOf<&glBindBuffer>("glBindBuffer"),
    entryOf<&glBindFramebuffer>("glBindFramebuffer"),
    entryOf<&glBindRenderbuffer>("glBindRenderbuffer"),
    entryOf<&glBindSampler>("glBindSampler"),
    entryOf<&glBindSamplers>("glBindSamplers"),
    entryOf<&glBindTexture>("glBindTexture"),
    entryOf<&glBindTextures>("glBindTextures"),
    entryOf<&glBindVertexArray>("glBindVertexArray"),
    entryOf<&glBlendEquation>("glBlendEquation"),
    entryOf<&glBlendEquationSeparate>("glBlendEquationSeparate"),
    entryOf<&glBlendEquationSeparatei>("glBlendEquationSeparatei"),
    entryOf<&glBlendFunc>("glBlendFunc"),
    entryOf<&glBlendFuncSeparate>("glBlendFuncSeparate"),
    entryOf<&glBlendFuncSeparatei>("glBlendFuncSeparatei"),
    entryOf<&glBlitFramebuffer>("glBlitFramebuffer"),
    entryOf<&glBufferData>("glBufferData"),
    entryOf<&glBufferSubData>("glBufferSubData"),
    entryOf<&glCheckFramebufferStatus>("glCheckFramebufferStatus"),
    entryOf<&glClearBufferfv>("glClearBufferfv"),
    entryOf<&glClipControl>("glClipControl"),
    entryOf<&glColorMask>("glColorMask"),
    entryOf<&glColorMaski>("glColorMaski"),
    entryOf<&glCompileShader>("glCompileShader"),
    entryOf<&glCopyTexSubImage3D>("glCopyTexSubImage3D"),
    entryOf<&glCreateProgram>("glCreateProgram"),
    entryOf<&glCreateShader>("glCreateShader"),
    entryOf<&glDebugMessageCallback>("glDebugMessageCallback"),
    entryOf<&glDeleteBuffers>("glDeleteBuffers"),
    entryOf<&glDeleteFramebuffers>("glDeleteFramebuffers"),
    entryOf<&glDeleteProgram>("glDeleteProgram"),
    entryOf<&glDeleteRenderbuffers>("glDeleteRenderbuffers"),
    entryOf<&glDeleteSamplers>("glDeleteSamplers"),
    entryOf<&glDeleteShader>("glDeleteShader"),
    entryOf<&glDeleteTextures>("glDeleteTextures"),
    entryOf<&glDeleteVertexArrays>("glDeleteVertexArrays"),
    entryOf<&glDetachShader>("glDetachShader"),
    entryOf<&glDisable>("glDisable"),
    entryOf<&glDisablei>("glDisablei"),
    entryOf<&glDrawArrays>("glDrawArrays"),
    entryOf<&glDrawArraysInstanced>("glDrawArraysInstanced"),
    entryOf<&glDrawArraysInstancedBaseInstance>("glDrawArraysInstancedBaseInstance"),
    entryOf<&glDrawElements>("glDrawElements"),
    entryOf<&glEnable>("glEnable"),
    entryOf<&glEnableVertexAttribArray>("glEnableVertexAttribArray"),
    entryOf<&glEnablei>("glEnablei"),
    entryOf<&glFramebufferRenderbuffer>("glFramebufferRenderbuffer"),
    entryOf<&glFramebufferTexture2D>("glFramebufferTexture2D"),
    entryOf<&glFramebufferTextureLayer>("glFramebufferTextureLayer"),
    entryOf<&glGenBuffers>("glGenBuffers"),
    entryOf<&glGenFramebuffers>("glGenFramebuffers"),
    entryOf<&glGenRenderbuffers>("glGenRenderbuffers"),
    entryOf<&glGenSamplers>("glGenSamplers"),
    entryOf<&glGenTextures>("glGenTextures"),
    entryOf<&glGenVertexArrays>("glGenVertexArrays"),
    entryOf<&glGenerateMipmap>("glGenerateMipmap"),
    entryOf<&glGetBooleani_v>("glGetBooleani_v"),
    entryOf<&glGetBooleanv>("glGetBooleanv"),
    entryOf<&glGetFloatv>("glGetFloatv"),
    entryOf<&glGetIntegeri_v>("glGetIntegeri_v"),
    entryOf<&glGetIntegerv>("glGetIntegerv"),
    entryOf<&glGetPointerv>("glGetPointerv"),
    entryOf<&glGetProgramInfoLog>("glGetProgramInfoLog"),
    entryOf<&glGetProgramiv>("glGetProgramiv"),
    entryOf<&glGetShaderInfoLog>("glGetShaderInfoLog"),
    entryOf<&glGetShaderiv>("glGetShaderiv"),
    entryOf<&glGetUniformLocation>("glGetUniformLocation"),
    entryOf<&glIsEnabled>("glIsEnabled"),
    entryOf<&glIsEnabledi>("glIsEnabledi"),
    entryOf<&glLineWidth>("glLineWidth"),
    entryOf<&glLinkProgram>("glLinkProgram"),
    entryOf<&glMapBufferRange>("glMapBufferRange"),
    entryOf<&glPixelStorei>("glPixelStorei"),
    entryOf<&glPolygonMode>("glPolygonMode"),
    entryOf<&glReadPixels>("glReadPixels"),
    entryOf<&glRenderbufferStorageMultisample>("glRenderbufferStorageMultisample"),
    entryOf<&glSamplerParameteri>("glSamplerParameteri"),
    entryOf<&glScissor>("glScissor"),
    entryOf<&glShaderSource>("glShaderSource"),
    entryOf<&glTexImage2D>("glTexImage2D"),
    entryOf<&glTexImage3D>("glTexImage3D"),
    entryOf<&glTexParameteri>("glTexParameteri"),
    entryOf<&glTexSubImage2D>("glTexSubImage2D"),
    entryOf<&glTexSubImage3D>("glTexSubImage3D"),
    entryOf<&glUniform1f>("glUniform1f"),
    entryOf<&glUniform1fv>("glUniform1fv"),
    entryOf<&glUniform1i>("glUniform1i"),
    entryOf<&glUniform2f>("glUniform2f"),
    entryOf<&glUniformMatrix4fv>("glUniformMatrix4fv"),
    entryOf<&glUnmapBuffer>("glUnmapBuffer"),
    entryOf<&glUseProgram>("glUseProgram"),
    entryOf<&glVertexAttribDivisor>("glVertexAttribDivisor"),
    entryOf<&glVertexAttribIPointer>("glVertexAttribIPointer"),
    entryOf<&glVertexAttribPointer>("glVertexAttribPointer"),
    entryOf<&glViewport>("glViewport"),
};

}  // namespace

GLCalls::GLCalls() {
    counts = new std::map<std::string, int>;
    for (Entry const& entry : entries)
        entry.install(entry.name);
}

GLCalls::~GLCalls() {
    for (Entry const& entry : entries)
        entry.remove();
    delete counts;
    counts = nullptr;
}

int GLCalls::getTotal() const {
    int total = 0;
    for (auto const& [name, count] : *counts)
        total += count;
    return total;
}

std::map<std::string, int> const& GLCalls::getCounts() const { return *counts; }

std::string GLCalls::describe() const {
    std::string text;
    for (auto const& [name, count] : *counts)
        text += name + " " + std::to_string(count) + "\n";
    return text;
}

bool GLCalls::getCounted(std::string const& function) {
    for (Entry const& entry : entries)
        if (function == entry.name)
            return true;
    return false;
}

}  // namespace speed_test
