#include "platform/gl/vtxGLTransfer.h"

#include <iterator>

namespace {

struct PixelStore {
    GLenum name;
    GLint wanted;
    GLint byDefault;
};
constexpr PixelStore pixelStores[] = {
    {GL_UNPACK_ALIGNMENT, 1, 4},   {GL_UNPACK_ROW_LENGTH, 0, 0},   {GL_UNPACK_SKIP_ROWS, 0, 0},
    {GL_UNPACK_SKIP_PIXELS, 0, 0}, {GL_UNPACK_IMAGE_HEIGHT, 0, 0}, {GL_UNPACK_SKIP_IMAGES, 0, 0},
    {GL_PACK_ALIGNMENT, 1, 4},     {GL_PACK_ROW_LENGTH, 0, 0},     {GL_PACK_SKIP_ROWS, 0, 0},
    {GL_PACK_SKIP_PIXELS, 0, 0},
};

}  // namespace

void vtxGLTransfer::enter(bool saveHostState) {
    saveHostState_ = saveHostState;
    prepared_ = false;
}

void vtxGLTransfer::prepare() {
    static_assert(std::size(pixelStores) == storeCount);
    if (prepared_)
        return;
    prepared_ = true;
    for (int i = 0; i < storeCount; ++i)
        stores_[i] = pixelStores[i].byDefault;
    if (saveHostState_) {
        for (int i = 0; i < storeCount; ++i)
            glGetIntegerv(pixelStores[i].name, &stores_[i]);
        glGetIntegerv(GL_PIXEL_UNPACK_BUFFER_BINDING, &unpackBuffer_);
        glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &packBuffer_);
        glGetIntegerv(GL_RENDERBUFFER_BINDING, &renderbuffer_);
    }
    for (PixelStore const& entry : pixelStores)
        glPixelStorei(entry.name, entry.wanted);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

void vtxGLTransfer::leave() {
    if (!prepared_)
        return;
    for (int i = 0; i < storeCount; ++i) {
        if (stores_[i] != pixelStores[i].wanted)
            glPixelStorei(pixelStores[i].name, stores_[i]);
    }
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, GLuint(unpackBuffer_));
    glBindBuffer(GL_PIXEL_PACK_BUFFER, GLuint(packBuffer_));
    glBindRenderbuffer(GL_RENDERBUFFER, GLuint(renderbuffer_));
    prepared_ = false;
}
