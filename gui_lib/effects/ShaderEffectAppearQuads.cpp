#include "gui_lib/effects/ShaderEffectAppearQuads.h"

#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/effects/ShaderEffectParams.h"
#include "platform/qor/RandomObject.h"
#include "platform/vtx/vtxEffectShader.h"

namespace gui::skin {

ShaderEffectAppearQuads::ShaderEffectAppearQuads()
    : alphaEasing(getEasingFunc_(defaultEasing)), sizeEasing(getEasingFunc_(defaultEasing)) {
    // The message of its neighbour is the one that hosts know.
    createShader_("ScenarioDesk/guiAppearQuads.fx", "Unable to create ShaderEffectShowMsg!");
    grid.findParameters(shader);
    valueXHandle = findParameter_("valueX");
    valueYHandle = findParameter_("valueY");
}

void ShaderEffectAppearQuads::destroy() { ShaderEffectManager::get().destroyAppearQuadsEffect(this); }

void ShaderEffectAppearQuads::setParams(ShaderEffectParams const& params) {
    ShaderEffect::setParams(params);
    grid.clearAlphas();
    alphaBegin = params.getParam("alphaBegin", 0.0f);
    alphaEnd = params.getParam("alphaEnd", 1.0f);
    alphaEasing = readEasing_(params, "easingAlpha");
    sizeEasing = readEasing_(params, "easingSize");
    grid.setQuadSize(params.getParam("quadSize", 32.0f));
    osg::Vec2f const share = getShareOfScreen(osg::Vec2f(grid.getQuadSize(), grid.getQuadSize()));
    sizeX = share.x();
    sizeY = share.y();
}

void ShaderEffectAppearQuads::setCurrTime(float time) {
    ShaderEffect::setCurrTime(time);
    if (!(duration > 0.0f)) {
        alpha = 1.0f;
        return;
    }
    float const elapsed = currTime - startTime;
    alpha = alphaEasing(elapsed, alphaBegin, alphaEnd - alphaBegin, duration);
    valueX = sizeEasing(elapsed, sizeX, -sizeX, duration);
    valueY = sizeEasing(elapsed, sizeY, -sizeY, duration);
    static RandomObject random;
    grid.calcAlphas(alpha, random);
}

// --- Drawing ---

void ShaderEffectAppearQuads::setDrawParams_() const {
    shader->setFloat(valueXHandle, valueX);
    shader->setFloat(valueYHandle, valueY);
    grid.setDrawParams(*shader, texture);
}

std::function<void()> ShaderEffectAppearQuads::getDrawFunc_() const {
    return [this] { drawPass_(grid.getQuadCount() * 2); };
}

std::function<void(osg::Vec2i const&)> ShaderEffectAppearQuads::getRedrawFunc_() {
    return [this](osg::Vec2i const& size) {
        prepareShader_();
        grid.redraw(size, geometry);
    };
}

}  // namespace gui::skin
