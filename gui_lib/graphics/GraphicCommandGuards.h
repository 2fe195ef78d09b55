#pragma once

#include <osg/Vec2i>

#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui {

class GraphicCommandModelViewMatrix;
class GraphicCommands;

/// Base of the guards: each records a matched pair of commands around a scope. The list must outlive the guard.
class VORLEX_API GraphicCommandGuard {
public:
    GraphicCommandGuard(GraphicCommandGuard const&) = delete;
    GraphicCommandGuard& operator=(GraphicCommandGuard const&) = delete;

protected:
    explicit GraphicCommandGuard(GraphicCommands* list) : commands(list) {}
    ~GraphicCommandGuard() = default;

    GraphicCommands* commands;
};

/// GUI units; clips intersect.
class VORLEX_API GraphicCommandClipRectGuard : GraphicCommandGuard {
public:
    GraphicCommandClipRectGuard(GraphicCommands* list, osg::RectImpl<osg::Vec2i> const& rect);
    ~GraphicCommandClipRectGuard();
};

/// Raw pixels.
class VORLEX_API GraphicCommandViewportGuard : GraphicCommandGuard {
public:
    GraphicCommandViewportGuard(GraphicCommands* list, osg::RectImpl<osg::Vec2i> const& rect);
    ~GraphicCommandViewportGuard();
};

/// Sets the opacity and puts back the one recorded before; it does not multiply.
class VORLEX_API GraphicCommandOpacityGuard : GraphicCommandGuard {
public:
    GraphicCommandOpacityGuard(GraphicCommands* list, float opacity);
    ~GraphicCommandOpacityGuard();

private:
    float saved;
};

class VORLEX_API GraphicCommandShaderTechniqueGuard : GraphicCommandGuard {
public:
    GraphicCommandShaderTechniqueGuard(GraphicCommands* list, vtxRenderer::TechniqueType technique);
    ~GraphicCommandShaderTechniqueGuard();
};

/// Shifts by (x, y) times the scale pixels; a scale not above 0 is the renderer's.
class VORLEX_API GraphicCommandShiftPositionGuard : GraphicCommandGuard {
public:
    GraphicCommandShiftPositionGuard(GraphicCommands* list, float x, float y, float scale);
    ~GraphicCommandShiftPositionGuard();

private:
    float x;
    float y;
    float scale;
};

class VORLEX_API GraphicCommandProjectionMatrixGuard : GraphicCommandGuard {
public:
    explicit GraphicCommandProjectionMatrixGuard(GraphicCommands* list);
    ~GraphicCommandProjectionMatrixGuard();

    /// Sides in GUI units.
    void makeOrtho2D(float left, float right, float bottom, float top);
};

/// Each step is composed after what the matrix holds: translate(-pivot), rotate, translate(to) turns about the pivot.
/// Steps of `make...` wait for the `set...` that closes their chain and are lost without one. Translations are GUI
/// units, angles radians about the axis (x, y, z).
class VORLEX_API GraphicCommandModelViewMatrixGuard : GraphicCommandGuard {
public:
    explicit GraphicCommandModelViewMatrixGuard(GraphicCommands* list);
    ~GraphicCommandModelViewMatrixGuard();

    GraphicCommandModelViewMatrixGuard& makeIdentity();
    GraphicCommandModelViewMatrixGuard& makeTranslate(float x, float y, float z);
    GraphicCommandModelViewMatrixGuard& makeRotate(float angle, float x, float y, float z);
    void setIdentity();
    void setTranslate(float x, float y, float z);
    void setRotate(float angle, float x, float y, float z);

private:
    void recordCurrent_();

    /// Not recorded yet.
    GraphicCommandModelViewMatrix* current;
};

/// Records what a GraphicCommandModelViewMatrixGuard that translates to a place and a GraphicCommandClipRectGuard
/// inside it do, for walks over many objects. GUI units; no clip with null.
class VORLEX_API GraphicCommandPlaceGuard : GraphicCommandGuard {
public:
    GraphicCommandPlaceGuard(GraphicCommands* list, osg::Vec2i const& place, osg::RectImpl<osg::Vec2i> const* clip);
    ~GraphicCommandPlaceGuard();

private:
    bool clipped;
};

}  // namespace gui
