#pragma once

#include "gui_lib/graphics/GraphicCommand.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui {

/// Sets the filtering for what follows.
class VORLEX_API GraphicCommandSetTextureFiltering : public SimpleGraphicCommand<GraphicCommandSetTextureFiltering> {
public:
    GraphicCommandSetTextureFiltering* set(vtxRenderer::TextureSampler sampler);
    void draw() override;

private:
    vtxRenderer::TextureSampler sampler = vtxRenderer::SamplerLinear;
};

/// Sets the opacity for what follows.
class VORLEX_API GraphicCommandSetOpacity : public SimpleGraphicCommand<GraphicCommandSetOpacity> {
public:
    /// Also remembers the value as the one recorded last.
    GraphicCommandSetOpacity* set(float newOpacity) {
        opacity = newOpacity;
        currentOpacity = newOpacity;
        return this;
    }
    void draw() override;

    /// The opacity recorded last, by anyone, into any list.
    static float currentOpacity;

private:
    float opacity = 1.0f;
};

/// Shifts quad positions by (x, y) times the scale pixels.
class VORLEX_API GraphicCommandShiftPosition : public SimpleGraphicCommand<GraphicCommandShiftPosition> {
public:
    GraphicCommandShiftPosition* set(float x, float y, float scale);
    void draw() override;

private:
    float x = 0.0f;
    float y = 0.0f;
    float scale = -1.0f;
};

}  // namespace gui
