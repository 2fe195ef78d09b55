#include "platform/gl/vtxGLBackend.h"

#include <algorithm>
#include <cstddef>

#include "platform/gl/vtxGLShaderText.h"
#include "platform/qor/Log.h"

vtxGLDevice::~vtxGLDevice() = default;

std::unique_ptr<vtxGLDevice> vtxCreateGLDevice(vtxGLOptions const& options) {
    vtxGLContext context;
    qor::string error;
    if (context.read(error)) {
        auto backend = std::make_unique<vtxGLBackend>(context, options);
        if (backend->create(error))
            return backend;
    }
    qor_logf(vtxGLTag, vtxGLErrorLevel, "cannot draw with GL: %s", error.c_str());
    return nullptr;
}

// --- Construction ---

vtxGLBackend::vtxGLBackend(vtxGLContext const& context, vtxGLOptions const& options)
    : context_(context),
      options_(options),
      hostState_(context_, options_, region_),
      debug_(context_, options.debugOutput && options.saveHostState),
      textures_(context_, units_, transfer_, region_) {
    units_.setMultiBind(context_.multiBind);
}

bool vtxGLBackend::create(qor::string& error) {
    Scope scope(*this);
    textures_.create();
    stream_.create();
    vtxEffectFile geometry;
    return createQuads_(error) && geometry.parse("geometry", vtxGLShaderText::geometryEffect, error) &&
           geometryEffect_.create(geometry, "geometry", context_.es, error);
}

bool vtxGLBackend::createQuads_(qor::string& error) {
    qor::string const header = vtxGLShaderText::getHeader(context_.es);
    vtxGLProgram::Error failure;
    if (!quadProgram_.create(header + vtxGLShaderText::quadVertex,
                             header + vtxGLShaderText::toneFunction + vtxGLShaderText::quadFragment, failure)) {
        error.format("the quad shader does not compile (%s); update the driver", failure.cause.c_str());
        return false;
    }
    quadProjection_ = quadProgram_.getUniform("vtxProjection");
    quadTone_ = quadProgram_.getUniform("vtxTone");
    glUseProgram(quadProgram_.getName());
    glUniformMatrix4fv(quadProjection_, 1, GL_FALSE, sentProjection_.ptr());
    glUniform2f(quadTone_, sentTone_.x(), sentTone_.y());
    quadProgram_.setUnit("vtxPictureLinear", vtxGLUnits::pictureLinear);
    quadProgram_.setUnit("vtxPictureNearest", vtxGLUnits::pictureNearest);
    quadProgram_.setUnit("vtxGlyph", vtxGLUnits::glyph);
    char name[] = "vtxLone0";
    for (int i = 0; i < vtxQuadSource::LoneCount; ++i) {
        name[sizeof name - 2] = char('0' + i);
        quadProgram_.setUnit(name, vtxGLUnits::lone + i);
    }
    glGenVertexArrays(1, &quadVertexArray_);
    glBindVertexArray(quadVertexArray_);
    stream_.bind();
    for (GLuint i = 0; i < 6; ++i) {
        glEnableVertexAttribArray(i);
        glVertexAttribDivisor(i, 1);
    }
    setQuadPointers_(0);
    return true;
}

vtxGLBackend::~vtxGLBackend() {
    if (!vtxGLContext::isAnyCurrent()) {
        qor_logf(vtxGLTag, vtxGLErrorLevel,
                 "the renderer ends without a current GL context, so its GL objects stay; end it before the context");
        return;
    }
    Scope scope(*this);
    textures_.destroy();
    stream_.destroy();
    quadProgram_.destroy();
    glDeleteVertexArrays(1, &quadVertexArray_);
    geometryEffect_.destroy();
    for (vtxGLGeometry& geometry : geometries_) {
        if (geometry.exists())
            geometry.destroy();
    }
    for (auto& effect : effects_)
        effect->destroy();
}

// --- Passes ---

unsigned vtxGLBackend::getTextureName(vtxDeviceHandle texture) {
    vtxGLTextures::Texture const* const found = textures_.getTexture(texture);
    return found ? found->name : 0;
}

void vtxGLBackend::openPass() {
    if (depth_++ > 0)
        return;
    debug_.enter();
    hostState_.enter();
    units_.enter(options_.saveHostState);
    transfer_.enter(options_.saveHostState);
    target_ = 0;
    quadsBound_ = false;
}

void vtxGLBackend::closePass() {
    if (depth_ == 0 || --depth_ > 0)
        return;
    units_.leave();
    transfer_.leave();
    hostState_.leave();
    debug_.leave();
    target_ = 0;
}

osg::Vec2i vtxGLBackend::getHostSize() {
    Scope scope(*this);
    return osg::Vec2i(hostState_.getFramebuffer().width, hostState_.getFramebuffer().height);
}

// --- Textures ---

vtxDeviceHandle vtxGLBackend::createTexture(vtxTextureDescription const& description) {
    Scope scope(*this);
    vtxDeviceHandle const handle = textures_.createTexture(description, description.mips ? 32 : 1);
    rebindFramebuffer_();
    return handle;
}

void vtxGLBackend::resizeTextureArray(vtxDeviceHandle texture, int layers) {
    Scope scope(*this);
    textures_.resizeArray(texture, layers);
    rebindFramebuffer_();
}

void vtxGLBackend::uploadTexture(vtxDeviceHandle texture, int layer, osg::RectImpl<osg::Vec2i> const& rect,
                                 unsigned char const* pixels) {
    Scope scope(*this);
    textures_.upload(texture, layer, rect, pixels);
}

void vtxGLBackend::destroyTexture(vtxDeviceHandle texture) {
    Scope scope(*this);
    textures_.destroyTexture(texture);
}

// --- Targets ---

vtxDeviceHandle vtxGLBackend::createTarget(osg::Vec2i const& size, int msaa, int mips) {
    Scope scope(*this);
    vtxDeviceHandle const handle = textures_.createTarget(size, msaa, mips);
    rebindFramebuffer_();
    return handle;
}

vtxDeviceHandle vtxGLBackend::getTargetTexture(vtxDeviceHandle target) {
    vtxGLTextures::Target* record = textures_.getTarget(target);
    return record ? record->texture : 0;
}

void vtxGLBackend::destroyTarget(vtxDeviceHandle target) {
    Scope scope(*this);
    if (target == target_)
        target_ = 0;
    textures_.destroyTarget(target);
    rebindFramebuffer_();
}

void vtxGLBackend::bindTarget(vtxDeviceHandle target) {
    target_ = textures_.getTarget(target) ? target : 0;
    if (depth_ > 0)
        rebindFramebuffer_();
}

void vtxGLBackend::rebindFramebuffer_() {
    vtxGLTextures::Target* target = textures_.getTarget(target_);
    glBindFramebuffer(GL_FRAMEBUFFER,
                      target ? textures_.getDrawFramebuffer(*target) : hostState_.getFramebuffer().name);
}

void vtxGLBackend::clearTarget() {
    Scope scope(*this);
    GLfloat const nothing[4] = {};
    region_.turnScissorOff();
    glClearBufferfv(GL_COLOR, 0, nothing);
}

void vtxGLBackend::finishTarget(vtxDeviceHandle target) {
    Scope scope(*this);
    vtxGLTextures::Target* record = textures_.getTarget(target);
    if (!record)
        return;
    textures_.resolve(*record);
    textures_.makeMips(*record);
    rebindFramebuffer_();
}

void vtxGLBackend::readPixels(vtxDeviceHandle target, osg::RectImpl<osg::Vec2i> const& rect, unsigned char* pixels) {
    if (rect.isEmpty())
        return;
    Scope scope(*this);
    vtxGLTextures::Target* record = textures_.getTarget(target);
    if (record) {
        textures_.resolve(*record);
        readFramebuffer_(record->framebuffer, {rect.x1, rect.y1, rect.width(), rect.height()}, pixels);
    } else {
        vtxGLHostFramebuffer const& host = hostState_.getFramebuffer();
        readHost_({host.x + rect.x1, host.y + host.height - rect.y2, rect.width(), rect.height()}, pixels);
        // GL's rows go upwards.
        size_t const row = size_t(rect.width()) * 4;
        for (int top = 0, bottom = rect.height() - 1; top < bottom; ++top, --bottom)
            std::swap_ranges(pixels + row * size_t(top), pixels + row * size_t(top + 1), pixels + row * size_t(bottom));
    }
    rebindFramebuffer_();
}

void vtxGLBackend::readHost_(Box const& box, unsigned char* pixels) {
    GLuint const name = hostState_.getFramebuffer().name;
    glBindFramebuffer(GL_FRAMEBUFFER, name);
    GLint samples = 0;
    glGetIntegerv(GL_SAMPLES, &samples);
    if (samples < 1) {
        readFramebuffer_(name, box, pixels);
        return;
    }
    // Samples cannot be read, only resolved; the two rectangles have to be the same.
    vtxDeviceHandle const copy = textures_.createTarget(osg::Vec2i(box.x + box.width, box.y + box.height), 0, 1);
    vtxGLTextures::Target* target = textures_.getTarget(copy);
    if (!target)
        return;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, name);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, target->framebuffer);
    region_.turnScissorOff();
    glBlitFramebuffer(box.x, box.y, box.x + box.width, box.y + box.height, box.x, box.y, box.x + box.width,
                      box.y + box.height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    readFramebuffer_(target->framebuffer, box, pixels);
    textures_.destroyTarget(copy);
}

void vtxGLBackend::readFramebuffer_(GLuint framebuffer, Box const& box, unsigned char* pixels) {
    transfer_.prepare();
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer);
    glReadPixels(box.x, box.y, box.width, box.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

// --- Drawing: what all draws share ---

vtxGLBackend::Box vtxGLBackend::toBox_(osg::RectImpl<osg::Vec2i> const& rect) const {
    if (rect.isEmpty())
        return {0, 0, 0, 0};
    constexpr int most = 1 << 24;
    int const x1 = std::clamp(rect.x1, -most, most), x2 = std::clamp(rect.x2, -most, most);
    int const y1 = std::clamp(rect.y1, -most, most), y2 = std::clamp(rect.y2, -most, most);
    if (target_)
        return {x1, y1, x2 - x1, y2 - y1};  // row 0 of a target is its top, and GL's row 0 too
    vtxGLHostFramebuffer const& host = hostState_.getFramebuffer();
    return {host.x + x1, host.y + host.height - y2, x2 - x1, y2 - y1};
}

void vtxGLBackend::applyRegion_(vtxDrawState const& state) {
    region_.setViewport(toBox_(state.viewport));
    if (state.scissorEnabled)
        region_.setScissor(toBox_(state.scissor));
    else
        region_.turnScissorOff();
}

// --- Drawing: quads ---

void vtxGLBackend::drawQuads(vtxQuadRun const& run) {
    if (run.count == 0)
        return;
    Scope scope(*this);
    applyRegion_(run.state);
    bindRunTextures_(run);
    bindQuads_();
    setQuadUniforms_(run.state);
    constexpr size_t most = vtxGLStream::capacity / sizeof(vtxQuadInstance);
    for (size_t first = 0; first < run.count; first += most)
        drawInstances_(run.instances + first, std::min(run.count - first, most));
}

void vtxGLBackend::bindRunTextures_(vtxQuadRun const& run) {
    textures_.bind(vtxGLUnits::pictureLinear, run.picturePages, true, 0);
    textures_.bind(vtxGLUnits::pictureNearest, run.picturePages, true, 1);
    textures_.bind(vtxGLUnits::glyph, run.glyphPages, true, 0);
    // Unused units get a texture of ours too: what the host left there may be the very picture that is drawn to.
    for (int i = 0; i < vtxQuadSource::LoneCount; ++i) {
        bool const used = i < run.loneCount;
        textures_.bind(vtxGLUnits::lone + i, used ? run.lone[i].texture : 0, false, used ? run.lone[i].sampler : 0);
    }
    units_.flush();
}

void vtxGLBackend::bindQuads_() {
    if (quadsBound_)
        return;
    glUseProgram(quadProgram_.getName());
    glBindVertexArray(quadVertexArray_);
    stream_.bind();
    quadsBound_ = true;
}

void vtxGLBackend::setQuadUniforms_(vtxDrawState const& state) {
    osg::Matrixf projection = state.projection;
    if (target_) {
        for (int row = 0; row < 4; ++row)
            projection(row, 1) = -projection(row, 1);
    }
    if (projection != sentProjection_) {
        glUniformMatrix4fv(quadProjection_, 1, GL_FALSE, projection.ptr());
        sentProjection_ = projection;
    }
    osg::Vec2f const tone(1.0f / std::max(state.gamma, 0.001f), state.intensity);
    if (tone != sentTone_) {
        glUniform2f(quadTone_, tone.x(), tone.y());
        sentTone_ = tone;
    }
}

void vtxGLBackend::setQuadPointers_(ptrdiff_t begin) {
    struct Field {
        GLint size;
        size_t offset;
    };
    constexpr Field fields[5] = {{2, offsetof(vtxQuadInstance, x)},
                                 {4, offsetof(vtxQuadInstance, ux)},
                                 {4, offsetof(vtxQuadInstance, uMin)},
                                 {4, offsetof(vtxQuadInstance, clampUMin)},
                                 {4, offsetof(vtxQuadInstance, r)}};
    constexpr GLsizei stride = sizeof(vtxQuadInstance);
    for (GLuint i = 0; i < 5; ++i)
        glVertexAttribPointer(i, fields[i].size, GL_FLOAT, GL_FALSE, stride,
                              reinterpret_cast<void const*>(size_t(begin) + fields[i].offset));
    glVertexAttribIPointer(5, 2, GL_UNSIGNED_INT, stride,
                           reinterpret_cast<void const*>(size_t(begin) + offsetof(vtxQuadInstance, source)));
}

void vtxGLBackend::drawInstances_(vtxQuadInstance const* instances, size_t count) {
    // The stream keeps to multiples of 16, so that each write begins at a whole instance.
    static_assert(sizeof(vtxQuadInstance) == 80);
    ptrdiff_t const begin = stream_.write(instances, count * sizeof(vtxQuadInstance));
    if (begin < 0)
        return;
    if (context_.baseInstance) {
        glDrawArraysInstancedBaseInstance(GL_TRIANGLE_STRIP, 0, 4, GLsizei(count),
                                          GLuint(size_t(begin) / sizeof(vtxQuadInstance)));
        return;
    }
    setQuadPointers_(begin);
    glDrawArraysInstanced(GL_TRIANGLE_STRIP, 0, 4, GLsizei(count));
}

// --- Drawing: geometry and effects ---

vtxDeviceHandle vtxGLBackend::createGeometry() {
    Scope scope(*this);
    auto slot = std::find_if(geometries_.begin(), geometries_.end(),
                             [](vtxGLGeometry const& geometry) { return !geometry.exists(); });
    if (slot == geometries_.end())
        slot = geometries_.insert(slot, vtxGLGeometry());
    slot->create();
    quadsBound_ = false;
    return vtxDeviceHandle(slot - geometries_.begin() + 1);
}

void vtxGLBackend::updateGeometry(vtxDeviceHandle geometry, qor::vector<vtxVertex> const& vertices,
                                  qor::vector<int> const* indices) {
    vtxGLGeometry* record = getGeometry_(geometry);
    if (!record)
        return;
    Scope scope(*this);
    record->update(vertices, indices, scratch_);
    quadsBound_ = false;
}

void vtxGLBackend::destroyGeometry(vtxDeviceHandle geometry) {
    vtxGLGeometry* record = getGeometry_(geometry);
    if (!record)
        return;
    Scope scope(*this);
    record->destroy();
}

vtxGLGeometry* vtxGLBackend::getGeometry_(vtxDeviceHandle handle) {
    bool const known = handle && handle <= geometries_.size() && geometries_[handle - 1].exists();
    return known ? &geometries_[handle - 1] : nullptr;
}

void vtxGLBackend::drawGeometry(vtxGeometryDraw const& draw) {
    Scope scope(*this);
    drawWith_(geometryEffect_, draw, nullptr, 0);
}

vtxDeviceHandle vtxGLBackend::createEffect(char const* path, qor::basic_string<char>& error) {
    vtxEffectFile file;
    if (!file.read(path, error))
        return 0;
    Scope scope(*this);
    quadsBound_ = false;
    auto effect = std::make_unique<vtxGLEffect>();
    if (!effect->create(file, path, context_.es, error))
        return 0;
    effects_.push_back(std::move(effect));
    return vtxDeviceHandle(effects_.size());
}

int vtxGLBackend::getEffectParameter(vtxDeviceHandle effect, char const* name) {
    return effect && effect <= effects_.size() ? effects_[effect - 1]->findParameter(name) : -1;
}

void vtxGLBackend::drawEffect(vtxEffectDraw const& draw) {
    if (!draw.effect || draw.effect > effects_.size())
        return;
    Scope scope(*this);
    drawWith_(*effects_[draw.effect - 1], draw.geometry, draw.parameters, draw.parameterCount);
}

void vtxGLBackend::drawWith_(vtxGLEffect& effect, vtxGeometryDraw const& draw,
                             vtxEffectDraw::Parameter const* parameters, size_t count) {
    vtxGLGeometry* geometry = getGeometry_(draw.geometry);
    if (!geometry)
        return;
    hostState_.prepareGeometry();
    applyRegion_(draw.state);
    textures_.bind(vtxGLEffect::imageUnit, draw.texture, false, draw.sampler);
    units_.flush();
    quadsBound_ = false;
    effect.use(draw, target_ ? -1.0f : 1.0f);
    effect.setParameters(parameters, count);
    geometry->draw(draw.primitive, draw.count, draw.first);
}
