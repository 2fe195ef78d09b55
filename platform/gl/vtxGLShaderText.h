#pragma once

#include "platform/qor/String.h"
#include "platform/vtx/vtxEffectFile.h"

/// Internal to the GL back end: the text of its shaders. The same text serves GLSL 3.30 and GLSL ES 3.00; only the
/// first lines differ.
namespace vtxGLShaderText {

/// What a vertex and a fragment shader begin with.
qor::string getHeader(bool es);

/// Declares vtxTone (1 / gamma and intensity) and vec4 vtxApplyTone(vec4 premultiplied).
extern char const* const toneFunction;

extern char const* const quadVertex;
extern char const* const quadFragment;

/// The whole vertex or fragment shader of an effect: header, prelude, parameters, the file's section, `main`.
qor::string makeEffectVertex(vtxEffectFile const& file, bool es);
qor::string makeEffectFragment(vtxEffectFile const& file, bool es);

/// What draws geometry when no effect does.
extern char const* const geometryEffect;

}  // namespace vtxGLShaderText
