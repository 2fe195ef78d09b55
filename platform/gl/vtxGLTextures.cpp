#include "platform/gl/vtxGLTextures.h"

#include <algorithm>

#include "platform/qor/Log.h"

namespace {

int countLevels(int width, int height) {
    int levels = 1;
    for (int side = std::max(width, height); side > 1; side /= 2)
        ++levels;
    return levels;
}

GLenum getFormat(vtxTextureDescription const& description) { return description.singleChannel ? GL_RED : GL_RGBA; }
GLint getInternalFormat(vtxTextureDescription const& description) {
    return description.singleChannel ? GL_R8 : GL_RGBA8;
}

void makeSampler(GLuint name, GLint minFilter, GLint magFilter, GLint wrap) {
    glSamplerParameteri(name, GL_TEXTURE_MIN_FILTER, minFilter);
    glSamplerParameteri(name, GL_TEXTURE_MAG_FILTER, magFilter);
    glSamplerParameteri(name, GL_TEXTURE_WRAP_S, wrap);
    glSamplerParameteri(name, GL_TEXTURE_WRAP_T, wrap);
}

}  // namespace

void vtxGLTextures::create() {
    transfer_.prepare();
    glGenSamplers(4, samplers_);
    makeSampler(samplers_[0], GL_LINEAR, GL_LINEAR, GL_CLAMP_TO_EDGE);
    makeSampler(samplers_[1], GL_NEAREST, GL_NEAREST, GL_CLAMP_TO_EDGE);
    makeSampler(samplers_[2], GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, GL_CLAMP_TO_EDGE);
    makeSampler(samplers_[3], GL_LINEAR, GL_LINEAR, GL_REPEAT);
    glGenFramebuffers(1, &copyFramebuffer_);

    unsigned char const white[4] = {255, 255, 255, 255};
    glGenTextures(1, &white_);
    units_.bindScratch(GL_TEXTURE_2D, white_);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, white);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0);
    glGenTextures(1, &whiteArray_);
    units_.bindScratch(GL_TEXTURE_2D_ARRAY, whiteArray_);
    glTexImage3D(GL_TEXTURE_2D_ARRAY, 0, GL_RGBA8, 1, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, white);
    glTexParameteri(GL_TEXTURE_2D_ARRAY, GL_TEXTURE_MAX_LEVEL, 0);
}

void vtxGLTextures::destroy() {
    for (size_t i = 0; i < targets_.size(); ++i)
        destroyTarget(vtxDeviceHandle(i + 1));
    for (size_t i = 0; i < textures_.size(); ++i)
        destroyTexture(vtxDeviceHandle(i + 1));
    glDeleteSamplers(4, samplers_);
    glDeleteFramebuffers(1, &copyFramebuffer_);
    units_.forget(white_);
    units_.forget(whiteArray_);
    glDeleteTextures(1, &white_);
    glDeleteTextures(1, &whiteArray_);
}

// --- Textures ---

vtxDeviceHandle vtxGLTextures::createTexture(vtxTextureDescription const& description, int levels) {
    int const side = std::max(description.width, description.height);
    if (description.width < 1 || description.height < 1 || side > context_.maxTextureSize ||
        description.layers > context_.maxLayers) {
        qor_logf(
            vtxGLTag, vtxGLErrorLevel,
            "a texture of %d x %d pixels and %d layers is not possible: this driver takes 1 to %d pixels and up to %d "
            "layers",
            description.width, description.height, description.layers, context_.maxTextureSize, context_.maxLayers);
        return 0;
    }
    Texture texture;
    texture.description = description;
    texture.target = description.layers > 0 ? GL_TEXTURE_2D_ARRAY : GL_TEXTURE_2D;
    texture.levels = std::clamp(levels, 1, countLevels(description.width, description.height));
    allocate_(texture);
    if (description.layers > 0)
        clearLayers_(texture, 0, description.layers);
    return addTexture_(texture);
}

void vtxGLTextures::allocate_(Texture& texture) {
    vtxTextureDescription const& description = texture.description;
    transfer_.prepare();
    glGenTextures(1, &texture.name);
    units_.bindScratch(texture.target, texture.name);
    glTexParameteri(texture.target, GL_TEXTURE_MAX_LEVEL, texture.levels - 1);
    for (int level = 0; level < texture.levels; ++level) {
        int const width = std::max(description.width >> level, 1);
        int const height = std::max(description.height >> level, 1);
        if (description.layers > 0)
            glTexImage3D(texture.target, level, getInternalFormat(description), width, height, description.layers, 0,
                         getFormat(description), GL_UNSIGNED_BYTE, nullptr);
        else
            glTexImage2D(texture.target, level, getInternalFormat(description), width, height, 0,
                         getFormat(description), GL_UNSIGNED_BYTE, nullptr);
    }
}

void vtxGLTextures::clearLayers_(Texture const& texture, int first, int count) {
    GLfloat const nothing[4] = {};
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, copyFramebuffer_);
    region_.turnScissorOff();
    for (int layer = first; layer < first + count; ++layer) {
        glFramebufferTextureLayer(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, texture.name, 0, layer);
        glClearBufferfv(GL_COLOR, 0, nothing);
    }
    glFramebufferTextureLayer(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, 0, 0, 0);
}

vtxDeviceHandle vtxGLTextures::addTexture_(Texture const& texture) {
    auto slot = std::find_if(textures_.begin(), textures_.end(), [](Texture const& entry) { return !entry.name; });
    if (slot == textures_.end())
        slot = textures_.insert(slot, texture);
    else
        *slot = texture;
    return vtxDeviceHandle(slot - textures_.begin() + 1);
}

void vtxGLTextures::resizeArray(vtxDeviceHandle handle, int layers) {
    Texture* texture = getTexture(handle);
    if (!texture || texture->description.layers < 1 || layers <= texture->description.layers)
        return;
    if (layers > context_.maxLayers) {
        qor_logf(vtxGLTag, vtxGLErrorLevel, "an array texture of %d layers is not possible: this driver takes up to %d",
                 layers, context_.maxLayers);
        return;
    }
    Texture grown = *texture;
    grown.description.layers = layers;
    allocate_(grown);
    int const kept = texture->description.layers;
    clearLayers_(grown, kept, layers - kept);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, copyFramebuffer_);
    units_.bindScratch(grown.target, grown.name);
    for (int layer = 0; layer < kept; ++layer) {
        glFramebufferTextureLayer(GL_READ_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, texture->name, 0, layer);
        glCopyTexSubImage3D(grown.target, 0, 0, 0, layer, 0, 0, grown.description.width, grown.description.height);
    }
    glFramebufferTextureLayer(GL_READ_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, 0, 0, 0);
    grown.mipsStale = grown.levels > 1;
    units_.forget(texture->name);
    glDeleteTextures(1, &texture->name);
    *texture = grown;
}

void vtxGLTextures::upload(vtxDeviceHandle handle, int layer, osg::RectImpl<osg::Vec2i> const& rect,
                           unsigned char const* pixels) {
    Texture* texture = getTexture(handle);
    if (!texture || rect.isEmpty())
        return;
    vtxTextureDescription const& description = texture->description;
    bool const inside = rect.x1 >= 0 && rect.y1 >= 0 && rect.x2 <= description.width && rect.y2 <= description.height &&
                        layer >= 0 && layer < std::max(description.layers, 1);
    if (!inside) {
        qor_logf(vtxGLTag, vtxGLErrorLevel,
                 "an upload to (%d, %d)-(%d, %d) of layer %d is outside its texture; ignored", rect.x1, rect.y1,
                 rect.x2, rect.y2, layer);
        return;
    }
    transfer_.prepare();
    units_.bindScratch(texture->target, texture->name);
    if (description.layers > 0)
        glTexSubImage3D(texture->target, 0, rect.x1, rect.y1, layer, rect.width(), rect.height(), 1,
                        getFormat(description), GL_UNSIGNED_BYTE, pixels);
    else
        glTexSubImage2D(texture->target, 0, rect.x1, rect.y1, rect.width(), rect.height(), getFormat(description),
                        GL_UNSIGNED_BYTE, pixels);
    texture->mipsStale = texture->levels > 1;
}

void vtxGLTextures::destroyTexture(vtxDeviceHandle handle) {
    Texture* texture = getTexture(handle);
    if (!texture)
        return;
    units_.forget(texture->name);
    glDeleteTextures(1, &texture->name);
    *texture = Texture();
}

vtxGLTextures::Texture* vtxGLTextures::getTexture(vtxDeviceHandle handle) {
    return handle && handle <= textures_.size() && textures_[handle - 1].name ? &textures_[handle - 1] : nullptr;
}

void vtxGLTextures::bind(int unit, vtxDeviceHandle handle, bool array, int sampler) {
    GLenum const target = array ? GL_TEXTURE_2D_ARRAY : GL_TEXTURE_2D;
    GLuint const samplerName = samplers_[std::clamp(sampler, 0, 3)];
    Texture* texture = getTexture(handle);
    if (!texture || texture->target != target) {
        units_.bind(unit, target, array ? whiteArray_ : white_, samplerName);
        return;
    }
    if (texture->mipsStale) {
        units_.bindScratch(target, texture->name);
        glGenerateMipmap(target);
        texture->mipsStale = false;
    }
    units_.bind(unit, target, texture->name, samplerName);
}

// --- Targets ---

vtxDeviceHandle vtxGLTextures::createTarget(osg::Vec2i const& size, int msaa, int mips) {
    Target target;
    target.used = true;
    target.size = size;
    target.samples = msaa > 1 ? std::min(msaa, context_.maxSamples) : 0;
    vtxTextureDescription description;
    description.width = size.x();
    description.height = size.y();
    description.mips = mips > 1;
    target.texture = createTexture(description, mips);
    if (!target.texture)
        return 0;
    glGenFramebuffers(1, &target.framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, getTexture(target.texture)->name, 0);
    bool complete = isComplete_(target);
    if (target.samples > 0) {
        glGenRenderbuffers(1, &target.msaaRenderbuffer);
        glBindRenderbuffer(GL_RENDERBUFFER, target.msaaRenderbuffer);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, target.samples, GL_RGBA8, size.x(), size.y());
        glGenFramebuffers(1, &target.msaaFramebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, target.msaaFramebuffer);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, target.msaaRenderbuffer);
        complete = complete && isComplete_(target);
    }
    auto slot = std::find_if(targets_.begin(), targets_.end(), [](Target const& entry) { return !entry.used; });
    if (slot == targets_.end())
        slot = targets_.insert(slot, target);
    else
        *slot = target;
    vtxDeviceHandle const handle = vtxDeviceHandle(slot - targets_.begin() + 1);
    if (complete)
        return handle;
    destroyTarget(handle);
    return 0;
}

bool vtxGLTextures::isComplete_(Target const& target) {
    GLenum const status = glCheckFramebufferStatus(GL_FRAMEBUFFER);
    if (status == GL_FRAMEBUFFER_COMPLETE)
        return true;
    qor_logf(vtxGLTag, vtxGLErrorLevel, "a target of %d x %d pixels with %d samples cannot be had (status 0x%x)",
             target.size.x(), target.size.y(), target.samples, status);
    return false;
}

void vtxGLTextures::destroyTarget(vtxDeviceHandle handle) {
    Target* target = getTarget(handle);
    if (!target)
        return;
    glDeleteFramebuffers(1, &target->framebuffer);
    glDeleteFramebuffers(1, &target->msaaFramebuffer);
    glDeleteRenderbuffers(1, &target->msaaRenderbuffer);
    destroyTexture(target->texture);
    *target = Target();
}

vtxGLTextures::Target* vtxGLTextures::getTarget(vtxDeviceHandle handle) {
    return handle && handle <= targets_.size() && targets_[handle - 1].used ? &targets_[handle - 1] : nullptr;
}

GLuint vtxGLTextures::getDrawFramebuffer(Target& target) {
    target.resolveNeeded = target.samples > 0;
    return target.samples > 0 ? target.msaaFramebuffer : target.framebuffer;
}

void vtxGLTextures::resolve(Target& target) {
    if (!target.resolveNeeded)
        return;
    target.resolveNeeded = false;
    int const width = target.size.x(), height = target.size.y();
    glBindFramebuffer(GL_READ_FRAMEBUFFER, target.msaaFramebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, target.framebuffer);
    region_.turnScissorOff();
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
}

void vtxGLTextures::makeMips(Target& target) {
    Texture* texture = getTexture(target.texture);
    if (!texture || texture->levels < 2)
        return;
    units_.bindScratch(texture->target, texture->name);
    glGenerateMipmap(texture->target);
    texture->mipsStale = false;
}
