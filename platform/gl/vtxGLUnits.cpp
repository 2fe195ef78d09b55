#include "platform/gl/vtxGLUnits.h"

#include <algorithm>

void vtxGLUnits::enter(bool saveHostState) {
    saveHostState_ = saveHostState;
    std::fill(touched_, touched_ + count, false);
    hostActive_ = GL_TEXTURE0;
    if (saveHostState_)
        glGetIntegerv(GL_ACTIVE_TEXTURE, &hostActive_);
    active_ = -1;
}

void vtxGLUnits::leave() {
    for (int i = 0; i < count; ++i) {
        if (!touched_[i])
            continue;
        activate_(i);
        glBindTexture(GL_TEXTURE_2D, GLuint(host_[i].texture));
        glBindTexture(GL_TEXTURE_2D_ARRAY, GLuint(host_[i].arrayTexture));
        glBindSampler(GLuint(i), GLuint(host_[i].sampler));
    }
    glActiveTexture(GLenum(hostActive_));
    active_ = -1;
}

void vtxGLUnits::bind(int unit, GLenum target, GLuint texture, GLuint sampler) {
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
    bind(scratch, target, texture, 0);
    activate_(scratch);
}

void vtxGLUnits::forget(GLuint texture) {
    for (int i = 0; i < count; ++i) {
        if (!touched_[i])
            continue;
        if (current_[i].texture == GLint(texture))
            bind(i, GL_TEXTURE_2D, 0, 0);
        if (current_[i].arrayTexture == GLint(texture))
            bind(i, GL_TEXTURE_2D_ARRAY, 0, 0);
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
