#pragma once

#include "gui_lib/effects/ShaderEffect.h"

namespace gui::skin {

/// "alpha": fades its widget from "alphaBegin" to "alphaEnd" along the curve "easing".
/// Lifetime: made by ShaderEffectManager only.
class VORLEX_API ShaderEffectAlpha : public ShaderEffect {
public:
    // ShaderEffect:
    void destroy() override;
    void setCurrTime(float time) override;
    void setParams(ShaderEffectParams const& params) override;

protected:
    friend class ShaderEffectManager;

    ShaderEffectAlpha();

    // ShaderEffect:
    void setDrawParams_() const override;

    float alphaBegin = 0.0f;
    float alphaEnd = 0.0f;
    float alpha = 0.0f;
    int timeCoeffHandle = invalidHandle;
    EasingFunc easing;
};

}  // namespace gui::skin
