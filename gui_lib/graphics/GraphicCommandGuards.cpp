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
    commands->add(GraphicCommandPushClipRect::fetch()->set(rect));
}

GraphicCommandClipRectGuard::~GraphicCommandClipRectGuard() { commands->add(GraphicCommandPopClipRect::fetch()); }

GraphicCommandViewportGuard::GraphicCommandViewportGuard(GraphicCommands* list, osg::RectImpl<osg::Vec2i> const& rect)
    : GraphicCommandGuard(list) {
    commands->pushViewport(rect);
}

GraphicCommandViewportGuard::~GraphicCommandViewportGuard() { commands->popViewport(); }

GraphicCommandOpacityGuard::GraphicCommandOpacityGuard(GraphicCommands* list, float opacity)
    : GraphicCommandGuard(list), saved(GraphicCommandSetOpacity::currentOpacity) {
    commands->add(GraphicCommandSetOpacity::fetch()->set(opacity));
}

GraphicCommandOpacityGuard::~GraphicCommandOpacityGuard() {
    commands->add(GraphicCommandSetOpacity::fetch()->set(saved));
}

GraphicCommandShaderTechniqueGuard::GraphicCommandShaderTechniqueGuard(GraphicCommands* list,
                                                                       vtxRenderer::TechniqueType technique)
    : GraphicCommandGuard(list) {
    commands->add(GraphicCommandPushShaderTechnique::fetch()->set(technique));
}

GraphicCommandShaderTechniqueGuard::~GraphicCommandShaderTechniqueGuard() {
    commands->add(GraphicCommandPopShaderTechnique::fetch());
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
    commands->add(GraphicCommandProjectionMatrix::fetch()->addOp(ProjectionOp::ProjPush));
}

GraphicCommandProjectionMatrixGuard::~GraphicCommandProjectionMatrixGuard() {
    commands->add(GraphicCommandProjectionMatrix::fetch()->addOp(ProjectionOp::ProjPop));
}

void GraphicCommandProjectionMatrixGuard::makeOrtho2D(float left, float right, float bottom, float top) {
    commands->add(GraphicCommandProjectionMatrix::fetch()->addOp(ProjectionOp::ProjOrtho2D, left, right, bottom, top));
}

GraphicCommandModelViewMatrixGuard::GraphicCommandModelViewMatrixGuard(GraphicCommands* list)
    : GraphicCommandGuard(list) {
    commands->add(GraphicCommandModelViewMatrix::fetch()->addOp(ModelViewOp::MvPush));
    current = GraphicCommandModelViewMatrix::fetch();
}

GraphicCommandModelViewMatrixGuard::~GraphicCommandModelViewMatrixGuard() {
    commands->add(GraphicCommandModelViewMatrix::fetch()->addOp(ModelViewOp::MvPop));
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
    commands->add(current);
    current = GraphicCommandModelViewMatrix::fetch();
}

}  // namespace gui
