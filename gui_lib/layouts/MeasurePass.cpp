#include "gui_lib/layouts/MeasurePass.h"

#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui {

namespace {

/// What the width of a text depends on, beside the text and its look.
struct FontState {
    vtxFontManager const* manager = nullptr;
    unsigned scaleEpoch = 0;
    unsigned fontEpoch = 0;

    bool operator==(FontState const&) const = default;
};

FontState getFontState() {
    vtxRenderer* const renderer = vtxRenderer::get();
    vtxFontManager const* const manager = renderer ? renderer->getFontManager() : nullptr;
    return manager ? FontState{manager, manager->getScaleEpoch(), manager->getFontEpoch()} : FontState();
}

FontState lastFontState;

}  // namespace

void MeasurePass::begin() {
    forgetFleeting();
    FontState const fonts = getFontState();
    if (fonts == lastFontState)
        return;
    lastFontState = fonts;
    forgetAll();
}

}  // namespace gui
