#pragma once

#include <epoxy/gl.h>

#include <string_view>

#include "platform/qor/String.h"

/// Internal to the GL back end: one linked program.
class vtxGLProgram {
public:
    struct Error {
        int line = 0;  ///< of the effect file; 0 if the message names none there
        qor::string cause;
    };

    /// Compiles and links without binding anything. False on failure.
    bool create(std::string_view vertexText, std::string_view fragmentText, Error& error);
    void destroy();
    GLuint getName() const { return name_; }
    /// -1, which the setters ignore, for what the program does not use.
    GLint getUniform(char const* name) const { return glGetUniformLocation(name_, name); }
    /// Gives a sampler its texture unit; the program is in use.
    void setUnit(char const* sampler, int unit) const { glUniform1i(getUniform(sampler), unit); }

    /// Lines from here on are not the effect file's.
    static constexpr int firstOwnLine = 900000;
    /// Finds the place in a driver's message: "0:12(5): error: ...", "0(12) : error ..." or "ERROR: 0:12: ...".
    static Error readLog(std::string_view log);

private:
    GLuint name_ = 0;
};
