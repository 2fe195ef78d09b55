#include "gui_lib/effects/ShaderEffectFlickerQuads.h"

#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/effects/ShaderEffectParams.h"
#include "platform/qor/RandomObject.h"

namespace gui::skin {

ShaderEffectFlickerQuads::ShaderEffectFlickerQuads() : easing(getEasingFunc_(defaultEasing)) {
    createShader_("ScenarioDesk/guiFlickerQuads.fx", "Unable to create ShaderEffectFlickerQuads!");
    grid.findParameters(shader);
}

void ShaderEffectFlickerQuads::destroy() { ShaderEffectManager::get().destroyFlickerQuadsEffect(this); }

void ShaderEffectFlickerQuads::setParams(ShaderEffectParams const& params) {
    ShaderEffect::setParams(params);
    grid.clearAlphas();
    alphaBegin = params.getParam("alphaBegin", 0.0f);
    alphaEnd = params.getParam("alphaEnd", 1.0f);
    easing = readEasing_(params, "easingAlpha");
    grid.setQuadSize(params.getParam("quadSize", 20.0f));
    osg::Vec2f const share = getShareOfScreen(osg::Vec2f(grid.getQuadSize(), grid.getQuadSize()));
    sizeX = share.x();
    sizeY = share.y();
}

void ShaderEffectFlickerQuads::setCurrTime(float time) {
    ShaderEffect::setCurrTime(time);
    if (!(duration > 0.0f)) {
        grid.fillAlphas();
        return;
    }
    static RandomObject random;
    grid.calcAlphas(easing(currTime - startTime, alphaBegin, alphaEnd - alphaBegin, duration), random);
}

// --- Drawing ---

void ShaderEffectFlickerQuads::setDrawParams_() const { grid.setDrawParams(*shader, texture); }

std::function<void()> ShaderEffectFlickerQuads::getDrawFunc_() const {
    return [this] { drawPass_(grid.getQuadCount() * 2); };
}

std::function<void(osg::Vec2i const&)> ShaderEffectFlickerQuads::getRedrawFunc_() {
    return [this](osg::Vec2i const& size) {
        prepareShader_();
        grid.redraw(size, geometry);
    };
}

}  // namespace gui::skin
