#include "platform/vtx/vtxEffectRecord.h"

#include "platform/qor/Log.h"
#include "platform/vtx/vtxGeometryRecord.h"
#include "platform/vtx/vtxRendererCore.h"
#include "platform/vtx/vtxTextureRecord.h"

#include <algorithm>

vtxEffectShader::~vtxEffectShader() = default;

vtxEffectRecord::vtxEffectRecord(vtxRendererCore& core, char const* path, vtxEffectFile const& file)
    : core_(core), path_(path) {
    for (vtxEffectFile::Parameter const& parameter : file.parameters) {
        values_.push_back(Value{parameter.name, -1, {}});
        values_.back().values.assign(static_cast<std::size_t>(parameter.count), parameter.defaultValue);
    }
}

void vtxEffectRecord::setMatrices(osg::Matrixf const& projection, osg::Matrixf const& modelView) {
    projection_ = projection;
    modelView_ = modelView;
}

vtxEffectShader::ParameterHandle vtxEffectRecord::getParameter(char const* name) {
    auto const found =
        std::find_if(values_.begin(), values_.end(), [name](Value const& value) { return value.name == name; });
    return found == values_.end() ? -1 : static_cast<ParameterHandle>(found - values_.begin());
}

void vtxEffectRecord::setFloat(ParameterHandle handle, float value) { setFloatArray(handle, &value, 1); }

void vtxEffectRecord::setFloatArray(ParameterHandle handle, float const* values, std::size_t count) {
    if (handle < 0 || static_cast<std::size_t>(handle) >= values_.size() || !values)
        return;
    qor::vector<float>& stored = values_[static_cast<std::size_t>(handle)].values;
    std::copy_n(values, std::min(count, stored.size()), stored.begin());
}

void vtxEffectRecord::beginPass() {
    if (passOpen_)
        core_.report(vtxMisuse::EffectPass, "beginPass");
    passOpen_ = true;
}

void vtxEffectRecord::endPass() {
    if (!passOpen_)
        core_.report(vtxMisuse::EffectPass, "endPass");
    passOpen_ = false;
}

bool vtxEffectRecord::prepare(qor::string& error) {
    if (!program_ && !failed_) {
        program_ = core_.makeEffectProgram(path_.c_str(), error_);
        failed_ = !program_;
        for (Value& value : values_)
            value.deviceHandle = failed_ ? -1 : core_.getDevice().getEffectParameter(program_, value.name.c_str());
    }
    if (failed_)
        error = error_;
    return !failed_;
}

bool vtxEffectRecord::isDrawable_() {
    qor::string error;
    if (program_ || prepare(error))
        return true;
    if (!logged_)
        qor_logf("VTX", 64, "The effect \"%s\" cannot be used: %s\n", path_.c_str(), error.c_str());
    logged_ = true;
    return false;
}

// 0 to 1 is the picture in the target, which may be larger or smaller.
void vtxEffectRecord::takePartOfTarget_(vtxGeometryDraw& draw) const {
    if (!texture_ || !static_cast<vtxTextureRecord const*>(texture_)->image->target)
        return;
    draw.textureScaleU *= texture_->rect.x2 / static_cast<float>(texture_->width);
    draw.textureScaleV *= texture_->rect.y2 / static_cast<float>(texture_->height);
}

void vtxEffectRecord::drawEffect(int primitive, int primitiveCount, int first) {
    if (!passOpen_)
        core_.report(vtxMisuse::EffectPass, "drawEffect");
    if (primitive != vtxGeometry::PrimitiveTriangles || !geometry_ || !core_.requirePass("drawEffect") ||
        !core_.requireFinite(projection_, "drawEffect") || !core_.requireFinite(modelView_, "drawEffect"))
        return;
    vtxGeometryRecord* geometry =
        core_.checkGeometry(geometry_, vtxGeometry::PrimitiveTriangles, primitiveCount, first);
    vtxEffectDraw draw;
    if (!geometry || !core_.beginDirectDraw(draw.geometry.state) || !core_.bindTexture(texture_, draw.geometry) ||
        !isDrawable_())
        return;
    takePartOfTarget_(draw.geometry);
    draw.geometry.state.projection = core_.getDeviceProjection(projection_);
    draw.geometry.modelView = modelView_;
    draw.geometry.geometry = core_.flushGeometry(*geometry);
    draw.geometry.count = primitiveCount;
    draw.geometry.first = first;
    draw.effect = program_;
    parameters_.clear();
    for (Value const& value : values_) {
        if (value.deviceHandle >= 0)
            parameters_.push_back({value.deviceHandle, value.values.data(), value.values.size()});
    }
    draw.parameters = parameters_.data();
    draw.parameterCount = parameters_.size();
    core_.drawEffect(draw);
}
