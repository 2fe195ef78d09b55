#include "platform/gl/vtxGLUnits.h"

#include <algorithm>

void vtxGLUnits::enter(bool saveHostState) {
    saveHostState_ = saveHostState;
    std::fill(touched_, touched_ + count, false);
    std::fill(waiting_, waiting_ + count, false);
    hostActive_ = GL_TEXTURE0;
    if (saveHostState_)
        glGetIntegerv(GL_ACTIVE_TEXTURE, &hostActive_);
    active_ = -1;
}

void vtxGLUnits::leave() {
    if (multiBind_ && !saveHostState_) {
        clearTouched_();
    } else {
        for (int i = 0; i < count; ++i) {
            if (!touched_[i])
                continue;
            bindNow_(i, GL_TEXTURE_2D, GLuint(host_[i].texture), GLuint(host_[i].sampler));
            bindNow_(i, GL_TEXTURE_2D_ARRAY, GLuint(host_[i].arrayTexture), GLuint(host_[i].sampler));
        }
    }
    glActiveTexture(GLenum(hostActive_));
    active_ = -1;
}

void vtxGLUnits::clearTouched_() {
    for (int first = 0; first < count; ++first) {
        int end = first;
        while (end < count && touched_[end])
            ++end;
        if (end == first)
            continue;
        glBindTextures(GLuint(first), end - first, nullptr);
        glBindSamplers(GLuint(first), end - first, nullptr);
        first = end;
    }
}

void vtxGLUnits::bind(int unit, GLenum target, GLuint texture, GLuint sampler) {
    if (!multiBind_) {
        bindNow_(unit, target, texture, sampler);
        return;
    }
    touch_(unit);
    Binding& current = current_[unit];
    GLint& bound = target == GL_TEXTURE_2D ? current.texture : current.arrayTexture;
    if (bound != GLint(texture) || current.sampler != GLint(sampler))
        waiting_[unit] = true;
    bound = GLint(texture);
    current.sampler = GLint(sampler);
    textures_[unit] = texture;
    samplers_[unit] = sampler;
}

void vtxGLUnits::flush() {
    for (int first = 0; first < count; ++first) {
        int end = first;
        while (end < count && waiting_[end])
            waiting_[end++] = false;
        if (end == first)
            continue;
        glBindTextures(GLuint(first), end - first, textures_ + first);
        glBindSamplers(GLuint(first), end - first, samplers_ + first);
        first = end;
    }
}

void vtxGLUnits::bindNow_(int unit, GLenum target, GLuint texture, GLuint sampler) {
    touch_(unit);
    GLint& bound = target == GL_TEXTURE_2D ? current_[unit].texture : current_[unit].arrayTexture;
    if (bound != GLint(texture)) {
        activate_(unit);
        glBindTexture(target, texture);
        bound = GLint(texture);
    }
    if (current_[unit].sampler != GLint(sampler)) {
        glBindSampler(GLuint(unit), sampler);
        current_[unit].sampler = GLint(sampler);
    }
}

void vtxGLUnits::bindScratch(GLenum target, GLuint texture) {
    bindNow_(scratch, target, texture, 0);
    activate_(scratch);
}

void vtxGLUnits::forget(GLuint texture) {
    for (int i = 0; i < count; ++i) {
        if (!touched_[i])
            continue;
        if (current_[i].texture == GLint(texture))
            bindNow_(i, GL_TEXTURE_2D, 0, 0);
        if (current_[i].arrayTexture == GLint(texture))
            bindNow_(i, GL_TEXTURE_2D_ARRAY, 0, 0);
    }
}

void vtxGLUnits::activate_(int unit) {
    if (active_ == unit)
        return;
    glActiveTexture(GLenum(GL_TEXTURE0 + unit));
    active_ = unit;
}

void vtxGLUnits::touch_(int unit) {
    if (touched_[unit])
        return;
    touched_[unit] = true;
    host_[unit] = Binding();
    if (saveHostState_) {
        activate_(unit);
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &host_[unit].texture);
        glGetIntegerv(GL_TEXTURE_BINDING_2D_ARRAY, &host_[unit].arrayTexture);
        glGetIntegerv(GL_SAMPLER_BINDING, &host_[unit].sampler);
        current_[unit] = host_[unit];
    } else {
        // Without a query the bindings are unknown: no name matches, so that the first bind is carried out.
        current_[unit] = {-1, -1, -1};
    }
}
