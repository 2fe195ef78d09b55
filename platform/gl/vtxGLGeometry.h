#pragma once

#include <epoxy/gl.h>

#include "platform/vtx/vtxDevice.h"

/// Internal to the GL back end: indexed vertices in buffers of their own.
class vtxGLGeometry {
public:
    void create();
    void destroy();
    bool exists() const { return vertexArray_ != 0; }
    /// `scratch` is storage that the caller keeps from one update to the next.
    void update(qor::vector<vtxVertex> const& vertices, qor::vector<int> const* indices, qor::vector<float>& scratch);
    /// Draws what of `count` primitives from index `first` on there is.
    void draw(vtxGeometry::PrimitiveType primitive, int count, int first);

private:
    GLuint vertexArray_ = 0;
    GLuint vertexBuffer_ = 0;
    GLuint indexBuffer_ = 0;
    int vertexCount_ = 0;
    int indexCount_ = 0;
    int greatestIndex_ = -1;
};
