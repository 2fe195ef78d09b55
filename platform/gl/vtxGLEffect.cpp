#include "platform/gl/vtxGLEffect.h"

#include <algorithm>

#include "platform/gl/vtxGLShaderText.h"
#include "platform/gl/vtxGLUnits.h"

static_assert(vtxGLEffect::imageUnit == vtxGLUnits::lone);

bool vtxGLEffect::create(vtxEffectFile const& file, char const* path, bool es, qor::string& error) {
    vtxGLProgram::Error failure;
    if (!program_.create(vtxGLShaderText::makeEffectVertex(file, es), vtxGLShaderText::makeEffectFragment(file, es),
                         failure)) {
        if (failure.line > 0)
            error.format("%s:%d: %s", path, failure.line, failure.cause.c_str());
        else
            error.format("%s: %s", path, failure.cause.c_str());
        return false;
    }
    file_.parameters = file.parameters;
    int greatest = 1;
    for (vtxEffectFile::Parameter const& parameter : file_.parameters) {
        locations_.push_back(program_.getUniform(parameter.name.c_str()));
        greatest = std::max(greatest, parameter.count);
    }
    scratch_.resize(size_t(greatest));
    projection_ = program_.getUniform("projection");
    modelView_ = program_.getUniform("modelView");
    viewportSize_ = program_.getUniform("viewportSize");
    opacity_ = program_.getUniform("opacity");
    scale_ = program_.getUniform("scale");
    imageScale_ = program_.getUniform("imageScale");
    tone_ = program_.getUniform("vtxTone");
    mirror_ = program_.getUniform("vtxMirror");
    glUseProgram(program_.getName());
    program_.setUnit("image", imageUnit);
    return true;
}

void vtxGLEffect::use(vtxGeometryDraw const& draw, float mirror) {
    vtxDrawState const& state = draw.state;
    glUseProgram(program_.getName());
    glUniformMatrix4fv(projection_, 1, GL_FALSE, state.projection.ptr());
    glUniformMatrix4fv(modelView_, 1, GL_FALSE, draw.modelView.ptr());
    glUniform2f(viewportSize_, float(state.viewport.width()), float(state.viewport.height()));
    glUniform1f(opacity_, draw.opacity);
    glUniform1f(scale_, draw.positionScale);
    glUniform2f(imageScale_, draw.textureScaleU, draw.textureScaleV);
    glUniform2f(tone_, 1.0f / std::max(state.gamma, 0.001f), state.intensity);
    glUniform1f(mirror_, mirror);
}

void vtxGLEffect::setParameters(vtxEffectDraw::Parameter const* parameters, size_t count) {
    for (size_t i = 0; i < file_.parameters.size(); ++i) {
        vtxEffectFile::Parameter const& parameter = file_.parameters[i];
        std::fill_n(scratch_.begin(), parameter.count, parameter.defaultValue);
        for (size_t k = 0; k < count; ++k) {
            if (parameters[k].handle == int(i))
                std::copy_n(parameters[k].values, std::min(parameters[k].count, size_t(parameter.count)),
                            scratch_.begin());
        }
        glUniform1fv(locations_[i], parameter.count, scratch_.data());
    }
}
