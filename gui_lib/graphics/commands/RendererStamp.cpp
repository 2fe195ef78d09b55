#include "gui_lib/graphics/commands/RendererStamp.h"

#include "platform/vtx/vtxRenderer.h"

namespace gui {

void RendererStamp::take() {
    vtxRenderer* const renderer = vtxRenderer::get();
    generation_ = renderer ? renderer->getGeneration() : 0;
}

bool RendererStamp::isCurrent() const {
    vtxRenderer* const renderer = vtxRenderer::get();
    return renderer && renderer->getGeneration() == generation_;
}

}  // namespace gui
