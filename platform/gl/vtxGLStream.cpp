#include "platform/gl/vtxGLStream.h"

#include <cstring>

void vtxGLStream::create() {
    glGenBuffers(1, &buffer_);
    glBindBuffer(GL_ARRAY_BUFFER, buffer_);
    glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(capacity), nullptr, GL_STREAM_DRAW);
    used_ = 0;
}

void vtxGLStream::destroy() {
    glDeleteBuffers(1, &buffer_);
    buffer_ = 0;
}

void vtxGLStream::bind() { glBindBuffer(GL_ARRAY_BUFFER, buffer_); }

ptrdiff_t vtxGLStream::write(void const* data, size_t size) {
    if (used_ + size > capacity) {
        glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(capacity), nullptr, GL_STREAM_DRAW);
        used_ = 0;
    }
    // Nothing that is still to be drawn lies in the range, so the driver need not wait.
    GLbitfield const access = GL_MAP_WRITE_BIT | GL_MAP_UNSYNCHRONIZED_BIT | GL_MAP_INVALIDATE_RANGE_BIT;
    void* memory = glMapBufferRange(GL_ARRAY_BUFFER, GLintptr(used_), GLsizeiptr(size), access);
    if (!memory)
        return -1;
    std::memcpy(memory, data, size);
    if (!glUnmapBuffer(GL_ARRAY_BUFFER))
        return -1;
    ptrdiff_t const begin = ptrdiff_t(used_);
    used_ = (used_ + size + 15) & ~size_t(15);
    return begin;
}
