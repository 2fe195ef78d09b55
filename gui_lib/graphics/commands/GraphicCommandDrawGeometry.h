#pragma once

#include "gui_lib/graphics/GraphicCommand.h"
#include "gui_lib/graphics/commands/RendererStamp.h"
#include "platform/vtx/vtxGeometry.h"

class vtxTexture;

namespace gui {

/// Draws vertices of its own with a texture.
/// Lifetime: the renderer's geometry is kept between uses and made anew for another renderer. A list that outlived the
/// renderer it was recorded for draws nothing here, because the texture is gone.
class VORLEX_API GraphicCommandDrawGeometry : public SimpleGraphicCommand<GraphicCommandDrawGeometry> {
public:
    ~GraphicCommandDrawGeometry() override;

    /// `count` primitives. The texture, which may be null, must live until the list was played.
    GraphicCommandDrawGeometry* set(qor::vector<vtxVertex> const& vertices, qor::vector<int> const& indices,
                                    vtxGeometry::PrimitiveType type, int count, vtxTexture* texture);
    void doRedraw() override;
    void draw() override;

private:
    vtxGeometry* geometry = nullptr;
    vtxTexture* texture = nullptr;
    vtxGeometry::PrimitiveType type = vtxGeometry::PrimitiveNone;
    int count = 0;
    qor::vector<vtxVertex> vertices;
    qor::vector<int> indices;
    RendererStamp made_;  ///< `geometry`
    RendererStamp recorded_;
};

}  // namespace gui
