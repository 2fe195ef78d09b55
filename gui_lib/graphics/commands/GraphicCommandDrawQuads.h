#pragma once

#include <osg/Vec4f>

#include "gui_lib/graphics/GraphicCommand.h"
#include "gui_lib/graphics/commands/RendererStamp.h"
#include "platform/vtx/vtxShaderQuads.h"

namespace gui {

/// Draws quads in one colour with a texture sampler; nothing once the renderer was replaced.
class VORLEX_API GraphicCommandDrawQuads : public SimpleGraphicCommand<GraphicCommandDrawQuads> {
public:
    /// Sampler 0 to 3 sets the filtering, anything else leaves it alone; batch -1 draws all batches.
    GraphicCommandDrawQuads* set(vtxShaderQuads const& quads, osg::Vec4f const& color, int sampler, int batch);
    void draw() override;

private:
    int sampler = -1;
    int batch = -1;
    osg::Vec4f color;
    vtxShaderQuads quads;
    RendererStamp recorded_;
};

}  // namespace gui
