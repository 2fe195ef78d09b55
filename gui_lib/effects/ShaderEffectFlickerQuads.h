#pragma once

#include "gui_lib/effects/EffectQuadGrid.h"
#include "gui_lib/effects/ShaderEffect.h"

namespace gui::skin {

/// "flickerQuads": its widget is shown as a grid of quads of "quadSize" units, each of which fades with some noise from
/// "alphaBegin" to "alphaEnd" along the curve "easingAlpha". Where the widget is zoomed, the quads show its picture
/// unzoomed.
/// Lifetime: made by ShaderEffectManager only.
class VORLEX_API ShaderEffectFlickerQuads : public ShaderEffect {
public:
    // ShaderEffect:
    void destroy() override;
    void setCurrTime(float time) override;
    void setParams(ShaderEffectParams const& params) override;

protected:
    friend class ShaderEffectManager;

    ShaderEffectFlickerQuads();

    // ShaderEffect:
    void setDrawParams_() const override;
    std::function<void()> getDrawFunc_() const override;
    std::function<void(osg::Vec2i const&)> getRedrawFunc_() override;

    float alphaBegin = 0.0f;
    float alphaEnd = 1.0f;
    /// Of a quad; shares of the screen.
    float sizeX = 0.0f;
    float sizeY = 0.0f;
    EffectQuadGrid grid;
    EasingFunc easing;
};

}  // namespace gui::skin
