#include "gui_lib/effects/ShaderEffectAlpha.h"

#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/effects/ShaderEffectParams.h"
#include "platform/vtx/vtxEffectShader.h"

namespace gui::skin {

ShaderEffectAlpha::ShaderEffectAlpha() : easing(getEasingFunc_(defaultEasing)) {
    createShader_("ScenarioDesk/guiAlpha.fx", "Unable to create ShaderEffectAlpha!");
    timeCoeffHandle = findParameter_("timeCoeff");
}

void ShaderEffectAlpha::destroy() { ShaderEffectManager::get().destroyAlphaEffect(this); }

void ShaderEffectAlpha::setParams(ShaderEffectParams const& params) {
    ShaderEffect::setParams(params);
    alphaBegin = params.getParam("alphaBegin", 0.0f);
    alphaEnd = params.getParam("alphaEnd", 1.0f);
    easing = readEasing_(params, "easing");
}

void ShaderEffectAlpha::setCurrTime(float time) {
    ShaderEffect::setCurrTime(time);
    alpha = duration > 0.0f ? easing(currTime - startTime, alphaBegin, alphaEnd - alphaBegin, duration) : 1.0f;
}

void ShaderEffectAlpha::setDrawParams_() const { shader->setFloat(timeCoeffHandle, alpha); }

}  // namespace gui::skin
