#include "gui_lib/graphics/GraphicCommandGuards.h"

#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/graphics/commands/GraphicCommandModelViewMatrix.h"
#include "gui_lib/graphics/commands/GraphicCommandProjectionMatrix.h"
#include "gui_lib/graphics/commands/GraphicCommandRects.h"
#include "gui_lib/graphics/commands/GraphicCommandStates.h"
#include "gui_lib/graphics/commands/GraphicCommandTechniques.h"

namespace gui {

// --- Clip, viewport, opacity, technique, shift ---

GraphicCommandClipRectGuard::GraphicCommandClipRectGuard(GraphicCommands* list, osg::RectImpl<osg::Vec2i> const& rect)
    : GraphicCommandGuard(list) {
    commands->addFetched(GraphicCommandPushClipRect::fetch()->set(rect));
}

GraphicCommandClipRectGuard::~GraphicCommandClipRectGuard() {
    commands->addFetched(GraphicCommandPopClipRect::fetch());
}

GraphicCommandViewportGuard::GraphicCommandViewportGuard(GraphicCommands* list, osg::RectImpl<osg::Vec2i> const& rect)
    : GraphicCommandGuard(list) {
    commands->pushViewport(rect);
}

GraphicCommandViewportGuard::~GraphicCommandViewportGuard() { commands->popViewport(); }

GraphicCommandOpacityGuard::GraphicCommandOpacityGuard(GraphicCommands* list, float opacity)
    : GraphicCommandGuard(list), saved(GraphicCommandSetOpacity::currentOpacity) {
    commands->addFetched(GraphicCommandSetOpacity::fetch()->set(opacity));
}

GraphicCommandOpacityGuard::~GraphicCommandOpacityGuard() {
    commands->addFetched(GraphicCommandSetOpacity::fetch()->set(saved));
}

GraphicCommandShaderTechniqueGuard::GraphicCommandShaderTechniqueGuard(GraphicCommands* list,
                                                                       vtxRenderer::TechniqueType technique)
    : GraphicCommandGuard(list) {
    commands->addFetched(GraphicCommandPushShaderTechnique::fetch()->set(technique));
}

GraphicCommandShaderTechniqueGuard::~GraphicCommandShaderTechniqueGuard() {
    commands->addFetched(GraphicCommandPopShaderTechnique::fetch());
}

GraphicCommandShiftPositionGuard::GraphicCommandShiftPositionGuard(GraphicCommands* list, float shiftX, float shiftY,
                                                                   float shiftScale)
    : GraphicCommandGuard(list), x(shiftX), y(shiftY), scale(shiftScale) {
    commands->shiftPosition(x, y, scale);
}

GraphicCommandShiftPositionGuard::~GraphicCommandShiftPositionGuard() { commands->shiftPosition(-x, -y, scale); }

// --- Matrices ---

GraphicCommandProjectionMatrixGuard::GraphicCommandProjectionMatrixGuard(GraphicCommands* list)
    : GraphicCommandGuard(list) {
    commands->addFetched(GraphicCommandProjectionMatrix::fetch()->addOp(ProjectionOp::ProjPush));
}

GraphicCommandProjectionMatrixGuard::~GraphicCommandProjectionMatrixGuard() {
    commands->addFetched(GraphicCommandProjectionMatrix::fetch()->addOp(ProjectionOp::ProjPop));
}

void GraphicCommandProjectionMatrixGuard::makeOrtho2D(float left, float right, float bottom, float top) {
    commands->addFetched(
        GraphicCommandProjectionMatrix::fetch()->addOp(ProjectionOp::ProjOrtho2D, left, right, bottom, top));
}

GraphicCommandModelViewMatrixGuard::GraphicCommandModelViewMatrixGuard(GraphicCommands* list)
    : GraphicCommandGuard(list) {
    commands->addFetched(GraphicCommandModelViewMatrix::fetch()->addOp(ModelViewOp::MvPush));
    current = GraphicCommandModelViewMatrix::fetch();
}

GraphicCommandModelViewMatrixGuard::~GraphicCommandModelViewMatrixGuard() {
    commands->addFetched(GraphicCommandModelViewMatrix::fetch()->addOp(ModelViewOp::MvPop));
    current->release();
}

GraphicCommandModelViewMatrixGuard& GraphicCommandModelViewMatrixGuard::makeIdentity() {
    current->addOp(ModelViewOp::MvMakeIdentity);
    return *this;
}

GraphicCommandModelViewMatrixGuard& GraphicCommandModelViewMatrixGuard::makeTranslate(float x, float y, float z) {
    current->addOp(ModelViewOp::MvMakeTranslate, x, y, z);
    return *this;
}

GraphicCommandModelViewMatrixGuard& GraphicCommandModelViewMatrixGuard::makeRotate(float angle, float x, float y,
                                                                                   float z) {
    current->addOp(ModelViewOp::MvMakeRotate, x, y, z, angle);
    return *this;
}

void GraphicCommandModelViewMatrixGuard::setIdentity() {
    current->addOp(ModelViewOp::MvSetIdentity);
    recordCurrent_();
}

void GraphicCommandModelViewMatrixGuard::setTranslate(float x, float y, float z) {
    current->addOp(ModelViewOp::MvSetTranslate, x, y, z);
    recordCurrent_();
}

void GraphicCommandModelViewMatrixGuard::setRotate(float angle, float x, float y, float z) {
    current->addOp(ModelViewOp::MvSetRotate, x, y, z, angle);
    recordCurrent_();
}

void GraphicCommandModelViewMatrixGuard::recordCurrent_() {
    commands->addFetched(current);
    current = GraphicCommandModelViewMatrix::fetch();
}

GraphicCommandPlaceGuard::GraphicCommandPlaceGuard(GraphicCommands* list, osg::Vec2i const& place,
                                                   osg::RectImpl<osg::Vec2i> const* clip)
    : GraphicCommandGuard(list), clipped(clip != nullptr) {
    list->addFetched(GraphicCommandModelViewMatrix::fetch()->addOp(ModelViewOp::MvPush));
    list->addFetched(GraphicCommandModelViewMatrix::fetch()->addOp(
        ModelViewOp::MvSetTranslate, static_cast<float>(place.x()), static_cast<float>(place.y())));
    if (clip)
        list->addFetched(GraphicCommandPushClipRect::fetch()->set(*clip));
}

GraphicCommandPlaceGuard::~GraphicCommandPlaceGuard() {
    if (clipped)
        commands->addFetched(GraphicCommandPopClipRect::fetch());
    commands->addFetched(GraphicCommandModelViewMatrix::fetch()->addOp(ModelViewOp::MvPop));
}

}  // namespace gui
