#include "platform/trace/vtxTraceDevice.h"

#include "platform/qor/Fnv.h"
#include "platform/vtx/vtxEffectFile.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

/// A number with at most four decimals and no needless zeros.
class Number {
public:
    explicit Number(double value) {
        std::snprintf(text_, sizeof(text_), "%.4f", value);
        char* end = text_ + std::char_traits<char>::length(text_);
        while (end[-1] == '0')
            *--end = '\0';
        if (end[-1] == '.')
            *--end = '\0';
        if (text_[0] == '-' && text_[1] == '0' && text_[2] == '\0')
            text_[0] = '0', text_[1] = '\0';
    }
    char const* get() const { return text_; }

private:
    char text_[64];
};

template <typename... Values>
qor::string join(Values... values) {
    qor::string text;
    ((text += text.empty() ? "" : " ", text += Number(values).get()), ...);
    return text;
}

qor::string joinMatrix(osg::Matrixf const& matrix) {
    qor::string text;
    for (int i = 0; i < 16; ++i) {
        text += i ? " " : "";
        text += Number(matrix.ptr()[i]).get();
    }
    return text;
}

}  // namespace

vtxTraceDevice::vtxTraceDevice(osg::Vec2i const& hostSize)
    : log_(std::make_shared<vtxTraceLog>()), hostSize_(hostSize) {}

vtxTraceDevice::~vtxTraceDevice() = default;

vtxDeviceHandle vtxTraceDevice::create_(Kind kind) {
    qor::AllowAllocations const allow;
    objects_[++lastHandle_].kind = kind;
    log_->liveObjects_ += kind != Kind::Effect;
    return lastHandle_;
}

vtxTraceDevice::Object* vtxTraceDevice::find_(vtxDeviceHandle handle, Kind kind, char const* operation) {
    if (auto const found = objects_.find(handle); found != objects_.end() && found->second.kind == kind)
        return &found->second;
    char text[128];
    std::snprintf(text, sizeof(text), "device: %s with a dead or wrong handle %c%u", operation, static_cast<char>(kind),
                  handle);
    log_->addMisuse_(text);
    return nullptr;
}

void vtxTraceDevice::destroy_(vtxDeviceHandle handle, Kind kind) {
    requirePass_("destroy");
    if (!find_(handle, kind, "destroy"))
        return;
    log_->addLine_("destroy %c%u", static_cast<char>(kind), handle);
    objects_.erase(handle);
    --log_->liveObjects_;
}

void vtxTraceDevice::requirePass_(char const* operation) {
    if (passOpen_)
        return;
    char text[128];
    std::snprintf(text, sizeof(text), "device: %s outside a pass", operation);
    log_->addMisuse_(text);
}

// --- Passes ---

void vtxTraceDevice::openPass() {
    if (passOpen_)
        log_->addMisuse_("device: openPass inside a pass");
    passOpen_ = true;
    boundTarget_ = 0;
    ++log_->counters_.passes;
    log_->addLine_("openPass");
}

void vtxTraceDevice::closePass() {
    requirePass_("closePass");
    if (boundTarget_)
        log_->addMisuse_("device: closePass while a target is bound");
    passOpen_ = false;
    log_->addLine_("closePass");
}

// --- Textures ---

vtxDeviceHandle vtxTraceDevice::createTexture(vtxTextureDescription const& description) {
    requirePass_("createTexture");
    vtxDeviceHandle const handle = create_(Kind::Texture);
    Object& texture = objects_[handle];
    texture.layers = description.layers;
    texture.size = osg::Vec2i(description.width, description.height);
    texture.pixelBytes = description.singleChannel ? 1 : 4;
    log_->addLine_("createTexture T%u %dx%d layers %d%s%s", handle, description.width, description.height,
                   description.layers, description.singleChannel ? " single" : "", description.mips ? " mips" : "");
    return handle;
}

void vtxTraceDevice::resizeTextureArray(vtxDeviceHandle texture, int layers) {
    requirePass_("resizeTextureArray");
    Object* object = find_(texture, Kind::Texture, "resizeTextureArray");
    if (!object)
        return;
    if (layers < object->layers || !object->layers)
        log_->addMisuse_("device: resizeTextureArray does not grow an array");
    object->layers = layers;
    log_->addLine_("resizeTextureArray T%u layers %d", texture, layers);
}

void vtxTraceDevice::uploadTexture(vtxDeviceHandle texture, int layer, osg::RectImpl<osg::Vec2i> const& rect,
                                   unsigned char const* pixels) {
    requirePass_("uploadTexture");
    Object* object = find_(texture, Kind::Texture, "uploadTexture");
    if (!object)
        return;
    if (rect.isEmpty() || rect.x1 < 0 || rect.y1 < 0 || rect.x2 > object->size.x() || rect.y2 > object->size.y() ||
        layer < 0 || layer >= std::max(object->layers, 1)) {
        log_->addMisuse_("device: uploadTexture outside the texture");
        return;
    }
    ++log_->counters_.uploads;
    if (!log_->getRecording())
        return;
    std::size_t const size = static_cast<std::size_t>(rect.width()) * static_cast<std::size_t>(rect.height()) *
                             static_cast<std::size_t>(object->pixelBytes);
    log_->addLine_("uploadTexture T%u layer %d rect %d %d %d %d pixels %016llx", texture, layer, rect.x1, rect.y1,
                   rect.x2, rect.y2, static_cast<unsigned long long>(qor::fnv1a(pixels, size)));
}

void vtxTraceDevice::destroyTexture(vtxDeviceHandle texture) { destroy_(texture, Kind::Texture); }

// --- Targets ---

vtxDeviceHandle vtxTraceDevice::createTarget(osg::Vec2i const& size, int msaa, int mips) {
    requirePass_("createTarget");
    vtxDeviceHandle const target = create_(Kind::Target);
    vtxDeviceHandle const texture = create_(Kind::Texture);
    objects_[target].texture = texture;
    objects_[texture].size = size;
    log_->addLine_("createTarget R%u texture T%u %dx%d msaa %d mips %d", target, texture, size.x(), size.y(), msaa,
                   mips);
    return target;
}

vtxDeviceHandle vtxTraceDevice::getTargetTexture(vtxDeviceHandle target) {
    Object* object = find_(target, Kind::Target, "getTargetTexture");
    return object ? object->texture : 0;
}

void vtxTraceDevice::destroyTarget(vtxDeviceHandle target) {
    Object* object = find_(target, Kind::Target, "destroyTarget");
    if (!object)
        return;
    vtxDeviceHandle const texture = object->texture;
    destroy_(target, Kind::Target);
    destroy_(texture, Kind::Texture);
}

void vtxTraceDevice::bindTarget(vtxDeviceHandle target) {
    requirePass_("bindTarget");
    if (target && !find_(target, Kind::Target, "bindTarget"))
        return;
    boundTarget_ = target;
    log_->addLine_("bindTarget R%u", target);
}

void vtxTraceDevice::clearTarget() {
    requirePass_("clearTarget");
    if (!boundTarget_)
        log_->addMisuse_("device: clearTarget of the host's framebuffer");
    log_->addLine_("clearTarget");
}

void vtxTraceDevice::finishTarget(vtxDeviceHandle target) {
    requirePass_("finishTarget");
    if (!find_(target, Kind::Target, "finishTarget"))
        return;
    ++log_->counters_.targets;
    log_->addLine_("finishTarget R%u", target);
}

void vtxTraceDevice::readPixels(vtxDeviceHandle target, osg::RectImpl<osg::Vec2i> const& rect, unsigned char* pixels) {
    requirePass_("readPixels");
    if (target && !find_(target, Kind::Target, "readPixels"))
        return;
    std::size_t const size = static_cast<std::size_t>(rect.width()) * static_cast<std::size_t>(rect.height()) * 4;
    std::fill_n(pixels, size, static_cast<unsigned char>(0));
    log_->addLine_("readPixels R%u rect %d %d %d %d", target, rect.x1, rect.y1, rect.x2, rect.y2);
}

// --- Drawing ---

void vtxTraceDevice::writeState_(vtxDrawState const& state) {
    log_->addLine_("  technique %d viewport %d %d %d %d", state.technique, state.viewport.x1, state.viewport.y1,
                   state.viewport.x2, state.viewport.y2);
    log_->addLine_("  projection %s", joinMatrix(state.projection).c_str());
    if (state.scissorEnabled)
        log_->addLine_("  scissor %d %d %d %d", state.scissor.x1, state.scissor.y1, state.scissor.x2, state.scissor.y2);
    if (state.gamma != 1.0f || state.intensity != 1.0f)
        log_->addLine_("  gamma %s", join(state.gamma, state.intensity).c_str());
}

void vtxTraceDevice::writeQuad_(vtxQuadInstance const& quad) {
    qor::string const color = join(quad.r, quad.g, quad.b, quad.a);
    qor::string shape;
    if (quad.uy == 0.0f && quad.vx == 0.0f)
        shape = "at " + join(quad.x, quad.y) + " size " + join(quad.ux, quad.vy);
    else
        shape = "at " + join(quad.x, quad.y) + " edges " + join(quad.ux, quad.uy, quad.vx, quad.vy);
    if (quad.source == vtxQuadSource::Plain) {
        log_->addLine_("  quad %s color %s", shape.c_str(), color.c_str());
        return;
    }
    log_->addLine_("  quad %s color %s source %u layer %u uv %s within %s", shape.c_str(), color.c_str(), quad.source,
                   quad.layer, join(quad.uMin, quad.vMin, quad.uMax, quad.vMax).c_str(),
                   join(quad.clampUMin, quad.clampVMin, quad.clampUMax, quad.clampVMax).c_str());
}

void vtxTraceDevice::drawQuads(vtxQuadRun const& run) {
    requirePass_("drawQuads");
    ++log_->counters_.runs;
    log_->counters_.quads += static_cast<unsigned>(run.count);
    for (vtxDeviceHandle const pages : {run.picturePages, run.glyphPages}) {
        if (pages)
            find_(pages, Kind::Texture, "drawQuads");
    }
    for (int i = 0; i < run.loneCount; ++i)
        find_(run.lone[i].texture, Kind::Texture, "drawQuads");
    if (!log_->getRecording())
        return;
    qor::AllowAllocations const allow;
    log_->addLine_("drawQuads %zu pictures T%u glyphs T%u", run.count, run.picturePages, run.glyphPages);
    writeState_(run.state);
    for (int i = 0; i < run.loneCount; ++i)
        log_->addLine_("  lone %d T%u sampler %d", i, run.lone[i].texture, run.lone[i].sampler);
    for (std::size_t i = 0; i < run.count; ++i)
        writeQuad_(run.instances[i]);
}

vtxDeviceHandle vtxTraceDevice::createGeometry() {
    requirePass_("createGeometry");
    vtxDeviceHandle const handle = create_(Kind::Geometry);
    log_->addLine_("createGeometry G%u", handle);
    return handle;
}

void vtxTraceDevice::updateGeometry(vtxDeviceHandle geometry, qor::vector<vtxVertex> const& vertices,
                                    qor::vector<int> const* indices) {
    requirePass_("updateGeometry");
    if (!find_(geometry, Kind::Geometry, "updateGeometry"))
        return;
    ++log_->counters_.uploads;
    if (!log_->getRecording())
        return;
    qor::AllowAllocations const allow;
    log_->addLine_("updateGeometry G%u vertices %zu indices %zu", geometry, vertices.size(),
                   indices ? indices->size() : 0);
    if (indices)
        log_->addLine_("  indices %016llx",
                       static_cast<unsigned long long>(qor::fnv1a(indices->data(), indices->size() * sizeof(int))));
    for (vtxVertex const& vertex : vertices)
        log_->addLine_("  vertex %s color %s uv %s", join(vertex.x, vertex.y, vertex.z).c_str(),
                       join(vertex.r, vertex.g, vertex.b, vertex.a).c_str(), join(vertex.u, vertex.v).c_str());
}

void vtxTraceDevice::destroyGeometry(vtxDeviceHandle geometry) { destroy_(geometry, Kind::Geometry); }

void vtxTraceDevice::writeGeometry_(vtxGeometryDraw const& draw) {
    writeState_(draw.state);
    log_->addLine_("  geometry G%u primitive %d count %d first %d scale %s opacity %s", draw.geometry, draw.primitive,
                   draw.count, draw.first, Number(draw.positionScale).get(), Number(draw.opacity).get());
    log_->addLine_("  modelView %s", joinMatrix(draw.modelView).c_str());
    if (draw.texture)
        log_->addLine_("  texture T%u sampler %d scale %s", draw.texture, draw.sampler,
                       join(draw.textureScaleU, draw.textureScaleV).c_str());
}

void vtxTraceDevice::drawGeometry(vtxGeometryDraw const& draw) {
    requirePass_("drawGeometry");
    ++log_->counters_.geometryDraws;
    find_(draw.geometry, Kind::Geometry, "drawGeometry");
    if (draw.texture)
        find_(draw.texture, Kind::Texture, "drawGeometry");
    if (!log_->getRecording())
        return;
    qor::AllowAllocations const allow;
    log_->addLine_("drawGeometry");
    writeGeometry_(draw);
}

// --- Effects ---

vtxDeviceHandle vtxTraceDevice::createEffect(char const* path, qor::basic_string<char>& error) {
    requirePass_("createEffect");
    qor::AllowAllocations const allow;
    vtxEffectFile file;
    if (!file.read(path, error))
        return 0;
    vtxDeviceHandle const handle = create_(Kind::Effect);
    for (vtxEffectFile::Parameter const& parameter : file.parameters)
        objects_[handle].names.push_back(parameter.name);
    log_->addLine_("createEffect E%u %s", handle, path);
    return handle;
}

int vtxTraceDevice::getEffectParameter(vtxDeviceHandle effect, char const* name) {
    Object* object = find_(effect, Kind::Effect, "getEffectParameter");
    if (!object)
        return -1;
    auto const found = std::find(object->names.begin(), object->names.end(), name);
    return found == object->names.end() ? -1 : static_cast<int>(found - object->names.begin());
}

void vtxTraceDevice::drawEffect(vtxEffectDraw const& draw) {
    requirePass_("drawEffect");
    ++log_->counters_.geometryDraws;
    Object* effect = find_(draw.effect, Kind::Effect, "drawEffect");
    find_(draw.geometry.geometry, Kind::Geometry, "drawEffect");
    if (draw.geometry.texture)
        find_(draw.geometry.texture, Kind::Texture, "drawEffect");
    if (!log_->getRecording() || !effect)
        return;
    qor::AllowAllocations const allow;
    log_->addLine_("drawEffect E%u", draw.effect);
    writeGeometry_(draw.geometry);
    for (std::size_t i = 0; i < draw.parameterCount; ++i) {
        vtxEffectDraw::Parameter const& parameter = draw.parameters[i];
        qor::string values;
        for (std::size_t k = 0; k < parameter.count; ++k) {
            values += ' ';
            values += Number(parameter.values[k]).get();
        }
        log_->addLine_("  %s%s", effect->names[static_cast<std::size_t>(parameter.handle)].c_str(), values.c_str());
    }
}

// --- The contract ---

void vtxTraceDevice::traceOperation(char const* operation, char const* arguments) {
    log_->addLine_(*arguments ? "> %s %s" : "> %s", operation, arguments);
}

void vtxTraceDevice::reportMisuse(char const* text) { log_->addMisuse_(text); }
