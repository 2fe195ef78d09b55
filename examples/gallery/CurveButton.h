#pragma once

#include "gui_lib/base/easing/EasingType.h"
#include "gui_lib/controls/buttons/ToggleButton.h"

/// A toggle button that shows the curve of an easing function, from its begin at the left bottom to its end at the
/// right top, with room for what overshoots.
class CurveButton final : public gui::ToggleButton {
public:
    explicit CurveButton(gui::EasingType type);
};
