#pragma once

#include <epoxy/gl.h>

/// Internal to the GL back end: what the sending and reading of pixels and the making of storage depend on. Read and
/// set when a pass first needs it, as most do not.
class vtxGLTransfer {
public:
    void enter(bool saveHostState);
    /// Before pixels are sent or read, and before textures and renderbuffers are made.
    void prepare();
    void leave();

private:
    static constexpr int storeCount = 10;

    bool saveHostState_ = true;
    bool prepared_ = false;

    // --- As found, or GL's defaults ---
    GLint stores_[storeCount] = {};
    GLint unpackBuffer_ = 0;
    GLint packBuffer_ = 0;
    GLint renderbuffer_ = 0;
};
