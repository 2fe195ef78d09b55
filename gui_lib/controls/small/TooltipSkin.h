#pragma once

#include "gui_lib/Skin/Skin.h"

namespace gui::skin {

class TooltipData;

/// The look of a tooltip: its text wraps at the width of the screen. Holds a TooltipData.
class VORLEX_API TooltipSkin : public Skin {
public:
    explicit TooltipSkin(Widget* widget);

    TooltipData* getTooltipData() const;

protected:
    // Skin:
    osg::Vec2i calcTextSize_(InteractiveState state, int inner) override;
};

}  // namespace gui::skin
