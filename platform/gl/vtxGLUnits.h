#pragma once

#include <epoxy/gl.h>

/// Internal to the GL back end: the texture units it uses. What the host had bound is read when a unit is first touched
/// in a pass, so that passes without pictures ask for nothing.
class vtxGLUnits {
public:
    static constexpr int pictureLinear = 0;
    static constexpr int pictureNearest = 1;
    static constexpr int glyph = 2;
    static constexpr int lone = 3;      ///< and seven more
    static constexpr int scratch = 11;  ///< for uploads and the like; leaves the others' bindings alone
    static constexpr int count = 12;

    /// GL can bind several units by one call.
    void setMultiBind(bool multiBind) { multiBind_ = multiBind; }
    void enter(bool saveHostState);
    void leave();

    /// Binds a texture, or nothing for 0, with a sampler object, at the latest in `flush`. `target` is GL_TEXTURE_2D or
    /// GL_TEXTURE_2D_ARRAY.
    void bind(int unit, GLenum target, GLuint texture, GLuint sampler);
    /// Before a draw.
    void flush();
    /// Binds to the scratch unit and makes that the active one.
    void bindScratch(GLenum target, GLuint texture);
    /// The texture's name is about to be deleted or used anew.
    void forget(GLuint texture);

private:
    struct Binding {
        GLint texture = 0;
        GLint arrayTexture = 0;
        GLint sampler = 0;
    };
    void bindNow_(int unit, GLenum target, GLuint texture, GLuint sampler);
    void clearTouched_();
    void activate_(int unit);
    void touch_(int unit);

    Binding host_[count];
    Binding current_[count];
    bool touched_[count] = {};
    /// What `flush` is to bind, for each unit up to the last; `waiting_` tells which are new.
    GLuint textures_[count] = {};
    GLuint samplers_[count] = {};
    bool waiting_[count] = {};
    bool multiBind_ = false;
    bool saveHostState_ = true;
    GLint hostActive_ = GL_TEXTURE0;
    int active_ = -1;
};
