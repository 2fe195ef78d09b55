#pragma once

#include "platform/qor/Api.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui {

/// Remembers for which renderer something was recorded or made. What belongs to one that has gone must not be drawn:
/// its textures and geometry went with it.
class VORLEX_API RendererStamp {
public:
    void take() {
        vtxRenderer* const renderer = vtxRenderer::get();
        generation_ = renderer ? renderer->getGeneration() : 0;
    }
    bool isCurrent() const { return isOf(vtxRenderer::get()); }
    /// False for null.
    bool isOf(vtxRenderer* renderer) const { return renderer && renderer->getGeneration() == generation_; }

private:
    unsigned generation_ = 0;  ///< 0: no renderer
};

}  // namespace gui
