#include "gui_lib/effects/ShaderEffectShowMsg.h"

#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/effects/ShaderEffectParams.h"
#include "gui_lib/widget/Widget.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "platform/vtx/vtxEffectShader.h"

namespace gui::skin {

ShaderEffectShowMsg::ShaderEffectShowMsg()
    : alphaEasing(getEasingFunc_(defaultEasing)), sizeEasing(getEasingFunc_(defaultEasing)) {
    createShader_("ScenarioDesk/guiShowMsg.fx", "Unable to create ShaderEffectShowMsg!");
    alphaCoeffHandle = findParameter_("alphaCoeff");
    valueXHandle = findParameter_("valueX");
    valueYHandle = findParameter_("valueY");
}

void ShaderEffectShowMsg::destroy() { ShaderEffectManager::get().destroyShowMsgEffect(this); }

void ShaderEffectShowMsg::setParams(ShaderEffectParams const& params) {
    ShaderEffect::setParams(params);
    if (Widget const* const widget = WidgetHandler::get(owner)) {
        osg::Vec2i const size = widget->getSize();
        osg::Vec2f const share = getShareOfScreen(osg::Vec2f(float(size.x()), float(size.y())));
        sizeX = share.x();
        sizeY = share.y();
    }
    alphaBegin = params.getParam("alphaBegin", 0.0f);
    alphaEnd = params.getParam("alphaEnd", 1.0f);
    alphaEasing = readEasing_(params, "easingAlpha");
    sizeEasing = readEasing_(params, "easingSize");
}

void ShaderEffectShowMsg::setCurrTime(float time) {
    ShaderEffect::setCurrTime(time);
    if (!(duration > 0.0f)) {
        alpha = 1.0f;
        return;
    }
    float const elapsed = currTime - startTime;
    alpha = alphaEasing(elapsed, alphaBegin, alphaEnd - alphaBegin, duration);
    valueX = sizeEasing(elapsed, sizeX, -sizeX, duration);
    valueY = sizeEasing(elapsed, sizeY, -sizeY, duration);
}

void ShaderEffectShowMsg::setDrawParams_() const {
    shader->setFloat(valueXHandle, valueX);
    shader->setFloat(valueYHandle, valueY);
    shader->setFloat(alphaCoeffHandle, alpha);
}

}  // namespace gui::skin
