#pragma once

#include <cstring>

#include <osg/Vec4f>

#include "gui_lib/graphics/GraphicCommand.h"
#include "gui_lib/graphics/commands/RendererStamp.h"
#include "platform/vtx/vtxShaderBkgQuads.h"

namespace gui {

/// Draws the quads of a background, each with its colour; nothing once the renderer was replaced.
class VORLEX_API GraphicCommandDrawBkg : public SimpleGraphicCommand<GraphicCommandDrawBkg> {
public:
    /// `colors` are nine RGBA colours, whatever the number of quads.
    GraphicCommandDrawBkg* set(vtxShaderBkgQuads const& newQuads, float const* newColors) {
        // Recorded again, it mostly holds them already.
        if (!newQuads.isCopyOf(quads))
            quads = newQuads;
        std::memcpy(static_cast<void*>(colors), newColors, sizeof(colors));
        recorded_.take();
        return this;
    }
    void draw() override;

private:
    osg::Vec4f colors[vtxShaderBkgQuads::maxCount];
    vtxShaderBkgQuads quads;
    RendererStamp recorded_;
};

}  // namespace gui
