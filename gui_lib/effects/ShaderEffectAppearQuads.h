#pragma once

#include "gui_lib/effects/EffectQuadGrid.h"
#include "gui_lib/effects/ShaderEffect.h"

namespace gui::skin {

/// "appearQuads": its widget comes as a grid of quads of "quadSize" units, which begin at twice their size and shrink
/// into their places along the curve "easingSize", while each fades with some noise from "alphaBegin" to "alphaEnd"
/// along the curve "easingAlpha". With a duration not above 0 it shows nothing. Where the widget is zoomed, the quads
/// show its picture unzoomed. Lifetime: made by ShaderEffectManager only.
class VORLEX_API ShaderEffectAppearQuads : public ShaderEffect {
public:
    // ShaderEffect:
    void destroy() override;
    void setCurrTime(float time) override;
    void setParams(ShaderEffectParams const& params) override;

protected:
    friend class ShaderEffectManager;

    ShaderEffectAppearQuads();

    // ShaderEffect:
    void setDrawParams_() const override;
    std::function<void()> getDrawFunc_() const override;
    std::function<void(osg::Vec2i const&)> getRedrawFunc_() override;

    float alphaBegin = 0.0f;
    float alphaEnd = 1.0f;
    float alpha = 1.0f;
    /// What a quad is too large by now, and at the start; shares of the screen.
    float valueX = 0.0f;
    float valueY = 0.0f;
    float sizeX = 0.0f;
    float sizeY = 0.0f;
    EffectQuadGrid grid;
    int valueXHandle = invalidHandle;
    int valueYHandle = invalidHandle;
    EasingFunc alphaEasing;
    EasingFunc sizeEasing;
};

}  // namespace gui::skin
