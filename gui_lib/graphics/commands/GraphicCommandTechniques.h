#pragma once

#include "gui_lib/graphics/GraphicCommand.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui {

/// Nests a technique.
class VORLEX_API GraphicCommandPushShaderTechnique : public SimpleGraphicCommand<GraphicCommandPushShaderTechnique> {
public:
    GraphicCommandPushShaderTechnique* set(vtxRenderer::TechniqueType technique);
    void draw() override;

private:
    vtxRenderer::TechniqueType technique = vtxRenderer::TechniqueNormal;
};

class VORLEX_API GraphicCommandPopShaderTechnique : public SimpleGraphicCommand<GraphicCommandPopShaderTechnique> {
public:
    void draw() override;
};

/// Closes the pass that is open, if any, and opens one with its technique, unless that is 0.
class VORLEX_API GraphicCommandSetShaderTechnique : public SimpleGraphicCommand<GraphicCommandSetShaderTechnique> {
public:
    GraphicCommandSetShaderTechnique* set(vtxRenderer::TechniqueType technique);
    void draw() override;

private:
    vtxRenderer::TechniqueType technique = vtxRenderer::TechniqueNone;
};

}  // namespace gui
