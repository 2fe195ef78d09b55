#pragma once

#include "gui_lib/effects/ShaderEffect.h"

namespace gui::skin {

/// "showMsg": its widget pops in, growing from its middle to its full size along the curve "easingSize", while it fades
/// from "alphaBegin" to "alphaEnd" along the curve "easingAlpha". With a duration not above 0 it stands still.
/// Lifetime: made by ShaderEffectManager only.
class VORLEX_API ShaderEffectShowMsg : public ShaderEffect {
public:
    // ShaderEffect:
    void destroy() override;
    void setCurrTime(float time) override;
    void setParams(ShaderEffectParams const& params) override;

protected:
    friend class ShaderEffectManager;

    ShaderEffectShowMsg();

    // ShaderEffect:
    void setDrawParams_() const override;

    float alphaBegin = 0.0f;
    float alphaEnd = 1.0f;
    float alpha = 1.0f;
    /// What the widget lacks of its size now, and at the start; shares of the screen.
    float valueX = 0.0f;
    float valueY = 0.0f;
    float sizeX = 0.0f;
    float sizeY = 0.0f;
    int alphaCoeffHandle = invalidHandle;
    int valueXHandle = invalidHandle;
    int valueYHandle = invalidHandle;
    EasingFunc alphaEasing;
    EasingFunc sizeEasing;
};

}  // namespace gui::skin
