#include "platform/vtx/vtxRenderer.h"

#include "platform/qor/Log.h"
#include "platform/vtx/vtxDevice.h"
#include "platform/vtx/vtxRendererCore.h"
#include "platform/vtx/vtxTranslation.h"

#include <memory>

namespace {

/// Reached from the destructors of objects that may outlive it.
vtxRendererCore* instance = nullptr;

}  // namespace

vtxRenderer::vtxRenderer() = default;

vtxRenderer::~vtxRenderer() = default;

vtxRenderer* vtxRenderer::create(std::unique_ptr<vtxDevice> device) {
    if (instance) {
        qor_logf("VTX", 64,
                 "vtxRenderer::create was called while a renderer exists, which stays; call destroy first\n");
        return instance;
    }
    if (!device) {
        qor_logf("VTX", 64, "vtxRenderer::create needs a back end\n");
        return nullptr;
    }
    instance = new vtxRendererCore(std::move(device));
    return instance;
}

void vtxRenderer::destroy() {
    delete instance;
    instance = nullptr;
}

vtxRenderer* vtxRenderer::get() { return instance; }

vtxRendererCore* vtxRendererCore::getCore() { return instance; }

// --- Guards ---

vtxRenderer::ClipRectGuard::ClipRectGuard(osg::RectImpl<osg::Vec2i> const& rect) {
    if (instance)
        instance->pushClipRect(rect);
}

vtxRenderer::ClipRectGuard::~ClipRectGuard() {
    if (instance)
        instance->popClipRect();
}

vtxRenderer::ViewportGuard::ViewportGuard(osg::RectImpl<osg::Vec2i> const& rect) {
    if (instance)
        instance->pushViewport(rect);
}

vtxRenderer::ViewportGuard::~ViewportGuard() {
    if (instance)
        instance->popViewport();
}

vtxRenderer::ProjectionMatrixGuard::ProjectionMatrixGuard() {
    if (instance)
        instance->pushProjectionMatrix();
}

vtxRenderer::ProjectionMatrixGuard::~ProjectionMatrixGuard() {
    if (instance)
        instance->popProjectionMatrix();
}

void vtxRenderer::ProjectionMatrixGuard::makeOrtho2D(float left, float right, float bottom, float top) {
    if (!instance)
        return;
    float const scale = instance->getScale();
    instance->setProjectionMatrix(
        osg::Matrixf::ortho(left * scale, right * scale, bottom * scale, top * scale, -1.0, 1.0));
}

vtxRenderer::ModelViewMatrixGuard::ModelViewMatrixGuard()
    : matrix_(instance ? instance->getModelViewMatrix() : osg::Matrixf()) {
    if (instance)
        instance->pushModelViewMatrix();
}

vtxRenderer::ModelViewMatrixGuard::~ModelViewMatrixGuard() {
    if (instance)
        instance->popModelViewMatrix();
}

vtxRenderer::ModelViewMatrixGuard& vtxRenderer::ModelViewMatrixGuard::makeIdentity() {
    matrix_.makeIdentity();
    return *this;
}

vtxRenderer::ModelViewMatrixGuard& vtxRenderer::ModelViewMatrixGuard::makeTranslate(float x, float y, float z) {
    if (!instance)
        return *this;
    float const scale = instance->getScale();
    vtxTranslation::postMultTranslate(matrix_, {scale * x, scale * y, scale * z});
    return *this;
}

vtxRenderer::ModelViewMatrixGuard& vtxRenderer::ModelViewMatrixGuard::makeRotate(float angle, float x, float y,
                                                                                 float z) {
    matrix_.postMult(osg::Matrixf::rotate(angle, x, y, z));
    return *this;
}

void vtxRenderer::ModelViewMatrixGuard::setIdentity() {
    makeIdentity();
    if (instance)
        instance->setModelViewMatrix(matrix_);
}

void vtxRenderer::ModelViewMatrixGuard::setTranslate(float x, float y, float z) {
    makeTranslate(x, y, z);
    if (instance)
        instance->setModelViewMatrix(matrix_);
}

vtxRenderer::PlaceGuard::PlaceGuard(osg::Vec2i const& place, osg::RectImpl<osg::Vec2i> const* clip)
    : clipped_(clip != nullptr) {
    vtxRendererCore* const core = instance;
    if (!core)
        return;
    core->pushModelViewMatrix();
    core->translateModelView(place);
    if (clip)
        core->pushClipRect(*clip);
}

vtxRenderer::PlaceGuard::~PlaceGuard() {
    vtxRendererCore* const core = instance;
    if (!core)
        return;
    if (clipped_)
        core->popClipRect();
    core->popModelViewMatrix();
}

vtxRenderer::OpacityGuard::OpacityGuard(float opacity) : saved_(instance ? instance->getOpacity() : 1.0f) {
    if (instance)
        instance->setOpacity(opacity);
}

vtxRenderer::OpacityGuard::~OpacityGuard() {
    if (instance)
        instance->setOpacity(saved_);
}

vtxRenderer::ShiftPositionGuard::ShiftPositionGuard(float x, float y, float z) : x_(x), y_(y), z_(z) {
    if (instance)
        instance->getShader()->shiftPosition(x, y, z);
}

vtxRenderer::ShiftPositionGuard::~ShiftPositionGuard() {
    if (instance)
        instance->getShader()->shiftPosition(-x_, -y_, z_);
}

vtxRenderer::ShaderTechniqueGuard::ShaderTechniqueGuard(TechniqueType technique) {
    if (instance)
        instance->pushTechnique(technique);
}

vtxRenderer::ShaderTechniqueGuard::~ShaderTechniqueGuard() {
    if (instance)
        instance->popTechnique();
}
