#include "platform/vtx/vtxRendererCore.h"

#include "platform/qor/Log.h"
#include "platform/qor/Paths.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxEffectRecord.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxFrameBufferRecord.h"
#include "platform/vtx/vtxGeometryRecord.h"
#include "platform/vtx/vtxPrimitives.h"
#include "platform/vtx/vtxShaderBkgQuads.h"
#include "platform/vtx/vtxShaderQuads.h"
#include "platform/vtx/vtxTargetScope.h"
#include "platform/vtx/vtxTextureManager.h"
#include "platform/vtx/vtxTranslation.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {

using Rect = osg::RectImpl<osg::Vec2i>;

unsigned generationCount = 0;

constexpr bool neverTraced = false;

}  // namespace

// --- Life ---

vtxRendererCore::vtxRendererCore(std::unique_ptr<vtxDevice> device)
    : device_(std::move(device)),
      traceSwitch_(device_->getTraceSwitch() ? device_->getTraceSwitch() : &neverTraced),
      misuse_(*device_),
      store_(*device_),
      targets_(*device_),
      batcher_(*device_, store_, misuse_),
      shader_(*this),
      primitives_(std::make_unique<vtxPrimitives>(*this)),
      generation_(++generationCount) {
    passes_.push_back(Pass{});
    textureManager_ = vtxCreateTextureManager(*this);
    fontManager_ = vtxCreateFontManager(*this);
}

vtxRendererCore::~vtxRendererCore() {
    fontManager_.reset();
    textureManager_.reset();
    flushReleasedTargets();
    enterDevice_();
    for (auto const& [path, effect] : effects_) {
        if (effect.record)
            effect.record->releaseDevice();
    }
    primitives_->releaseDevice(*device_);
    releaseOutliving_();
    targets_.clear();
    store_.releaseDevice();
    leaveDevice_();
}

void vtxRendererCore::releaseOutliving_() {
    // In the order of their making, so that two runs end alike.
    qor::vector<vtxDeviceHandle> handles;
    for (vtxGeometryRecord* geometry : geometries_)
        handles.push_back(geometry->handle);
    std::sort(handles.begin(), handles.end());
    for (vtxDeviceHandle const handle : handles) {
        if (handle)
            device_->destroyGeometry(handle);
    }
    handles.clear();
    for (vtxFrameBufferRecord* target : frameBuffers_)
        handles.push_back(target->getStorage().target);
    std::sort(handles.begin(), handles.end());
    for (vtxDeviceHandle const handle : handles) {
        if (handle)
            device_->destroyTarget(handle);
    }
}

void vtxRendererCore::setScale(float scale) {
    if (!(scale > 0.0f) || !std::isfinite(scale)) {
        report(vtxMisuse::BadNumber, "setScale");
        return;
    }
    trace("setScale", "%g", scale);
    if (scale_.exchange(scale, std::memory_order_acq_rel) != scale)
        scaleEpoch_.fetch_add(1, std::memory_order_acq_rel);
}

void vtxRendererCore::traceNow_(char const* operation, char const* format, ...) {
    char text[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    device_->traceOperation(operation, text);
}

vtxRenderer::Counters vtxRendererCore::getCounters() {
    Counters counters;
    counters.runs = batcher_.getRunCount();
    counters.quads = batcher_.getQuadCount();
    counters.madeQuads = batcher_.getMadeCount();
    counters.geometryDraws = directDraws_;
    counters.targets = targetCount_;
    counters.uploads = batcher_.getUploadCount() + store_.getAloneUploads() + geometryUploads_;
    return counters;
}

void vtxRendererCore::resetCounters() {
    batcher_.resetCounts();
    store_.resetCounts();
    directDraws_ = targetCount_ = geometryUploads_ = 0;
}

// --- Passes ---

void vtxRendererCore::enterDevice_() {
    if (deviceDepth_++)
        return;
    batcher_.beginPass();
    device_->openPass();
    hostSize_ = device_->getHostSize();
    stale_ |= StaleView;
    store_.flushRetired();
    targets_.flush();
    {
        std::lock_guard const lock(creationMutex_);
        for (vtxDeviceHandle const geometry : retiredGeometries_)
            device_->destroyGeometry(geometry);
        retiredGeometries_.clear();
    }
    flushUploads_();
}

void vtxRendererCore::leaveDevice_() {
    if (deviceDepth_ == 1) {
        batcher_.flush();
        device_->closePass();
    }
    --deviceDepth_;
}

void vtxRendererCore::flushUploads_() {
    batcher_.addUploads(store_.flushUploads(vtxTextureStore::Pages::Picture));
    batcher_.addUploads(store_.flushUploads(vtxTextureStore::Pages::Glyph));
}

void vtxRendererCore::openPass_(Pass& pass, TechniqueType technique) {
    enterDevice_();
    pass.technique = technique;
    pass.open = true;
    stale_ |= StaleView;
}

void vtxRendererCore::closePass_(Pass& pass) {
    pass = Pass{};
    stale_ |= StaleView;
    leaveDevice_();
}

vtxRendererCore::StackHeights vtxRendererCore::getHeights_() const {
    return StackHeights{clips_.size(), viewports_.size(), projections_.size(), modelViews_.size(), passes_.size()};
}

void vtxRendererCore::beginDraw(TechniqueType technique) {
    trace("beginDraw", "%d", technique);
    if (isPassOpen_()) {
        report(vtxMisuse::PassOpen, "beginDraw");
        endDraw();
    }
    openPass_(passes_.back(), technique);
    if (passes_.size() == base_.passes + 1)
        passStart_ = getHeights_();
}

void vtxRendererCore::endDraw() {
    trace("endDraw", "%s", "");
    if (!isPassOpen_()) {
        report(vtxMisuse::PassNotOpen, "endDraw");
        return;
    }
    batcher_.flush();
    if (passes_.size() == base_.passes + 1 && !(getHeights_() == passStart_))
        report(vtxMisuse::UnbalancedPass, "endDraw");
    closePass_(passes_.back());
}

vtxRenderer::TechniqueType vtxRendererCore::getTechnique() { return passes_.back().technique; }

void vtxRendererCore::pushTechnique(TechniqueType technique) {
    trace("pushTechnique", "%d", technique);
    openPass_(passes_.emplace_back(), technique);
}

void vtxRendererCore::popTechnique() {
    trace("popTechnique", "%s", "");
    if (!canPop_(passes_.size(), base_.passes + 1, "popTechnique"))
        return;
    if (passes_.back().open)
        closePass_(passes_.back());
    passes_.pop_back();
    stale_ |= StaleView;
}

bool vtxRendererCore::requirePass(char const* operation) {
    if (!isPassOpen_())
        report(vtxMisuse::NoPass, operation);
    return isPassOpen_();
}

bool vtxRendererCore::requireFinite(osg::Matrixf const& matrix, char const* operation) {
    bool const finite = vtxTranslation::isFinite(matrix);
    if (!finite)
        report(vtxMisuse::BadNumber, operation);
    return finite;
}

// --- Targets ---

void vtxRendererCore::renderToTarget(vtxFrameBufferRecord& target, std::function<void()> const& function) {
    trace("renderToTarget", "%d %d", target.getSize().x(), target.getSize().y());
    if (target.getStorage().image.bound) {
        report(vtxMisuse::TargetIntoItself, "renderToTarget");
        return;
    }
    vtxTargetScope const scope(*this, target);
    if (scope.isReady() && function)
        function();
}

void vtxRendererCore::retireTarget(vtxFrameBufferRecord& target, std::unique_ptr<vtxTargetStorage> storage) {
    std::lock_guard const lock(creationMutex_);
    frameBuffers_.erase(&target);
    endedTargets_.push_back(std::move(storage));
}

void vtxRendererCore::flushReleasedTargets() {
    if (!deviceDepth_)
        batcher_.beginFrame();
    std::lock_guard const lock(creationMutex_);
    for (auto const& storage : endedTargets_) {
        store_.removeTexture(storage->texture);
        targets_.give(storage->key, storage->target);
    }
    endedTargets_.clear();
    targets_.age();
}

vtxFrameBuffer* vtxRendererCore::createFrameBuffer(osg::Vec2i const& size, int msaa, int mips) {
    osg::Vec2i const atLeast(std::max(size.x(), 1), std::max(size.y(), 1));
    auto* target = new vtxFrameBufferRecord(generation_, atLeast, msaa, mips);
    store_.addTexture(target->getStorage().texture);
    std::lock_guard const lock(creationMutex_);
    frameBuffers_.insert(target);
    return target;
}

std::uint32_t vtxRendererCore::getDeviceTexture(vtxFrameBuffer& target) {
    vtxDeviceHandle const handle = static_cast<vtxFrameBufferRecord&>(target).getStorage().target;
    return handle ? device_->getTargetTexture(handle) : 0;
}

void vtxRendererCore::readPixels(vtxFrameBuffer* target, Rect const& rect, unsigned char* pixels) {
    batcher_.flush();
    enterDevice_();
    auto* record = static_cast<vtxFrameBufferRecord*>(target);
    if (!rect.isEmpty() && pixels && (!record || record->getStorage().target))
        device_->readPixels(record ? record->getStorage().target : 0, rect, pixels);
    leaveDevice_();
}

// --- Stacks ---

void vtxRendererCore::pushViewport(Rect const& rect) {
    trace("pushViewport", "%d %d %d %d", rect.x1, rect.y1, rect.x2, rect.y2);
    viewports_.push_back(rect);
    stale_ |= StaleView;
}

void vtxRendererCore::popViewport() {
    trace("popViewport", "%s", "");
    if (!canPop_(viewports_.size(), base_.viewports, "popViewport"))
        return;
    viewports_.pop_back();
    stale_ |= StaleView;
}

void vtxRendererCore::setProjectionMatrix(osg::Matrixf const& matrix) {
    if (!requireFinite(matrix, "setProjectionMatrix"))
        return;
    settings_.projection = matrix;
    stale_ |= StaleView;
}

void vtxRendererCore::pushProjectionMatrix() { projections_.push_back(settings_.projection); }

void vtxRendererCore::popProjectionMatrix() {
    if (!canPop_(projections_.size(), base_.projections, "popProjectionMatrix"))
        return;
    settings_.projection = projections_.back();
    projections_.pop_back();
    stale_ |= StaleView;
}

void vtxRendererCore::setModelViewMatrix(osg::Matrixf const& matrix) {
    if (!requireFinite(matrix, "setModelViewMatrix"))
        return;
    trace("setModelViewMatrix", "%g %g %g %g %g %g", matrix(0, 0), matrix(0, 1), matrix(1, 0), matrix(1, 1),
          matrix(3, 0), matrix(3, 1));
    settings_.modelView = matrix;
    settings_.modelViewTranslates = vtxTranslation::isTranslation(matrix);
    stale_ |= StaleTransform;
}

void vtxRendererCore::translateModelView(float x, float y, float z) {
    float const scale = getScale();
    vtxTranslation::Place const by{scale * x, scale * y, scale * z};
    if (!settings_.modelViewTranslates || traceWanted_()) [[unlikely]] {
        composeModelView_(by.x, by.y, by.z);
        return;
    }
    vtxTranslation::Place const place = vtxTranslation::compose(vtxTranslation::getPlace(settings_.modelView), by);
    if (!place.isFinite()) [[unlikely]] {
        report(vtxMisuse::BadNumber, "setModelViewMatrix");
        return;
    }
    vtxTranslation::setPlace(settings_.modelView, place);
}

void vtxRendererCore::composeModelView_(float x, float y, float z) {
    osg::Matrixf matrix = settings_.modelView;
    vtxTranslation::postMultTranslate(matrix, {x, y, z});
    setModelViewMatrix(matrix);
}

Rect vtxRendererCore::roundToPixels_(Rect const& rect, float scale) {
    // Halves go up, as they do for quads.
    auto const roundEdge = [scale](int value) {
        return qor::truncateToInt(std::floor(static_cast<double>(value) * scale + 0.5 + 1.0 / 128.0));
    };
    return Rect(roundEdge(rect.x1), roundEdge(rect.y1), roundEdge(rect.x2), roundEdge(rect.y2));
}

// --- Settings ---

void vtxRendererCore::changeOpacity_(float opacity) {
    if (!std::isfinite(opacity)) {
        report(vtxMisuse::BadNumber, "setOpacity");
        return;
    }
    settings_.opacity = std::clamp(opacity, 0.0f, 1.0f);
}

void vtxRendererCore::setTextureFiltering(TextureSampler sampler) {
    trace("setTextureFiltering", "%d", sampler);
    if (sampler >= SamplerLinear && sampler <= SamplerRepeat)
        settings_.filtering = settings_.sampler = sampler;
}

void vtxRendererCore::setGeometry(vtxGeometry* geometry) { settings_.geometry = geometry; }

// --- View ---

Rect vtxRendererCore::getTargetRect_() const {
    osg::Vec2i const size = target_ ? target_->key.size : hostSize_;
    return Rect(0, 0, size.x(), size.y());
}

Rect vtxRendererCore::getViewport_() const {
    return viewports_.size() > base_.viewports ? viewports_.back() : getTargetRect_();
}

osg::Matrixf vtxRendererCore::getDeviceProjection(osg::Matrixf const& projection) const {
    if (!target_ || viewports_.size() > base_.viewports)
        return projection;
    // The target's units end inside its last pixel when size times scale is no whole number; squeezing the projection
    // by that part keeps a unit at exactly scale pixels.
    vtxTextureImage const& image = target_->image;
    osg::Matrixf squeeze;
    squeeze(0, 0) = image.usedU;
    squeeze(3, 0) = image.usedU - 1.0f;
    squeeze(1, 1) = image.usedV;
    squeeze(3, 1) = 1.0f - image.usedV;
    return projection * squeeze;
}

void vtxRendererCore::renewView_() {
    vtxQuadView view;
    view.state.technique = passes_.back().technique;
    view.state.gamma = settings_.gamma;
    view.state.intensity = settings_.intensity;
    view.setProjection(getDeviceProjection(settings_.projection), getViewport_());
    view.setClip(getClip_());
    batcher_.setView(view);
}

void vtxRendererCore::renewTransform_() {
    vtxQuadTransform const transform = vtxQuadTransform::make(settings_, getScale());
    if (!batcher_.getTransform().differsByTranslation(transform))
        batcher_.setTransform(transform);
    stale_ &= ~unsigned{StaleTransform};
}

bool vtxRendererCore::isClippedAway_() const { return clips_.size() > base_.clips && clips_.top().isEmpty(); }

vtxQuadBatcher& vtxRendererCore::prepareQuads() {
    updateView_();
    if ((stale_ & StaleTransform) || batcher_.getTransform().scale != getScale())
        renewTransform_();
    batcher_.setTranslation(settings_.modelView(3, 0), settings_.modelView(3, 1));
    return batcher_;
}

vtxQuadBatcher& vtxRendererCore::prepareLines(osg::Vec4f const& color) {
    prepareQuads().setColor(osg::Vec4f(color.r(), color.g(), color.b(), color.a() * settings_.opacity));
    return batcher_;
}

// --- Drawing ---

void vtxRendererCore::drawQuads(vtxShaderQuads const& quads, int batch) {
    int const count = static_cast<int>(quads.getBatches().size());
    if (batch < count)
        drawQuads(quads, std::max(batch, 0), batch < 0 ? count : batch + 1);
}

void vtxRendererCore::drawQuads(vtxShaderQuads const& quads, int first, int end) {
    end = std::min(end, static_cast<int>(quads.getBatches().size()));
    if (first >= end || !requirePass("quads") || isClippedAway_())
        return;
    vtxQuadBatcher& batcher = prepareQuads();
    vtxShaderQuads::Batch const* const batches = quads.getBatches().data();
    for (int i = first; i < end; ++i) {
        vtxShaderQuads::Batch const& batch = batches[i];
        if (batch.count > 0)
            batcher.addBlock({batch.key, quads.getQuads().data() + batch.first, getShape_(batch.count, false),
                              batch.texture, &settings_.color, settings_.opacity, &batch.change});
    }
}

void vtxRendererCore::drawBkgQuads(vtxShaderBkgQuads const& quads) {
    int const count = std::min({quads.count, vtxShaderBkgQuads::maxCount, settings_.colorCount});
    if (count > 0 && requirePass("background quads") && !isClippedAway_())
        prepareQuads().addBlock({quads.getKey(), quads.getQuads(), getShape_(count, !settings_.colorsEqual),
                                 quads.getTexture(), settings_.colors, settings_.opacity});
}

bool vtxRendererCore::beginDirectDraw(vtxDrawState& state) {
    batcher_.flush();
    updateView_();
    vtxQuadView const& view = batcher_.getView();
    if (view.visible.isEmpty())
        return false;
    state = view.state;
    state.scissorEnabled = view.isClipped();
    if (state.scissorEnabled)
        state.scissor = view.visible;
    return true;
}

bool vtxRendererCore::bindTexture(vtxTexture const* texture, vtxGeometryDraw& draw) {
    if (!texture)
        return true;
    if (!store_.isAlive(texture)) {
        report(vtxMisuse::DeadTexture, "geometry");
        return false;
    }
    vtxTextureImage& image = *static_cast<vtxTextureRecord const*>(texture)->image;
    if (image.bound) {
        report(vtxMisuse::TargetIntoItself, "geometry");
        return false;
    }
    draw.texture = store_.getAlone(image);
    draw.sampler = settings_.sampler;
    draw.textureScaleU = image.usedU;
    draw.textureScaleV = image.usedV;
    return draw.texture != 0;
}

void vtxRendererCore::drawGeometry(vtxGeometryDraw& draw) {
    draw.modelView = settings_.modelView;
    draw.positionScale = getScale();
    draw.opacity = settings_.opacity;
    device_->drawGeometry(draw);
    ++directDraws_;
}

void vtxRendererCore::drawEffect(vtxEffectDraw& draw) {
    draw.geometry.positionScale = getScale();
    draw.geometry.opacity = settings_.opacity;
    device_->drawEffect(draw);
    ++directDraws_;
}

void vtxRendererCore::drawPrimitives(vtxGeometry::PrimitiveType type, int count, int first) {
    trace("drawPrimitives", "%d %d %d", type, count, first);
    if (type == vtxGeometry::PrimitiveNone || count <= 0 || !settings_.geometry || !requirePass("drawPrimitives"))
        return;
    vtxGeometryRecord* geometry = checkGeometry(settings_.geometry, type, count, first);
    if (!geometry)
        return;
    if (type != vtxGeometry::PrimitiveTriangles) {
        primitives_->drawLines(*geometry, type, count, first);
        return;
    }
    vtxGeometryDraw draw;
    if (!beginDirectDraw(draw.state) || !bindTexture(settings_.texture, draw))
        return;
    draw.geometry = flushGeometry(*geometry);
    draw.primitive = type;
    draw.count = count;
    draw.first = first;
    drawGeometry(draw);
}

void vtxRendererCore::drawCircle(osg::Vec4f const& color, float radius, unsigned segments) {
    trace("drawCircle", "%g %u", radius, segments);
    if (requirePass("drawCircle"))
        primitives_->drawCircle(color, radius, segments);
}

void vtxRendererCore::drawLifeBar(osg::Vec4f const& color, osg::Vec2f const& size, float value) {
    trace("drawLifeBar", "%g %g %g", size.x(), size.y(), value);
    if (requirePass("drawLifeBar"))
        primitives_->drawLifeBar(color, size, value);
}

// --- Geometry and effects ---

vtxGeometry* vtxRendererCore::createGeometry(qor::vector<vtxVertex> const& vertices, qor::vector<int> const& indices) {
    auto* geometry = new vtxGeometryRecord(generation_, vertices, indices);
    std::lock_guard const lock(creationMutex_);
    geometries_.insert(geometry);
    return geometry;
}

void vtxRendererCore::removeGeometry(vtxGeometryRecord& geometry, vtxDeviceHandle handle) {
    std::lock_guard const lock(creationMutex_);
    geometries_.erase(&geometry);
    if (handle)
        retiredGeometries_.push_back(handle);
}

vtxGeometryRecord* vtxRendererCore::checkGeometry(vtxGeometry* geometry, vtxGeometry::PrimitiveType type, int count,
                                                  int first) {
    {
        std::lock_guard const lock(creationMutex_);
        if (geometries_.find(static_cast<vtxGeometryRecord*>(geometry)) == geometries_.end()) {
            report(vtxMisuse::DeadGeometry, "drawPrimitives");
            return nullptr;
        }
    }
    auto* record = static_cast<vtxGeometryRecord*>(geometry);
    if (!record->isFinite()) {
        report(vtxMisuse::BadNumber, "drawPrimitives");
        return nullptr;
    }
    std::int64_t needed = count;
    if (type == vtxGeometry::PrimitiveTriangles)
        needed *= 3;
    else if (type == vtxGeometry::PrimitiveLines)
        needed *= 2;
    else if (type == vtxGeometry::PrimitiveLineStrip)
        needed += 1;
    bool const inside = count > 0 && first >= 0 &&
                        first + needed <= static_cast<std::int64_t>(record->getIndices().size()) &&
                        type >= vtxGeometry::PrimitivePoints && type <= vtxGeometry::PrimitiveTriangles;
    if (!inside || !record->areIndicesValid()) {
        report(vtxMisuse::BadGeometry, "drawPrimitives");
        return nullptr;
    }
    return record;
}

vtxDeviceHandle vtxRendererCore::flushGeometry(vtxGeometryRecord& geometry) {
    bool const made = !geometry.handle;
    if (made)
        geometry.handle = device_->createGeometry();
    if (made || geometry.verticesChanged || geometry.indicesChanged) {
        bool const indices = made || geometry.indicesChanged;
        device_->updateGeometry(geometry.handle, geometry.getVertices(), indices ? &geometry.getIndices() : nullptr);
        ++geometryUploads_;
    }
    geometry.verticesChanged = geometry.indicesChanged = false;
    return geometry.handle;
}

vtxEffectShader* vtxRendererCore::createEffectShader(char const* path, qor::string* error) {
    if (!path || !*path)
        return nullptr;
    qor::string const key = qor::normalizePath(path);
    std::lock_guard const lock(creationMutex_);
    auto const [found, isNew] = effects_.try_emplace(key);
    LoadedEffect& effect = found->second;
    if (isNew) {
        vtxEffectFile file;
        if (file.read(key.c_str(), effect.error))
            effect.record = std::make_unique<vtxEffectRecord>(*this, key.c_str(), file);
    }
    if (!effect.record && error) {
        *error = effect.error;
    } else if (!effect.record && !effect.logged) {
        effect.logged = true;
        qor_logf("VTX", 64, "The effect \"%s\" cannot be loaded: %s\n", key.c_str(), effect.error.c_str());
    }
    return effect.record.get();
}

vtxDeviceHandle vtxRendererCore::makeEffectProgram(char const* path, qor::string& error) {
    enterDevice_();
    vtxDeviceHandle const program = device_->createEffect(path, error);
    leaveDevice_();
    return program;
}
