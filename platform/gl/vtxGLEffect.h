#pragma once

#include "platform/gl/vtxGLProgram.h"
#include "platform/vtx/vtxDevice.h"
#include "platform/vtx/vtxEffectFile.h"

/// Internal to the GL back end: a program for geometry, made from an effect file.
class vtxGLEffect {
public:
    /// The texture unit of `image`.
    static constexpr int imageUnit = 3;

    /// Compiles; the program is in use afterwards. On failure `error` is "path:line: cause".
    bool create(vtxEffectFile const& file, char const* path, bool es, qor::string& error);
    void destroy() { program_.destroy(); }
    int findParameter(char const* name) const { return file_.findParameter(name); }

    /// Makes the program the current one and gives it the draw's values. `mirror` is -1 where y is mirrored,
    /// otherwise 1.
    void use(vtxGeometryDraw const& draw, float mirror);
    /// Parameters that are not listed, and elements that are not given, have the file's default.
    void setParameters(vtxEffectDraw::Parameter const* parameters, size_t count);

private:
    vtxEffectFile file_;  ///< without the sections' text
    vtxGLProgram program_;
    qor::vector<GLint> locations_;
    qor::vector<float> scratch_;
    GLint projection_ = -1;
    GLint modelView_ = -1;
    GLint viewportSize_ = -1;
    GLint opacity_ = -1;
    GLint scale_ = -1;
    GLint imageScale_ = -1;
    GLint tone_ = -1;
    GLint mirror_ = -1;
};
