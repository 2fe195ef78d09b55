#pragma once

#include <epoxy/gl.h>

#include <cstddef>

/// Internal to the GL back end: a ring of vertex memory that is written once and read once.
///
/// The buffer is written from its start to its end and then replaced (orphaned), so that the driver never waits for
/// pictures under way; ES 3.0 has no lasting maps.
class vtxGLStream {
public:
    static constexpr size_t capacity = size_t(4) << 20;

    void create();
    void destroy();
    /// To GL_ARRAY_BUFFER.
    void bind();
    /// Copies at most `capacity` bytes; the buffer must be bound. Returns where they begin, a multiple of 16 and of the
    /// size that all writes are multiples of, or -1 when the driver gave no memory.
    ptrdiff_t write(void const* data, size_t size);

private:
    GLuint buffer_ = 0;
    size_t used_ = 0;
};
